#pragma once

#include <algorithm>
#include <cstdint>

namespace vrnsim {

// The boards' 12-bit converter. A sample is a normalised value, 0 to 1 with
// 0.5 for no signal, on a grid of 1/4095 and clipped at the rails.
class Adc
{
public:
    static constexpr float kSteps = 4095.0f;

    // Quantises row[0..length) in place. Inline, with a multiplication by the
    // step instead of a division, so that the loop vectorises inside the
    // synthesizers' row loops.
    static void quantise(float* __restrict row, uint32_t length)
    {
        constexpr float kStep = 1.0f / kSteps;
        for (uint32_t n = 0; n < length; ++n) {
            const float v = std::min(1.0f, std::max(0.0f, row[n]));
            row[n] = float(int(v * kSteps + 0.5f)) * kStep;
        }
    }
};

}  // namespace vrnsim
