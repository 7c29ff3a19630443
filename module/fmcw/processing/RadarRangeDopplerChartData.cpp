#include "fmcw/processing/RadarRangeDopplerChartData.h"

#include <QPixmap>

#include <cstring>

void RadarRangeDopplerChartData::setDimensions(quint32 width, quint32 height, quint32 thresholdDb)
{
    m_width = width;
    m_height = height;
    const int size = int(quint64(width) * height * 3);
    const int previous = m_pixels.size();
    m_pixels.resize(size);
    if (size > previous)
        std::memset(m_pixels.data() + previous, 0, size_t(size - previous));
    m_colorMap.setThreshold(thresholdDb);
}

bool RadarRangeDopplerChartData::render(QPixmap& pixmap)
{
    if (!m_map || !m_map->data || m_map->rows != m_height || m_map->cols != m_width || m_width == 0
        || m_height == 0)
        return false;
    // The map's row 0 is range 0; images start at the top, so the rows go in
    // reverse to put short ranges at the bottom.
    char* out = m_pixels.data();
    for (quint32 r = m_map->rows; r-- > 0;) {
        const float* row = m_map->data + size_t(r) * m_map->stride;
        for (quint32 c = 0; c < m_map->cols; ++c) {
            std::memcpy(out, m_colorMap.colorOf(row[c]), 3);
            out += 3;
        }
    }
    QByteArray image = QStringLiteral("P6 %1 %2 255 ").arg(m_width).arg(m_height).toLatin1();
    image.append(m_pixels);
    return pixmap.loadFromData(image, "PPM");
}
