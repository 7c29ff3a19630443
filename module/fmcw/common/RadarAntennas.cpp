#include "fmcw/common/RadarAntennas.h"

RadarAntennas::RadarAntennas(Sanitizer sanitizer, QObject* parent)
    : QObject(parent)
    , m_sanitizer(std::move(sanitizer))
{
}

void RadarAntennas::setMask(quint32 mask)
{
    const quint32 sanitized = m_sanitizer ? m_sanitizer(mask, m_mask) : mask;
    if (sanitized == m_mask)
        return;
    m_mask = sanitized;
    emit antennasChanged(activeAntennas());
    emit guiParamChanged();
}

bool RadarAntennas::isActive(int position) const
{
    if (position < 0 || position >= kMaxAntennas)
        return false;
    return (m_mask >> position) & 1u;
}

int RadarAntennas::activeCount() const
{
    return popCount(m_mask);
}

QVector<int> RadarAntennas::activeAntennas() const
{
    QVector<int> antennas;
    for (int position = 0; position < kMaxAntennas; ++position) {
        if (isActive(position))
            antennas.append(position + 1);
    }
    return antennas;
}

QVector<int> RadarAntennas::activePositions() const
{
    QVector<int> positions;
    for (int position = 0; position < kMaxAntennas; ++position) {
        if (isActive(position))
            positions.append(position);
    }
    return positions;
}

void RadarAntennas::setActiveAntennas(const QVector<int>& antennas)
{
    quint32 mask = 0;
    for (int antenna : antennas) {
        if (antenna >= 1 && antenna <= kMaxAntennas)
            mask |= 1u << (antenna - 1);
    }
    setMask(mask);
}

void RadarAntennas::setEnabled(int antennaNum, bool value)
{
    if (antennaNum < 0 || antennaNum >= kMaxAntennas)
        return;
    const quint32 bit = 1u << antennaNum;
    setMask(value ? (m_mask | bit) : (m_mask & ~bit));
}

bool RadarAntennas::getEnabled(int antennaNum) const
{
    return isActive(antennaNum);
}

int RadarAntennas::getNumberOfEnabled() const
{
    return activeCount();
}

int RadarAntennas::popCount(quint32 mask)
{
    int count = 0;
    for (; mask != 0; mask &= mask - 1)
        ++count;
    return count;
}
