#include "zp7/config/ZP7SPulseConfigParams.h"

#include "core/JSONConfigurationBinding.h"
#include "core/JSONConfigurationObject.h"
#include "fmcw/common/RadarAntennas.h"
#include "zp7/config/ZP7SLimits.h"

#include <QDebug>

namespace {

constexpr quint32 kBoardMask = (1u << ZP7SPulseConfigParams::kChannelCount) - 1u;

// The board has two antennas of each kind; any other bit is dropped. Which
// pairs make a channel is the conversion's business, so that a file or a
// page may hold any selection and be told what is wrong with it.
quint32 boardAntennas(quint32 requested, quint32)
{
    return requested & kBoardMask;
}

QString checkAntennas(const QVector<int>& antennas)
{
    if (antennas.isEmpty())
        return QStringLiteral("Array is empty");
    for (int antenna : antennas) {
        if (antenna < 1 || antenna > ZP7SPulseConfigParams::kChannelCount)
            return QStringLiteral("Invalid antenna index: %1").arg(antenna);
    }
    return QString();
}

}

ZP7SPulseConfigParams::ZP7SPulseConfigParams(QObject* parent)
    : QObject(parent)
    , m_rxAntennas(new RadarAntennas(boardAntennas, this))
    , m_txAntennas(new RadarAntennas(boardAntennas, this))
{
    connect(m_rxAntennas, &RadarAntennas::antennasChanged, this, &ZP7SPulseConfigParams::onAntennasChanged);
    connect(m_txAntennas, &RadarAntennas::antennasChanged, this, &ZP7SPulseConfigParams::onAntennasChanged);
}

void ZP7SPulseConfigParams::setTxPowerLevel(quint8 level)
{
    if (m_txPowerLevel == level)
        return;
    m_txPowerLevel = level;
    emit txPowerLevelChanged();
    emit guiParamChanged();
}

void ZP7SPulseConfigParams::setAbbGain(quint16 gain)
{
    if (m_abbGain == gain)
        return;
    m_abbGain = gain;
    emit abbGainChanged();
    emit guiParamChanged();
}

int ZP7SPulseConfigParams::channel() const
{
    for (int position = 0; position < kChannelCount; ++position) {
        if (m_rxAntennas->isActive(position) && m_txAntennas->isActive(position))
            return position;
    }
    return -1;
}

void ZP7SPulseConfigParams::selectChannel(int channel)
{
    if (channel < 0 || channel >= kChannelCount) {
        qWarning() << "There is no ZP7 channel" << channel << "- the selection stays as it is";
        return;
    }
    m_rxAntennas->setMask(1u << channel);
    m_txAntennas->setMask(1u << channel);
}

void ZP7SPulseConfigParams::onAntennasChanged()
{
    const int current = channel();
    if (current != m_channel) {
        m_channel = current;
        emit channelChanged();
    }
    emit guiParamChanged();
}

bool ZP7SPulseConfigParams::copyTo(vrn_Corvix_Pulse_Config_t& config) const
{
    const int selected = channel();
    if (selected < 0) {
        qCritical() << "Invalid channel settings";
        return false;
    }
    config.channel = selected == 0 ? VRN_CORVIX_CHANNEL_TX1_RX1 : VRN_CORVIX_CHANNEL_TX2_RX2;
    config.tx_power_level = m_txPowerLevel;
    config.abb_gain_index = m_abbGain;
    return true;
}

void ZP7SPulseConfigParams::copyFrom(const vrn_Corvix_Pulse_Config_t& config)
{
    if (config.channel == VRN_CORVIX_CHANNEL_TX1_RX1)
        selectChannel(0);
    else if (config.channel == VRN_CORVIX_CHANNEL_TX2_RX2)
        selectChannel(1);
    setTxPowerLevel(config.tx_power_level);
    setAbbGain(config.abb_gain_index);
}

void ZP7SPulseConfigParams::assign(const ZP7SPulseConfigParams& other)
{
    m_rxAntennas->setMask(other.m_rxAntennas->mask());
    m_txAntennas->setMask(other.m_txAntennas->mask());
    setTxPowerLevel(other.m_txPowerLevel);
    setAbbGain(other.m_abbGain);
}

bool ZP7SPulseConfigParams::operator==(const ZP7SPulseConfigParams& other) const
{
    return m_rxAntennas->mask() == other.m_rxAntennas->mask() && m_txAntennas->mask() == other.m_txAntennas->mask()
        && m_txPowerLevel == other.m_txPowerLevel && m_abbGain == other.m_abbGain;
}

std::unique_ptr<JSONConfigurationObject> ZP7SPulseConfigParams::configurationNode(const ZP7SLimits* limits)
{
    auto node = std::make_unique<JSONConfigurationObject>(QStringLiteral("pulse_params"));
    using JSONConfigurationBinding::bindArray;
    using JSONConfigurationBinding::bindValue;
    using P = ZP7SPulseConfigParams;
    bindArray(*node, QStringLiteral("rx_antennas"), m_rxAntennas, &RadarAntennas::activeAntennas,
              &RadarAntennas::setActiveAntennas, checkAntennas);
    bindArray(*node, QStringLiteral("tx_antennas"), m_txAntennas, &RadarAntennas::activeAntennas,
              &RadarAntennas::setActiveAntennas, checkAntennas);
    bindValue(*node, QStringLiteral("tx_power_level"), this, &P::txPowerLevel, &P::setTxPowerLevel,
              [limits](const quint8& value) { return limits ? limits->checkTxPowerLevel(value) : QString(); });
    // A gain must be a step of the table even without the board's bounds:
    // nothing else can be shown in the drop-down or sent.
    bindValue(*node, QStringLiteral("abb_gain_index"), this, &P::abbGain, &P::setAbbGain,
              [limits](const quint16& value) {
                  return limits ? limits->checkAbbGain(value) : ZP7SLimits().checkAbbGain(value);
              });
    return node;
}
