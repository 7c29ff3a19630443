#pragma once

#include <QtGlobal>

namespace FloatSetting {

// Float settings come from sliders, text fields and JSON round trips; a
// difference below this is noise, not a change worth announcing.
constexpr float kTolerance = 0.001f;

inline bool equal(float a, float b)
{
    return qAbs(a - b) < kTolerance;
}

}
