#include "FaultPlan.h"

#include "sdk/vrn.h"

QString Fault::name(Kind kind)
{
    switch (kind) {
    case None: return QStringLiteral("none");
    case FetchFailure: return QStringLiteral("fetch failure");
    case Timeout: return QStringLiteral("time-out");
    case StuckTimeout: return QStringLiteral("persistent time-out");
    case FifoOverflow: return QStringLiteral("FIFO overflow");
    case Unplug: return QStringLiteral("unplug");
    case HostStall: return QStringLiteral("host stall (real FIFO overflow)");
    default: return QStringLiteral("?");
    }
}

int FaultPlan::uniform(int low, int high)
{
    return std::uniform_int_distribution<int>(low, high)(m_random);
}

Fault FaultPlan::next(int frames)
{
    Fault fault;
    fault.kind = Fault::Kind(uniform(0, Fault::HostStall - 1));
    fault.atFrame = uniform(1, qMax(1, frames - 1));
    switch (fault.kind) {
    case Fault::FetchFailure:
        fault.status = VRN_STATUS_COMMUNICATION_ERROR;
        break;
    case Fault::Timeout:
        // A few time-outs in a row stay within what the module waits out.
        fault.status = VRN_STATUS_FRAME_TIMEOUT;
        fault.count = uniform(1, 3);
        break;
    case Fault::StuckTimeout:
        fault.status = VRN_STATUS_FRAME_TIMEOUT;
        fault.count = 0;
        break;
    case Fault::FifoOverflow:
        // The module counts each failed fetch as a frame the board's FIFO lost.
        fault.status = VRN_STATUS_FRAME_FETCH_FAILED;
        fault.count = uniform(1, 3);
        break;
    default:
        break;
    }
    return fault;
}

Fault FaultPlan::stall(int frames, int fifoFrames, int frameMs)
{
    Fault fault;
    fault.kind = Fault::HostStall;
    fault.atFrame = uniform(1, qMax(1, frames - 2));
    fault.stallMs = (fifoFrames + uniform(2, 4)) * frameMs;
    return fault;
}
