#pragma once

#include <cstdint>

namespace vrnsim {

// A flashing failure the bench schedules for a baseboard. Each attempt of
// the operation it concerns takes one from `count` (0: every attempt fails).
struct FlashFault {
    enum class Kind {
        ActivationFails,  // the bootloader command is refused
        NoBootloader,     // the command is taken, yet the board keeps its application
        WriteFails,       // writing stops at `atPercent`
        NoReturn,         // after the reset the board stays in its bootloader
    };
    Kind kind = Kind::ActivationFails;
    uint32_t atPercent = 50;
    uint32_t count = 1;
};

// How fast a baseboard flashes: the pause after each progress step (a
// phase has 50, erasing 10) and the time it is off the bus while it
// switches between its application and its bootloader.
struct FlashPace {
    uint32_t stepMs = 20;
    uint32_t switchMs = 500;
};

}  // namespace vrnsim
