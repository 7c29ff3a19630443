#pragma once

#include <cstdint>

namespace vrnsim {

// A fault the bench schedules by frame number.
struct ScheduledFault {
    uint64_t atFrame = 0;     // frames delivered since the board was opened
    // Counts CW captures alone, and strikes only a capture: a board that
    // streams frames before it is switched to CW must not meet it early.
    // A fault by frame strikes whichever fetch comes, frame or capture.
    bool atCapture = false;
    int32_t status = 0;
    uint32_t count = 1;
    bool unplug = false;      // the board drops off the bus instead
};

}  // namespace vrnsim
