#pragma once

// Switches a CW transmitter on and off; true when the device did it.
class IRadarCWEmission
{
public:
    virtual ~IRadarCWEmission() = default;
    virtual bool startEmission() = 0;
    virtual bool stopEmission() = 0;
};
