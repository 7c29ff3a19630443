#pragma once

#include "sdk/vrn.h"

#include <memory>

// A frame shared read-only between acquisition, recording and processing.
// The last owner hands it back to the SDK through the deleter it was made
// with; readers only ever see it as const.
using SharedFrame = std::shared_ptr<const vrn_Frame_R_t>;
