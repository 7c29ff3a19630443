#include "zp7/config/ZP7SLimits.h"

#include "fmcw/common/SettingsValidation.h"
#include "zp7/config/ZP7SGainTable.h"

namespace {

QString checkWhole(quint64 value, quint64 min, quint64 max)
{
    return SettingsValidation::checkRange(value, min, max);
}

// The SDK's bounds are single floats, and so are values that went through
// 1 / x: a relative slack of this much is still inside.
constexpr float kSlack = 1e-4f;

QString checkFloat(float value, float min, float max)
{
    if (value >= min * (1.0f - kSlack) && value <= max * (1.0f + kSlack))
        return QString();
    return SettingsValidation::checkRange(value, min, max);
}

template<typename T, typename Signal>
void store(ZP7SLimits* limits, T& member, T value, Signal signal)
{
    if (member == value)
        return;
    member = value;
    emit(limits->*signal)();
}

}

ZP7SLimits::ZP7SLimits(QObject* parent)
    : QObject(parent)
    , m_limits(unbounded())
{
}

vrn_Corvix_Limits_t ZP7SLimits::unbounded()
{
    vrn_Corvix_Limits_t limits {};
    limits.tx_power_level_max = std::numeric_limits<quint8>::max();
    limits.abb_gain_index_max = std::numeric_limits<quint16>::max();
    limits.num_samples_max = std::numeric_limits<quint16>::max();
    limits.pulse_repetition_time_s_max = std::numeric_limits<float>::max();
    limits.frame_repetition_time_s_max = std::numeric_limits<float>::max();
    return limits;
}

void ZP7SLimits::reset()
{
    setFromSdk(unbounded());
}

void ZP7SLimits::setFromSdk(const vrn_Corvix_Limits_t& limits)
{
    using L = ZP7SLimits;
    const QStringList gainChoices = abbGainLabels();
    store(this, m_limits.tx_power_level_min, limits.tx_power_level_min, &L::minTxPowerLevelChanged);
    store(this, m_limits.tx_power_level_max, limits.tx_power_level_max, &L::maxTxPowerLevelChanged);
    store(this, m_limits.abb_gain_index_min, limits.abb_gain_index_min, &L::minAbbGainIndexChanged);
    store(this, m_limits.abb_gain_index_max, limits.abb_gain_index_max, &L::maxAbbGainIndexChanged);
    store(this, m_limits.num_samples_min, limits.num_samples_min, &L::minNumOfSamplesChanged);
    store(this, m_limits.num_samples_max, limits.num_samples_max, &L::maxNumOfSamplesChanged);
    store(this, m_limits.pulse_repetition_time_s_min, limits.pulse_repetition_time_s_min,
          &L::minPulseRepetitionTimeSChanged);
    store(this, m_limits.pulse_repetition_time_s_max, limits.pulse_repetition_time_s_max,
          &L::maxPulseRepetitionTimeSChanged);
    store(this, m_limits.frame_repetition_time_s_min, limits.frame_repetition_time_s_min,
          &L::minFrameRepetitionTimeSChanged);
    store(this, m_limits.frame_repetition_time_s_max, limits.frame_repetition_time_s_max,
          &L::maxFrameRepetitionTimeSChanged);
    if (abbGainLabels() != gainChoices)
        emit abbGainChoicesChanged();
}

QStringList ZP7SLimits::abbGainLabels() const
{
    return ZP7SGainTable::labelsWithin(m_limits.abb_gain_index_min, m_limits.abb_gain_index_max);
}

int ZP7SLimits::abbGainChoiceOf(int value) const
{
    if (value < 0 || value > std::numeric_limits<quint16>::max())
        return -1;
    return ZP7SGainTable::valuesWithin(m_limits.abb_gain_index_min, m_limits.abb_gain_index_max)
        .indexOf(quint16(value));
}

int ZP7SLimits::abbGainValueAt(int choice) const
{
    return ZP7SGainTable::valuesWithin(m_limits.abb_gain_index_min, m_limits.abb_gain_index_max).value(choice, 0);
}

QString ZP7SLimits::checkTxPowerLevel(quint32 value) const
{
    return checkWhole(value, m_limits.tx_power_level_min, m_limits.tx_power_level_max);
}

QString ZP7SLimits::checkAbbGain(quint32 value) const
{
    if (value > std::numeric_limits<quint16>::max() || !ZP7SGainTable::isStep(quint16(value)))
        return QStringLiteral("Value %1 is not a gain step (%2)")
            .arg(value)
            .arg(ZP7SGainTable::labels().join(QStringLiteral(", ")));
    return checkWhole(value, m_limits.abb_gain_index_min, m_limits.abb_gain_index_max);
}

QString ZP7SLimits::checkNumOfSamples(quint32 value) const
{
    return checkWhole(value, m_limits.num_samples_min, m_limits.num_samples_max);
}

QString ZP7SLimits::checkPulseRepetitionTime(float seconds) const
{
    return checkFloat(seconds, m_limits.pulse_repetition_time_s_min, m_limits.pulse_repetition_time_s_max);
}

QString ZP7SLimits::checkFrameRepetitionRate(float hertz) const
{
    // The fastest rate belongs to the shortest frame time; an unbounded
    // shortest time (0) leaves the rate unbounded above.
    const float minFrameTime = m_limits.frame_repetition_time_s_min;
    const float maxFrameTime = m_limits.frame_repetition_time_s_max;
    const float maxRate = minFrameTime > 0.0f ? 1.0f / minFrameTime : std::numeric_limits<float>::max();
    const float minRate = maxFrameTime > 0.0f ? 1.0f / maxFrameTime : 0.0f;
    if (!(hertz > 0.0f))
        return SettingsValidation::checkRange(hertz, minRate, maxRate);
    return checkFloat(hertz, minRate, maxRate);
}
