#include "fmcw/standard/RadarConfiguration.h"

#include "common/RangeSpectrumUserSettings.h"
#include "core/JSONConfigurationFile.h"
#include "core/JSONConfigurationObject.h"
#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/MetricsLimits.h"
#include "fmcw/common/PresenceSensingConfig.h"
#include "fmcw/common/RadarConfigurationUtils.h"
#include "fmcw/common/RadarDevice.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/common/RadarDeviceParameters.h"
#include "fmcw/common/SegmentationConfiguration.h"
#include "fmcw/processing/RangeDopplerUserSettings.h"
#include "fmcw/standard/IRadarUserSettings.h"
#include "sdk/vrn.h"

#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaEnum>

const QString RadarConfiguration::kExtendedKey = QStringLiteral("device_configuration_extended");

namespace {

const QString kCannotLoadApplication = QStringLiteral("Cannot load application configuration");
const QString kCannotLoad = QStringLiteral("Cannot load configuration");
const QString kUnknownDevice = QStringLiteral("Unknown radar device");

// The application a user document stands for: what its extended document
// names, else the application section it carries.
RadarConstants::Application applicationOf(const QByteArray& bytes)
{
    const QJsonObject top = QJsonDocument::fromJson(bytes).object();
    const QJsonObject extended = top.value(RadarConfiguration::kExtendedKey).toObject();
    const QJsonValue name = extended.value(QStringLiteral("application"));
    if (name.isString()) {
        bool ok = false;
        const int value = QMetaEnum::fromType<RadarConstants::Application>().keyToValue(
            name.toString().toLatin1().constData(), &ok);
        if (ok)
            return static_cast<RadarConstants::Application>(value);
    }
    if (top.contains(QStringLiteral("presence_sensing")))
        return RadarConstants::PresenceSensing;
    if (top.contains(QStringLiteral("segmentation")))
        return RadarConstants::Segmentation;
    return RadarConstants::None;
}

bool readBytes(const QString& fileName, QByteArray& bytes)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    bytes = file.readAll();
    return true;
}

// Both documents of `configuration` under one root: the configuration
// document at the top, the extended one under its own key.
std::unique_ptr<JSONConfigurationObject> combinedTree(RadarDeviceConfiguration& configuration)
{
    auto root = std::make_unique<JSONConfigurationObject>(QString());
    auto tree = configuration.configurationTree();
    root->addChildrenOf(*tree);
    root->addChild(configuration.extendedConfigurationTree());
    return root;
}

// Float members compared exactly; NaN on either side counts as different.
bool floatsDiffer(float a, float b)
{
    return !(a == b);
}

} // namespace

RadarConfiguration::RadarConfiguration(const Vrn* vrn, IRadarUserSettings* userSettings, QObject* parent)
    : IRadarConfiguration(parent)
    , m_vrn(vrn)
    , m_userSettings(userSettings)
    , m_utils(std::make_unique<RadarConfigurationUtils>(vrn, false))
    , m_edited(new RadarDeviceConfiguration(this))
    , m_applied(new RadarDeviceConfiguration(this))
{
    connect(m_utils.get(), &IRadarConfigurationUtils::triggerEvent, this, &IRadarConfiguration::triggerEvent);
}

RadarConfiguration::~RadarConfiguration() = default;

QString RadarConfiguration::resourcePath(const QString& fileName)
{
    return QStringLiteral(":/json/config/") + fileName;
}

void RadarConfiguration::notifyListener()
{
    if (m_listener)
        m_listener();
}

void RadarConfiguration::copyConfiguration(RadarDeviceConfiguration& from, RadarDeviceConfiguration& to)
{
    // The extended document first: it carries the application, which
    // decides the sections of the configuration document.
    QJsonObject extended;
    from.extendedConfigurationTree()->writeChildren(extended);
    to.extendedConfigurationTree()->readChildren(extended);
    QJsonObject document;
    from.configurationTree()->writeChildren(document);
    to.configurationTree()->readChildren(document);
    to.deviceInfo()->setDeviceType(from.deviceInfo()->deviceType());
    // Values the SDK derives for segmentation are not persisted.
    to.segmentation()->setFromSdk(from.segmentation()->toSdk(), true);
    to.setOptimalAppConfig(from.optimalAppConfig());
}

