#pragma once

#include "sdk/vrn.h"

#include <QtGlobal>

class RadarCWParamsLimits;
class RadarDeviceCWConfig;

// What the CW configuration object needs from the device side: the CW
// controller of the connected board implements it. Every operation answers
// only whether it worked; the implementer tells the user why it did not.
class IRadarCWConfigurator
{
public:
    virtual ~IRadarCWConfigurator() = default;

    // Device <- configuration: parameters and both antenna sets.
    virtual bool setConfiguration(const RadarDeviceCWConfig& config) = 0;
    // Configuration <- device: what the board actually runs.
    virtual bool getConfiguration(RadarDeviceCWConfig& config) = 0;
    // The SDK's defaults of the board: parameters and both antenna sets.
    virtual bool getDefaultConfiguration(RadarDeviceCWConfig& config) = 0;
    // The sampling rates the ADC allows with the setting `adc`.
    virtual bool getSamplingRateLimits(const vrn_Device_ADC_Config_t& adc, quint32& minHz, quint32& maxHz) = 0;
    // The board's bounds of the remaining parameters.
    virtual bool getLimits(RadarCWParamsLimits& limits) = 0;
};
