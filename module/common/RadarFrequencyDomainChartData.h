#pragma once

#include "common/ISeriesChartData.h"
#include "common/SharedVector.h"

#include <QVector>

// The newest range spectra, one series per antenna, drawn over the distance
// axis the range-spectrum calculator computed.
class RadarFrequencyDomainChartData : public ISeriesChartData
{
public:
    bool isStateHistory() const override { return false; }
    quint32 seriesCount() const override { return quint32(m_spectra.size()); }
    std::unique_ptr<Iterator> iterator(quint32 series) const override;
    void clear() override;

    // The number of spectra the current configuration produces; spectra of
    // an earlier configuration are dropped when it changes.
    void setSeriesCount(quint32 count);
    quint32 expectedSeriesCount() const { return m_expectedSeries; }
    // x of bin k is min + k × step.
    void setAxis(double min, double step);
    void update(QVector<SharedVector> spectra) { m_spectra = std::move(spectra); }

private:
    QVector<SharedVector> m_spectra;
    double m_min = 0.0;
    double m_step = 1.0;
    quint32 m_expectedSeries = 0;
};
