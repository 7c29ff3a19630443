#include "fmcw/common/MetricsLimits.h"

#include "core/JSONConfigurationObject.h"
#include "core/JSONConfigurationValue.h"
#include "fmcw/common/SettingsValidation.h"

namespace {

// Stores one bound and emits the pair's signal when it changed.
template<typename T, typename Signal>
void store(MetricsLimits* limits, T& member, T value, Signal signal)
{
    if (member == value)
        return;
    member = value;
    emit(limits->*signal)();
}

template<typename T>
QString acceptAll(const T&)
{
    return QString();
}

}

MetricsLimits::MetricsLimits(QObject* parent)
    : QObject(parent)
{
}

void MetricsLimits::setFromSdk(const vrn_Metrics_Limits_t& limits)
{
    store(this, m_sampleRate.min, limits.sample_rate_Hz_min, &MetricsLimits::sampleRateHzLimitChanged);
    store(this, m_sampleRate.max, limits.sample_rate_Hz_max, &MetricsLimits::sampleRateHzLimitChanged);
    store(this, m_rxMask.min, limits.rx_mask_min, &MetricsLimits::rxMaskLimitChanged);
    store(this, m_rxMask.max, limits.rx_mask_max, &MetricsLimits::rxMaskLimitChanged);
    store(this, m_txMask.min, limits.tx_mask_min, &MetricsLimits::txMaskLimitChanged);
    store(this, m_txMask.max, limits.tx_mask_max, &MetricsLimits::txMaskLimitChanged);
    store(this, m_txPowerLevel.min, limits.tx_power_level_min, &MetricsLimits::txPowerLevelLimitChanged);
    store(this, m_txPowerLevel.max, limits.tx_power_level_max, &MetricsLimits::txPowerLevelLimitChanged);
    store(this, m_ifGain.min, limits.if_gain_dB_min, &MetricsLimits::ifGainDbLimitChanged);
    store(this, m_ifGain.max, limits.if_gain_dB_max, &MetricsLimits::ifGainDbLimitChanged);
    m_exactMaxRangeMin = limits.max_range_m_min;
    store(this, m_maxRange.min, SettingsValidation::floorToOneDecimal(limits.max_range_m_min),
          &MetricsLimits::maxRangeMLimitChanged);
    store(this, m_maxRange.max, SettingsValidation::floorToOneDecimal(limits.max_range_m_max),
          &MetricsLimits::maxRangeMLimitChanged);
    store(this, m_rangeResolution.min, limits.range_resolution_m_min, &MetricsLimits::rangeResolutionMLimitChanged);
    store(this, m_rangeResolution.max, limits.range_resolution_m_max, &MetricsLimits::rangeResolutionMLimitChanged);
    store(this, m_speedResolution.min, limits.speed_resolution_m_s_min,
          &MetricsLimits::speedResolutionMsLimitChanged);
    store(this, m_speedResolution.max, limits.speed_resolution_m_s_max,
          &MetricsLimits::speedResolutionMsLimitChanged);
    store(this, m_maxSpeed.min, limits.max_speed_m_s_min, &MetricsLimits::maxSpeedMsLimitChanged);
    store(this, m_maxSpeed.max, limits.max_speed_m_s_max, &MetricsLimits::maxSpeedMsLimitChanged);
    store(this, m_frameRepetition.min, limits.frame_repetition_time_s_min, &MetricsLimits::frameRepetitionLimitChanged);
    store(this, m_frameRepetition.max, limits.frame_repetition_time_s_max, &MetricsLimits::frameRepetitionLimitChanged);
}

QString MetricsLimits::checkValue(const QString& property, double value) const
{
    const auto checkUInt = [value](const UIntPair& pair) {
        return SettingsValidation::checkRange(quint64(value), pair.min, pair.max);
    };
    const auto checkFloat = [value](const FloatPair& pair) {
        return SettingsValidation::checkRange(float(value), pair.min, pair.max);
    };
    if (property == QLatin1String("sampleRateHz"))
        return checkUInt(m_sampleRate);
    if (property == QLatin1String("txPowerLevel"))
        return checkUInt(m_txPowerLevel);
    if (property == QLatin1String("ifGainDB"))
        return checkUInt(m_ifGain);
    if (property == QLatin1String("maxRangeM"))
        return checkFloat(m_maxRange);
    if (property == QLatin1String("rangeResolutionM"))
        return checkFloat(m_rangeResolution);
    if (property == QLatin1String("speedResolutionMs"))
        return checkFloat(m_speedResolution);
    if (property == QLatin1String("maxSpeedMs"))
        return checkFloat(m_maxSpeed);
    if (property == QLatin1String("frameRepetitionTimeS"))
        return checkFloat(m_frameRepetition);
    return QString();
}

