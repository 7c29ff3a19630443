#include "fmcw/cw/config/RadarCWParamsLimits.h"

#include "fmcw/common/SettingsValidation.h"

namespace {

// Stores one pair and emits its signal once when either bound changed.
template<typename T, typename Signal>
void storePair(RadarCWParamsLimits* limits, T& min, T& max, T newMin, T newMax, Signal signal)
{
    if (min == newMin && max == newMax)
        return;
    min = newMin;
    max = newMax;
    emit(limits->*signal)();
}

}

RadarCWParamsLimits::RadarCWParamsLimits(QObject* parent)
    : QObject(parent)
{
}

void RadarCWParamsLimits::setRfCenterFrequency(float min, float max)
{
    storePair(this, m_rfCenterFrequencyMin, m_rfCenterFrequencyMax, min, max,
              &RadarCWParamsLimits::rfCenterFrequencyChanged);
}

void RadarCWParamsLimits::setDac(quint32 min, quint32 max)
{
    storePair(this, m_dacMin, m_dacMax, min, max, &RadarCWParamsLimits::dacChanged);
}

void RadarCWParamsLimits::setSamplingRate(quint32 min, quint32 max)
{
    storePair(this, m_samplingRateMin, m_samplingRateMax, min, max, &RadarCWParamsLimits::samplingRateChanged);
}

void RadarCWParamsLimits::setRxNumSamples(quint32 min, quint32 max)
{
    storePair(this, m_rxNumSamplesMin, m_rxNumSamplesMax, min, max, &RadarCWParamsLimits::rxNumSamplesChanged);
}

void RadarCWParamsLimits::setTestSignalFrequency(float min, float max)
{
    storePair(this, m_testSignalFrequencyMin, m_testSignalFrequencyMax, min, max,
              &RadarCWParamsLimits::testSignalFrequencyChanged);
}

void RadarCWParamsLimits::setFromSdk(const vrn_CW_Limits_t& limits)
{
    setRfCenterFrequency(limits.rf_center_frequency_Hz_min, limits.rf_center_frequency_Hz_max);
    setDac(limits.dac_value_min, limits.dac_value_max);
    setRxNumSamples(limits.num_samples_min, limits.num_samples_max);
    setTestSignalFrequency(limits.test_signal_frequency_Hz_min, limits.test_signal_frequency_Hz_max);
}

void RadarCWParamsLimits::assign(const RadarCWParamsLimits& other)
{
    setRfCenterFrequency(other.m_rfCenterFrequencyMin, other.m_rfCenterFrequencyMax);
    setDac(other.m_dacMin, other.m_dacMax);
    setSamplingRate(other.m_samplingRateMin, other.m_samplingRateMax);
    setRxNumSamples(other.m_rxNumSamplesMin, other.m_rxNumSamplesMax);
    setTestSignalFrequency(other.m_testSignalFrequencyMin, other.m_testSignalFrequencyMax);
}

QString RadarCWParamsLimits::checkValue(const QString& property, double value) const
{
    using SettingsValidation::checkRange;
    if (property == QLatin1String("rfCenterFrequency"))
        return checkRange(float(value), m_rfCenterFrequencyMin, m_rfCenterFrequencyMax);
    if (property == QLatin1String("testSignalFrequency"))
        return checkRange(float(value), m_testSignalFrequencyMin, m_testSignalFrequencyMax);
    // The whole numbers are never negative here: the callers refuse that
    // before asking for the bounds.
    if (property == QLatin1String("dac"))
        return checkRange(quint64(value), m_dacMin, m_dacMax);
    if (property == QLatin1String("rxNumSamples"))
        return checkRange(quint64(value), m_rxNumSamplesMin, m_rxNumSamplesMax);
    if (property == QLatin1String("samplingRate"))
        return checkRange(quint64(value), m_samplingRateMin, m_samplingRateMax);
    return QString();
}
