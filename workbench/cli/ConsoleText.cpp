#include "ConsoleText.h"

#include <csignal>

const char* messageTypeName(Constants::UserMessageType type)
{
    switch (type) {
    case Constants::Error:
        return "error";
    case Constants::Warning:
        return "warning";
    default:
        return "info";
    }
}

QString signalName(int signalNumber)
{
    switch (signalNumber) {
    case SIGINT:
        return QStringLiteral("SIGINT");
    case SIGTERM:
        return QStringLiteral("SIGTERM");
    default:
        return QStringLiteral("signal %1").arg(signalNumber);
    }
}
