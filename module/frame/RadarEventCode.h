#pragma once

#include <QMetaType>
#include <QtGlobal>

// What a "triggerEvent"(code, message, details) asks the active coordinator
// to do; carried as a plain 4-byte enumeration across threads.
enum class RadarEventCode : qint32 {
    Error = 0,                      // show an error, the SDK's text as details
    Notice = 1,                     // settings not optimal, path not valid
    FrameFetchFailed = 2,           // one frame lost, acquisition continues
    DeviceCommunicationFailure = 3, // the board is gone or unusable
    NoDataAvailable = 4,            // acquisition cannot go on
    TemperatureNotSupported = 5
};

Q_DECLARE_METATYPE(RadarEventCode)
