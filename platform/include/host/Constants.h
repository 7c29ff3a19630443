#pragma once

#include <QObject>

namespace Constants {
Q_NAMESPACE

// Which chart a chart-data accessor serves.
enum class Chart {
    TimeDomain = 0,
    FrequencyDomain = 1,
    PresenceSensing = 2,
    RangeDoppler = 3,
    Polar = 4
};
Q_ENUM_NS(Chart)

// Severity of a message shown to the user.
enum UserMessageType {
    Info = 0,
    Warning = 1,
    Error = 2
};
Q_ENUM_NS(UserMessageType)
}
