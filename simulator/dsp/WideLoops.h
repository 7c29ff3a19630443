#pragma once

// Marks a function whose loops are worth building for wider vector units:
// the compiler emits an AVX-512, an AVX2 and a baseline copy and the loader
// picks the widest the processor has. FFTW picks its own kernels the same
// way, so without this our passes around the transforms would run on
// quarter-width vectors next to them.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)
#define VRNSIM_WIDE_LOOPS __attribute__((target_clones("avx512f", "avx2", "default")))
#else
#define VRNSIM_WIDE_LOOPS
#endif

#include <cstddef>

namespace vrnsim {

// Sum of x[i] * w[i]. Sixteen running sums instead of one: a single float
// accumulator must add in order, which keeps the compiler from vectorising.
inline float weightedSum(const float* __restrict x, const float* __restrict w, size_t n)
{
    constexpr size_t kLanes = 16;
    float lanes[kLanes] = {};
    size_t i = 0;
    for (; i + kLanes <= n; i += kLanes)
        for (size_t j = 0; j < kLanes; ++j)
            lanes[j] += x[i + j] * w[i + j];
    float sum = 0.0f;
    for (; i < n; ++i)
        sum += x[i] * w[i];
    for (float lane : lanes)
        sum += lane;
    return sum;
}

}  // namespace vrnsim
