#include "common/TimeDomainUserSettings.h"

#include "common/FloatSetting.h"
#include "core/JSONConfigurationObject.h"
#include "core/JSONConfigurationValue.h"

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
    node->addChild(std::make_unique<JSONConfigurationValue<float>>(
        QStringLiteral("axis_y_min"), [this] { return m_axisYMin; },
        [this](const float& v) { setAxisYMin(v); }, [](const float&) { return QString(); }));
    node->addChild(std::make_unique<JSONConfigurationValue<float>>(
        QStringLiteral("axis_y_max"), [this] { return m_axisYMax; },
        [this](const float& v) { setAxisYMax(v); }, [](const float&) { return QString(); }));
    return node;
}

void TimeDomainUserSettings::resetToDefault()
{
    setAxisYMin(kDefaultAxisYMin);
    setAxisYMax(kDefaultAxisYMax);
}
