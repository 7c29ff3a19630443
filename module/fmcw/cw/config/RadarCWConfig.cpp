#include "fmcw/cw/config/RadarCWConfig.h"

#include "common/RangeSpectrumUserSettings.h"
#include "core/JSONConfigurationFile.h"
#include "core/JSONConfigurationObject.h"
#include "fmcw/common/DeviceInfo.h"
#include "fmcw/cw/config/IRadarCWConfigurator.h"
#include "fmcw/cw/config/RadarCWChips.h"
#include "fmcw/cw/config/RadarCWParams.h"
#include "fmcw/cw/config/RadarCWParamsLimits.h"
#include "fmcw/cw/config/RadarCWUserSettings.h"
#include "fmcw/cw/config/RadarDeviceCWConfig.h"

#include <QDateTime>
#include <QDebug>
#include <QFile>

namespace {

const QString kUnknownDevice = QStringLiteral("Unknown radar device");
const QString kCannotLoad = QStringLiteral("Cannot load configuration");

bool readBytes(const QString& filePath, QByteArray& bytes)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    bytes = file.readAll();
    return true;
}

}

RadarCWConfig::RadarCWConfig(IRadarCWConfigurator* configurator, std::unique_ptr<RadarCWUserSettings> userSettings,
                             QObject* parent)
    : QObject(parent)
    , m_configurator(configurator)
    , m_deviceInfo(new DeviceInfo(this))
    , m_userSettings(std::move(userSettings))
    , m_guiConfig(new RadarDeviceCWConfig(m_deviceInfo, this))
    , m_deviceConfig(new RadarDeviceCWConfig(m_deviceInfo, this))
    , m_scratchConfig(new RadarDeviceCWConfig(m_deviceInfo, this))
{
    // The update signal may cross to the processing thread.
    qRegisterMetaType<RadarDeviceCWConfig*>("RadarDeviceCWConfig*");
    connect(m_guiConfig->params(), &RadarCWParams::adcParamsChanged, this, &RadarCWConfig::onGuiAdcParamsChanged);
}

RadarCWConfig::~RadarCWConfig() = default;

QString RadarCWConfig::configurationTypeName() const
{
    return RadarCWChips::configurationTypeName(m_deviceInfo->radarType());
}

void RadarCWConfig::assignToGui(const RadarDeviceCWConfig& from)
{
    m_assigningGui = true;
    m_guiConfig->assign(from);
    m_assigningGui = false;
    onGuiAdcParamsChanged();
}

bool RadarCWConfig::updateLimits()
{
    if (!fetchLimits())
        return false;
    onGuiAdcParamsChanged();
    return true;
}

bool RadarCWConfig::fetchLimits()
{
    if (!m_configurator) {
        qWarning() << "No CW controller to ask for the device's limits";
        return false;
    }
    if (!m_configurator->getLimits(*m_guiConfig->limits()))
        return false;
    // The device copy's sampling-rate bounds belong to the ADC setting it
    // runs; the rest are the board's.
    const RadarCWParamsLimits& limits = *m_guiConfig->limits();
    RadarCWParamsLimits& device = *m_deviceConfig->limits();
    device.setRfCenterFrequency(limits.rfCenterFrequencyMin(), limits.rfCenterFrequencyMax());
    device.setDac(limits.dacMin(), limits.dacMax());
    device.setRxNumSamples(limits.rxNumSamplesMin(), limits.rxNumSamplesMax());
    device.setTestSignalFrequency(limits.testSignalFrequencyMin(), limits.testSignalFrequencyMax());
    return true;
}

bool RadarCWConfig::loadDefaultConfig()
{
    // Defaults are loaded when a board arrives: its bounds come first, for
    // the pages and for the files the user loads next. The sampling-rate
    // bounds wait for the default ADC setting.
    fetchLimits();
    m_scratchConfig->assign(*m_guiConfig);
    if (!m_configurator || !m_configurator->getDefaultConfiguration(*m_scratchConfig)) {
        qWarning() << "The device's default CW configuration is not available";
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Cannot load default config for CW "), QString());
        return false;
    }
    assignToGui(*m_scratchConfig);
    return true;
}

