#pragma once

#include "fmcw/common/RadarAntennas.h"
#include "sdk/vrn.h"

#include <QObject>

#include <memory>

class DeviceInfo;
class JSONConfigurationObject;

// The user's description of the scene ("fmcw_scene"): what the SDK turns
// into chirp and frame parameters.
class Metrics : public QObject
{
    Q_OBJECT
    Q_PROPERTY(quint32 sampleRateHz READ sampleRateHz WRITE setSampleRateHz NOTIFY sampleRateHzChanged)
    Q_PROPERTY(quint32 txPowerLevel READ txPowerLevel WRITE setTxPowerLevel NOTIFY txPowerLevelChanged)
    Q_PROPERTY(quint32 ifGainDB READ ifGainDB WRITE setIfGainDB NOTIFY ifGainDbChanged)
    Q_PROPERTY(float rangeResolutionM READ rangeResolutionM WRITE setRangeResolutionM NOTIFY rangeResolutionMChanged)
    Q_PROPERTY(float maxRangeM READ maxRangeM WRITE setMaxRangeM NOTIFY maxRangeMChanged)
    Q_PROPERTY(float maxSpeedMs READ maxSpeedMs WRITE setMaxSpeedMs NOTIFY maxSpeedMsChanged)
    Q_PROPERTY(float speedResolutionMs READ speedResolutionMs WRITE setSpeedResolutionMs NOTIFY speedResolutionMsChanged)
    Q_PROPERTY(float frameRepetitionTimeS READ frameRepetitionTimeS WRITE setFrameRepetitionTimeS NOTIFY frameRepetitionTimeSChanged)
    Q_PROPERTY(float centerFrequencyHz READ centerFrequencyHz WRITE setCenterFrequencyHz NOTIFY centerFrequencyHzChanged)
    Q_PROPERTY(RadarAntennas* rx READ rx CONSTANT)
    Q_PROPERTY(RadarAntennas* tx READ tx CONSTANT)
public:
    explicit Metrics(QObject* parent = nullptr);

    quint32 sampleRateHz() const { return m_sampleRateHz; }
    void setSampleRateHz(quint32 value);
    quint32 txPowerLevel() const { return m_txPowerLevel; }
    void setTxPowerLevel(quint32 value);
    quint32 ifGainDB() const { return m_ifGainDB; }
    void setIfGainDB(quint32 value);
    float rangeResolutionM() const { return m_rangeResolutionM; }
    void setRangeResolutionM(float value);
    float maxRangeM() const { return m_maxRangeM; }
    // Stores the value cut down to one decimal place.
    void setMaxRangeM(float value);
    float maxSpeedMs() const { return m_maxSpeedMs; }
    void setMaxSpeedMs(float value);
    float speedResolutionMs() const { return m_speedResolutionMs; }
    void setSpeedResolutionMs(float value);
    float frameRepetitionTimeS() const { return m_frameRepetitionTimeS; }
    void setFrameRepetitionTimeS(float value);
    float centerFrequencyHz() const { return m_centerFrequencyHz; }
    void setCenterFrequencyHz(float value);

    RadarAntennas* rx() const { return m_rx; }
    RadarAntennas* tx() const { return m_tx; }

    vrn_Metrics_t toSdkMetrics() const;
    // Copies every field through the setters, so the pages hear the changes.
    void assign(const Metrics& other);

    // Floats match within 0.001, integers and masks exactly.
    bool operator==(const Metrics& other) const;
    bool operator!=(const Metrics& other) const;

    // The "fmcw_scene" node. The antenna numbers are checked against the
    // counts `deviceInfo` holds when the document is validated.
    std::unique_ptr<JSONConfigurationObject> configurationNode(const DeviceInfo* deviceInfo);

    // The rule of the scene value whose QML property is `property`, the same
    // the "fmcw_scene" validators apply: empty when `value` meets it,
    // otherwise the validator's message. The antennas have no rule here.
    static QString checkValue(const QString& property, double value);

    static quint32 sanitizeRxMask(quint32 requested, quint32 current);
    static quint32 sanitizeTxMask(quint32 requested, quint32 current);

signals:
    void sampleRateHzChanged();
    void txPowerLevelChanged();
    void ifGainDbChanged();
    void rangeResolutionMChanged();
    void maxRangeMChanged();
    void maxSpeedMsChanged();
    void speedResolutionMsChanged();
    void frameRepetitionTimeSChanged();
    void centerFrequencyHzChanged();
    void guiParamChanged();

private:
    quint32 m_sampleRateHz = 0;
    quint32 m_txPowerLevel = 0;
    quint32 m_ifGainDB = 0;
    float m_rangeResolutionM = 0.0f;
    float m_maxRangeM = 0.0f;
    float m_maxSpeedMs = 0.0f;
    float m_speedResolutionMs = 0.0f;
    float m_frameRepetitionTimeS = 0.0f;
    float m_centerFrequencyHz = 0.0f;
    RadarAntennas* m_rx;
    RadarAntennas* m_tx;
};
