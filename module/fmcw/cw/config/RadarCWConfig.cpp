#include "fmcw/cw/config/RadarCWConfig.h"

#include "fmcw/common/DeviceInfo.h"
#include "fmcw/cw/config/IRadarCWConfigurator.h"
#include "fmcw/cw/config/RadarCWChips.h"
#include "fmcw/cw/config/RadarCWUserSettings.h"
#include "fmcw/cw/config/RadarDeviceCWConfig.h"

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
}

RadarCWConfig::~RadarCWConfig() = default;

QString RadarCWConfig::configurationTypeName() const
{
    return RadarCWChips::configurationTypeName(m_deviceInfo->radarType());
}

bool RadarCWConfig::updateLimits() { return false; }
bool RadarCWConfig::loadDefaultConfig() { return false; }
bool RadarCWConfig::loadConfig(const QString&) { return false; }
bool RadarCWConfig::saveConfig(const QString&) { return false; }
bool RadarCWConfig::applyGuiConfig() { return false; }
void RadarCWConfig::revertConfig() { }
bool RadarCWConfig::differs() const { return !m_guiConfig->sameSettings(*m_deviceConfig); }
QString RadarCWConfig::suggestGeneralConfigFileName() const { return QString(); }
void RadarCWConfig::onGuiAdcParamsChanged() { }
void RadarCWConfig::adaptRangeSpectrumSettings(const RadarDeviceCWConfig&) { }
