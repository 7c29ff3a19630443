#include "fmcw/common/Metrics.h"

#include "core/JSONConfigurationBinding.h"
#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/SettingsValidation.h"

namespace {

// Shared by the five float scene values that describe a scene size or time.
QString checkSceneFloat(float value)
{
    return SettingsValidation::checkRange(value, 0.0001f, 100.0f);
}

QString checkSampleRate(quint64 value)
{
    return SettingsValidation::checkRange(value, 1, 2000000000);
}

// The transmit power steps and the IF gain in dB share one range.
QString checkLevel(quint64 value)
{
    return SettingsValidation::checkRange(value, 1, 100);
}

QString checkCenterFrequency(float value)
{
    return value > 0.0f ? QString() : QStringLiteral("Value must be greater than 0");
}

QString checkAntennas(const QVector<qint32>& antennas, int available, const QString& kind)
{
    if (antennas.isEmpty())
        return QStringLiteral("Array is empty");
    for (qint32 antenna : antennas) {
        if (antenna < 1 || antenna > available)
            return QStringLiteral("Invalid %1 antenna index: %2").arg(kind).arg(antenna);
    }
    return QString();
}

}

Metrics::Metrics(QObject* parent)
    : QObject(parent)
    , m_rx(new RadarAntennas(&Metrics::sanitizeRxMask, this))
    , m_tx(new RadarAntennas(&Metrics::sanitizeTxMask, this))
{
    connect(m_rx, &RadarAntennas::antennasChanged, this, &Metrics::guiParamChanged);
    connect(m_tx, &RadarAntennas::antennasChanged, this, &Metrics::guiParamChanged);
}

// The sample rate and the centre frequency are derived by the pages from
// other controls; announcing them as user edits would mark the settings as
// changed when nothing was edited.
void Metrics::setSampleRateHz(quint32 value)
{
    if (m_sampleRateHz == value)
        return;
    m_sampleRateHz = value;
    emit sampleRateHzChanged();
}

void Metrics::setTxPowerLevel(quint32 value)
{
    if (m_txPowerLevel == value)
        return;
    m_txPowerLevel = value;
    emit txPowerLevelChanged();
    emit guiParamChanged();
}

void Metrics::setIfGainDB(quint32 value)
{
    if (m_ifGainDB == value)
        return;
    m_ifGainDB = value;
    emit ifGainDbChanged();
    emit guiParamChanged();
}

void Metrics::setRangeResolutionM(float value)
{
    if (m_rangeResolutionM == value)
        return;
    m_rangeResolutionM = value;
    emit rangeResolutionMChanged();
    emit guiParamChanged();
}

void Metrics::setMaxRangeM(float value)
{
    const float floored = SettingsValidation::floorToOneDecimal(value);
    if (m_maxRangeM == floored)
        return;
    m_maxRangeM = floored;
    emit maxRangeMChanged();
    emit guiParamChanged();
}

void Metrics::setMaxSpeedMs(float value)
{
    if (m_maxSpeedMs == value)
        return;
    m_maxSpeedMs = value;
    emit maxSpeedMsChanged();
    emit guiParamChanged();
}

void Metrics::setSpeedResolutionMs(float value)
{
    if (m_speedResolutionMs == value)
        return;
    m_speedResolutionMs = value;
    emit speedResolutionMsChanged();
    emit guiParamChanged();
}

void Metrics::setFrameRepetitionTimeS(float value)
{
    if (m_frameRepetitionTimeS == value)
        return;
    m_frameRepetitionTimeS = value;
    emit frameRepetitionTimeSChanged();
    emit guiParamChanged();
}

void Metrics::setCenterFrequencyHz(float value)
{
    if (m_centerFrequencyHz == value)
        return;
    m_centerFrequencyHz = value;
    emit centerFrequencyHzChanged();
}

vrn_Metrics_t Metrics::toSdkMetrics() const
{
    vrn_Metrics_t metrics {};
    metrics.sample_rate_Hz = m_sampleRateHz;
    metrics.rx_mask = m_rx->mask();
    metrics.tx_mask = m_tx->mask();
    metrics.tx_power_level = m_txPowerLevel;
    metrics.if_gain_dB = m_ifGainDB;
    metrics.range_resolution_m = m_rangeResolutionM;
    metrics.max_range_m = m_maxRangeM;
    metrics.max_speed_m_s = m_maxSpeedMs;
    metrics.speed_resolution_m_s = m_speedResolutionMs;
    metrics.frame_repetition_time_s = m_frameRepetitionTimeS;
    metrics.center_frequency_Hz = m_centerFrequencyHz;
    return metrics;
}

void Metrics::assign(const Metrics& other)
{
    setSampleRateHz(other.m_sampleRateHz);
    setTxPowerLevel(other.m_txPowerLevel);
    setIfGainDB(other.m_ifGainDB);
    setRangeResolutionM(other.m_rangeResolutionM);
    setMaxRangeM(other.m_maxRangeM);
    setMaxSpeedMs(other.m_maxSpeedMs);
    setSpeedResolutionMs(other.m_speedResolutionMs);
    setFrameRepetitionTimeS(other.m_frameRepetitionTimeS);
    setCenterFrequencyHz(other.m_centerFrequencyHz);
    m_rx->setMask(other.m_rx->mask());
    // The Tx sanitiser keeps one antenna by XOR with the stored mask; a copy
    // must take the other side's mask as it is.
    if (m_tx->mask() != other.m_tx->mask()) {
        m_tx->setMask(0);
        m_tx->setMask(other.m_tx->mask());
    }
}

