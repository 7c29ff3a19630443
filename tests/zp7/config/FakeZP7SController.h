#pragma once

#include "fmcw/common/DeviceInfo.h"
#include "zp7/config/IZP7SController.h"

// A board that keeps what it is sent, with the simulator's bounds and
// defaults; `failing` names the call that refuses.
class FakeZP7SController : public IZP7SController
{
public:
    enum Call { None, DefaultConfig, GetConfig, SetConfig, Limits, Info };

    FakeZP7SController()
    {
        limits = { 0, 7, 3, 384, 16, 2048, 100e-6f, 10e-3f, 10e-3f, 10.0f };
        defaultFrame = { 128, 500e-6f, 0.1f };
        defaultPulse = { VRN_CORVIX_CHANNEL_TX1_RX1, 7, 48 };
        frame = { 64, 1e-3f, 0.5f };
        pulse = { VRN_CORVIX_CHANNEL_TX2_RX2, 2, 12 };
    }

    bool isConnected() const override { return connected; }
    bool getDefaultConfig(vrn_Corvix_Frame_Config_t& f, vrn_Corvix_Pulse_Config_t& p) override
    {
        if (failing == DefaultConfig)
            return false;
        f = defaultFrame;
        p = defaultPulse;
        return true;
    }
    bool getConfig(vrn_Corvix_Frame_Config_t& f, vrn_Corvix_Pulse_Config_t& p) override
    {
        if (failing == GetConfig)
            return false;
        f = frame;
        p = pulse;
        return true;
    }
    bool setConfig(const vrn_Corvix_Frame_Config_t& f, const vrn_Corvix_Pulse_Config_t& p) override
    {
        ++setCalls;
        if (failing == SetConfig)
            return false;
        frame = f;
        pulse = p;
        return true;
    }
    bool getLimits(vrn_Corvix_Limits_t& l) override
    {
        l = limits;
        return failing != Limits;
    }
    bool readDeviceInfo(DeviceInfo& into) override
    {
        into.setDeviceName(QStringLiteral("ZP7"));
        into.setNumRxAntennas(2);
        into.setNumTxAntennas(2);
        return failing != Info;
    }

    bool connected = true;
    Call failing = None;
    int setCalls = 0;
    vrn_Corvix_Limits_t limits;
    vrn_Corvix_Frame_Config_t defaultFrame, frame;
    vrn_Corvix_Pulse_Config_t defaultPulse, pulse;
};
