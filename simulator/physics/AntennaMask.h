#pragma once

#include <cstdint>

namespace vrnsim {

// Antenna masks of the SDK's records: bit i selects Tx or Rx i + 1.
class AntennaMask
{
public:
    // Antennas a mask selects; no chip has more than four of a kind.
    static uint32_t count(uint32_t mask) { return uint32_t(__builtin_popcount(mask & 0xf)); }
    // Whether a mask selects at least one antenna and none beyond the chip's `antennas`.
    static bool fits(uint32_t mask, uint32_t antennas) { return mask != 0 && (mask >> antennas) == 0; }
};

}  // namespace vrnsim