bool Metrics::operator==(const Metrics& other) const
{
    using SettingsValidation::fuzzyEqual;
    return fuzzyEqual(m_centerFrequencyHz, other.m_centerFrequencyHz)
        && fuzzyEqual(m_frameRepetitionTimeS, other.m_frameRepetitionTimeS)
        && m_ifGainDB == other.m_ifGainDB
        && fuzzyEqual(m_maxRangeM, other.m_maxRangeM)
        && fuzzyEqual(m_maxSpeedMs, other.m_maxSpeedMs)
        && fuzzyEqual(m_rangeResolutionM, other.m_rangeResolutionM)
        && m_rx->mask() == other.m_rx->mask()
        && m_sampleRateHz == other.m_sampleRateHz
        && fuzzyEqual(m_speedResolutionMs, other.m_speedResolutionMs)
        && m_tx->mask() == other.m_tx->mask()
        && m_txPowerLevel == other.m_txPowerLevel;
}

bool Metrics::operator!=(const Metrics& other) const
{
    return !(*this == other);
}

QString Metrics::checkValue(const QString& property, double value)
{
    static const QStringList sceneFloats { QStringLiteral("rangeResolutionM"), QStringLiteral("maxRangeM"),
                                           QStringLiteral("maxSpeedMs"), QStringLiteral("speedResolutionMs"),
                                           QStringLiteral("frameRepetitionTimeS") };
    if (sceneFloats.contains(property))
        return checkSceneFloat(float(value));
    if (property == QLatin1String("centerFrequencyHz"))
        return checkCenterFrequency(float(value));
    if (property == QLatin1String("sampleRateHz"))
        return checkSampleRate(quint64(value));
    if (property == QLatin1String("txPowerLevel") || property == QLatin1String("ifGainDB"))
        return checkLevel(quint64(value));
    return QString();
}

quint32 Metrics::sanitizeRxMask(quint32 requested, quint32)
{
    // Antenna 3 is the one every board carries.
    return requested == 0 ? 0b0100u : requested;
}

quint32 Metrics::sanitizeTxMask(quint32 requested, quint32 current)
{
    if (requested == 0)
        return 0b0001u;
    // Only one transmitter may radiate at a time: of a mask with several
    // bits keep the one the user just added.
    if (RadarAntennas::popCount(requested) > 1)
        return requested ^ current;
    return requested;
}

std::unique_ptr<JSONConfigurationObject> Metrics::configurationNode(const DeviceInfo* deviceInfo)
{
    auto scene = std::make_unique<JSONConfigurationObject>(QStringLiteral("fmcw_scene"));
    using JSONConfigurationBinding::bindValue;
    using M = Metrics;
    // The same rules as checkValue(), adapted to the leaves' value types.
    const auto checkFloat = [](QString (*check)(float)) {
        return [check](const float& value) { return check(value); };
    };
    const auto checkUInt = [](QString (*check)(quint64)) {
        return [check](const quint32& value) { return check(value); };
    };
    auto addAntennas = [&](const char* key, RadarAntennas* antennas, const QString& kind,
                           std::function<int()> available) {
        JSONConfigurationBinding::bindArray(
            *scene, QString::fromLatin1(key), antennas, &RadarAntennas::activeAntennas,
            &RadarAntennas::setActiveAntennas,
            [kind, available](const QVector<qint32>& value) { return checkAntennas(value, available(), kind); });
    };

    bindValue(*scene, QStringLiteral("center_frequency_Hz"), this, &M::centerFrequencyHz, &M::setCenterFrequencyHz,
              checkFloat(checkCenterFrequency));
    bindValue(*scene, QStringLiteral("frame_repetition_time_s"), this, &M::frameRepetitionTimeS,
              &M::setFrameRepetitionTimeS, checkFloat(checkSceneFloat));
    bindValue(*scene, QStringLiteral("if_gain_dB"), this, &M::ifGainDB, &M::setIfGainDB, checkUInt(checkLevel));
    bindValue(*scene, QStringLiteral("max_range_m"), this, &M::maxRangeM, &M::setMaxRangeM,
              checkFloat(checkSceneFloat));
    bindValue(*scene, QStringLiteral("max_speed_m_s"), this, &M::maxSpeedMs, &M::setMaxSpeedMs,
              checkFloat(checkSceneFloat));
    bindValue(*scene, QStringLiteral("range_resolution_m"), this, &M::rangeResolutionM, &M::setRangeResolutionM,
              checkFloat(checkSceneFloat));
    addAntennas("rx_antennas", m_rx, QStringLiteral("RX"),
                [deviceInfo] { return deviceInfo ? int(deviceInfo->numRxAntennas()) : 0; });
    bindValue(*scene, QStringLiteral("sample_rate_Hz"), this, &M::sampleRateHz, &M::setSampleRateHz,
              checkUInt(checkSampleRate));
    bindValue(*scene, QStringLiteral("speed_resolution_m_s"), this, &M::speedResolutionMs, &M::setSpeedResolutionMs,
              checkFloat(checkSceneFloat));
    addAntennas("tx_antennas", m_tx, QStringLiteral("TX"),
                [deviceInfo] { return deviceInfo ? int(deviceInfo->numTxAntennas()) : 0; });
    bindValue(*scene, QStringLiteral("tx_power_level"), this, &M::txPowerLevel, &M::setTxPowerLevel,
              checkUInt(checkLevel));
    return scene;
}