QString RadarConfiguration::loadDocument(const QByteArray& bytes, RadarDeviceConfiguration& target,
                                         bool asApplicationDefault)
{
    // A default document holds the scene only: its application section
    // comes from the SDK's defaults afterwards.
    const RadarConstants::Application application
        = asApplicationDefault ? target.application() : applicationOf(bytes);
    target.setApplication(asApplicationDefault ? RadarConstants::None : application);
    auto tree = target.configurationTree();
    QString error = loadFromText(*tree, bytes);
    target.setApplication(application);
    if (!error.isEmpty())
        return error;

    const JSONVersion& loaded = target.fileVersion();
    // One default document serves several chips: any chip of the table will
    // do there. A user's document must be the connected chip's.
    const QString expected = asApplicationDefault && isKnownType(loaded.type()) ? loaded.type()
                                                                                  : fileType(target.radarType());
    return checkVersion(expected, loaded.type(), loaded.version());
}

bool RadarConfiguration::loadConfiguration(const QString& fileName, bool asApplicationDefault)
{
    const QString message = asApplicationDefault ? kCannotLoadApplication : kCannotLoad;
    if (!asApplicationDefault && m_edited->radarType() == RadarConstants::Unknown) {
        emit triggerEvent(RadarEventCode::Error, kUnknownDevice, fileName);
        return false;
    }
    QByteArray bytes;
    if (!readBytes(fileName, bytes)) {
        qWarning() << "Cannot open configuration file" << fileName;
        emit triggerEvent(RadarEventCode::Error, message, QStringLiteral("Cannot open file"));
        return false;
    }
    RadarDeviceConfiguration scratch;
    copyConfiguration(*m_edited, scratch);
    const QString error = loadDocument(bytes, scratch, asApplicationDefault);
    if (!error.isEmpty()) {
        qWarning() << "Configuration" << fileName << "refused:" << error;
        emit triggerEvent(RadarEventCode::Error, message, error);
        return false;
    }
    copyConfiguration(scratch, *m_edited);
    return true;
}

bool RadarConfiguration::applyDefaultConfiguration(RadarConstants::Application application)
{
    m_edited->setApplication(application);
    const bool loaded = loadConfiguration(
        RadarDeviceConfiguration::defaultConfigurationResource(application, m_edited->radarType()), true);
    if (!loaded)
        return false;
    // The application section of a default comes from the SDK.
    if (m_device)
        m_device->updateApplicationDefaults(*m_edited);
    else if (application == RadarConstants::PresenceSensing)
        m_utils->fillDefaultPresenceSensing(*m_edited);
    m_edited->setOptimalAppConfig(true);
    notifyListener();
    if (application == RadarConstants::Segmentation && m_edited->limits()->frameRepetitionTimeSMin() <= 0.1f)
        m_edited->metrics()->setFrameRepetitionTimeS(0.1f);
    return loaded;
}

bool RadarConfiguration::validateApplication()
{
    const RadarConstants::Application application = m_edited->application();
    bool result = true;
    // Another application starts from its own defaults, whatever the edited
    // copy held before (a loaded file, an apply that was refused): settings
    // made for one application are no basis for another.
    if (application != m_applied->application()) {
        result = applyDefaultConfiguration(application);
    } else if (application == RadarConstants::Segmentation) {
        const RadarAntennas& rx = *m_edited->metrics()->rx();
        const bool suitable = rx.isActive(0) && !rx.isActive(1) && rx.isActive(2)
            && m_edited->metrics()->frameRepetitionTimeS() == 0.1f && m_edited->metrics()->maxRangeM() >= 1.0f;
        if (!suitable) {
            emit triggerEvent(RadarEventCode::Error,
                              QStringLiteral("Segmentation app requires:\nOnly Rx1 and Rx3 antennas to be active\n"
                                             "Frame Repetition time = 10Hz\nTheoretical Max Range >= 1m"),
                              QString());
            return false;
        }
        m_edited->setOptimalAppConfig(
            areMetricsOptimal(QStringLiteral("defaultConfigSeg_KMR7A.json"), QStringLiteral("Segmentation")));
    } else if (application == RadarConstants::PresenceSensing) {
        if (m_edited->metrics()->rx()->activeCount() != 1) {
            emit triggerEvent(RadarEventCode::Error,
                              QStringLiteral("Presence Sensing requires only one active Rx antenna"), QString());
            return false;
        }
        const QString file = m_edited->radarType() == RadarConstants::KMR7C
            ? QStringLiteral("defaultConfigPS_KMR7C.json")
            : QStringLiteral("defaultConfigPS_KMR7A.json");
        m_edited->setOptimalAppConfig(areMetricsOptimal(file, QStringLiteral("Presence Sensing")));
    }

    if (application == RadarConstants::PresenceSensing) {
        const float maxRange = m_edited->metrics()->maxRangeM();
        if (m_edited->presenceSensing()->minDetectionRange() > maxRange) {
            emit triggerEvent(RadarEventCode::Error,
                              QStringLiteral("Min Detection Range of Presence Sensing cannot be higher than Max "
                                             "Theoretical Range. Check your Presence Sensing settings."),
                              QString());
            return false;
        }
        if (m_edited->presenceSensing()->maxDetectionRange() > maxRange) {
            emit triggerEvent(RadarEventCode::Error,
                              QStringLiteral("Max Detection Range of Presence Sensing cannot be higher than Max "
                                             "Theoretical Range. Check your Presence Sensing settings."),
                              QString());
            return false;
        }
    }
    return result;
}

