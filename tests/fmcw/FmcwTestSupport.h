#pragma once

// Helpers the FMCW tests share.

#include "frame/RadarEventCode.h"

#include <QString>
#include <QStringList>
#include <QVector>

class QSignalSpy;
class RadarDeviceConfiguration;
struct FakeVrn;

// A board as the device reports it: chip name and antenna counts. The
// defaults are the three receivers and one transmitter the chips here have.
void describeBoard(RadarDeviceConfiguration& config, const QString& chip = QStringLiteral("KMR7A"), quint8 rx = 3,
                   quint8 tx = 1);

// One triggerEvent(code, message, details) recorded by a spy.
struct RadarEvent {
    RadarEventCode code;
    QString message;
    QString details;
};

// The same board as the scripted SDK reports it.
void describeFakeBoard(FakeVrn& fake, const char* chip = "KMR7A", quint32 rx = 3, quint32 tx = 1);

// One argument of every emission a spy recorded, as text: the messages of
// triggerEvent or enqueueUserMessage by default.
QStringList textsOf(const QSignalSpy& spy, int argument = 1);

RadarEvent eventAt(const QSignalSpy& spy, int index);
// Every event a spy recorded, in order, for one comparison of the lot.
QVector<RadarEvent> eventsOf(const QSignalSpy& spy);
bool operator==(const RadarEvent& a, const RadarEvent& b);
