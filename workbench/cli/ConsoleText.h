#pragma once

#include "host/Constants.h"

#include <QString>

// Words the headless sessions print the same way.

// "error", "warning" or "info": the tag before a module's message.
const char* messageTypeName(Constants::UserMessageType type);
// "SIGINT", "SIGTERM" or "signal N".
QString signalName(int signalNumber);
