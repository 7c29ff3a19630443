#pragma once

#include "fmcw/processing/IRangeDopplerChartData.h"
#include "fmcw/processing/RangeDopplerColorMap.h"

#include <QByteArray>

// Renders the newest range-Doppler map as a binary PPM image, range bin 0 at
// the bottom and zero speed in the middle column. Used on the GUI thread
// only.
class RadarRangeDopplerChartData : public IRangeDopplerChartData
{
public:
    void setDimensions(quint32 width, quint32 height, quint32 thresholdDb) override;
    void setMap(SharedMatrix map) override { m_map = std::move(map); }
    bool render(QPixmap& pixmap) override;

    // The map the next render draws; kept until a newer one arrives.
    const SharedMatrix& map() const { return m_map; }
    quint32 width() const { return m_width; }
    quint32 height() const { return m_height; }
    const RangeDopplerColorMap& colorMap() const { return m_colorMap; }

private:
    quint32 m_width = 0;
    quint32 m_height = 0;
    // width × height × 3 bytes, reused from frame to frame.
    QByteArray m_pixels;
    RangeDopplerColorMap m_colorMap;
    SharedMatrix m_map;
};
