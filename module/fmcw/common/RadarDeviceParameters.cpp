#include "fmcw/common/RadarDeviceParameters.h"

#include "core/JSONConfigurationObject.h"
#include "core/JSONConfigurationValue.h"

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

template<typename T>
QString acceptAll(const T&)
{
    return QString();
}

template<typename T>
void addValue(JSONConfigurationObject& node, const char* key, RadarDeviceParameters* object,
              T (RadarDeviceParameters::*getter)() const, void (RadarDeviceParameters::*setter)(T))
{
    node.addChild(std::make_unique<JSONConfigurationValue<T>>(
        QString::fromLatin1(key), [object, getter] { return (object->*getter)(); },
        [object, setter](const T& value) { (object->*setter)(value); }, acceptAll<T>));
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
    using P = RadarDeviceParameters;
    addValue<float>(*node, "chirp_repetition_time_s", this, &P::chirpRepetitionTimeS, &P::setChirpRepetitionTimeS);
    addValue<float>(*node, "chirp_time", this, &P::chirpTime, &P::setChirpTime);
    addValue<float>(*node, "frame_repetition_time_s", this, &P::frameRepetitionTimeS, &P::setFrameRepetitionTimeS);
    addValue<quint64>(*node, "lower_frequency_hz", this, &P::lowerFrequencyHz, &P::setLowerFrequencyHz);
    node->addChild(std::make_unique<JSONConfigurationValue<QString>>(
        QStringLiteral("mimo_mode"), [this] { return m_mimoMode; },
        [this](const QString& value) { setMimoMode(value); },
        [](const QString& value) {
            return (value == QLatin1String("off") || value == QLatin1String("tdm")) ? QString()
                                                                                      : QStringLiteral("Invalid value");
        }));
    addValue<quint32>(*node, "num_chirps_per_frame", this, &P::numChirpsPerFrame, &P::setNumChirpsPerFrame);
    addValue<quint32>(*node, "num_samples_per_chirp", this, &P::numSamplesPerChirp, &P::setNumSamplesPerChirp);
    addValue<float>(*node, "pulse_repetition_time_s", this, &P::pulseRepetitionTimeS, &P::setPulseRepetitionTimeS);
    addValue<quint64>(*node, "upper_frequency_hz", this, &P::upperFrequencyHz, &P::setUpperFrequencyHz);
    return node;
}
