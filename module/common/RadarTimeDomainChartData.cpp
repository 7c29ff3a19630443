#include "common/RadarTimeDomainChartData.h"

namespace {

// Samples of the listed chirps of one antenna, chirp after chirp, with x
// counting samples across all of them.
class TimeDomainIterator : public ISeriesChartData::Iterator
{
public:
    // Keeps the frame alive for as long as the iterator reads it.
    TimeDomainIterator(SharedFrame frame, const vrn_Matrix_R_s* matrix,
                       RadarTimeDomainChartData::ChirpList chirps)
        : m_frame(std::move(frame))
        , m_matrix(matrix)
        , m_chirps(std::move(chirps))
    {
    }

    bool hasNext() const override
    {
        return m_chirp < m_chirps->size() && m_sample < m_matrix->cols;
    }

    QPointF next() override
    {
        const quint32 row = quint32((*m_chirps)[m_chirp] - 1);
        const float value = m_matrix->data[size_t(row) * m_matrix->stride + m_sample];
        const QPointF point(double(m_x++), double(value));
        if (++m_sample == m_matrix->cols) {
            m_sample = 0;
            ++m_chirp;
        }
        return point;
    }

private:
    SharedFrame m_frame;
    const vrn_Matrix_R_s* m_matrix;
    RadarTimeDomainChartData::ChirpList m_chirps;
    int m_chirp = 0;
    quint32 m_sample = 0;
    quint64 m_x = 0;
};

// Points (k × step, 0) for k = 1 .. count: where one shown chirp ends and
// the next begins.
class ChirpMarkerIterator : public ISeriesChartData::Iterator
{
public:
    ChirpMarkerIterator(quint32 step, int count)
        : m_step(step)
        , m_count(count)
    {
    }

    bool hasNext() const override { return m_index < m_count; }

    QPointF next() override
    {
        ++m_index;
        return QPointF(double(quint64(m_step) * quint64(m_index)), 0.0);
    }

private:
    quint32 m_step;
    int m_count;
    int m_index = 0;
};

}

RadarTimeDomainChartData::RadarTimeDomainChartData(bool withChirpMarkers)
    : m_withChirpMarkers(withChirpMarkers)
{
}

quint32 RadarTimeDomainChartData::seriesCount() const
{
    return m_antennaSeries + (m_withChirpMarkers ? 1u : 0u);
}

std::unique_ptr<ISeriesChartData::Iterator> RadarTimeDomainChartData::iterator(quint32 series) const
{
    if (!m_frame || series > m_frame->num_rx || !m_frame->rx_data)
        return nullptr;
    // Any channel gives the chirp length: all channels of a frame share it.
    const vrn_Matrix_R_s* first = m_frame->num_rx > 0 ? m_frame->rx_data[0] : nullptr;

    if (series >= m_frame->num_rx && m_chirps && !m_chirps->isEmpty()) {
        if (!first)
            return nullptr;
        return std::make_unique<ChirpMarkerIterator>(first->cols, m_chirps->size() - 1);
    }

    ChirpList chirps = m_chirps;
    if (!chirps || chirps->isEmpty()) {
        // The standard mode lets the user pick chirps and shows nothing until
        // they did; the other modes have one chirp per frame to show.
        if (m_withChirpMarkers)
            return nullptr;
        static const ChirpList firstChirpOnly = std::make_shared<const QVector<qint32>>(QVector<qint32> { 1 });
        chirps = firstChirpOnly;
    }
    if (series >= m_frame->num_rx)
        return nullptr;
    const vrn_Matrix_R_s* matrix = m_frame->rx_data[series];
    if (!matrix || !matrix->data || matrix->cols == 0)
        return nullptr;
    // A chirp the frame does not have (a list kept across a reconfiguration)
    // would read outside the matrix.
    for (qint32 chirp : *chirps) {
        if (chirp < 1 || quint32(chirp) > matrix->rows)
            return nullptr;
    }
    return std::make_unique<TimeDomainIterator>(m_frame, matrix, chirps);
}

void RadarTimeDomainChartData::clear()
{
    m_frame.reset();
    m_chirps.reset();
    m_antennaSeries = 0;
}
