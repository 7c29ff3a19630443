#pragma once

#include <memory>

// How a coordinator lets go of a temperature or Tx-power monitor. A
// monitor whose own reading reported the event being handled is still
// inside its update call: it must go only once that call has returned.
enum class MonitorRelease { Now, Deferred };

// Stops nothing itself: the caller stops the monitor first where needed.
template <typename Monitor>
void releaseMonitor(std::unique_ptr<Monitor>& monitor, MonitorRelease release)
{
    if (!monitor)
        return;
    if (release == MonitorRelease::Deferred)
        monitor.release()->deleteLater();
    else
        monitor.reset();
}
