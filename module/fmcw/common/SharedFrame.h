#pragma once

#include "sdk/vrn.h"

#include <memory>

// A frame shared read-only between acquisition, recording and processing.
// The last owner hands it back to the SDK.
using SharedFrame = std::shared_ptr<const vrn_Frame_R_t>;

// Takes ownership of `frame`; its deleter destroys it through `vrn` and logs
// a critical line if the SDK refuses. A null frame gives an empty pointer.
SharedFrame makeSharedFrame(const Vrn* vrn, vrn_Frame_R_t* frame);
