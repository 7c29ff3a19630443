#pragma once

#include "sdk/vrn.h"

#include <QMutex>
#include <QPair>
#include <QSemaphore>
#include <QString>
#include <QVector>

// A Vrn table whose device list is scripted by the test. Only the list
// entry points are filled; the detection thread calls them.
namespace FakeDeviceListSdk {

struct Script {
    QMutex mutex;
    QVector<QPair<vrn_Device_Shield_Type_t, QString>> boards;
    int failingEntry = -1;       // index whose read fails, -1 for none
    bool failList = false;
    int listCalls = 0;
    bool gated = false;          // when set, each list call waits for gate
    QSemaphore entered;          // released when a list call starts
    QSemaphore gate;
};

Script& script();
const Vrn* table();

} // namespace FakeDeviceListSdk
