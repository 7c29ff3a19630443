#include "common/TimeDomainUserSettings.h"

#include "common/FloatSetting.h"
#include "core/JSONConfigurationObject.h"
#include "core/JSONConfigurationBinding.h"

namespace {
constexpr float kDefaultAxisYMin = 0.0f;
constexpr float kDefaultAxisYMax = 1.0f;
}

TimeDomainUserSettings::TimeDomainUserSettings(QObject* parent)
    : QObject(parent)
    , m_axisYMin(kDefaultAxisYMin)
    , m_axisYMax(kDefaultAxisYMax)
{
}

void TimeDomainUserSettings::setAxisYMin(float axisYMin)
{
    if (FloatSetting::equal(axisYMin, m_axisYMin))
        return;
    m_axisYMin = axisYMin;
    emit axisYMinChanged();
}

void TimeDomainUserSettings::setAxisYMax(float axisYMax)
{
    if (FloatSetting::equal(axisYMax, m_axisYMax))
        return;
    m_axisYMax = axisYMax;
    emit axisYMaxChanged();
}

std::unique_ptr<JSONConfigurationObject> TimeDomainUserSettings::configurationNode()
{
    auto node = std::make_unique<JSONConfigurationObject>(QStringLiteral("time_domain"));
    using S = TimeDomainUserSettings;
    JSONConfigurationBinding::bindValue(*node, QStringLiteral("axis_y_min"), this, &S::axisYMin, &S::setAxisYMin);
    JSONConfigurationBinding::bindValue(*node, QStringLiteral("axis_y_max"), this, &S::axisYMax, &S::setAxisYMax);
    return node;
}

void TimeDomainUserSettings::resetToDefault()
{
    setAxisYMin(kDefaultAxisYMin);
    setAxisYMax(kDefaultAxisYMax);
}
