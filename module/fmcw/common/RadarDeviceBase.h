#pragma once

#include "sdk/vrn.h"

// Gives the conversion code the SDK handle of an opened device. Callers hold
// the device's lock while they use the handle.
class RadarDeviceBase
{
public:
    virtual ~RadarDeviceBase() = default;
    virtual vrn_Device_Handle sdkHandle() const = 0;
};
