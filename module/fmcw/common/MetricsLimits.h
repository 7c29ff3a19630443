#pragma once

#include "sdk/vrn.h"

#include <QObject>

#include <limits>
#include <memory>

class JSONConfigurationObject;

// Bounds of the scene values as the opened device reports them; the pages
// use them for their controls. Unbounded until the device is asked.
class MetricsLimits : public QObject
{
    Q_OBJECT
    Q_PROPERTY(quint32 sampleRateHzMin READ sampleRateHzMin NOTIFY sampleRateHzLimitChanged)
    Q_PROPERTY(quint32 sampleRateHzMax READ sampleRateHzMax NOTIFY sampleRateHzLimitChanged)
    Q_PROPERTY(quint32 rxMaskMin READ rxMaskMin NOTIFY rxMaskLimitChanged)
    Q_PROPERTY(quint32 rxMaskMax READ rxMaskMax NOTIFY rxMaskLimitChanged)
    Q_PROPERTY(quint32 txMaskMin READ txMaskMin NOTIFY txMaskLimitChanged)
    Q_PROPERTY(quint32 txMaskMax READ txMaskMax NOTIFY txMaskLimitChanged)
    Q_PROPERTY(quint32 txPowerLevelMin READ txPowerLevelMin NOTIFY txPowerLevelLimitChanged)
    Q_PROPERTY(quint32 txPowerLevelMax READ txPowerLevelMax NOTIFY txPowerLevelLimitChanged)
    Q_PROPERTY(quint32 ifGainDbMin READ ifGainDbMin NOTIFY ifGainDbLimitChanged)
    Q_PROPERTY(quint32 ifGainDbMax READ ifGainDbMax NOTIFY ifGainDbLimitChanged)
    Q_PROPERTY(float maxRangeMMin READ maxRangeMMin NOTIFY maxRangeMLimitChanged)
    Q_PROPERTY(float maxRangeMMax READ maxRangeMMax NOTIFY maxRangeMLimitChanged)
    Q_PROPERTY(float rangeResolutionMMin READ rangeResolutionMMin NOTIFY rangeResolutionMLimitChanged)
    Q_PROPERTY(float rangeResolutionMMax READ rangeResolutionMMax NOTIFY rangeResolutionMLimitChanged)
    Q_PROPERTY(float speedResolutionMsMin READ speedResolutionMsMin NOTIFY speedResolutionMsLimitChanged)
    Q_PROPERTY(float speedResolutionMsMax READ speedResolutionMsMax NOTIFY speedResolutionMsLimitChanged)
    Q_PROPERTY(float maxSpeedMsMin READ maxSpeedMsMin NOTIFY maxSpeedMsLimitChanged)
    Q_PROPERTY(float maxSpeedMsMax READ maxSpeedMsMax NOTIFY maxSpeedMsLimitChanged)
    Q_PROPERTY(float frameRepetitionTimeSMin READ frameRepetitionTimeSMin NOTIFY frameRepetitionLimitChanged)
    Q_PROPERTY(float frameRepetitionTimeSMax READ frameRepetitionTimeSMax NOTIFY frameRepetitionLimitChanged)
public:
    explicit MetricsLimits(QObject* parent = nullptr);

    struct UIntPair {
        quint32 min = 0;
        quint32 max = std::numeric_limits<quint32>::max();
    };
    struct FloatPair {
        float min = std::numeric_limits<float>::lowest();
        float max = std::numeric_limits<float>::max();
    };

    quint32 sampleRateHzMin() const { return m_sampleRate.min; }
    quint32 sampleRateHzMax() const { return m_sampleRate.max; }
    quint32 rxMaskMin() const { return m_rxMask.min; }
    quint32 rxMaskMax() const { return m_rxMask.max; }
    quint32 txMaskMin() const { return m_txMask.min; }
    quint32 txMaskMax() const { return m_txMask.max; }
    quint32 txPowerLevelMin() const { return m_txPowerLevel.min; }
    quint32 txPowerLevelMax() const { return m_txPowerLevel.max; }
    quint32 ifGainDbMin() const { return m_ifGain.min; }
    quint32 ifGainDbMax() const { return m_ifGain.max; }
    float maxRangeMMin() const { return m_maxRange.min; }
    float maxRangeMMax() const { return m_maxRange.max; }
    float rangeResolutionMMin() const { return m_rangeResolution.min; }
    float rangeResolutionMMax() const { return m_rangeResolution.max; }
    float speedResolutionMsMin() const { return m_speedResolution.min; }
    float speedResolutionMsMax() const { return m_speedResolution.max; }
    float maxSpeedMsMin() const { return m_maxSpeed.min; }
    float maxSpeedMsMax() const { return m_maxSpeed.max; }
    float frameRepetitionTimeSMin() const { return m_frameRepetition.min; }
    float frameRepetitionTimeSMax() const { return m_frameRepetition.max; }

    // The SDK's own minimum of the maximum range; the published one is
    // floored to one decimal place and may lie below what the SDK accepts.
    float exactMaxRangeMMin() const { return m_exactMaxRangeMin; }

    void setFromSdk(const vrn_Metrics_Limits_t& limits);

    // Empty when `value` lies within the device's bounds of the scene value
    // whose `Metrics` QML property is `property`, otherwise the range
    // message. Values without bounds (the centre frequency) pass.
    QString checkValue(const QString& property, double value) const;

    // The "metrics_limits" node; every value is accepted.
    std::unique_ptr<JSONConfigurationObject> configurationNode();

signals:
    void sampleRateHzLimitChanged();
    void rxMaskLimitChanged();
    void txMaskLimitChanged();
    void txPowerLevelLimitChanged();
    void ifGainDbLimitChanged();
    void maxRangeMLimitChanged();
    void rangeResolutionMLimitChanged();
    void speedResolutionMsLimitChanged();
    void maxSpeedMsLimitChanged();
    void frameRepetitionLimitChanged();

private:
    UIntPair m_sampleRate;
    UIntPair m_rxMask;
    UIntPair m_txMask;
    UIntPair m_txPowerLevel;
    UIntPair m_ifGain;
    FloatPair m_maxRange;
    FloatPair m_rangeResolution;
    FloatPair m_speedResolution;
    FloatPair m_maxSpeed;
    FloatPair m_frameRepetition;
    float m_exactMaxRangeMin = std::numeric_limits<float>::lowest();
};
