#include "SpectrumScaler.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace vrnsim {

namespace {

// log2 of a positive normal float: exponent from the bits, mantissa folded
// into [sqrt(1/2), sqrt(2)) and its logarithm from the atanh series.
inline float fastLog2(float x)
{
    uint32_t bits;
    std::memcpy(&bits, &x, sizeof bits);
    int exponent = int((bits >> 23) & 0xffu) - 127;
    bits = (bits & 0x007fffffu) | 0x3f800000u;
    float m;
    std::memcpy(&m, &bits, sizeof m);
    const bool high = m > 1.41421356f;
    m = high ? m * 0.5f : m;
    exponent += high ? 1 : 0;
    const float t = (m - 1.0f) / (m + 1.0f);
    const float t2 = t * t;
    const float series = t * (2.0f + t2 * (2.0f / 3.0f + t2 * (2.0f / 5.0f + t2 * (2.0f / 7.0f))));
    return float(exponent) + series * 1.44269504f;  // series is ln(m)
}

}  // namespace

SpectrumScaler::SpectrumScaler(vrn_Scale_Type_t type, float threshold)
    : m_type(type)
{
    m_floor = std::max(threshold * threshold, FLT_MIN);
    const float log10Of2 = 0.30102999566f;
    // 20 log10 |X| = 10 log10 |X|^2 and 10 log10 |X| = 5 log10 |X|^2.
    m_factor = (type == VRN_SCALE_TYPE_DECIBEL_20LOG ? 10.0f : 5.0f) * log10Of2;
}

void SpectrumScaler::power(const float* __restrict complexValues, float* __restrict out, size_t count)
{
    for (size_t i = 0; i < count; ++i) {
        const float re = complexValues[2 * i];
        const float im = complexValues[2 * i + 1];
        out[i] = re * re + im * im;
    }
}

void SpectrumScaler::fromPower(const float* __restrict power, float* __restrict out, size_t count) const
{
    if (m_type == VRN_SCALE_TYPE_LINEAR) {
        for (size_t i = 0; i < count; ++i)
            out[i] = std::sqrt(power[i]);
        return;
    }
    const float floor = m_floor;
    const float factor = m_factor;
    for (size_t i = 0; i < count; ++i)
        out[i] = factor * fastLog2(std::max(power[i], floor));
}

}  // namespace vrnsim
