#pragma once

// Reads the chip temperature.
class IRadarTemperatureProvider
{
public:
    virtual ~IRadarTemperatureProvider() = default;
    // Degrees Celsius; NaN when there is no reading.
    virtual float getTemperature() = 0;
};
