#include "fmcw/common/PresenceSensingConfig.h"

#include "core/JSONConfigurationBinding.h"
#include "fmcw/common/SettingsValidation.h"

namespace {

template<typename T, typename Signal>
void store(PresenceSensingConfig* config, T& member, T value, Signal signal)
{
    if (member == value)
        return;
    member = value;
    emit(config->*signal)();
    emit config->guiParamChanged();
}

QString checkDetectionRange(float value)
{
    return SettingsValidation::checkRange(value, 0.0001f, 20.0f);
}

}

PresenceSensingConfig::PresenceSensingConfig(QObject* parent)
    : QObject(parent)
{
}

void PresenceSensingConfig::setMinDetectionRange(float value)
{
    store(this, m_minDetectionRange, value, &PresenceSensingConfig::minDetectionRangeChanged);
}

void PresenceSensingConfig::setMaxDetectionRange(float value)
{
    store(this, m_maxDetectionRange, value, &PresenceSensingConfig::maxDetectionRangeChanged);
}

void PresenceSensingConfig::setRangeHysteresisPercentage(float value)
{
    store(this, m_rangeHysteresisPercentage, value, &PresenceSensingConfig::rangeHysteresisPercentageChanged);
}

void PresenceSensingConfig::setAbsenceConfirmCount(quint32 value)
{
    store(this, m_absenceConfirmCount, value, &PresenceSensingConfig::absenceConfirmCountChanged);
}

void PresenceSensingConfig::setPresenceConfirmCount(quint32 value)
{
    store(this, m_presenceConfirmCount, value, &PresenceSensingConfig::presenceConfirmCountChanged);
}

QString PresenceSensingConfig::checkValue(const QString& property, double value)
{
    if (property == QLatin1String("minDetectionRange") || property == QLatin1String("maxDetectionRange"))
        return checkDetectionRange(float(value));
    return QString();
}

std::unique_ptr<JSONConfigurationObject> PresenceSensingConfig::configurationNode()
{
    auto node = std::make_unique<JSONConfigurationObject>(QStringLiteral("presence_sensing"));
    using JSONConfigurationBinding::bindValue;
    using C = PresenceSensingConfig;
    bindValue(*node, QStringLiteral("absence_confirm_count"), this, &C::absenceConfirmCount,
              &C::setAbsenceConfirmCount);
    bindValue(*node, QStringLiteral("max_detection_range_m"), this, &C::maxDetectionRange, &C::setMaxDetectionRange,
              [](const float& value) { return checkDetectionRange(value); });
    bindValue(*node, QStringLiteral("min_detection_range_m"), this, &C::minDetectionRange, &C::setMinDetectionRange,
              [](const float& value) { return checkDetectionRange(value); });
    bindValue(*node, QStringLiteral("presence_confirm_count"), this, &C::presenceConfirmCount,
              &C::setPresenceConfirmCount);
    bindValue(*node, QStringLiteral("range_hysteresis_percentage"), this, &C::rangeHysteresisPercentage,
              &C::setRangeHysteresisPercentage);
    return node;
}
