#pragma once

class RadarDeviceConfiguration;

// Pushes a configuration to the device.
class IRadarConfigurator
{
public:
    virtual ~IRadarConfigurator() = default;
    // Refreshes the limits, sends the scene and reads back the parameters.
    virtual bool setConfiguration(RadarDeviceConfiguration& configuration) = 0;
};
