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

    // `paced`: the board runs in real time (0.1 s frames) instead of
    // delivering frames at once, so time-outs and the board's FIFO meet a
    // real clock; such a cycle records fewer frames to stay short.
    CycleResult run(int index, const QString& chip, const char* viewName, bool paced = false);

private:
    void inject(const QString& uuid, const Fault& fault);
    QString record(const QString& uuid, QObject* view, const QString& base, bool paced, CycleResult& result);

    SoakBench& m_bench;
    FaultPlan& m_plan;
    QString m_directory;
    bool m_countsOverflows = false;
};
