#include "NoiseSource.h"

#include <cmath>

namespace vrnsim {

namespace {

uint64_t splitmix(uint64_t x)
{
    x += 0x9e3779b97f4a7c15ull;
    x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9ull;
    x = (x ^ (x >> 27)) * 0x94d049bb133111ebull;
    return x ^ (x >> 31);
}

}  // namespace

uint64_t NoiseSource::Stream::next()
{
    // xorshift64*: cheap and good enough to pick offsets and signs.
    state ^= state >> 12;
    state ^= state << 25;
    state ^= state >> 27;
    return state * 0x2545f4914f6cdd1dull;
}

NoiseSource::NoiseSource(uint64_t seed, float level)
    : m_seed(seed), m_level(level), m_table(kTableSize + kMaxRow)
{
    Stream s{splitmix(seed) | 1};
    // Box-Muller once per table entry pair, at board creation only.
    for (size_t i = 0; i + 1 < m_table.size(); i += 2) {
        const double u1 = (double((s.next() >> 11) + 1)) / 9007199254740993.0;
        const double u2 = double(s.next() >> 11) / 9007199254740992.0;
        const double r = std::sqrt(-2.0 * std::log(u1));
        m_table[i] = float(r * std::cos(2.0 * M_PI * u2));
        m_table[i + 1] = float(r * std::sin(2.0 * M_PI * u2));
    }
}

NoiseSource::Stream NoiseSource::stream(uint64_t frameIndex) const
{
    return Stream{splitmix(m_seed ^ splitmix(frameIndex + 0x5851f42d4c957f2dull)) | 1};
}

void NoiseSource::addRow(Stream& stream, float* __restrict row, uint32_t length) const
{
    const uint64_t r = stream.next();
    const float* __restrict src = m_table.data() + (r >> 40) % kTableSize;
    const float scale = (r & 1) ? m_level : -m_level;
    if (length > kMaxRow)
        length = kMaxRow;
    for (uint32_t n = 0; n < length; ++n)
        row[n] += scale * src[n];
}

}  // namespace vrnsim
