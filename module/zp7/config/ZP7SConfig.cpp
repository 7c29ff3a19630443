#include "zp7/config/ZP7SConfig.h"

#include "common/RangeSpectrumUserSettings.h"
#include "core/JSONConfigurationFile.h"
#include "core/JSONConfigurationObject.h"
#include "fmcw/common/DeviceInfo.h"
#include "zp7/config/IZP7SController.h"
#include "zp7/config/ZP7SConfigDocument.h"
#include "zp7/config/ZP7SDeviceConfig.h"
#include "zp7/config/ZP7SFrameParams.h"
#include "zp7/config/ZP7SLimits.h"
#include "zp7/config/ZP7SUserSettings.h"

#include <QDateTime>
#include <QDebug>
#include <QFile>

namespace {

const QString kCannotApply = QStringLiteral("Cannot apply config for ZP7");
const QString kCannotApplyDefault = QStringLiteral("Cannot apply default config for ZP7");
const QString kCannotLoadFromDevice = QStringLiteral("Cannot load config for ZP7");
const QString kCannotLoad = QStringLiteral("Cannot load configuration");

}

ZP7SConfig::ZP7SConfig(IZP7SController* controller, QObject* parent)
    : ZP7SConfig(controller, std::make_unique<ZP7SUserSettings>(), parent)
{
}

ZP7SConfig::ZP7SConfig(IZP7SController* controller, std::unique_ptr<ZP7SUserSettings> userSettings,
                       QObject* parent)
    : QObject(parent)
    , m_controller(controller)
    , m_userSettings(userSettings ? std::move(userSettings) : std::make_unique<ZP7SUserSettings>())
    , m_deviceInfo(new DeviceInfo(this))
    , m_deviceConfig(new ZP7SDeviceConfig(m_deviceInfo, this))
    , m_guiConfig(new ZP7SDeviceConfig(m_deviceInfo, this))
    , m_boardLimits(ZP7SLimits::unbounded())
{
    // The update signal may cross to the acquisition thread.
    qRegisterMetaType<ZP7SDeviceConfig*>("ZP7SDeviceConfig*");
    const ZP7SFrameParams* frame = m_guiConfig->frameParams();
    connect(frame, &ZP7SFrameParams::numOfSamplesChanged, this, &ZP7SConfig::onLimitsRecalcNeeded);
    connect(frame, &ZP7SFrameParams::pulseRepetitionTimeChanged, this, &ZP7SConfig::onLimitsRecalcNeeded);
}

ZP7SConfig::~ZP7SConfig() = default;

bool ZP7SConfig::boardAvailable(const QString& failureMessage)
{
    if (m_playbackActive) {
        emit triggerEvent(RadarEventCode::Notice, failureMessage,
                          QStringLiteral("A recording is being played back: nothing is sent to a board"));
        return false;
    }
    if (!m_controller || !m_controller->isConnected()) {
        emit triggerEvent(RadarEventCode::Error, failureMessage, QStringLiteral("No ZP7 board is connected"));
        return false;
    }
    return true;
}

bool ZP7SConfig::loadFromDevice()
{
    if (!boardAvailable(kCannotLoadFromDevice))
        return false;
    // The device has told the user about any refusal below.
    ZP7SDeviceConfig scratch;
    vrn_Corvix_Limits_t limits {};
    vrn_Corvix_Frame_Config_t frame {};
    vrn_Corvix_Pulse_Config_t pulse {};
    if (!m_controller->readDeviceInfo(*scratch.deviceInfo()) || !m_controller->getLimits(limits)
        || !m_controller->getConfig(frame, pulse)) {
        qWarning() << "The ZP7 board's settings could not be read; the configuration stays as it was";
        return false;
    }
    m_boardLimits = limits;
    scratch.setLimits(limits);
    scratch.fromSdk(frame, pulse);
    takeAsRunning(scratch);
    return true;
}

bool ZP7SConfig::applyDefaultConfig()
{
    if (!boardAvailable(kCannotApplyDefault))
        return false;
    // The defaults are checked against the board's bounds like any other
    // settings, so those are asked for again rather than assumed known.
    vrn_Corvix_Limits_t limits {};
    vrn_Corvix_Frame_Config_t frame {};
    vrn_Corvix_Pulse_Config_t pulse {};
    if (!m_controller->getLimits(limits) || !m_controller->getDefaultConfig(frame, pulse))
        return false;
    m_boardLimits = limits;
    ZP7SDeviceConfig scratch;
    scratch.copyFrom(*m_deviceConfig);
    scratch.setLimits(m_boardLimits);
    scratch.fromSdk(frame, pulse);
    return sendToBoard(scratch, kCannotApplyDefault);
}

bool ZP7SConfig::applyGuiConfig()
{
    return sendToBoard(*m_guiConfig, kCannotApply);
}

bool ZP7SConfig::applyConfigFile(const QString& path)
{
    if (!boardAvailable(kCannotLoad))
        return false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning() << "Cannot open ZP7 configuration file" << path;
        emit triggerEvent(RadarEventCode::Error, kCannotLoad, QStringLiteral("Cannot open file %1").arg(path));
        return false;
    }
    // The file's values are held to the board's own bounds, not to those
    // the edited copy derived from its current settings.
    ZP7SDeviceConfig scratch;
    scratch.copyFrom(*m_guiConfig);
    scratch.setLimits(m_boardLimits);
    const QString error = ZP7SConfigDocument(scratch).load(file.readAll(), false);
    if (!error.isEmpty()) {
        qWarning() << "ZP7 configuration" << path << "refused:" << error;
        emit triggerEvent(RadarEventCode::Error, kCannotLoad, error);
        return false;
    }
    return sendToBoard(scratch, kCannotApply);
}

