#pragma once

#include <sdk/vrn.h>

#include <vector>

namespace vrnsim {

class RangeDopplerTransform;

// One target found in a frame.
struct Detection {
    float rangeM = 0.0f;
    float angleDeg = 0.0f;  // positive towards Rx3
    float speedMs = 0.0f;   // positive receding
    float power = 0.0f;
};

// Finds targets on the range-Doppler maps of two receivers half a
// wavelength apart (Rx1 and Rx3) and measures their azimuth.
// Detection runs on the sum of both maps' powers: a cell is a target when it
// is a local maximum and stands above an order-statistic CFAR threshold, the
// median cell of the map (noise, as long as targets cover a small part of
// it) times a factor the sensitivity level chooses. Targets within a few
// bins of a stronger one, or on its range row or Doppler column and 40 dB
// below it, are its own spread and are dropped. Static-target removal
// subtracts the window-weighted mean across chirps (medium and high) and
// notches the Doppler bins next to zero (wider for high). The azimuth
// follows from the phase between the receivers at the peak:
// arg(Rx1 * conj(Rx3)) = pi sin(azimuth).
class TargetDetector
{
public:
    struct Setup {
        uint32_t rangeBins = 0;
        uint32_t dopplerBins = 0;
        double binLengthM = 0.0;     // range per bin
        double speedStepMs = 0.0;    // speed per Doppler bin
        double minRangeM = 0.2;
        double maxRangeM = 0.0;
        vrn_Level_t sensitivity = VRN_LEVEL_MED;
        vrn_Level_t staticRemoval = VRN_LEVEL_MED;
        uint32_t maxDetections = VRN_SEGMENTATION_MAX_TRACKS;
    };

    void configure(const Setup& setup);
    std::vector<Detection> detect(const RangeDopplerTransform& rx1, const RangeDopplerTransform& rx3);

private:
    struct Peak {
        uint32_t range;
        uint32_t doppler;
        float power;
    };
    bool blanked(uint32_t doppler) const;
    bool isLocalMaximum(uint32_t r, uint32_t d) const;

    Setup m_setup;
    uint32_t m_firstBin = 1;
    uint32_t m_lastBin = 0;  // exclusive
    double m_thresholdFactor = 1.0;
    std::vector<float> m_power;    // range bins x Doppler bins
    std::vector<float> m_scratch;  // for the median
    std::vector<Peak> m_peaks;
};

}  // namespace vrnsim
