#pragma once

#include "common/ISeriesChartData.h"
#include "zp7/ZP7SFrame.h"

// The I/Q samples of the newest pulsed-Doppler frame: per channel one
// series of I and one of Q (series 2c and 2c + 1), x the pulse (sample)
// index. The iterators keep the frame alive while the chart reads it.
class ZP7STimeDomainChartData : public ISeriesChartData
{
public:
    bool isStateHistory() const override { return false; }
    quint32 seriesCount() const override { return 2 * m_channels; }
    std::unique_ptr<Iterator> iterator(quint32 series) const override;
    void clear() override { m_frame.reset(); }

    // The channels the frames of the running configuration carry.
    void setChannelCount(quint32 channels) { m_channels = channels; }
    // An empty frame clears what is shown.
    void update(ZP7SFrame frame) { m_frame = std::move(frame); }

private:
    quint32 m_channels = 1;
    ZP7SFrame m_frame;
};
