#pragma once

#include "common/ISeriesChartData.h"
#include "common/SharedFrame.h"

#include <QVector>

#include <memory>

// The raw chirps of the newest frame, one series per antenna, plus (in the
// FMCW standard mode) a series of markers at the boundaries between the
// chirps shown one after another.
class RadarTimeDomainChartData : public ISeriesChartData
{
public:
    // Chirp numbers as the user counts them, from 1.
    using ChirpList = std::shared_ptr<const QVector<qint32>>;

    explicit RadarTimeDomainChartData(bool withChirpMarkers);

    bool isStateHistory() const override { return false; }
    quint32 seriesCount() const override;
    std::unique_ptr<Iterator> iterator(quint32 series) const override;
    void clear() override;

    void setSeriesCount(quint32 antennaSeries) { m_antennaSeries = antennaSeries; }
    void setChirpList(ChirpList chirps) { m_chirps = std::move(chirps); }
    // An empty frame clears what is shown.
    void update(SharedFrame frame) { m_frame = std::move(frame); }

private:
    quint32 m_antennaSeries = 0;
    ChirpList m_chirps;
    SharedFrame m_frame;
    const bool m_withChirpMarkers;
};
