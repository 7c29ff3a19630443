#pragma once

#include <QtGlobal>

#include <array>

// Colours of the range-Doppler image: a map value in dB picks one of 256
// entries, 0 dB the brightest (255) and the threshold or below black (0).
class RangeDopplerColorMap
{
public:
    RangeDopplerColorMap();

    // `thresholdDb` is the lower end of the scale as a positive number (90
    // for a scale down to -90 dB).
    void setThreshold(quint32 thresholdDb);
    quint32 threshold() const { return m_threshold; }
    float scaleFactor() const { return m_scaleFactor; }

    int index(float valueDb) const;
    // Three bytes: red, green, blue.
    const quint8* color(int index) const { return m_table[size_t(index)].data(); }
    const quint8* colorOf(float valueDb) const { return color(index(valueDb)); }

private:
    std::array<std::array<quint8, 3>, 256> m_table;
    quint32 m_threshold = 0;
    float m_scaleFactor = 0.0f;
};
