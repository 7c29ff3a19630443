#pragma once

#include "BoardSpec.h"

#include <vector>

namespace vrnsim {

// The boards on the simulated bus, in the order the device list shows them.
struct Bench {
    std::vector<BoardSpec> boards;
};

}  // namespace vrnsim
