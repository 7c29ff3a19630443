#pragma once

#include <cstdint>

namespace vrnsim {

// A frame the board has ready for the host.
struct FrameTicket {
    uint64_t index = 0;       // frame number since acquisition started
    double sceneTime = 0;     // seconds since the board was plugged
    double temperatureC = 25;
    bool unplugNow = false;   // a scheduled fault pulls the board off the bus
};

}  // namespace vrnsim
