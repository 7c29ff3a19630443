#pragma once

// The CW entry points of the scripted SDK table: a CW controller that keeps
// what it is given, answers it back, records every call by name and fails
// a call on demand. For the failures a simulated board cannot be made to
// take; everything else runs against the simulator.

#include "FakeVrn.h"

#include <QByteArray>
#include <QHash>
#include <QStringList>

struct FakeCw {
    explicit FakeCw(FakeVrn& vrn);
    ~FakeCw();

    vrn_CW_Config_t config {};
    vrn_CW_Limits_t limits {};
    const char* createError = nullptr;
    bool nullHandle = false;
    // Errors by entry-point name (e.g. "cw_set_dac_value").
    QHash<QByteArray, const char*> errors;
    vrn_Status_t captureStatus = VRN_STATUS_OK;
    bool emitting = false;
    // Every call, by entry-point name, in call order.
    QList<QByteArray> calls;

    int count(const char* name) const { return calls.count(QByteArray(name)); }
    static FakeCw*& current();
};
