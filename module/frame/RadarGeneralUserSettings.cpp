#include "frame/RadarGeneralUserSettings.h"

#include "core/JSONConfigurationObject.h"

RadarGeneralUserSettings::RadarGeneralUserSettings(QObject* parent)
    : QObject(parent)
{
}

std::unique_ptr<JSONConfigurationObject> RadarGeneralUserSettings::configurationNode()
{
    auto common = std::make_unique<JSONConfigurationObject>(QStringLiteral("common"));
    common->addChild(m_rangeSpectrum.configurationNode());
    common->addChild(m_timeDomain.configurationNode());
    auto radar = std::make_unique<JSONConfigurationObject>(QStringLiteral("radar"));
    radar->addChild(std::move(common));
    return radar;
}
