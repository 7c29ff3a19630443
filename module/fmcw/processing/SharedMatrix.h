#pragma once

#include "sdk/vrn.h"

#include <memory>

// A matrix the SDK allocated (a range-Doppler map), shared read-only between
// the calculator and the chart; the last owner hands it back to the SDK.
using SharedMatrix = std::shared_ptr<const vrn_Matrix_R_s>;

// Takes ownership of `matrix`; its deleter destroys it through `vrn` and
// logs a critical line if the SDK refuses. A null matrix gives an empty
// pointer.
SharedMatrix makeSharedMatrix(const Vrn* vrn, vrn_Matrix_R_s* matrix);
