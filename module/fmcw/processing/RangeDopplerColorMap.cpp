#include "fmcw/processing/RangeDopplerColorMap.h"

#include <cmath>

namespace {

struct Stop {
    int index;
    int red, green, blue;
};

// Above the dark-to-yellow noise floor the colours run through orange and
// red to magenta and white, so stronger returns look hotter.
const Stop kStops[] = {
    { 16, 255, 255, 0 },
    { 80, 255, 128, 0 },
    { 144, 255, 0, 0 },
    { 208, 255, 0, 255 },
    { 255, 255, 255, 255 },
};

quint8 blend(int from, int to, int step, int steps)
{
    return quint8(from + (to - from) * step / steps);
}

}

RangeDopplerColorMap::RangeDopplerColorMap()
{
    // The first sixteen entries are where the noise floor lands: black
    // towards yellow.
    for (int i = 0; i < 16; ++i)
        m_table[size_t(i)] = { quint8(i * 255 / 16), quint8(i * 255 / 16), 0 };
    for (size_t s = 0; s + 1 < sizeof(kStops) / sizeof(kStops[0]); ++s) {
        const Stop& a = kStops[s];
        const Stop& b = kStops[s + 1];
        const int steps = b.index - a.index;
        for (int i = a.index; i <= b.index; ++i) {
            const int step = i - a.index;
            m_table[size_t(i)] = { blend(a.red, b.red, step, steps), blend(a.green, b.green, step, steps),
                                   blend(a.blue, b.blue, step, steps) };
        }
    }
    setThreshold(90);
}

void RangeDopplerColorMap::setThreshold(quint32 thresholdDb)
{
    m_threshold = thresholdDb;
    // A zero-width scale would divide by zero; it draws everything at or
    // above 0 dB brightest and the rest black.
    m_scaleFactor = thresholdDb != 0 ? 255.0f / float(thresholdDb) : 0.0f;
}

int RangeDopplerColorMap::index(float valueDb) const
{
    if (std::isnan(valueDb))
        return 0;
    const float attenuation = -valueDb;
    if (attenuation > float(m_threshold))
        return 0;
    const float x = attenuation * m_scaleFactor;
    if (x > 255.0f)
        return 0;
    // Values above 0 dB give x < 0; the modulo wraps them the way the
    // 8-bit index always has.
    const long scaled = 255 - long(std::floor(x));
    return int(((scaled % 256) + 256) % 256);
}
