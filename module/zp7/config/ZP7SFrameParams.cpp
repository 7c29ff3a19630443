#include "zp7/config/ZP7SFrameParams.h"

#include "core/JSONConfigurationBinding.h"
#include "core/JSONConfigurationObject.h"
#include "zp7/config/ZP7SLimits.h"

#include <cmath>

namespace {

template<typename T>
bool store(T& member, T value)
{
    if (member == value)
        return false;
    member = value;
    return true;
}

// The rate goes to the SDK as 1 / rate and comes back the same way, which
// the last bit of a float does not always survive.
bool close(float a, float b)
{
    return std::fabs(a - b) <= 1e-5f * std::fmax(std::fabs(a), std::fabs(b));
}

float inverse(float value)
{
    return value > 0.0f ? 1.0f / value : 0.0f;
}

}

ZP7SFrameParams::ZP7SFrameParams(QObject* parent)
    : QObject(parent)
{
}

void ZP7SFrameParams::setFrameRepetitionRate(float hertz)
{
    if (!store(m_frameRepetitionRate, hertz))
        return;
    emit frameRepetitionRateChanged();
    emit guiParamChanged();
}

void ZP7SFrameParams::setNumOfSamples(quint16 samples)
{
    if (!store(m_numOfSamples, samples))
        return;
    emit numOfSamplesChanged();
    emit guiParamChanged();
}

void ZP7SFrameParams::setPulseRepetitionTime(float seconds)
{
    if (!store(m_pulseRepetitionTime, seconds))
        return;
    emit pulseRepetitionTimeChanged();
    emit guiParamChanged();
}

void ZP7SFrameParams::copyTo(vrn_Corvix_Frame_Config_t& config) const
{
    config.num_samples = m_numOfSamples;
    config.pulse_repetition_time_s = m_pulseRepetitionTime;
    config.frame_repetition_time_s = inverse(m_frameRepetitionRate);
}

void ZP7SFrameParams::copyFrom(const vrn_Corvix_Frame_Config_t& config)
{
    setNumOfSamples(config.num_samples);
    setPulseRepetitionTime(config.pulse_repetition_time_s);
    setFrameRepetitionRate(inverse(config.frame_repetition_time_s));
}

void ZP7SFrameParams::assign(const ZP7SFrameParams& other)
{
    setNumOfSamples(other.m_numOfSamples);
    setPulseRepetitionTime(other.m_pulseRepetitionTime);
    setFrameRepetitionRate(other.m_frameRepetitionRate);
}

bool ZP7SFrameParams::operator==(const ZP7SFrameParams& other) const
{
    return m_numOfSamples == other.m_numOfSamples && close(m_pulseRepetitionTime, other.m_pulseRepetitionTime)
        && close(m_frameRepetitionRate, other.m_frameRepetitionRate);
}

std::unique_ptr<JSONConfigurationObject> ZP7SFrameParams::configurationNode(const ZP7SLimits* limits)
{
    auto node = std::make_unique<JSONConfigurationObject>(QStringLiteral("frame_params"));
    using JSONConfigurationBinding::bindValue;
    using F = ZP7SFrameParams;
    bindValue(*node, QStringLiteral("num_of_samples"), this, &F::numOfSamples, &F::setNumOfSamples,
              [limits](const quint16& value) { return limits ? limits->checkNumOfSamples(value) : QString(); });
    bindValue(*node, QStringLiteral("frame_repetition_rate"), this, &F::frameRepetitionRate,
              &F::setFrameRepetitionRate, [limits](const float& value) {
                  if (!(value > 0.0f))
                      return QStringLiteral("Value must be greater than 0");
                  return limits ? limits->checkFrameRepetitionRate(value) : QString();
              });
    bindValue(*node, QStringLiteral("pulse_repetition_time"), this, &F::pulseRepetitionTime,
              &F::setPulseRepetitionTime, [limits](const float& value) {
                  if (!(value > 0.0f))
                      return QStringLiteral("Value must be greater than 0");
                  return limits ? limits->checkPulseRepetitionTime(value) : QString();
              });
    return node;
}
