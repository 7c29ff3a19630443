#pragma once

#include "sdk/vrn.h"

#include <memory>

// A vector the SDK allocated (a range spectrum), shared read-only between the
// calculator and the charts; the last owner hands it back to the SDK.
using SharedVector = std::shared_ptr<const vrn_Vector_R_s>;

// Takes ownership of `vector`; its deleter destroys it through `vrn` and
// logs a critical line if the SDK refuses. A null vector gives an empty
// pointer.
SharedVector makeSharedVector(const Vrn* vrn, vrn_Vector_R_s* vector);
