#include "DopplerModel.h"

#include <cmath>

namespace vrnsim {

namespace {

const uint16_t kGainSteps[] = {3, 6, 12, 24, 48, 96, 192, 384};
const double kGainDb[] = {10, 16, 22, 28, 34, 40, 46, 52};

}  // namespace

void DopplerModel::defaults(vrn_Corvix_Frame_Config_t& frame, vrn_Corvix_Pulse_Config_t& pulse)
{
    frame.num_samples = 128;
    frame.pulse_repetition_time_s = 500e-6f;
    frame.frame_repetition_time_s = 0.1f;
    pulse.channel = VRN_CORVIX_CHANNEL_TX1_RX1;
    pulse.tx_power_level = 7;
    pulse.abb_gain_index = 48;
}

vrn_Corvix_Limits_t DopplerModel::limits()
{
    vrn_Corvix_Limits_t l{};
    l.tx_power_level_min = 0;
    l.tx_power_level_max = 7;
    l.abb_gain_index_min = 3;
    l.abb_gain_index_max = 384;
    l.num_samples_min = 16;
    l.num_samples_max = 2048;
    l.pulse_repetition_time_s_min = 100e-6f;
    l.pulse_repetition_time_s_max = 10e-3f;
    l.frame_repetition_time_s_min = 10e-3f;
    l.frame_repetition_time_s_max = 10.0f;
    return l;
}

double DopplerModel::gainDb(uint16_t abbGain)
{
    for (int i = 0; i < 8; ++i)
        if (kGainSteps[i] == abbGain)
            return kGainDb[i];
    return 0.0;
}

double DopplerModel::txPowerDbm(uint8_t level)
{
    // 2 dB per step below 6 dBm at level 7.
    return 6.0 - 2.0 * (7.0 - double(level > 7 ? 7 : level));
}

bool DopplerModel::check(const vrn_Corvix_Frame_Config_t& frame, const vrn_Corvix_Pulse_Config_t& pulse,
                         std::string& error)
{
    const vrn_Corvix_Limits_t l = limits();
    if (pulse.channel != VRN_CORVIX_CHANNEL_TX1_RX1 && pulse.channel != VRN_CORVIX_CHANNEL_TX2_RX2) {
        error = "The channel must be Tx1/Rx1 (0) or Tx2/Rx2 (1)";
        return false;
    }
    if (pulse.tx_power_level > l.tx_power_level_max) {
        error = "Tx power level must lie between 0 and 7";
        return false;
    }
    if (gainDb(pulse.abb_gain_index) == 0.0) {
        error = "Analog baseband gain must be one of 3, 6, 12, 24, 48, 96, 192, 384";
        return false;
    }
    if (frame.num_samples < l.num_samples_min || frame.num_samples > l.num_samples_max) {
        error = "Number of samples must lie between 16 and 2048";
        return false;
    }
    const float prt = frame.pulse_repetition_time_s;
    if (!(prt >= l.pulse_repetition_time_s_min * 0.9999f && prt <= l.pulse_repetition_time_s_max * 1.0001f)) {
        error = "Pulse repetition time must lie between 100 us and 10 ms";
        return false;
    }
    const float frt = frame.frame_repetition_time_s;
    if (!(frt >= l.frame_repetition_time_s_min * 0.9999f && frt <= l.frame_repetition_time_s_max * 1.0001f)) {
        error = "Frame repetition time must lie between 10 ms and 10 s";
        return false;
    }
    if (double(frame.num_samples) * prt > double(frt) * 1.0001) {
        error = "The pulses of one frame do not fit in the frame repetition time";
        return false;
    }
    return true;
}

}  // namespace vrnsim
