#pragma once

#include "common/ISeriesChartData.h"

#include <QPolygonF>
#include <QVector>

#include <initializer_list>

// Series given point by point; an empty series has no iterator, as a chart
// data with nothing to show for it answers.
class FakeSeriesData : public ISeriesChartData
{
public:
    QVector<QPolygonF> series;
    bool stateHistory = false;

    bool isStateHistory() const override { return stateHistory; }
    quint32 seriesCount() const override { return quint32(series.size()); }
    std::unique_ptr<Iterator> iterator(quint32 index) const override
    {
        if (index >= quint32(series.size()) || series[int(index)].isEmpty())
            return nullptr;
        return std::make_unique<PolygonIterator>(series[int(index)]);
    }
    void clear() override { series.clear(); }

private:
    class PolygonIterator : public Iterator
    {
    public:
        explicit PolygonIterator(QPolygonF points) : m_points(std::move(points)) {}
        bool hasNext() const override { return m_next < m_points.size(); }
        QPointF next() override { return m_points[m_next++]; }

    private:
        QPolygonF m_points;
        int m_next = 0;
    };
};

inline QPolygonF points(std::initializer_list<QPointF> list)
{
    return QPolygonF(QVector<QPointF>(list));
}
