#pragma once

#include "ChipModel.h"

#include <string>

namespace vrnsim {

// Continuous-wave test mode of the FMCW chips: defaults, limits and the
// meaning of the index fields of the SDK records.
class CwModel
{
public:
    static constexpr uint32_t kDacMax = 255;
    static constexpr uint32_t kMinSamples = 2;
    static constexpr uint32_t kMaxSamples = 4094;
    static constexpr float kMinTestFrequencyHz = 1000.0f;
    static constexpr float kMaxTestFrequencyHz = 1000000.0f;

    static vrn_CW_Config_t defaultConfig(const ChipModel& chip);
    static vrn_CW_Limits_t limits(const ChipModel& chip);
    static void samplingRateLimits(const vrn_Device_ADC_Config_t& adc, uint32_t& minHz, uint32_t& maxHz);

    static bool checkAdc(const vrn_Device_ADC_Config_t& adc, std::string& error);
    static bool checkBaseband(const ChipModel& chip, const vrn_Device_Baseband_Config_t& bb, std::string& error);
    static bool checkTestSignal(const ChipModel& chip, const vrn_Device_Test_Signal_Generator_t& tsg,
                                std::string& error);

    // Values behind the baseband indexes.
    static double amplifierGainDb(uint32_t index);   // 0, 5, ..., 30 dB
    static double highPassGainDb(uint32_t index);    // 18 or 30 dB
    static double highPassCutoffHz(uint32_t index);  // 20, 45, 70, 80, 160 kHz
    static double antiAliasCutoffHz(uint32_t index); // 600 or 1000 kHz
    // Output power of the CW transmitter for a DAC code.
    static double txPowerDbm(uint32_t dac, double temperatureC);
};

}  // namespace vrnsim
