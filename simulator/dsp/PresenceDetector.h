#pragma once

#include "AlignedBuffer.h"

#include <sdk/vrn.h>

#include <string>
#include <vector>

namespace vrnsim {

// Presence from motion in one channel's frames (chirps x samples).
// Per frame and range bin, the motion energy is the spread of the complex
// range profile across the chirps (fast motion: walking) plus the change of
// the frame's mean profile since the previous frame (slow motion: a chest
// that breathes moves by millimetres, i.e. radians of phase, between frames).
// Anything still contributes neither. The strongest bin inside the range
// gate decides whether the frame moved; confirm counts turn that into a
// state, and the gate widens by the hysteresis while someone is present.
class PresenceDetector
{
public:
    PresenceDetector() = default;
    ~PresenceDetector();
    PresenceDetector(const PresenceDetector&) = delete;
    PresenceDetector& operator=(const PresenceDetector&) = delete;

    // Empty text when the record can be run.
    static std::string check(const vrn_PresenceSensing_Config_t& config);
    // Length of one range bin of the algorithm for frames of this configuration.
    static double binLength(const vrn_Device_Config_t& config);
    static vrn_PresenceSensing_Config_t defaults(const vrn_Device_Config_t& device);

    bool init(const vrn_PresenceSensing_Config_t& config, std::string& error);
    std::string checkInput(const vrn_Matrix_R_s& input) const;
    vrn_PresenceSensing_Result_t run(const vrn_Matrix_R_s& input);

private:
    void rangeProfiles(const vrn_Matrix_R_s& input);
    // Strongest motion energy inside [low, high] metres and its bin.
    float strongest(double low, double high, uint32_t& bin) const;

    vrn_PresenceSensing_Config_t m_config{};
    uint32_t m_samples = 0;
    uint32_t m_chirps = 0;
    uint32_t m_fftSize = 0;
    double m_binLength = 0.0;
    std::vector<float> m_window;
    AlignedBuffer<float> m_in;               // chirps x FFT size
    AlignedBuffer<fftwf_complex> m_out;      // chirps x (FFT size / 2 + 1)
    std::vector<float> m_energy;             // per range bin
    std::vector<float> m_mean, m_previous;   // mean profile, re/im per bin
    fftwf_plan m_plan = nullptr;
    bool m_havePrevious = false;
    bool m_present = false;
    uint32_t m_moving = 0;  // consecutive moving frames while absent
    uint32_t m_quiet = 0;   // consecutive quiet frames while present
    uint32_t m_frames = 0;
    float m_lastRange = 0.0f;  // of the last frame that moved
};

}  // namespace vrnsim
