#include "CwModel.h"

#include <algorithm>
#include <cmath>

namespace vrnsim {

namespace {

const double kAmplifierDb[] = {0, 5, 10, 15, 20, 25, 30};
const double kHighPassDb[] = {18, 30};
const double kHighPassHz[] = {20e3, 45e3, 70e3, 80e3, 160e3};
const double kAntiAliasHz[] = {600e3, 1000e3};
const double kSampleTimeNs[] = {50, 100, 200, 400};
const double kTracking[] = {0, 1, 3, 7};
const double kOversampling[] = {1, 2, 4, 8};

constexpr double kAdcClockHz = 80e6;   // one conversion bit per clock
constexpr uint32_t kMaxRateHz = 2000000;

template <typename T, size_t N>
constexpr size_t count(const T (&)[N]) { return N; }

}  // namespace

vrn_CW_Config_t CwModel::defaultConfig(const ChipModel& chip)
{
    vrn_CW_Config_t c{};
    c.rf_center_frequency_Hz = 60.5e9f;
    c.dac_value = 200;
    c.tx_mask = 0x1;
    c.rx_mask = (1u << chip.numRx) - 1;
    c.num_samples = 256;
    c.test_signal.mode_index = 0;
    c.test_signal.frequency_Hz = 100000.0f;
    c.adc.sample_rate_Hz = 1000000;
    c.adc.tracking_conversions_index = 1;
    c.adc.sample_time_index = 0;
    c.adc.double_msb_time = 0;
    c.adc.oversampling_index = 0;
    c.baseband.gain_amplifier_index = 4;
    c.baseband.gain_high_pass_index = 0;
    c.baseband.hp_cutoff_index = 0;
    c.baseband.aaf_cutoff_index = 1;
    return c;
}

vrn_CW_Limits_t CwModel::limits(const ChipModel& chip)
{
    vrn_CW_Limits_t l{};
    l.rf_center_frequency_Hz_min = float(chip.minRfHz);
    l.rf_center_frequency_Hz_max = float(chip.maxRfHz);
    l.dac_value_min = 0;
    l.dac_value_max = kDacMax;
    l.num_samples_min = kMinSamples;
    l.num_samples_max = kMaxSamples;
    l.test_signal_frequency_Hz_min = kMinTestFrequencyHz;
    l.test_signal_frequency_Hz_max = kMaxTestFrequencyHz;
    return l;
}

bool CwModel::checkAdc(const vrn_Device_ADC_Config_t& adc, std::string& error)
{
    if (adc.sample_time_index >= count(kSampleTimeNs) || adc.tracking_conversions_index >= count(kTracking) ||
        adc.oversampling_index >= count(kOversampling) || adc.double_msb_time > 1) {
        error = "ADC setting out of range: sample time index 0-3, tracking index 0-3, oversampling index 0-3, "
                "double MSB 0 or 1";
        return false;
    }
    return true;
}

void CwModel::samplingRateLimits(const vrn_Device_ADC_Config_t& adc, uint32_t& minHz, uint32_t& maxHz)
{
    // One conversion samples for the sample time, then resolves 12 bits (13
    // with the doubled MSB time) at one bit per ADC clock. Tracking adds
    // conversions per output sample, oversampling averages several outputs.
    const double conversion = kSampleTimeNs[std::min<size_t>(adc.sample_time_index, 3)] * 1e-9 +
                              (12.0 + (adc.double_msb_time ? 1.0 : 0.0)) / kAdcClockHz;
    const double perSample = conversion * (1.0 + kTracking[std::min<size_t>(adc.tracking_conversions_index, 3)]) *
                             kOversampling[std::min<size_t>(adc.oversampling_index, 3)];
    maxHz = std::min<uint32_t>(kMaxRateHz, uint32_t(std::floor(1.0 / perSample)));
    // The sample clock divider is 16 bits wide.
    minHz = uint32_t(std::ceil(kAdcClockHz / 65535.0));
}

bool CwModel::checkBaseband(const ChipModel& chip, const vrn_Device_Baseband_Config_t& bb, std::string& error)
{
    if (bb.gain_amplifier_index >= count(kAmplifierDb) || bb.gain_high_pass_index >= count(kHighPassDb) ||
        bb.hp_cutoff_index >= chip.cwHighPassCutoffs || bb.aaf_cutoff_index >= count(kAntiAliasHz)) {
        error = "Baseband setting out of range: gain amplifier index 0-6, high-pass gain index 0-1, high-pass "
                "cut-off index 0-" + std::to_string(chip.cwHighPassCutoffs - 1) + ", anti-alias cut-off index 0-1";
        return false;
    }
    return true;
}

bool CwModel::checkTestSignal(const ChipModel& chip, const vrn_Device_Test_Signal_Generator_t& tsg,
                              std::string& error)
{
    if (tsg.mode_index >= chip.cwTestSignalModes) {
        error = std::string("The ") + chip.name + " offers test-signal modes 0 to " +
                std::to_string(chip.cwTestSignalModes - 1);
        return false;
    }
    if (!(tsg.frequency_Hz >= kMinTestFrequencyHz && tsg.frequency_Hz <= kMaxTestFrequencyHz)) {
        error = "Test-signal frequency must lie between 1 kHz and 1 MHz";
        return false;
    }
    return true;
}

double CwModel::amplifierGainDb(uint32_t index) { return kAmplifierDb[std::min<size_t>(index, 6)]; }
double CwModel::highPassGainDb(uint32_t index) { return kHighPassDb[std::min<size_t>(index, 1)]; }
double CwModel::highPassCutoffHz(uint32_t index) { return kHighPassHz[std::min<size_t>(index, 4)]; }
double CwModel::antiAliasCutoffHz(uint32_t index) { return kAntiAliasHz[std::min<size_t>(index, 1)]; }

double CwModel::txPowerDbm(uint32_t dac, double temperatureC)
{
    // The DAC sets the amplitude of the power amplifier's drive linearly.
    const double level = std::max(1.0, double(std::min(dac, kDacMax)));
    return 5.0 + 20.0 * std::log10(level / kDacMax) - 0.02 * (temperatureC - 25.0);
}

}  // namespace vrnsim
