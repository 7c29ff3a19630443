#pragma once

#include "common/SharedFrame.h"
#include "common/SharedVector.h"
#include "sdk/vrn.h"

#include <QVector>

#include <memory>
#include <utility>

class IBroker;
class RangeSpectrumUserSettings;

// Turns a frame into one range spectrum per receive antenna through the
// SDK's range-spectrum module, and computes the axes that go with it. One
// calculator per configuration: a new configuration means a new calculator.
// Used from one thread at a time.
class RadarRangeSpectrumCalculator
{
public:
    using Handle = std::shared_ptr<vrn_RS_s>;
    using Axis = std::pair<bool, vrn_Math_Axis_Spec_s>;

    // None when the SDK refuses the settings (logged).
    static std::unique_ptr<RadarRangeSpectrumCalculator> create(IBroker& broker,
                                                                const RangeSpectrumUserSettings& settings);
    // The handle destroys itself through the SDK when the last owner lets go.
    static Handle createRangeSpectrumHandle(IBroker& broker, const vrn_RS_Config_t& config);

    // One spectrum of FFT size / 2 values per antenna, in antenna order; it
    // stops at the first antenna that fails.
    QVector<SharedVector> processData(const SharedFrame& frame);
    SharedVector processRangeSpectrumForAntenna(const SharedFrame& frame, quint32 antenna);

    // The pulsed Doppler chip's frame: the spectrum of its single complex
    // channel.
    QVector<SharedVector> processData(const vrn_Corvix_Frame_C_t* frame);
    SharedVector processRangeSpectrum(const vrn_Corvix_Frame_C_t* frame);

    // The distance of each bin; also kept as distanceAxis().
    Axis calculateDistanceAxis(quint32 fftSize, quint32 samplesPerChirp, float maxRangeM);
    // The frequency of each bin of a spectrum sampled at `sampleRateHz`.
    Axis calculateFrequencyAxis(int fftSize, float sampleRateHz);

    const vrn_RS_Config_t& configuration() const { return m_config; }
    bool hasDistanceAxis() const { return m_axisValid; }
    const vrn_Math_Axis_Spec_s& distanceAxis() const { return m_axis; }

private:
    RadarRangeSpectrumCalculator(IBroker& broker, Handle handle, const vrn_RS_Config_t& config);
    SharedVector newSpectrum(const Vrn* vrn);

    IBroker* m_broker;
    Handle m_handle;
    vrn_RS_Config_t m_config;
    vrn_Math_Axis_Spec_s m_axis {};
    bool m_axisValid = false;
};
