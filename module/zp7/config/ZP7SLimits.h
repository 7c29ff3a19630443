#pragma once

#include "sdk/vrn.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <limits>

// The board's bounds of the ZP7 parameters, for the pages' controls, the
// file validators and the check before a configuration is applied.
// Unbounded until the device is asked; never written to files.
class ZP7SLimits : public QObject
{
    Q_OBJECT
    Q_PROPERTY(quint8 minTxPowerLevel READ minTxPowerLevel NOTIFY minTxPowerLevelChanged)
    Q_PROPERTY(quint8 maxTxPowerLevel READ maxTxPowerLevel NOTIFY maxTxPowerLevelChanged)
    Q_PROPERTY(quint16 minAbbGainIndex READ minAbbGainIndex NOTIFY minAbbGainIndexChanged)
    Q_PROPERTY(quint16 maxAbbGainIndex READ maxAbbGainIndex NOTIFY maxAbbGainIndexChanged)
    Q_PROPERTY(quint16 minNumOfSamples READ minNumOfSamples NOTIFY minNumOfSamplesChanged)
    Q_PROPERTY(quint16 maxNumOfSamples READ maxNumOfSamples NOTIFY maxNumOfSamplesChanged)
    Q_PROPERTY(float minPulseRepetitionTimeS READ minPulseRepetitionTimeS NOTIFY minPulseRepetitionTimeSChanged)
    Q_PROPERTY(float maxPulseRepetitionTimeS READ maxPulseRepetitionTimeS NOTIFY maxPulseRepetitionTimeSChanged)
    Q_PROPERTY(float minFrameRepetitionTimeS READ minFrameRepetitionTimeS NOTIFY minFrameRepetitionTimeSChanged)
    Q_PROPERTY(float maxFrameRepetitionTimeS READ maxFrameRepetitionTimeS NOTIFY maxFrameRepetitionTimeSChanged)
    // The gain drop-down: the steps of ZP7SGainTable within the gain bounds.
    Q_PROPERTY(QStringList abbGainLabels READ abbGainLabels NOTIFY abbGainChoicesChanged)
public:
    explicit ZP7SLimits(QObject* parent = nullptr);

    quint8 minTxPowerLevel() const { return m_limits.tx_power_level_min; }
    quint8 maxTxPowerLevel() const { return m_limits.tx_power_level_max; }
    quint16 minAbbGainIndex() const { return m_limits.abb_gain_index_min; }
    quint16 maxAbbGainIndex() const { return m_limits.abb_gain_index_max; }
    quint16 minNumOfSamples() const { return m_limits.num_samples_min; }
    quint16 maxNumOfSamples() const { return m_limits.num_samples_max; }
    float minPulseRepetitionTimeS() const { return m_limits.pulse_repetition_time_s_min; }
    float maxPulseRepetitionTimeS() const { return m_limits.pulse_repetition_time_s_max; }
    float minFrameRepetitionTimeS() const { return m_limits.frame_repetition_time_s_min; }
    float maxFrameRepetitionTimeS() const { return m_limits.frame_repetition_time_s_max; }

    QStringList abbGainLabels() const;
    // The drop-down's row of gain `value`, -1 when it is not offered.
    Q_INVOKABLE int abbGainChoiceOf(int value) const;
    // The gain of drop-down row `choice`, 0 for a row that does not exist.
    Q_INVOKABLE int abbGainValueAt(int choice) const;

    // Each bound that changed emits its own signal.
    void setFromSdk(const vrn_Corvix_Limits_t& limits);
    vrn_Corvix_Limits_t toSdk() const { return m_limits; }
    void assign(const ZP7SLimits& other) { setFromSdk(other.m_limits); }
    // Back to unbounded, as before the device was asked.
    void reset();
    static vrn_Corvix_Limits_t unbounded();

    // The range messages of the file validators and of the check before
    // applying; empty when the value lies within the bounds. Floats pass
    // within a relative 1e-4, the precision of the SDK's single floats.
    QString checkTxPowerLevel(quint32 value) const;
    // A gain must also be one of the table's steps.
    QString checkAbbGain(quint32 value) const;
    QString checkNumOfSamples(quint32 value) const;
    QString checkPulseRepetitionTime(float seconds) const;
    // The frame rate in Hz against 1 / max .. 1 / min frame repetition time.
    QString checkFrameRepetitionRate(float hertz) const;

signals:
    void minTxPowerLevelChanged();
    void maxTxPowerLevelChanged();
    void minAbbGainIndexChanged();
    void maxAbbGainIndexChanged();
    void minNumOfSamplesChanged();
    void maxNumOfSamplesChanged();
    void minPulseRepetitionTimeSChanged();
    void maxPulseRepetitionTimeSChanged();
    void minFrameRepetitionTimeSChanged();
    void maxFrameRepetitionTimeSChanged();
    void abbGainChoicesChanged();

private:
    vrn_Corvix_Limits_t m_limits;
};
