#pragma once

#include "sdk/vrn.h"

#include <memory>

// A complex I/Q frame shared read-only between acquisition, recording and
// the charts; the last owner hands it back through the deleter it was made
// with.
using ZP7SFrame = std::shared_ptr<const vrn_Corvix_Frame_C_t>;

struct ZP7SFrameResult {
    bool success = false;
    ZP7SFrame frame;
};
