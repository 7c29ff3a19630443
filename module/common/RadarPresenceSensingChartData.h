#pragma once

#include "common/ISeriesChartData.h"

#include <QMutex>
#include <QObject>
#include <QPointF>
#include <QVector>

// The presence state over the last stretch of time, as a ring buffer of
// (time in s, state) points. Appended on the acquisition thread, read on the
// GUI thread; one mutex guards everything and is held only to copy or append.
class RadarPresenceSensingChartData : public QObject, public ISeriesChartData
{
    Q_OBJECT
public:
    explicit RadarPresenceSensingChartData(QObject* parent = nullptr);

    bool isStateHistory() const override { return true; }
    quint32 seriesCount() const override { return 1; }
    // Iterates a snapshot, oldest point first.
    std::unique_ptr<Iterator> iterator(quint32 series) const override;
    void clear() override;

    // Discards all points.
    void setCapacity(int capacity);
    int capacity() const;
    void append(double x, double y);
    QPointF lastPoint() const;

private:
    mutable QMutex m_mutex;
    QVector<QPointF> m_points;
    int m_writePosition = 0;
    bool m_wrapped = false;
    QPointF m_lastPoint;
};
