#pragma once

#include "common/SharedFrame.h"
#include "sdk/vrn.h"

// Takes ownership of `frame`; its deleter destroys it through `vrn` and logs
// a critical line if the SDK refuses. A null frame gives an empty pointer.
SharedFrame makeSharedFrame(const Vrn* vrn, vrn_Frame_R_t* frame);
