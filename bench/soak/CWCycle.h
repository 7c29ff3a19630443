#pragma once

#include "CycleResult.h"

class FaultPlan;
class QObject;
class SoakBench;

// One cycle of a board in CW mode: plug, connect, switch to CW, emit and
// take captures with one fault injected at a drawn capture, switch back,
// disconnect, unplug. Every capture before the fault must arrive, and the
// transmitter must be off once the board is let go.
class CWCycle
{
public:
    CWCycle(SoakBench& bench, FaultPlan& plan);

    CycleResult run(int index, const QString& chip);

private:
    QString emitAndCapture(const QString& uuid, QObject* view, CycleResult& result);
    QString checkTransmitterOff(const QString& uuid);

    SoakBench& m_bench;
    FaultPlan& m_plan;
};
