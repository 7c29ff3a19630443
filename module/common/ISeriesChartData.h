#pragma once

#include <QMetaType>
#include <QPointF>
#include <QtGlobal>

#include <memory>

// What a series chart of the pages draws: a number of series, each read
// point by point through an iterator, so the painter walks the newest data
// in place instead of receiving copies.
class ISeriesChartData
{
public:
    // Points of one series in drawing order.
    class Iterator
    {
    public:
        virtual ~Iterator() = default;
        virtual bool hasNext() const = 0;
        // Only valid while hasNext() is true.
        virtual QPointF next() = 0;
    };

    virtual ~ISeriesChartData() = default;
    // True for a history of on/off states, which the chart draws as steps
    // rather than as a sampled curve.
    virtual bool isStateHistory() const = 0;
    virtual quint32 seriesCount() const = 0;
    // The caller owns the iterator; none when the series has nothing to show.
    // An iterator must not outlive the next update of this data.
    virtual std::unique_ptr<Iterator> iterator(quint32 series) const = 0;
    virtual void clear() = 0;
};

Q_DECLARE_METATYPE(ISeriesChartData*)