bool ZP7SConfig::sendToBoard(const ZP7SDeviceConfig& source, const QString& failureMessage)
{
    if (!boardAvailable(failureMessage))
        return false;
    QString message;
    QString details;
    if (!source.checkWithinLimits(message, details)) {
        qWarning() << "ZP7 configuration refused:" << message << details;
        emit triggerEvent(RadarEventCode::Error, message, details);
        return false;
    }
    vrn_Corvix_Frame_Config_t frame {};
    vrn_Corvix_Pulse_Config_t pulse {};
    if (!source.toSdk(frame, pulse)) {
        emit triggerEvent(RadarEventCode::Error, failureMessage,
                          QStringLiteral("Invalid channel settings: choose Tx1Rx1 or Tx2Rx2"));
        return false;
    }
    if (!m_controller->setConfig(frame, pulse))
        return false;
    // What the board runs is what it reports; should it not answer, it
    // runs what it just accepted.
    if (!m_controller->getConfig(frame, pulse))
        qWarning() << "The ZP7 board accepted the configuration but did not report it back";
    ZP7SDeviceConfig accepted;
    accepted.copyFrom(source);
    accepted.setLimits(m_boardLimits);
    accepted.fromSdk(frame, pulse);
    takeAsRunning(accepted);
    return true;
}

void ZP7SConfig::takeAsRunning(const ZP7SDeviceConfig& accepted)
{
    m_deviceConfig->copyFrom(accepted);
    adaptChartSettings(*m_deviceConfig);
    assignToGui(*m_deviceConfig);
    emit deviceConfigUpdated(m_deviceConfig);
}

void ZP7SConfig::assignToGui(const ZP7SDeviceConfig& from)
{
    // One recalculation for the whole copy instead of one per value.
    m_assigningGui = true;
    m_guiConfig->copyFrom(from);
    m_assigningGui = false;
    onLimitsRecalcNeeded();
}

void ZP7SConfig::revert()
{
    assignToGui(*m_deviceConfig);
}

void ZP7SConfig::clear()
{
    m_boardLimits = ZP7SLimits::unbounded();
    m_deviceConfig->limits()->reset();
    m_guiConfig->limits()->reset();
    m_deviceInfo->setDeviceName(QString());
    m_deviceInfo->setDeviceFirmwareName(QString());
    m_deviceInfo->setDeviceFirmwareNumber(QString());
    m_deviceInfo->setNumRxAntennas(0);
    m_deviceInfo->setNumTxAntennas(0);
    m_deviceInfo->setDeviceTemperature(QVariant());
    m_deviceInfo->setDeviceTxPower({});
}

bool ZP7SConfig::differs() const
{
    return !m_guiConfig->sameSettings(*m_deviceConfig);
}

void ZP7SConfig::onLimitsRecalcNeeded()
{
    if (m_assigningGui)
        return;
    vrn_Corvix_Limits_t limits = m_boardLimits;
    const ZP7SFrameParams& frame = *m_guiConfig->frameParams();
    // The frame cannot be shorter than its pulses.
    const float burst = float(frame.numOfSamples()) * frame.pulseRepetitionTime();
    if (burst > limits.frame_repetition_time_s_min)
        limits.frame_repetition_time_s_min = qMin(burst, limits.frame_repetition_time_s_max);
    m_guiConfig->setLimits(limits);
    if (limits.frame_repetition_time_s_min > 0.0f) {
        const float highest = 1.0f / limits.frame_repetition_time_s_min;
        if (frame.frameRepetitionRate() > highest * 1.0001f)
            m_guiConfig->frameParams()->setFrameRepetitionRate(highest);
    }
}

QByteArray ZP7SConfig::recordingDocument() const
{
    return ZP7SConfigDocument(*m_deviceConfig).toJson();
}

bool ZP7SConfig::loadRecordingDocument(const QByteArray& json, QString& error)
{
    // The recording was made on its own board: its values are not held to
    // the bounds of the one that may be connected now.
    ZP7SDeviceConfig scratch;
    error = ZP7SConfigDocument(scratch).load(json, true);
    if (!error.isEmpty()) {
        qWarning() << "Recorded ZP7 configuration refused:" << error;
        return false;
    }
    scratch.limits()->assign(*m_deviceConfig->limits());
    takeAsRunning(scratch);
    return true;
}

bool ZP7SConfig::saveConfigFile(const QString& path)
{
    auto tree = ZP7SConfigDocument(*m_guiConfig).combinedTree();
    if (!saveToFile(*tree, path)) {
        qWarning() << "Cannot save the ZP7 configuration to" << path;
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Cannot save configuration"), path);
        return false;
    }
    return true;
}

QString ZP7SConfig::suggestGeneralConfigFileName() const
{
    const QString name = m_deviceInfo->deviceName().isEmpty() ? ZP7SConfigDocument::kType : m_deviceInfo->deviceName();
    return QStringLiteral("%1_Settings_%2.json")
        .arg(name, QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss")));
}

void ZP7SConfig::updateRangeSpectrumRuntime()
{
    adaptChartSettings(*m_deviceConfig);
    emit deviceConfigurationRuntimeUpdated();
}

void ZP7SConfig::adaptChartSettings(ZP7SDeviceConfig& config)
{
    const quint32 samples = config.frameParams()->numOfSamples();
    RangeSpectrumUserSettings* spectrum = m_userSettings->rangeSpectrum();
    // One frame is one row of pulses: the Doppler FFT runs over all of them.
    if (spectrum && samples > 0)
        spectrum->updateDeviceParameters(samples, 1);
    config.updateFrequencyDomainAxis(spectrum && spectrum->fftSize() > 0 ? spectrum->fftSize() : samples);
}
