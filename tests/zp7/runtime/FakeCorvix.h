#pragma once

// The pulsed-Doppler entry points of the scripted SDK table: a board that
// answers scripted statuses and errors, for the failures a simulated board
// cannot be made to take on demand. Frames are real allocations and
// counted, so a test sees leaks.

#include "FakeVrn.h"

#include <QVector>

struct FakeCorvix {
    explicit FakeCorvix(FakeVrn& vrn);
    ~FakeCorvix();

    vrn_Corvix_Limits_t limits { 0, 7, 3, 384, 16, 2048, 100e-6f, 10e-3f, 10e-3f, 10.0f };
    const char* limitsError = nullptr;
    const char* configError = nullptr;
    const char* stopError = nullptr;
    int stopCalls = 0;
    vrn_Status_t temperatureStatus = VRN_STATUS_OK;
    // Fetch statuses in order, the last one repeating.
    QVector<vrn_Status_t> frameStatuses { VRN_STATUS_OK };
    int fetches = 0;
    int framesAlive = 0;

    static FakeCorvix*& current();
};
