#pragma once

#include "fmcw/common/DeviceInfo.h"
#include "fmcw/cw/config/IRadarCWConfigurator.h"
#include "fmcw/cw/config/RadarCWParams.h"
#include "fmcw/cw/config/RadarCWParamsLimits.h"
#include "fmcw/cw/config/RadarDeviceCWConfig.h"

// A board in CW mode as a plain record: what was set is what is read back
// (unless `acceptedSamplingRate` says otherwise), the ADC's sampling-rate
// bounds halve with every slower sampling-time step, and each operation
// can be made to fail.
class FakeCWConfigurator : public IRadarCWConfigurator
{
public:
    FakeCWConfigurator()
    {
        limits = { 57.0e9f, 64.0e9f, 0, 4095, 2, 4094, 0.0f, 500000.0f };
        defaults.rf_center_frequency_Hz = 60.5e9f;
        defaults.dac_value = 90;
        defaults.tx_mask = 0b001;
        defaults.rx_mask = 0b101;
        defaults.num_samples = 128;
        defaults.test_signal = { 1, 100000.0f };
        defaults.adc = { 1000000, 2, 1, 1, 1 };
        defaults.baseband = { 5, 1, 3, 1 };
    }

    bool setConfiguration(const RadarDeviceCWConfig& config) override
    {
        if (failSet)
            return false;
        device = config.toSdkConfig();
        if (acceptedSamplingRate)
            device.adc.sample_rate_Hz = acceptedSamplingRate;
        return true;
    }
    bool getConfiguration(RadarDeviceCWConfig& config) override
    {
        if (failGet)
            return false;
        config.setFromSdkConfig(device);
        return true;
    }
    bool getDefaultConfiguration(RadarDeviceCWConfig& config) override
    {
        if (failDefaults)
            return false;
        config.setFromSdkConfig(defaults);
        return true;
    }
    bool getSamplingRateLimits(const vrn_Device_ADC_Config_t& adc, quint32& minHz, quint32& maxHz) override
    {
        minHz = 500000u >> adc.sample_time_index;
        maxHz = 4000000u >> adc.sample_time_index;
        return true;
    }
    bool getLimits(RadarCWParamsLimits& target) override
    {
        target.setFromSdk(limits);
        return true;
    }

    vrn_CW_Limits_t limits {};
    vrn_CW_Config_t defaults {};
    vrn_CW_Config_t device {};
    quint32 acceptedSamplingRate = 0;
    bool failSet = false;
    bool failGet = false;
    bool failDefaults = false;
};

// A KMR7A-like board: three receivers, one transmitter.
inline void describeBoard(DeviceInfo& info, const QString& chip = QStringLiteral("KMR7A"))
{
    info.setDeviceName(chip);
    info.setDeviceFirmwareName(QStringLiteral("Radar baseboard firmware for %1").arg(chip));
    info.setNumRxAntennas(3);
    info.setNumTxAntennas(1);
    info.setMinRfFrequencyHz(57000000000ull);
    info.setMaxRfFrequencyHz(64000000000ull);
}
