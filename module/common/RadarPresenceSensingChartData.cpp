#include "common/RadarPresenceSensingChartData.h"

#include <QMutexLocker>

namespace {

class SnapshotIterator : public ISeriesChartData::Iterator
{
public:
    explicit SnapshotIterator(QVector<QPointF> points)
        : m_points(std::move(points))
    {
    }

    bool hasNext() const override { return m_index < m_points.size(); }
    QPointF next() override { return m_points[m_index++]; }

private:
    QVector<QPointF> m_points;
    int m_index = 0;
};

}

RadarPresenceSensingChartData::RadarPresenceSensingChartData(QObject* parent)
    : QObject(parent)
{
}

std::unique_ptr<ISeriesChartData::Iterator> RadarPresenceSensingChartData::iterator(quint32 series) const
{
    if (series != 0)
        return nullptr;
    QVector<QPointF> snapshot;
    {
        QMutexLocker lock(&m_mutex);
        if (m_writePosition == 0 && !m_wrapped)
            return nullptr;
        if (m_wrapped) {
            snapshot.reserve(m_points.size());
            snapshot += m_points.mid(m_writePosition);
            snapshot += m_points.mid(0, m_writePosition);
        } else {
            snapshot = m_points.mid(0, m_writePosition);
        }
    }
    return std::make_unique<SnapshotIterator>(std::move(snapshot));
}

void RadarPresenceSensingChartData::clear()
{
    QMutexLocker lock(&m_mutex);
    m_points = QVector<QPointF>();
    m_writePosition = 0;
    m_wrapped = false;
    m_lastPoint = QPointF();
}

void RadarPresenceSensingChartData::setCapacity(int capacity)
{
    QMutexLocker lock(&m_mutex);
    m_points = QVector<QPointF>(qMax(capacity, 0));
    m_writePosition = 0;
    m_wrapped = false;
    m_lastPoint = QPointF();
}

int RadarPresenceSensingChartData::capacity() const
{
    QMutexLocker lock(&m_mutex);
    return m_points.size();
}

void RadarPresenceSensingChartData::append(double x, double y)
{
    QMutexLocker lock(&m_mutex);
    if (m_points.isEmpty())
        return;
    auto store = [this](const QPointF& point) {
        m_points[m_writePosition] = point;
        if (++m_writePosition == m_points.size()) {
            m_writePosition = 0;
            m_wrapped = true;
        }
    };
    // The history is drawn from time 0 even though the first result arrives
    // a few frames later.
    if (m_writePosition == 0 && !m_wrapped)
        store(QPointF(0.0, y));
    store(QPointF(x, y));
    m_lastPoint = QPointF(x, y);
}

QPointF RadarPresenceSensingChartData::lastPoint() const
{
    QMutexLocker lock(&m_mutex);
    return m_lastPoint;
}
