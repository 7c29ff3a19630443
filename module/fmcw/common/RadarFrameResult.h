#pragma once

#include "fmcw/common/SharedFrame.h"

// One answer of the frame fetch. `success` with a null `frame` means the
// device lost this frame but acquisition goes on.
struct RadarFrameResult {
    bool success = false;
    const vrn_Frame_R_t* frame = nullptr;
    SharedFrame owner;
};
