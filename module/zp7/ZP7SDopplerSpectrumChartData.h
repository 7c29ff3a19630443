#pragma once

#include "common/ISeriesChartData.h"
#include "zp7/ZP7SDopplerTransform.h"
#include "zp7/ZP7SFrame.h"

#include <QVector>

#include <memory>

// The Doppler spectrum of the newest frame, one series per channel, over
// frequency in Hz from -PRF/2 to +PRF/2 - step: approaching targets right
// of 0 Hz, receding ones left of it (see ZP7SDoppler.h). Spectra are shared
// with the iterators, so a chart reading one survives the next update.
class ZP7SDopplerSpectrumChartData : public ISeriesChartData
{
public:
    ZP7SDopplerSpectrumChartData();
    ~ZP7SDopplerSpectrumChartData() override;

    bool isStateHistory() const override { return false; }
    quint32 seriesCount() const override { return quint32(m_spectra.size()); }
    std::unique_ptr<Iterator> iterator(quint32 series) const override;
    void clear() override { m_spectra.clear(); }

    // A new transform for frames of `settings.samples` pulses sent every
    // `pulseRepetitionTimeS`; false (and no spectrum until the next
    // configuration) when the settings cannot be transformed.
    bool configure(const ZP7SDopplerTransform::Settings& settings, float pulseRepetitionTimeS);
    bool isConfigured() const { return m_transform != nullptr; }
    // Replaces the spectra with those of `frame`'s channels; an empty frame
    // clears them.
    void update(const ZP7SFrame& frame);

    // x of bin k is axisMin() + k * axisStep().
    double axisMin() const { return m_min; }
    double axisStep() const { return m_step; }
    double axisMax() const;

private:
    std::unique_ptr<ZP7SDopplerTransform> m_transform;
    QVector<std::shared_ptr<const QVector<float>>> m_spectra;
    double m_min = 0.0;
    double m_step = 1.0;
};
