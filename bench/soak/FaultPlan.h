#pragma once

#include <QString>
#include <random>

// The fault of one cycle, drawn from the soak's seed so that a failing run
// repeats: what goes wrong and at which frame of the recording (or which
// capture of a CW cycle).
struct Fault {
    // HostStall is not drawn: only a board in real time overflows when the
    // host falls behind, so those cycles ask for it (FaultPlan::stall).
    enum Kind { None, FetchFailure, Timeout, StuckTimeout, FifoOverflow, Unplug, HostStall, KindCount };
    Kind kind = None;
    int atFrame = 0;   // the fault is injected once the view counted this many recorded frames
    int count = 1;     // fetches the fault answers; 0 = until the board is given up
    qint32 status = 0; // SDK status the fetches answer
    int stallMs = 0;   // HostStall: how long the host stops fetching

    static QString name(Kind kind);
};

class FaultPlan
{
public:
    explicit FaultPlan(quint32 seed) : m_random(seed) {}

    // A fault at a frame below `frames` (sometimes none at all).
    Fault next(int frames);
    // The host stops fetching for longer than a board with `fifoFrames`
    // frames of `frameMs` each can hold, at a frame below `frames`.
    Fault stall(int frames, int fifoFrames, int frameMs);
    int uniform(int low, int high);

private:
    std::mt19937 m_random;
};
