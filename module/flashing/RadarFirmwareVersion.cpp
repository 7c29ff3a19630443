#include "flashing/RadarFirmwareVersion.h"

#include <QRegularExpression>

bool RadarFirmwareVersion::parse(const QString& text, RadarFirmwareVersion& version)
{
    static const QRegularExpression pattern(QStringLiteral("^v?(\\d{1,5})\\.(\\d{1,5})\\.(\\d{1,5})$"));
    const QRegularExpressionMatch match = pattern.match(text.trimmed());
    if (!match.hasMatch())
        return false;
    RadarFirmwareVersion parsed;
    quint16* parts[] = { &parsed.major, &parsed.minor, &parsed.build };
    for (int i = 0; i < 3; ++i) {
        const uint value = match.captured(i + 1).toUInt();
        if (value > 0xFFFF)
            return false;
        *parts[i] = quint16(value);
    }
    version = parsed;
    return true;
}