bool RadarCWConfig::loadConfig(const QString& filePath)
{
    const QString typeName = configurationTypeName();
    if (typeName.isEmpty()) {
        emit triggerEvent(RadarEventCode::Error, kUnknownDevice, filePath);
        return false;
    }
    QByteArray bytes;
    if (!readBytes(filePath, bytes)) {
        qWarning() << "Cannot open CW configuration file" << filePath;
        emit triggerEvent(RadarEventCode::Error, kCannotLoad, QStringLiteral("Cannot open file"));
        return false;
    }

    // The kind of document first: another chip's file or a standard-mode
    // file would otherwise be refused for some value it holds, which says
    // nothing about the real reason.
    auto versionTree = m_scratchConfig->versionTree();
    QString error = loadFromText(*versionTree, bytes);
    if (error.isEmpty()) {
        const JSONVersion& found = m_scratchConfig->fileVersion();
        error = JSONVersion(typeName, RadarCWChips::kFileVersion).check(found.type(), found.version());
    }
    if (error.isEmpty()) {
        m_scratchConfig->assign(*m_guiConfig);
        auto tree = m_scratchConfig->configurationTree(typeName);
        error = loadFromText(*tree, bytes);
    }
    if (!error.isEmpty()) {
        qWarning() << "CW configuration" << filePath << "refused:" << error;
        emit triggerEvent(RadarEventCode::Error, kCannotLoad, error);
        return false;
    }
    assignToGui(*m_scratchConfig);
    return true;
}

bool RadarCWConfig::saveConfig(const QString& filePath)
{
    const QString typeName = configurationTypeName();
    if (typeName.isEmpty()) {
        emit triggerEvent(RadarEventCode::Error, kUnknownDevice, filePath);
        return false;
    }
    auto tree = m_guiConfig->configurationTree(typeName);
    if (!saveToFile(*tree, filePath)) {
        qWarning() << "Cannot save the CW configuration to" << filePath;
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Cannot save configuration"), filePath);
        return false;
    }
    return true;
}

bool RadarCWConfig::applyGuiConfig()
{
    bool applied = m_configurator && m_configurator->setConfiguration(*m_guiConfig);
    if (applied) {
        m_scratchConfig->assign(*m_guiConfig);
        applied = m_configurator->getConfiguration(*m_scratchConfig);
    }
    if (!applied) {
        qWarning() << "The CW configuration was not applied; the device copy stays as it was";
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Cannot apply config for CW "), QString());
        return false;
    }
    // What the device accepted is what the pages show and what runs.
    assignToGui(*m_scratchConfig);
    adaptRangeSpectrumSettings(*m_guiConfig);
    m_deviceConfig->assign(*m_guiConfig);
    emit deviceConfigUpdated(m_deviceConfig);
    // Receivers of the update may have completed the device copy (the
    // spectrum's axis); the pages show that too.
    m_assigningGui = true;
    m_guiConfig->assign(*m_deviceConfig);
    m_assigningGui = false;
    return true;
}

void RadarCWConfig::revertConfig()
{
    // The device copy carries the sampling-rate bounds of its own ADC
    // setting, so there is nothing to ask the device.
    m_assigningGui = true;
    m_guiConfig->assign(*m_deviceConfig);
    m_assigningGui = false;
}

bool RadarCWConfig::differs() const
{
    return !m_guiConfig->sameSettings(*m_deviceConfig);
}

QString RadarCWConfig::suggestGeneralConfigFileName() const
{
    return QStringLiteral("%1_CW_Settings_%2.json")
        .arg(m_deviceInfo->deviceName(), QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss")));
}

void RadarCWConfig::updateRangeSpectrumRuntime()
{
    adaptRangeSpectrumSettings(*m_deviceConfig);
    emit deviceConfigurationRuntimeUpdated();
}

void RadarCWConfig::onGuiAdcParamsChanged()
{
    if (m_assigningGui || !m_configurator)
        return;
    vrn_Device_ADC_Config_t adc {};
    m_guiConfig->params()->copyToAdcConfig(adc);
    quint32 minHz = 0;
    quint32 maxHz = 0;
    if (!m_configurator->getSamplingRateLimits(adc, minHz, maxHz)) {
        qWarning() << "No sampling-rate limits for this ADC setting; the previous ones stay";
        return;
    }
    m_guiConfig->limits()->setSamplingRate(minHz, maxHz);
    RadarCWParams& params = *m_guiConfig->params();
    if (minHz > params.samplingRate())
        params.setSamplingRate(minHz);
    else if (params.samplingRate() > maxHz)
        params.setSamplingRate(maxHz);
}

void RadarCWConfig::adaptRangeSpectrumSettings(const RadarDeviceCWConfig& config)
{
    RangeSpectrumUserSettings* settings = m_userSettings ? m_userSettings->rangeSpectrum() : nullptr;
    // A CW frame is one row of samples per receiver.
    if (settings)
        settings->updateDeviceParameters(config.params()->rxNumSamples(), 1);
}
