#pragma once

#include "ChipModel.h"

#include <string>

namespace vrnsim {

// FMCW radar arithmetic between the scene a user asks for (metrics) and the
// chirp sequence a chip runs (device configuration).
class MetricsTranslator
{
public:
    static constexpr double kSpeedOfLight = 299792458.0;

    static bool translate(const ChipModel& chip, const vrn_Metrics_t& metrics, vrn_Device_Config_t& config,
                          std::string& error);
    // Checks a configuration record handed to set_config.
    static bool validate(const ChipModel& chip, const vrn_Device_Config_t& config, std::string& error);
    // Limits of each metric with the others held at the values that config implies.
    static void limits(const ChipModel& chip, const vrn_Device_Config_t& config, vrn_Metrics_Limits_t& limits);
    // The metrics a configuration implements (inverse of translate).
    static vrn_Metrics_t metricsOf(const vrn_Device_Config_t& config);
    static vrn_Metrics_t defaultMetrics();

    // Sampled part of one ramp.
    static double chirpTime(const vrn_Device_Config_t& config);
    // Time between two ramps on the air (chirp repetition time shared by the active Tx).
    static double pulseRepetitionTime(const vrn_Device_Config_t& config);

    // Range per bin of a range FFT of fftSize over `samples` samples of a
    // chirp of this bandwidth (zero padding makes the bins shorter).
    static double rangeBinLength(double bandwidthHz, uint32_t samples, uint32_t fftSize);
    // Speed per bin of a Doppler FFT of fftSize over chirps this far apart.
    static double speedBinStep(double centerFrequencyHz, uint32_t fftSize, double chirpRepetitionS);
};

}  // namespace vrnsim
