#pragma once

#include <QObject>
#include <QVector>

#include <functional>

// One antenna selection as a 4-bit mask: bit i set means antenna i + 1 is
// active. Every new mask passes through the sanitiser given at construction,
// which may correct it (for instance to keep at least one antenna active).
class RadarAntennas : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int numberOfEnabled READ getNumberOfEnabled NOTIFY antennasChanged)
public:
    // Receives the requested mask and the stored one, returns what to store.
    using Sanitizer = std::function<quint32(quint32 requested, quint32 current)>;

    static constexpr int kMaxAntennas = 4;

    explicit RadarAntennas(Sanitizer sanitizer, QObject* parent = nullptr);

    quint32 mask() const { return m_mask; }
    void setMask(quint32 mask);

    // Position is 0-based; positions of 4 or more are never active.
    bool isActive(int position) const;
    int activeCount() const;
    // 1-based antenna numbers, ascending.
    QVector<int> activeAntennas() const;
    // 0-based positions, ascending: the bit positions of the mask, which is
    // how the processing counts channels.
    QVector<int> activePositions() const;
    void setActiveAntennas(const QVector<int>& antennas);

    // QML: antennaNum is the 0-based position, as the pages' repeaters count.
    Q_INVOKABLE void setEnabled(int antennaNum, bool value);
    Q_INVOKABLE bool getEnabled(int antennaNum) const;
    Q_INVOKABLE int getNumberOfEnabled() const;

    static int popCount(quint32 mask);

signals:
    void antennasChanged(QVector<int> indexes);
    void guiParamChanged();

private:
    Sanitizer m_sanitizer;
    quint32 m_mask = 0;
};
