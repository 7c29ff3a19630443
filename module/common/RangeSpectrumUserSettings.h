#pragma once

#include "common/PpfftConfig.h"
#include "sdk/vrn.h"

#include <QObject>
#include <QString>

#include <memory>

class JSONConfigurationObject;

// How range spectra are computed and drawn: the FFT settings plus the chart
// options. It follows the device configuration through
// updateDeviceParameters() so that the FFT always covers a whole chirp.
class RangeSpectrumUserSettings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(quint32 fftSize READ fftSize WRITE setFftSize NOTIFY fftSizeChanged)
    Q_PROPERTY(bool isLinearFftMagnitude READ isLinearFftMagnitude WRITE setIsLinearFftMagnitude NOTIFY isLinearFftMagnitudeChanged)
    Q_PROPERTY(float axisYMax READ axisYMax WRITE setAxisYMax NOTIFY axisYMaxChanged)
    Q_PROPERTY(bool isPolygonLineType READ isPolygonLineType WRITE setIsPolygonLineType NOTIFY isPolygonLineTypeChanged)
    Q_PROPERTY(PpfftConfig* fftConfig READ fftConfig CONSTANT)
public:
    explicit RangeSpectrumUserSettings(QObject* parent = nullptr);

    quint32 fftSize() const { return m_fftConfig.size(); }
    void setFftSize(quint32 size);
    bool isLinearFftMagnitude() const { return m_isLinearFftMagnitude; }
    void setIsLinearFftMagnitude(bool linear);
    float axisYMax() const { return m_axisYMax; }
    void setAxisYMax(float axisYMax);
    bool isPolygonLineType() const { return m_isPolygonLineType; }
    void setIsPolygonLineType(bool polygon);
    PpfftConfig* fftConfig() { return &m_fftConfig; }
    const PpfftConfig* fftConfig() const { return &m_fftConfig; }

    quint32 samplesPerChirp() const { return m_samplesPerChirp; }
    quint32 chirpsPerFrame() const { return m_chirpsPerFrame; }
    float threshold() const { return m_threshold; }
    // A name from ProcessingNameTables::scaleTypeNames().
    const QString& outputScale() const { return m_outputScale; }

    // Adapts FFT length, window length and output scale to a new device
    // configuration; an FFT already long enough for a power-of-two chirp is
    // kept so that a user's zero-padding survives reconfiguration.
    void updateDeviceParameters(quint32 samplesPerChirp, quint32 chirpsPerFrame);
    void copyTo(vrn_RS_Config_t& config) const;

    // Node "range_spectrum" bound to this object, which must outlive it.
    std::unique_ptr<JSONConfigurationObject> configurationNode();

    Q_INVOKABLE void resetToDefault();
    // True when the FFT covers the chirp without padding it more than
    // fourfold.
    Q_INVOKABLE bool checkOptimalSettings(quint32 fftSize) const;

signals:
    void fftSizeChanged();
    void isLinearFftMagnitudeChanged();
    void axisYMaxChanged();
    void isPolygonLineTypeChanged();

private:
    PpfftConfig m_fftConfig;
    bool m_isLinearFftMagnitude = false;
    float m_axisYMax = 0.0f;
    bool m_isPolygonLineType = false;
    quint32 m_samplesPerChirp = 0;
    quint32 m_chirpsPerFrame = 0;
    float m_threshold = 1.0e-6f;
    QString m_outputScale;
};
