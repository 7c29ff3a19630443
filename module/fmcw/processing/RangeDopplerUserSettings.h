#pragma once

#include "common/PpfftConfig.h"
#include "sdk/vrn.h"

#include <QObject>
#include <QString>
#include <QVector>

#include <memory>

class JSONConfigurationObject;

// How range-Doppler maps are computed and drawn: the range FFT over the
// samples of a chirp, the Doppler FFT over the chirps of a frame, the lower
// end of the colour scale and the virtual antenna shown. It follows the
// device configuration through updateDeviceParameters() so that both FFTs
// always cover what the frame holds.
class RangeDopplerUserSettings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(quint32 rangeFftSize READ rangeFftSize WRITE setRangeFftSize NOTIFY rangeFftSizeChanged)
    Q_PROPERTY(quint32 dopplerFftSize READ dopplerFftSize WRITE setDopplerFftSize NOTIFY dopplerFftSizeChanged)
    Q_PROPERTY(int currentRxIndex READ currentRxIndex WRITE setCurrentRxIndex NOTIFY isCurrentRxIndexChanged)
    Q_PROPERTY(int currentTxIndex READ currentTxIndex WRITE setCurrentTxIndex NOTIFY isCurrentTxIndexChanged)
    Q_PROPERTY(qint32 colorThreshold READ colorThreshold WRITE setColorThreshold NOTIFY colorThresholdChanged)
    Q_PROPERTY(PpfftConfig* rangeFft READ rangeFft CONSTANT)
    Q_PROPERTY(PpfftConfig* dopplerFft READ dopplerFft CONSTANT)
public:
    explicit RangeDopplerUserSettings(QObject* parent = nullptr);

    quint32 rangeFftSize() const { return m_rangeFft.size(); }
    void setRangeFftSize(quint32 size) { m_rangeFft.setSize(size); }
    quint32 dopplerFftSize() const { return m_dopplerFft.size(); }
    void setDopplerFftSize(quint32 size) { m_dopplerFft.setSize(size); }
    int currentRxIndex() const { return m_currentRxIndex; }
    void setCurrentRxIndex(int index);
    int currentTxIndex() const { return m_currentTxIndex; }
    void setCurrentTxIndex(int index);
    // dB, normally negative: values at or below it are drawn black.
    qint32 colorThreshold() const { return m_colorThreshold; }
    void setColorThreshold(qint32 threshold);
    PpfftConfig* rangeFft() { return &m_rangeFft; }
    const PpfftConfig* rangeFft() const { return &m_rangeFft; }
    PpfftConfig* dopplerFft() { return &m_dopplerFft; }
    const PpfftConfig* dopplerFft() const { return &m_dopplerFft; }

    const QVector<int>& activeRxIndexes() const { return m_activeRx; }
    const QVector<int>& activeTxIndexes() const { return m_activeTx; }
    quint32 samplesPerChirp() const { return m_samplesPerChirp; }
    quint32 chirpsPerFrame() const { return m_chirpsPerFrame; }
    float threshold() const { return m_threshold; }
    // A name from ProcessingNameTables::scaleTypeNames().
    const QString& outputScale() const { return m_outputScale; }

    // An FFT already long enough for a power-of-two chirp count or chirp
    // length is kept, so a user's zero-padding survives reconfiguration.
    void updateDeviceParameters(quint32 samplesPerChirp, quint32 chirpsPerFrame);
    void copyTo(vrn_RDM_Config_t& config) const;

    // Node "range_doppler" bound to this object, which must outlive it.
    std::unique_ptr<JSONConfigurationObject> configurationNode();

    Q_INVOKABLE void resetToDefault();
    // True when each FFT covers its dimension without padding it more than
    // fourfold.
    Q_INVOKABLE bool checkOptimalSettings(quint32 rangeFftSize, quint32 dopplerFftSize) const;

public slots:
    // The antennas the scene enables as 0-based positions (bit i of the
    // mask is position i, like currentRxIndex and currentTxIndex); a shown
    // antenna that is no longer among them is replaced by the first one
    // that is.
    void updateRxActiveIndexes(QVector<int> activeRx);
    void updateTxActiveIndexes(QVector<int> activeTx);
    // Steps to the next enabled virtual antenna: the next receiver, and after
    // the last receiver the first receiver of the next transmitter.
    void switchToAnotherAntenna();

signals:
    void rangeFftSizeChanged();
    void dopplerFftSizeChanged();
    void isCurrentRxIndexChanged();
    void isCurrentTxIndexChanged();
    void colorThresholdChanged();

private:
    PpfftConfig m_rangeFft;
    PpfftConfig m_dopplerFft;
    int m_currentRxIndex = 0;
    int m_currentTxIndex = 0;
    qint32 m_colorThreshold = -90;
    QVector<int> m_activeRx;
    QVector<int> m_activeTx;
    quint32 m_samplesPerChirp = 0;
    quint32 m_chirpsPerFrame = 0;
    float m_threshold = 1.0e-6f;
    QString m_outputScale;
};
