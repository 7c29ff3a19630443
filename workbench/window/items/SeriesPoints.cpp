#include "SeriesPoints.h"

#include "common/ISeriesChartData.h"

#include <QDebug>
#include <QtMath>

#include <algorithm>
#include <limits>

namespace {

// No radar chart has more series than this; a larger count is a broken
// chart data and must not make us allocate for it.
constexpr quint32 kMaximumSeries = 256;

}

void SeriesPoints::clear()
{
    for (int i = 0; i < m_seriesCount; ++i)
        m_series[size_t(i)].points.clear();
    m_seriesCount = 0;
    m_pointCount = 0;
    m_droppedCount = 0;
    m_hasBounds = false;
}

void SeriesPoints::read(const ISeriesChartData* data, int unbounded)
{
    clear();
    if (!data)
        return;
    quint32 count = data->seriesCount();
    if (count > kMaximumSeries) {
        if (!m_toldSeriesLimit)
            qWarning() << "Chart data announces" << count << "series; only the first" << kMaximumSeries
                       << "are drawn";
        m_toldSeriesLimit = true;
        count = kMaximumSeries;
    }
    if (m_series.size() < count)
        m_series.resize(count);
    m_seriesCount = int(count);

    double minX = std::numeric_limits<double>::infinity();
    double maxX = -minX;
    double minY = minX;
    double maxY = -minX;
    for (quint32 s = 0; s < count; ++s) {
        Series& series = m_series[s];
        series.points.clear();
        series.ascendingX = true;
        const std::unique_ptr<ISeriesChartData::Iterator> it = data->iterator(s);
        if (!it)
            continue;
        double previousX = -std::numeric_limits<double>::infinity();
        while (it->hasNext()) {
            const QPointF point = it->next();
            const double x = point.x();
            const double y = point.y();
            if (!qIsFinite(x) || !qIsFinite(y)) {
                ++m_droppedCount;
                continue;
            }
            if (x < previousX)
                series.ascendingX = false;
            previousX = x;
            series.points.push_back(point);
            if (int(s) == unbounded)
                continue;
            minX = std::min(minX, x);
            maxX = std::max(maxX, x);
            minY = std::min(minY, y);
            maxY = std::max(maxY, y);
        }
        m_pointCount += int(series.points.size());
    }
    m_hasBounds = minX <= maxX;
    if (m_hasBounds) {
        m_minX = minX;
        m_maxX = maxX;
        m_minY = minY;
        m_maxY = maxY;
    }
}

bool SeriesPoints::nearestInX(int index, double x, QPointF& point) const
{
    if (index < 0 || index >= m_seriesCount)
        return false;
    const std::vector<QPointF>& points = m_series[size_t(index)].points;
    if (points.empty())
        return false;
    if (m_series[size_t(index)].ascendingX) {
        const auto after = std::lower_bound(points.begin(), points.end(), x,
                                            [](const QPointF& p, double value) { return p.x() < value; });
        if (after == points.end()) {
            point = points.back();
        } else if (after == points.begin()) {
            point = *after;
        } else {
            const auto before = after - 1;
            point = (x - before->x() <= after->x() - x) ? *before : *after;
        }
        return true;
    }
    point = *std::min_element(points.begin(), points.end(), [x](const QPointF& a, const QPointF& b) {
        return qAbs(a.x() - x) < qAbs(b.x() - x);
    });
    return true;
}
