#include "SpectrumScaler.h"

#include "WideLoops.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace vrnsim {

namespace {

// log2 of a positive normal float: exponent from the bits, mantissa folded
// into [sqrt(1/2), sqrt(2)) and log2(1 + t) there as t times a degree-6
// polynomial (least-squares fit, error below 2e-6, i.e. 1e-5 dB). No
// division and only integer selects, so that the loops around it vectorise.
inline float fastLog2(float x)
{
    uint32_t bits;
    std::memcpy(&bits, &x, sizeof bits);
    int32_t exponent = int32_t(bits >> 23) - 127;
    uint32_t mantissa = (bits & 0x007fffffu) | 0x3f800000u;
    const uint32_t high = mantissa >= 0x3fb504f3u ? 1u : 0u;  // mantissa >= sqrt(2)
    mantissa -= high << 23;
    exponent += int32_t(high);
    float m;
    std::memcpy(&m, &mantissa, sizeof m);
    const float t = m - 1.0f;
    float p = 0.170013353f;
    p = p * t - 0.266261415f;
    p = p * t + 0.295109333f;
    p = p * t - 0.359656721f;
    p = p * t + 0.48067618f;
    p = p * t - 0.721358131f;
    p = p * t + 1.44269605f;
    return float(exponent) + t * p;
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

VRNSIM_WIDE_LOOPS void SpectrumScaler::power(const float* __restrict complexValues, float* __restrict out, size_t count)
{
    for (size_t i = 0; i < count; ++i) {
        const float re = complexValues[2 * i];
        const float im = complexValues[2 * i + 1];
        out[i] = re * re + im * im;
    }
}

VRNSIM_WIDE_LOOPS void SpectrumScaler::fromPower(const float* __restrict power, float* __restrict out,
                                                 size_t count) const
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
