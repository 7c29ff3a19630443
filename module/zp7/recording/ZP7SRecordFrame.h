#pragma once

#include "common/SharedFrame.h"
#include "zp7/ZP7SFrame.h"

// The recorder chain carries real frames: a pulsed-Doppler frame enters it
// as one real 1 x 2N matrix per channel whose floats are the complex
// samples interleaved (I0, Q0, I1, Q1, ...), exactly the order the file
// holds them in. No sample is copied: the matrices look into the complex
// frame, which the returned frame keeps alive.
namespace ZP7SRecordFrame {

// Empty for an empty frame or one without channel data.
SharedFrame wrap(const ZP7SFrame& frame);

} // namespace ZP7SRecordFrame
