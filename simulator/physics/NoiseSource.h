#pragma once

#include <cstdint>
#include <vector>

namespace vrnsim {

// White Gaussian noise of one board's receivers, fast enough to add to every
// ADC sample. A table of unit-variance samples is drawn once per board; each
// row of a frame then reads it from a pseudo-random offset with a
// pseudo-random sign, so no transcendental function runs per sample and a
// seed gives the same frames.
class NoiseSource
{
public:
    static constexpr uint32_t kTableSize = 1u << 16;
    static constexpr uint32_t kMaxRow = 4096;

    // level: standard deviation in ADC full scale (1).
    NoiseSource(uint64_t seed, float level);

    float level() const { return m_level; }

    // Per-frame generator state: frames are reproducible by their index.
    struct Stream {
        uint64_t state;
        uint64_t next();
    };
    Stream stream(uint64_t frameIndex) const;

    // Adds noise of the board's level to row[0..length), length <= kMaxRow.
    void addRow(Stream& stream, float* row, uint32_t length) const;

private:
    uint64_t m_seed;
    float m_level;
    std::vector<float> m_table;
};

}  // namespace vrnsim
