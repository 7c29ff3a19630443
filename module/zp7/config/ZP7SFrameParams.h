#pragma once

#include "sdk/vrn.h"

#include <QObject>

#include <memory>

class JSONConfigurationObject;
class ZP7SLimits;

// The frame group of the ZP7 configuration ("frame_params"): how many
// pulses one frame holds, their repetition time and how many frames a
// second the board delivers. The SDK counts the frame in seconds per frame;
// the pages and files in frames per second.
class ZP7SFrameParams : public QObject
{
    Q_OBJECT
    Q_PROPERTY(float frameRepetitionRate READ frameRepetitionRate WRITE setFrameRepetitionRate NOTIFY frameRepetitionRateChanged)
    Q_PROPERTY(quint16 numOfSamples READ numOfSamples WRITE setNumOfSamples NOTIFY numOfSamplesChanged)
    Q_PROPERTY(float pulseRepetitionTime READ pulseRepetitionTime WRITE setPulseRepetitionTime NOTIFY pulseRepetitionTimeChanged)
public:
    explicit ZP7SFrameParams(QObject* parent = nullptr);

    float frameRepetitionRate() const { return m_frameRepetitionRate; } // Hz
    void setFrameRepetitionRate(float hertz);
    quint16 numOfSamples() const { return m_numOfSamples; }
    void setNumOfSamples(quint16 samples);
    float pulseRepetitionTime() const { return m_pulseRepetitionTime; } // s
    void setPulseRepetitionTime(float seconds);

    // frame_repetition_time_s = 1 / frameRepetitionRate (0 for a rate of 0).
    void copyTo(vrn_Corvix_Frame_Config_t& config) const;
    void copyFrom(const vrn_Corvix_Frame_Config_t& config);
    // Through the setters.
    void assign(const ZP7SFrameParams& other);
    // Floats equal within a relative 1e-5 (what survives 1 / (1 / x)).
    bool operator==(const ZP7SFrameParams& other) const;
    bool operator!=(const ZP7SFrameParams& other) const { return !(*this == other); }

    // "frame_params" {"num_of_samples", "frame_repetition_rate",
    // "pulse_repetition_time"}; each value is held to `limits` (not owned,
    // may be null: then only the types are checked) when a document is
    // validated.
    std::unique_ptr<JSONConfigurationObject> configurationNode(const ZP7SLimits* limits);

signals:
    void frameRepetitionRateChanged();
    void numOfSamplesChanged();
    void pulseRepetitionTimeChanged();
    // After any writer's own signal.
    void guiParamChanged();

private:
    // No numbers of our own: the device's defaults fill these.
    float m_frameRepetitionRate = 0.0f;
    quint16 m_numOfSamples = 0;
    float m_pulseRepetitionTime = 0.0f;
};
