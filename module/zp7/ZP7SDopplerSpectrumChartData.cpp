#include "zp7/ZP7SDopplerSpectrumChartData.h"

namespace {

class SpectrumIterator : public ISeriesChartData::Iterator
{
public:
    SpectrumIterator(std::shared_ptr<const QVector<float>> values, double min, double step)
        : m_values(std::move(values))
        , m_min(min)
        , m_step(step)
    {
    }

    bool hasNext() const override { return m_index < m_values->size(); }

    QPointF next() override
    {
        const QPointF point(m_min + double(m_index) * m_step, double((*m_values)[m_index]));
        ++m_index;
        return point;
    }

private:
    std::shared_ptr<const QVector<float>> m_values;
    double m_min;
    double m_step;
    int m_index = 0;
};

}

ZP7SDopplerSpectrumChartData::ZP7SDopplerSpectrumChartData() = default;
ZP7SDopplerSpectrumChartData::~ZP7SDopplerSpectrumChartData() = default;

std::unique_ptr<ISeriesChartData::Iterator> ZP7SDopplerSpectrumChartData::iterator(quint32 series) const
{
    if (series >= quint32(m_spectra.size()) || !m_spectra[int(series)])
        return nullptr;
    return std::make_unique<SpectrumIterator>(m_spectra[int(series)], m_min, m_step);
}

bool ZP7SDopplerSpectrumChartData::configure(const ZP7SDopplerTransform::Settings& settings,
                                             float pulseRepetitionTimeS)
{
    m_spectra.clear();
    m_transform.reset();
    if (!(pulseRepetitionTimeS > 0.0f))
        return false;
    m_transform = ZP7SDopplerTransform::create(settings);
    if (!m_transform)
        return false;
    const double prf = 1.0 / double(pulseRepetitionTimeS);
    m_step = prf / double(settings.fftSize);
    m_min = -prf / 2.0;
    return true;
}

double ZP7SDopplerSpectrumChartData::axisMax() const
{
    const quint32 bins = m_transform ? m_transform->settings().fftSize : 0;
    return bins ? m_min + double(bins - 1) * m_step : m_min;
}

void ZP7SDopplerSpectrumChartData::update(const ZP7SFrame& frame)
{
    m_spectra.clear();
    if (!frame || !m_transform || !frame->channel_data)
        return;
    for (quint32 c = 0; c < frame->num_channels; ++c) {
        const vrn_Matrix_C_s* channel = frame->channel_data[c];
        QVector<float> spectrum = channel ? m_transform->run(*channel) : QVector<float>();
        // A frame of another shape (from before a new configuration) shows
        // nothing rather than a spectrum on the wrong axis.
        if (spectrum.isEmpty()) {
            m_spectra.clear();
            return;
        }
        m_spectra.append(std::make_shared<const QVector<float>>(std::move(spectrum)));
    }
}
