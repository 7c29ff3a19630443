#pragma once

#include <QtGlobal>

// What the kernel says about this process: resident memory and threads.
namespace ProcessProbe {

qint64 residentKiB();      // VmRSS
qint64 peakResidentKiB();  // VmHWM
int threadCount();         // entries of /proc/self/task

} // namespace ProcessProbe
