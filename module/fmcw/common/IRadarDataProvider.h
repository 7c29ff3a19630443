#pragma once

#include "fmcw/common/RadarFrameResult.h"

class RadarDeviceConfiguration;

// Hands out frames one at a time to the acquisition worker.
class IRadarDataProvider
{
public:
    virtual ~IRadarDataProvider() = default;
    // Blocks until a frame arrives, the device fails, the time limit passes
    // or the calling thread is asked to stop.
    virtual RadarFrameResult getNextFrame(const RadarDeviceConfiguration& configuration) = 0;
    virtual void stopAcquisition() = 0;
};
