#include "SessionLimits.h"

#include <cmath>

QString SessionLimits::parse(const QString& framesText, const QString& secondsText, SessionLimits& limits)
{
    limits = SessionLimits();
    if (!framesText.isNull() && !secondsText.isNull())
        return QStringLiteral("Give either --frames or --seconds, not both.");
    if (!framesText.isNull()) {
        bool ok = false;
        const qulonglong frames = framesText.trimmed().toULongLong(&ok);
        if (!ok || frames < 1 || frames > kMaxFrames)
            return QStringLiteral("--frames \"%1\" is not a whole number from 1 to %2.")
                .arg(framesText)
                .arg(kMaxFrames);
        limits.frames = quint32(frames);
        return {};
    }
    if (!secondsText.isNull()) {
        bool ok = false;
        const double seconds = secondsText.trimmed().toDouble(&ok);
        // The negated comparison also refuses NaN.
        if (!ok || !(seconds > 0.0 && seconds <= kMaxSeconds))
            return QStringLiteral("--seconds \"%1\" is not a number of seconds above 0 and up to %2 (one day).")
                .arg(secondsText)
                .arg(kMaxSeconds, 0, 'f', 0);
        limits.seconds = seconds;
    }
    return {};
}

quint64 SessionLimits::milliseconds() const
{
    return seconds > 0.0 ? qMax<quint64>(1, quint64(std::ceil(seconds * 1000.0))) : 0;
}
