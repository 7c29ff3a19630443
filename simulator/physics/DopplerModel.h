#pragma once

#include <sdk/vrn.h>

#include <string>

namespace vrnsim {

// The ZP7 pulsed-Doppler chip: defaults, limits and checks of its records.
// The analog baseband gain is given by its linear factor (3, 6, ..., 384),
// one of eight steps of 6 dB from 10 dB to 52 dB.
class DopplerModel
{
public:
    static constexpr double kCenterFrequencyHz = 24.125e9;

    static void defaults(vrn_Corvix_Frame_Config_t& frame, vrn_Corvix_Pulse_Config_t& pulse);
    static vrn_Corvix_Limits_t limits();
    static bool check(const vrn_Corvix_Frame_Config_t& frame, const vrn_Corvix_Pulse_Config_t& pulse,
                      std::string& error);
    static double gainDb(uint16_t abbGain);   // 0 for a value that is not a step
    static double txPowerDbm(uint8_t level);
};

}  // namespace vrnsim
