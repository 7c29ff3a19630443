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

    CycleResult run(int index, const QString& chip, const char* viewName);

private:
    void inject(const QString& uuid, const Fault& fault);
    QString record(const QString& uuid, QObject* view, const QString& base, CycleResult& result);

    SoakBench& m_bench;
    FaultPlan& m_plan;
    QString m_directory;
};
