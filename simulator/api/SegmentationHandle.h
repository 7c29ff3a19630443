#pragma once

#include "RangeDopplerTransform.h"
#include "TargetDetector.h"
#include "TargetTracker.h"

#include <sdk/vrn.h>

#include <mutex>

// A segmentation run: one range-Doppler transform per receiver (Rx1, Rx3),
// the detector and the tracks carried between frames; `mutex` keeps frames
// of two threads from interleaving.
struct vrn_Segmentation_s {
    static constexpr uint32_t kMagic = 0x56525347u;  // "VRSG"
    ~vrn_Segmentation_s() { magic = 0; }

    uint32_t magic = kMagic;
    vrn_Segmentation_Config_t config{};
    vrnsim::RangeDopplerTransform rx1;
    vrnsim::RangeDopplerTransform rx3;
    vrnsim::TargetDetector detector;
    vrnsim::TargetTracker tracker;
    std::mutex mutex;
};
