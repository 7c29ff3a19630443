#include "fmcw/standard/RadarUserSettings.h"

#include "core/JSONConfigurationObject.h"
#include "fmcw/processing/RangeDopplerUserSettings.h"

RadarUserSettings::RadarUserSettings(RangeSpectrumUserSettings* rangeSpectrum, TimeDomainUserSettings* timeDomain,
                                     QObject* parent)
    : IRadarUserSettings(parent)
    , m_rangeSpectrum(rangeSpectrum)
    , m_timeDomain(timeDomain)
    , m_rangeDoppler(std::make_unique<RangeDopplerUserSettings>())
{
}

RadarUserSettings::~RadarUserSettings() = default;

std::unique_ptr<JSONConfigurationObject> RadarUserSettings::configurationNode()
{
    auto radar = std::make_unique<JSONConfigurationObject>(QStringLiteral("radar"));
    auto standard = std::make_unique<JSONConfigurationObject>(QStringLiteral("standard"));
    standard->addChild(m_rangeDoppler->configurationNode());
    radar->addChild(std::move(standard));
    return radar;
}
