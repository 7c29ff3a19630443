#include "fmcw/common/PresenceSensingConfig.h"

#include "core/JSONConfigurationObject.h"
#include "core/JSONConfigurationValue.h"
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

QString checkDetectionRange(const float& value)
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

std::unique_ptr<JSONConfigurationObject> PresenceSensingConfig::configurationNode()
{
    auto node = std::make_unique<JSONConfigurationObject>(QStringLiteral("presence_sensing"));
    const auto acceptFloat = [](const float&) { return QString(); };
    const auto acceptUInt = [](const quint32&) { return QString(); };
    node->addChild(std::make_unique<JSONConfigurationValue<quint32>>(
        QStringLiteral("absence_confirm_count"), [this] { return m_absenceConfirmCount; },
        [this](const quint32& value) { setAbsenceConfirmCount(value); }, acceptUInt));
    node->addChild(std::make_unique<JSONConfigurationValue<float>>(
        QStringLiteral("max_detection_range_m"), [this] { return m_maxDetectionRange; },
        [this](const float& value) { setMaxDetectionRange(value); }, checkDetectionRange));
    node->addChild(std::make_unique<JSONConfigurationValue<float>>(
        QStringLiteral("min_detection_range_m"), [this] { return m_minDetectionRange; },
        [this](const float& value) { setMinDetectionRange(value); }, checkDetectionRange));
    node->addChild(std::make_unique<JSONConfigurationValue<quint32>>(
        QStringLiteral("presence_confirm_count"), [this] { return m_presenceConfirmCount; },
        [this](const quint32& value) { setPresenceConfirmCount(value); }, acceptUInt));
    node->addChild(std::make_unique<JSONConfigurationValue<float>>(
        QStringLiteral("range_hysteresis_percentage"), [this] { return m_rangeHysteresisPercentage; },
        [this](const float& value) { setRangeHysteresisPercentage(value); }, acceptFloat));
    return node;
}
