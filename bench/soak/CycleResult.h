#pragma once

#include <QString>

// What one cycle did and found.
struct CycleResult {
    QString failure;          // empty when the cycle found nothing broken
    int faultKind = 0;        // Fault::Kind injected, 0 = none
    qint64 framesRecorded = 0;
    qint64 framesLost = 0;
    qint64 beforeStart = 0;
    quint64 droppedByBoard = 0;
};
