#pragma once

#include "CycleResult.h"

#include <QString>

class FaultPlan;
class QObject;
class SoakBench;
struct Fault;

// One cycle of a board that records (FMCW standard or ZP7): plug, connect,
// record a number of frames with one fault injected at a drawn frame of
// the recording, disconnect, unplug; then the file is read back.
class RecordingCycle
{
public:
    RecordingCycle(SoakBench& bench, FaultPlan& plan, QString directory);

    enum class Pace {
        Unpaced,   // frames at once, as fast as the host fetches
        RealTime,  // 0.1 s frames, so time-outs and the board's FIFO meet a real clock
        Stalled,   // real time, and the host stops fetching for longer than the FIFO holds
    };

    // A board in real time records fewer frames to keep the cycle short.
    CycleResult run(int index, const QString& chip, const char* viewName, Pace pace = Pace::Unpaced);

private:
    void inject(const QString& uuid, const Fault& fault);
    QString record(const QString& uuid, QObject* view, const QString& base, Pace pace, CycleResult& result);
    QString checkOverflow(QObject* view, const Fault& fault, bool injected, const QString& uuid);

    SoakBench& m_bench;
    FaultPlan& m_plan;
    QString m_directory;
    bool m_countsOverflows = false;
};
