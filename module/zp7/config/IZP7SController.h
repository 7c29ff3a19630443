#pragma once

#include "sdk/vrn.h"

class DeviceInfo;

// The configuration side of an opened pulsed-Doppler board. Every call
// answers false when there is no board or the SDK refuses; the failure has
// then already been told through the device's triggerEvent.
class IZP7SController
{
public:
    virtual ~IZP7SController() = default;

    virtual bool isConnected() const = 0;
    virtual bool getDefaultConfig(vrn_Corvix_Frame_Config_t& frame, vrn_Corvix_Pulse_Config_t& pulse) = 0;
    virtual bool getConfig(vrn_Corvix_Frame_Config_t& frame, vrn_Corvix_Pulse_Config_t& pulse) = 0;
    virtual bool setConfig(const vrn_Corvix_Frame_Config_t& frame, const vrn_Corvix_Pulse_Config_t& pulse) = 0;
    virtual bool getLimits(vrn_Corvix_Limits_t& limits) = 0;
    // Name, antennas and temperature of the open board, copied into `into`.
    virtual bool readDeviceInfo(DeviceInfo& into) = 0;
};
