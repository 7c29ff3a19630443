#pragma once

#include <QPointF>
#include <QRectF>

#include <vector>

class ISeriesChartData;

// The points of every series of a chart data as read at the last refresh,
// kept so that a resize, a new axis range or the hover readout can use them
// without walking the data again (its iterators may only be used until the
// data's next update). Points with a NaN or infinite coordinate are dropped.
// The buffers keep their capacity from one read to the next.
class SeriesPoints
{
public:
    struct Series {
        std::vector<QPointF> points;
        // x never decreases: the series can be thinned per pixel column and
        // searched by bisection.
        bool ascendingX = true;
    };

    // Replaces what is held with the series of `data` (none for null). The
    // points of series `unbounded` (markers) are kept but left out of the
    // bounds.
    void read(const ISeriesChartData* data, int unbounded = -1);
    void clear();

    int seriesCount() const { return m_seriesCount; }
    const Series& series(int index) const { return m_series[size_t(index)]; }
    int pointCount() const { return m_pointCount; }
    // Points dropped at the last read for a NaN or infinite coordinate.
    int droppedCount() const { return m_droppedCount; }
    // The bounds of the points held (markers aside); meaningless without.
    bool hasBounds() const { return m_hasBounds; }
    double minX() const { return m_minX; }
    double maxX() const { return m_maxX; }
    double minY() const { return m_minY; }
    double maxY() const { return m_maxY; }

    // The point of series `index` whose x is nearest to `x`; false when the
    // series is empty.
    bool nearestInX(int index, double x, QPointF& point) const;

private:
    std::vector<Series> m_series;
    int m_seriesCount = 0;
    int m_pointCount = 0;
    int m_droppedCount = 0;
    bool m_hasBounds = false;
    // The oversized count is told once, not at every refresh.
    bool m_toldSeriesLimit = false;
    double m_minX = 0.0;
    double m_maxX = 0.0;
    double m_minY = 0.0;
    double m_maxY = 0.0;
};