bool RadarConfiguration::areMetricsOptimal(const QString& fileName, const QString& applicationName)
{
    RadarDeviceConfiguration scratch;
    copyConfiguration(*m_edited, scratch);
    QByteArray bytes;
    if (!readBytes(resourcePath(fileName), bytes) || !loadDocument(bytes, scratch, true).isEmpty()) {
        qWarning() << "Cannot load JSON file with optimal settings" << fileName;
        return false;
    }
    if (*scratch.metrics() != *m_edited->metrics()) {
        emit triggerEvent(RadarEventCode::Notice,
                          QStringLiteral("The modified settings are non-optimal for %1 application").arg(applicationName),
                          QString());
        return false;
    }
    return true;
}

void RadarConfiguration::leaveApplication()
{
    if (m_applied->application() == RadarConstants::None)
        return;
    m_edited->setApplication(RadarConstants::None);
    updateRangeSpectrumRuntime(m_edited);
    updateRangeDopplerRuntime(m_edited);
}

void RadarConfiguration::adaptRangeSpectrumSettings(const RadarDeviceConfiguration& configuration)
{
    if (RangeSpectrumUserSettings* settings = m_userSettings ? m_userSettings->rangeSpectrum() : nullptr)
        settings->updateDeviceParameters(configuration.parameters()->numSamplesPerChirp(),
                                         configuration.parameters()->numChirpsPerFrame());
}

void RadarConfiguration::adaptRangeDopplerSettings(const RadarDeviceConfiguration& configuration)
{
    if (RangeDopplerUserSettings* settings = m_userSettings ? m_userSettings->rangeDoppler() : nullptr) {
        settings->updateDeviceParameters(configuration.parameters()->numSamplesPerChirp(),
                                         configuration.parameters()->numChirpsPerFrame());
        // The shown antenna is a bit position of the masks, not the
        // antenna number the pages print.
        settings->updateRxActiveIndexes(configuration.metrics()->rx()->activePositions());
        settings->updateTxActiveIndexes(configuration.metrics()->tx()->activePositions());
    }
}

void RadarConfiguration::updateRangeSpectrumRuntime(RadarDeviceConfiguration* configuration)
{
    if (!configuration)
        return;
    adaptRangeSpectrumSettings(*configuration);
    emit deviceConfigurationRuntimeUpdated();
}

void RadarConfiguration::updateRangeDopplerRuntime(RadarDeviceConfiguration* configuration)
{
    if (!configuration)
        return;
    adaptRangeDopplerSettings(*configuration);
    emit deviceConfigurationRuntimeUpdated();
}

bool RadarConfiguration::saveConfiguration(const QString& fileName)
{
    if (m_edited->radarType() == RadarConstants::Unknown) {
        emit triggerEvent(RadarEventCode::Error, kUnknownDevice, fileName);
        return false;
    }
    auto root = combinedTree(*m_edited);
    if (!saveToFile(*root, fileName)) {
        qWarning() << "Cannot save configuration to" << fileName;
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Cannot save configuration"), fileName);
        return false;
    }
    return true;
}

void RadarConfiguration::bindDevice(RadarDevice* device)
{
    m_device = device;
    m_isApplied = false;
    if (!device) {
        m_edited->setRecalcHandler(nullptr);
        return;
    }
    const RadarConstants::RadarType previous = m_edited->radarType();
    device->updateDeviceInfo(*m_edited->deviceInfo());
    device->updateDeviceInfo(*m_applied->deviceInfo());
    m_edited->setRecalcHandler(device);
    // Another chip (or the first one) starts from its own default; the same
    // chip keeps what the user last edited.
    if (previous != m_edited->radarType() || m_edited->metrics()->sampleRateHz() == 0)
        applyDefaultConfiguration(m_edited->application());
}

void RadarConfiguration::releaseDevice()
{
    m_device = nullptr;
    m_isApplied = false;
    m_edited->setRecalcHandler(nullptr);
}

