#include "zp7/ZP7STimeDomainChartData.h"

namespace {

class IQIterator : public ISeriesChartData::Iterator
{
public:
    IQIterator(ZP7SFrame frame, const vrn_Matrix_C_s* channel, bool imaginary)
        : m_frame(std::move(frame))
        , m_channel(channel)
        , m_imaginary(imaginary)
    {
    }

    bool hasNext() const override { return m_sample < m_channel->cols; }

    QPointF next() override
    {
        const vrn_Complex_t& value = m_channel->data[m_sample];
        const QPointF point(double(m_sample), double(m_imaginary ? value.im : value.re));
        ++m_sample;
        return point;
    }

private:
    ZP7SFrame m_frame;
    const vrn_Matrix_C_s* m_channel;
    bool m_imaginary;
    quint32 m_sample = 0;
};

}

std::unique_ptr<ISeriesChartData::Iterator> ZP7STimeDomainChartData::iterator(quint32 series) const
{
    const quint32 channel = series / 2;
    if (!m_frame || series >= seriesCount() || channel >= m_frame->num_channels || !m_frame->channel_data)
        return nullptr;
    const vrn_Matrix_C_s* matrix = m_frame->channel_data[channel];
    if (!matrix || !matrix->data || matrix->rows == 0)
        return nullptr;
    return std::make_unique<IQIterator>(m_frame, matrix, series % 2 == 1);
}
