#include "fmcw/common/RadarDeviceParameters.h"

#include "core/JSONConfigurationBinding.h"

namespace {

template<typename T, typename Signal>
void store(RadarDeviceParameters* parameters, T& member, const T& value, Signal signal)
{
    if (member == value)
        return;
    member = value;
    emit(parameters->*signal)();
    emit parameters->guiParamChanged();
}

}

RadarDeviceParameters::RadarDeviceParameters(QObject* parent)
    : QObject(parent)
{
}

void RadarDeviceParameters::setNumSamplesPerChirp(quint32 value)
{
    store(this, m_numSamplesPerChirp, value, &RadarDeviceParameters::numSamplesPerChirpChanged);
}

void RadarDeviceParameters::setNumChirpsPerFrame(quint32 value)
{
    store(this, m_numChirpsPerFrame, value, &RadarDeviceParameters::numChirpsPerFrameChanged);
}

void RadarDeviceParameters::setFrameRepetitionTimeS(float value)
{
    store(this, m_frameRepetitionTimeS, value, &RadarDeviceParameters::frameRepetitionTimeSChanged);
}

void RadarDeviceParameters::setLowerFrequencyHz(quint64 value)
{
    store(this, m_lowerFrequencyHz, value, &RadarDeviceParameters::lowerFrequencyHzChanged);
}

void RadarDeviceParameters::setUpperFrequencyHz(quint64 value)
{
    store(this, m_upperFrequencyHz, value, &RadarDeviceParameters::upperFrequencyHzChanged);
}

void RadarDeviceParameters::setChirpRepetitionTimeS(float value)
{
    store(this, m_chirpRepetitionTimeS, value, &RadarDeviceParameters::chirpRepetitionTimeSChanged);
}

void RadarDeviceParameters::setPulseRepetitionTimeS(float value)
{
    store(this, m_pulseRepetitionTimeS, value, &RadarDeviceParameters::pulseRepetitionTimeSChanged);
}

void RadarDeviceParameters::setMimoMode(const QString& value)
{
    store(this, m_mimoMode, value, &RadarDeviceParameters::mimoModeChanged);
}

void RadarDeviceParameters::setChirpTime(float value)
{
    store(this, m_chirpTime, value, &RadarDeviceParameters::chirpTimeChanged);
}

std::unique_ptr<JSONConfigurationObject> RadarDeviceParameters::configurationNode()
{
    auto node = std::make_unique<JSONConfigurationObject>(QStringLiteral("radar_device_parameters"));
    using JSONConfigurationBinding::bindValue;
    using P = RadarDeviceParameters;
    bindValue(*node, QStringLiteral("chirp_repetition_time_s"), this, &P::chirpRepetitionTimeS,
              &P::setChirpRepetitionTimeS);
    bindValue(*node, QStringLiteral("chirp_time"), this, &P::chirpTime, &P::setChirpTime);
    bindValue(*node, QStringLiteral("frame_repetition_time_s"), this, &P::frameRepetitionTimeS,
              &P::setFrameRepetitionTimeS);
    bindValue(*node, QStringLiteral("lower_frequency_hz"), this, &P::lowerFrequencyHz, &P::setLowerFrequencyHz);
    bindValue(*node, QStringLiteral("mimo_mode"), this, &P::mimoMode, &P::setMimoMode, [](const QString& value) {
        return (value == QLatin1String("off") || value == QLatin1String("tdm")) ? QString()
                                                                                  : QStringLiteral("Invalid value");
    });
    bindValue(*node, QStringLiteral("num_chirps_per_frame"), this, &P::numChirpsPerFrame, &P::setNumChirpsPerFrame);
    bindValue(*node, QStringLiteral("num_samples_per_chirp"), this, &P::numSamplesPerChirp, &P::setNumSamplesPerChirp);
    bindValue(*node, QStringLiteral("pulse_repetition_time_s"), this, &P::pulseRepetitionTimeS,
              &P::setPulseRepetitionTimeS);
    bindValue(*node, QStringLiteral("upper_frequency_hz"), this, &P::upperFrequencyHz, &P::setUpperFrequencyHz);
    return node;
}
