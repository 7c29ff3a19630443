#pragma once

#include <cstdint>

namespace vrnsim {

// Transform lengths. The SDK's records ask for powers of two, and the
// processing pads its inputs up to the next one.
class FftSize
{
public:
    static constexpr uint32_t kMax = 1u << 16;

    static bool isPowerOfTwo(uint32_t n) { return n != 0 && (n & (n - 1)) == 0; }
    // The smallest power of two not below n (at most 2^31).
    static uint32_t nextPowerOfTwo(uint32_t n)
    {
        uint32_t p = 1;
        while (p < n && p < (1u << 31))
            p <<= 1;
        return p;
    }
};

}  // namespace vrnsim