bool RadarConfiguration::applyGuiConfiguration()
{
    if (!validateApplication())
        return false;
    return applyEdited();
}

bool RadarConfiguration::applyEdited()
{
    if (m_device) {
        // The SDK derives the segmentation chirp values from the scene.
        if (m_edited->application() == RadarConstants::Segmentation)
            m_device->updateApplicationDefaults(*m_edited, RadarDevice::SegmentationDefaults::ChirpValuesOnly);
        if (!m_device->setConfiguration(*m_edited))
            return false;
        // What each transmitter radiates is known once the board runs the
        // configuration; the device info shows it.
        m_device->updateTxPower(*m_edited);
    }
    copyConfiguration(*m_edited, *m_applied);
    m_isApplied = true;
    // The chart settings follow the new chirps before the pipeline builds
    // its calculators from them, once, on the update below.
    adaptRangeSpectrumSettings(*m_applied);
    adaptRangeDopplerSettings(*m_applied);
    emit deviceConfigurationUpdated(m_applied);
    return true;
}

bool RadarConfiguration::revertConfiguration()
{
    copyConfiguration(*m_applied, *m_edited);
    notifyListener();
    return true;
}

bool RadarConfiguration::differs() const
{
    return configurationsDiffer(*m_edited, *m_applied);
}

bool RadarConfiguration::configurationsDiffer(const RadarDeviceConfiguration& a, const RadarDeviceConfiguration& b)
{
    if (*a.metrics() != *b.metrics() || a.application() != b.application())
        return true;
    if (a.application() == RadarConstants::PresenceSensing) {
        const PresenceSensingConfig& pa = *a.presenceSensing();
        const PresenceSensingConfig& pb = *b.presenceSensing();
        return floatsDiffer(pa.minDetectionRange(), pb.minDetectionRange())
            || floatsDiffer(pa.maxDetectionRange(), pb.maxDetectionRange())
            || pa.absenceConfirmCount() != pb.absenceConfirmCount()
            || pa.presenceConfirmCount() != pb.presenceConfirmCount()
            || floatsDiffer(pa.rangeHysteresisPercentage(), pb.rangeHysteresisPercentage());
    }
    if (a.application() == RadarConstants::Segmentation)
        return !a.segmentation()->sameSettings(*b.segmentation());
    return false;
}

QString RadarConfiguration::suggestGeneralConfigFileName() const
{
    return QStringLiteral("%1_Settings_%2.json")
        .arg(m_edited->deviceInfo()->deviceName(),
             QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss")));
}

QByteArray RadarConfiguration::recordingDocument()
{
    auto root = combinedTree(*m_applied);
    QJsonObject object;
    root->writeChildren(object);
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

bool RadarConfiguration::loadRecordingDocument(const QByteArray& document, QString& error)
{
    // The recorded chip is not connected: its device info and chirp
    // parameters come from the extended document, which is read first so
    // the antenna validators of the scene see the recorded counts.
    RadarDeviceConfiguration scratch;
    JSONConfigurationObject holder { QString() };
    holder.addChild(scratch.extendedConfigurationTree());
    error = loadFromText(holder, document);
    if (error.isEmpty())
        error = checkVersion(extendedFileType(scratch.radarType()), scratch.extendedFileVersion().type(),
                             scratch.extendedFileVersion().version());
    if (error.isEmpty()) {
        auto tree = scratch.configurationTree();
        error = loadFromText(*tree, document);
    }
    if (error.isEmpty())
        error = checkVersion(fileType(scratch.radarType()), scratch.fileVersion().type(),
                             scratch.fileVersion().version());
    if (!error.isEmpty()) {
        qWarning() << "Recorded configuration refused:" << error;
        return false;
    }
    // The chip family keys the SDK's algorithm defaults; the document names
    // the chip only.
    switch (scratch.radarType()) {
    case RadarConstants::KMR7A:
        scratch.deviceInfo()->setDeviceType(VRN_DEVICE_TYPE_KMR7A);
        break;
    case RadarConstants::KMR7B:
        scratch.deviceInfo()->setDeviceType(VRN_DEVICE_TYPE_KMR7B);
        break;
    case RadarConstants::KMR7C:
        scratch.deviceInfo()->setDeviceType(VRN_DEVICE_TYPE_KMR7C);
        break;
    case RadarConstants::Unknown:
        break;
    }
    copyConfiguration(scratch, *m_edited);
    // The recording ran with exactly these settings: they are what its
    // frames need, not the defaults of its application nor the checks
    // for a board.
    return applyEdited();
}
