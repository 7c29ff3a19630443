#include "common/RadarFrequencyDomainChartData.h"

namespace {

class SpectrumIterator : public ISeriesChartData::Iterator
{
public:
    // Keeps the spectrum alive for as long as the iterator reads it.
    SpectrumIterator(SharedVector spectrum, double min, double step)
        : m_spectrum(std::move(spectrum))
        , m_min(min)
        , m_step(step)
    {
    }

    bool hasNext() const override { return m_index < m_spectrum->len; }

    QPointF next() override
    {
        const QPointF point(m_min + double(m_index) * m_step, double(m_spectrum->data[m_index]));
        ++m_index;
        return point;
    }

private:
    SharedVector m_spectrum;
    double m_min;
    double m_step;
    quint32 m_index = 0;
};

}

std::unique_ptr<ISeriesChartData::Iterator> RadarFrequencyDomainChartData::iterator(quint32 series) const
{
    if (series >= quint32(m_spectra.size()))
        return nullptr;
    const SharedVector& spectrum = m_spectra[int(series)];
    if (!spectrum || !spectrum->data || spectrum->len == 0)
        return nullptr;
    return std::make_unique<SpectrumIterator>(spectrum, m_min, m_step);
}

void RadarFrequencyDomainChartData::clear()
{
    m_spectra.clear();
    m_expectedSeries = 0;
}

void RadarFrequencyDomainChartData::setSeriesCount(quint32 count)
{
    if (count == m_expectedSeries)
        return;
    m_expectedSeries = count;
    m_spectra.clear();
}

void RadarFrequencyDomainChartData::setAxis(double min, double step)
{
    m_min = min;
    m_step = step;
}
