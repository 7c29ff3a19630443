#pragma once

#include "sdk/vrn.h"

#include <QObject>
#include <QString>

#include <limits>

// The board's bounds of the CW parameters, for the pages' controls and the
// file validators. Unbounded until the device is asked; the sampling-rate
// pair follows the ADC setting (RadarCWConfig recomputes it). Limits are
// never written to files.
class RadarCWParamsLimits : public QObject
{
    Q_OBJECT
    Q_PROPERTY(float rfCenterFrequencyMin READ rfCenterFrequencyMin NOTIFY rfCenterFrequencyChanged)
    Q_PROPERTY(float rfCenterFrequencyMax READ rfCenterFrequencyMax NOTIFY rfCenterFrequencyChanged)
    Q_PROPERTY(quint32 dacMin READ dacMin NOTIFY dacChanged)
    Q_PROPERTY(quint32 dacMax READ dacMax NOTIFY dacChanged)
    Q_PROPERTY(quint32 samplingRateMin READ samplingRateMin NOTIFY samplingRateChanged)
    Q_PROPERTY(quint32 samplingRateMax READ samplingRateMax NOTIFY samplingRateChanged)
    Q_PROPERTY(quint32 rxNumSamplesMin READ rxNumSamplesMin NOTIFY rxNumSamplesChanged)
    Q_PROPERTY(quint32 rxNumSamplesMax READ rxNumSamplesMax NOTIFY rxNumSamplesChanged)
    Q_PROPERTY(float testSignalFrequencyMin READ testSignalFrequencyMin NOTIFY testSignalFrequencyChanged)
    Q_PROPERTY(float testSignalFrequencyMax READ testSignalFrequencyMax NOTIFY testSignalFrequencyChanged)
public:
    explicit RadarCWParamsLimits(QObject* parent = nullptr);

    float rfCenterFrequencyMin() const { return m_rfCenterFrequencyMin; }
    float rfCenterFrequencyMax() const { return m_rfCenterFrequencyMax; }
    quint32 dacMin() const { return m_dacMin; }
    quint32 dacMax() const { return m_dacMax; }
    quint32 samplingRateMin() const { return m_samplingRateMin; }
    quint32 samplingRateMax() const { return m_samplingRateMax; }
    quint32 rxNumSamplesMin() const { return m_rxNumSamplesMin; }
    quint32 rxNumSamplesMax() const { return m_rxNumSamplesMax; }
    float testSignalFrequencyMin() const { return m_testSignalFrequencyMin; }
    float testSignalFrequencyMax() const { return m_testSignalFrequencyMax; }

    // Each pair emits its one signal once, and only when it changed.
    void setRfCenterFrequency(float min, float max);
    void setDac(quint32 min, quint32 max);
    void setSamplingRate(quint32 min, quint32 max);
    void setRxNumSamples(quint32 min, quint32 max);
    void setTestSignalFrequency(float min, float max);

    // Everything but the sampling rate, which the SDK bounds per ADC setting.
    void setFromSdk(const vrn_CW_Limits_t& limits);
    void assign(const RadarCWParamsLimits& other);

    // Empty when `value` lies within the bounds of the RadarCWParams QML
    // property `property`, otherwise the range message. Properties without
    // bounds pass.
    QString checkValue(const QString& property, double value) const;

signals:
    void rfCenterFrequencyChanged();
    void dacChanged();
    void testSignalFrequencyChanged();
    void rxNumSamplesChanged();
    void samplingRateChanged();

private:
    float m_rfCenterFrequencyMin = std::numeric_limits<float>::lowest();
    float m_rfCenterFrequencyMax = std::numeric_limits<float>::max();
    quint32 m_dacMin = 0;
    quint32 m_dacMax = std::numeric_limits<quint32>::max();
    quint32 m_samplingRateMin = 0;
    quint32 m_samplingRateMax = std::numeric_limits<quint32>::max();
    quint32 m_rxNumSamplesMin = 0;
    quint32 m_rxNumSamplesMax = std::numeric_limits<quint32>::max();
    float m_testSignalFrequencyMin = std::numeric_limits<float>::lowest();
    float m_testSignalFrequencyMax = std::numeric_limits<float>::max();
};
