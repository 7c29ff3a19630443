#pragma once

#include <QString>
#include <QtGlobal>

// How long a headless session acquires, read from the command line. Every
// value is checked against a range before a session starts, so that no input
// can overflow a timer or turn into "no limit".
struct SessionLimits {
    static constexpr double kMaxSeconds = 86400.0;
    static constexpr quint32 kMaxFrames = 10000000;
    static constexpr double kDefaultSeconds = 5.0;

    quint32 frames = 0;   // 0: not limited by a frame count
    double seconds = 0;   // 0: not limited by time

    // Empty text when the values are usable, otherwise a message that states
    // the accepted range. A null text means "not given"; with neither given
    // both limits stay 0 and the session picks its default.
    static QString parse(const QString& framesText, const QString& secondsText, SessionLimits& limits);

    // The duration in whole milliseconds, rounded up so that a duration
    // shorter than a millisecond still lasts one (and records one frame).
    quint64 milliseconds() const;
};
