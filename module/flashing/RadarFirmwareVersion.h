#pragma once

#include <QString>
#include <QtGlobal>

#include <tuple>

// The version of a baseboard firmware, as its image header and the SDK's
// firmware info carry it: three numbers, compared in order.
struct RadarFirmwareVersion
{
    quint16 major = 0;
    quint16 minor = 0;
    quint16 build = 0;

    // Reads "2.5.1" or "v2.5.1"; false (and the version unchanged) for any
    // other text.
    static bool parse(const QString& text, RadarFirmwareVersion& version);

    QString toString() const { return QStringLiteral("%1.%2.%3").arg(major).arg(minor).arg(build); }

    bool operator<(const RadarFirmwareVersion& other) const
    {
        return std::tie(major, minor, build) < std::tie(other.major, other.minor, other.build);
    }
    bool operator==(const RadarFirmwareVersion& other) const
    {
        return std::tie(major, minor, build) == std::tie(other.major, other.minor, other.build);
    }
};
