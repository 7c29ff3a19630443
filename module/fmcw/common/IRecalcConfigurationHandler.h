#pragma once

class RadarDeviceConfiguration;

// Derives the device parameters of a scene without sending it anywhere.
class IRecalcConfigurationHandler
{
public:
    virtual ~IRecalcConfigurationHandler() = default;
    virtual bool recalculateConfiguration(RadarDeviceConfiguration& configuration) = 0;
};