std::unique_ptr<JSONConfigurationObject> MetricsLimits::configurationNode()
{
    auto node = std::make_unique<JSONConfigurationObject>(QStringLiteral("metrics_limits"));
    auto addUInt = [&](const char* key, quint32 MetricsLimits::UIntPair::*bound, UIntPair MetricsLimits::*pair,
                       void (MetricsLimits::*signal)()) {
        node->addChild(std::make_unique<JSONConfigurationValue<quint32>>(
            QString::fromLatin1(key), [this, pair, bound] { return (this->*pair).*bound; },
            [this, pair, bound, signal](const quint32& value) { store(this, (this->*pair).*bound, value, signal); },
            acceptAll<quint32>));
    };
    auto addFloat = [&](const char* key, float MetricsLimits::FloatPair::*bound, FloatPair MetricsLimits::*pair,
                        void (MetricsLimits::*signal)()) {
        node->addChild(std::make_unique<JSONConfigurationValue<float>>(
            QString::fromLatin1(key), [this, pair, bound] { return (this->*pair).*bound; },
            [this, pair, bound, signal](const float& value) { store(this, (this->*pair).*bound, value, signal); },
            acceptAll<float>));
    };
    using U = UIntPair;
    using F = FloatPair;
    addFloat("frame_repetition_time_s_max", &F::max, &MetricsLimits::m_frameRepetition,
             &MetricsLimits::frameRepetitionLimitChanged);
    addFloat("frame_repetition_time_s_min", &F::min, &MetricsLimits::m_frameRepetition,
             &MetricsLimits::frameRepetitionLimitChanged);
    addUInt("if_gain_db_max", &U::max, &MetricsLimits::m_ifGain, &MetricsLimits::ifGainDbLimitChanged);
    addUInt("if_gain_db_min", &U::min, &MetricsLimits::m_ifGain, &MetricsLimits::ifGainDbLimitChanged);
    addFloat("max_range_m_max", &F::max, &MetricsLimits::m_maxRange, &MetricsLimits::maxRangeMLimitChanged);
    addFloat("max_range_m_min", &F::min, &MetricsLimits::m_maxRange, &MetricsLimits::maxRangeMLimitChanged);
    addFloat("max_speed_ms_max", &F::max, &MetricsLimits::m_maxSpeed, &MetricsLimits::maxSpeedMsLimitChanged);
    addFloat("max_speed_ms_min", &F::min, &MetricsLimits::m_maxSpeed, &MetricsLimits::maxSpeedMsLimitChanged);
    addFloat("range_resolution_m_max", &F::max, &MetricsLimits::m_rangeResolution,
             &MetricsLimits::rangeResolutionMLimitChanged);
    addFloat("range_resolution_m_min", &F::min, &MetricsLimits::m_rangeResolution,
             &MetricsLimits::rangeResolutionMLimitChanged);
    addUInt("rx_mask_max", &U::max, &MetricsLimits::m_rxMask, &MetricsLimits::rxMaskLimitChanged);
    addUInt("rx_mask_min", &U::min, &MetricsLimits::m_rxMask, &MetricsLimits::rxMaskLimitChanged);
    addUInt("sample_rate_hz_max", &U::max, &MetricsLimits::m_sampleRate, &MetricsLimits::sampleRateHzLimitChanged);
    addUInt("sample_rate_hz_min", &U::min, &MetricsLimits::m_sampleRate, &MetricsLimits::sampleRateHzLimitChanged);
    addFloat("speed_resolution_ms_max", &F::max, &MetricsLimits::m_speedResolution,
             &MetricsLimits::speedResolutionMsLimitChanged);
    addFloat("speed_resolution_ms_min", &F::min, &MetricsLimits::m_speedResolution,
             &MetricsLimits::speedResolutionMsLimitChanged);
    addUInt("tx_mask_max", &U::max, &MetricsLimits::m_txMask, &MetricsLimits::txMaskLimitChanged);
    addUInt("tx_mask_min", &U::min, &MetricsLimits::m_txMask, &MetricsLimits::txMaskLimitChanged);
    addUInt("tx_power_level_max", &U::max, &MetricsLimits::m_txPowerLevel,
            &MetricsLimits::txPowerLevelLimitChanged);
    addUInt("tx_power_level_min", &U::min, &MetricsLimits::m_txPowerLevel,
            &MetricsLimits::txPowerLevelLimitChanged);
    return node;
}
