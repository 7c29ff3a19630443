#pragma once

#include "sdk/vrn.h"

#include <QObject>

#include <memory>

class JSONConfigurationObject;
class RadarAntennas;
class ZP7SLimits;

// The pulse group of the ZP7 configuration ("pulse_params"): which of the
// two Tx/Rx channel pairs pulses, its Tx power level and the analog
// baseband gain (ZP7SGainTable). The channel is kept as two antenna sets so
// that files and pages read like the FMCW ones; only the pairs Tx1/Rx1 and
// Tx2/Rx2 can be sent to the board.
class ZP7SPulseConfigParams : public QObject
{
    Q_OBJECT
    Q_PROPERTY(RadarAntennas* rxAntennas READ rxAntennas CONSTANT)
    Q_PROPERTY(RadarAntennas* txAntennas READ txAntennas CONSTANT)
    Q_PROPERTY(quint8 txPowerLevel READ txPowerLevel WRITE setTxPowerLevel NOTIFY txPowerLevelChanged)
    Q_PROPERTY(quint16 abbGain READ abbGain WRITE setAbbGain NOTIFY abbGainChanged)
    // 0 = Tx1Rx1, 1 = Tx2Rx2, -1 when the sets name no pair.
    Q_PROPERTY(int channel READ channel NOTIFY channelChanged)
public:
    // A board with two channels: antenna bits above the second are dropped.
    static constexpr int kChannelCount = 2;

    explicit ZP7SPulseConfigParams(QObject* parent = nullptr);

    RadarAntennas* rxAntennas() const { return m_rxAntennas; }
    RadarAntennas* txAntennas() const { return m_txAntennas; }
    quint8 txPowerLevel() const { return m_txPowerLevel; }
    void setTxPowerLevel(quint8 level);
    quint16 abbGain() const { return m_abbGain; }
    void setAbbGain(quint16 gain);

    // Antenna 1 in both sets is channel 0, else antenna 2 in both is
    // channel 1, else -1.
    int channel() const;
    // The exclusive buttons: 0 enables antenna 1 (1: antenna 2) alone in
    // both sets. Other values are logged and ignored.
    Q_INVOKABLE void selectChannel(int channel);

    // False, with the critical log "Invalid channel settings" and `config`
    // left untouched, when the sets name no channel; else the channel,
    // Tx power level and gain are written.
    bool copyTo(vrn_Corvix_Pulse_Config_t& config) const;
    // Channel 0 / 1 selects its pair alone in both sets; any other channel
    // leaves the sets alone. Tx power and gain are always copied.
    void copyFrom(const vrn_Corvix_Pulse_Config_t& config);
    void assign(const ZP7SPulseConfigParams& other);
    bool operator==(const ZP7SPulseConfigParams& other) const;
    bool operator!=(const ZP7SPulseConfigParams& other) const { return !(*this == other); }

    // "pulse_params" {"rx_antennas", "tx_antennas" (arrays of antenna
    // numbers 1..2), "tx_power_level", "abb_gain_index"}; values are held
    // to `limits` (not owned, may be null) when a document is validated.
    std::unique_ptr<JSONConfigurationObject> configurationNode(const ZP7SLimits* limits);

signals:
    void txPowerLevelChanged();
    void abbGainChanged();
    void channelChanged();
    // After any writer's own signal, and after an antenna set changed.
    void guiParamChanged();

private:
    void onAntennasChanged();

    RadarAntennas* m_rxAntennas;
    RadarAntennas* m_txAntennas;
    quint8 m_txPowerLevel = 0;
    quint16 m_abbGain = 0;
    int m_channel = -1;
};
