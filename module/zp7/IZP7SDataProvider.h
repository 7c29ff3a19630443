#pragma once

#include "zp7/ZP7SFrame.h"

class ZP7SDeviceConfig;

// Hands out pulsed-Doppler frames one at a time to the acquisition worker:
// the board, or a recording played back in its place.
class IZP7SDataProvider
{
public:
    virtual ~IZP7SDataProvider() = default;
    // Blocks until a frame arrives, the source fails, the time limit passes
    // or the calling thread is asked to stop. `success` without a frame is a
    // wait that ended early and is not a failure.
    virtual ZP7SFrameResult getNextFrame(const ZP7SDeviceConfig& configuration) = 0;
    virtual void stopAcquisition() = 0;
};
