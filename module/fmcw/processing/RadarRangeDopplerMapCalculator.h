#pragma once

#include "common/SharedFrame.h"
#include "fmcw/processing/SharedMatrix.h"
#include "sdk/vrn.h"

#include <QtGlobal>

#include <memory>

class IBroker;
class MathAxis;
class RangeDopplerUserSettings;

// Computes the range-Doppler map of one virtual antenna of a frame through
// the SDK's range-Doppler module: (range FFT size / 2) rows from range 0 up,
// Doppler FFT size columns with zero speed in the middle. One calculator per
// configuration; used from one thread at a time.
class RadarRangeDopplerMapCalculator
{
public:
    using Handle = std::shared_ptr<vrn_RDM_s>;

    // None when the SDK refuses the settings (logged). With a bandwidth and
    // both axes given it also fills the range and speed axes; an axis the
    // SDK cannot compute is logged and left as it was. The speed axis needs
    // the wavelength, hence the centre frequency of the chirp.
    static std::unique_ptr<RadarRangeDopplerMapCalculator> create(IBroker& broker,
                                                                  const RangeDopplerUserSettings& settings,
                                                                  MathAxis* rangeAxis, MathAxis* speedAxis,
                                                                  quint64 bandwidthHz, float frameRepetitionTimeS,
                                                                  float chirpRepetitionTimeS,
                                                                  float centerFrequencyHz);
    // The handle destroys itself through the SDK when the last owner lets go.
    static Handle createRangeDopplerMapHandle(IBroker& broker, const vrn_RDM_Config_t& config);

    // None on failure (logged).
    SharedMatrix processData(const SharedFrame& frame, quint32 antennaIndex);

    const vrn_RDM_Config_t& configuration() const { return m_config; }

private:
    RadarRangeDopplerMapCalculator(IBroker& broker, Handle handle, const vrn_RDM_Config_t& config);
    void computeAxes(MathAxis& rangeAxis, MathAxis& speedAxis, quint64 bandwidthHz, float chirpRepetitionTimeS,
                     float centerFrequencyHz);

    IBroker* m_broker;
    Handle m_handle;
    vrn_RDM_Config_t m_config;
};
