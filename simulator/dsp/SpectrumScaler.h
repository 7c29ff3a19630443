#pragma once

#include <sdk/vrn.h>

#include <cstddef>

namespace vrnsim {

// Turns squared magnitudes into the configured output: linear magnitude, or
// 10 log10 / 20 log10 of the magnitude floored at the threshold. The
// logarithm is a short polynomial the compiler can vectorise; it is within
// 1e-5 dB of the exact one, far below anything a chart or a test can see.
class SpectrumScaler
{
public:
    SpectrumScaler() = default;
    SpectrumScaler(vrn_Scale_Type_t type, float threshold);

    void fromPower(const float* power, float* out, size_t count) const;
    // Squared magnitudes of interleaved complex values.
    static void power(const float* complexValues, float* out, size_t count);

private:
    vrn_Scale_Type_t m_type = VRN_SCALE_TYPE_LINEAR;
    float m_floor = 0.0f;   // threshold squared: the floor in the power domain
    float m_factor = 0.0f;  // dB per octave of power
};

}  // namespace vrnsim
