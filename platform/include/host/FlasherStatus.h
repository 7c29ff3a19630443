#pragma once

#include <QObject>

namespace FlasherStatus {
Q_NAMESPACE

// Status of one flashing job; the values are stored and compared by number.
enum Status {
    NOT_STARTED = 0,
    NO_DEVICE = 1,
    STARTED = 2,
    BOOTLOADER = 3,
    BOOTLOADER_FAILURE = 4,
    FLASHING = 5,
    FLASHING_FAILURE = 6,
    FINISHED_SUCCESS = 7,
    FINISHED_FAILURE = 8,
    TIMEOUT = 9
};
Q_ENUM_NS(Status)
}
