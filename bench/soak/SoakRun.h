#pragma once

#include <QString>
#include <QStringList>

class QTextStream;
struct CycleResult;

// The soak: starts the host once, runs the cycles in turn over the board
// kinds, adds up what they found and judges memory and threads at the end.
class SoakRun
{
public:
    SoakRun(quint32 seed, QTextStream& out);

    // True when nothing was lost or broken.
    bool run(int cycles);

private:
    void add(const CycleResult& result);
    bool judge(int cycles);

    quint32 m_seed;
    QTextStream& m_out;
    QStringList m_failures;
    qint64 m_faults = 0;
    qint64 m_faultsByKind[8] = {};
    qint64 m_recorded = 0;
    qint64 m_lost = 0;
    qint64 m_beforeStart = 0;
    quint64 m_dropped = 0;
    qint64 m_warmKiB = 0;
    int m_warmThreads = 0;
};
