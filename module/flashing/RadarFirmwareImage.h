#pragma once

#include "flashing/RadarFirmwareVersion.h"

#include <QString>

// The header of a baseboard firmware image file:
//   0 magic "RBK4", 4 major, 6 minor, 8 build, 10 reserved (u16 LE each),
//   12 payload length, 16 CRC-32 of the payload (u32 LE each), 20 payload.
// Reading checks the whole file, so an image offered to the user is one the
// board will accept.
class RadarFirmwareImage
{
public:
    static constexpr int kHeaderSize = 20;

    // An invalid image with the reason in `error` when the file cannot be
    // read or is damaged.
    static RadarFirmwareImage read(const QString& path, QString& error);

    bool isValid() const { return m_valid; }
    const QString& path() const { return m_path; }
    const RadarFirmwareVersion& version() const { return m_version; }
    quint32 payloadLength() const { return m_payloadLength; }

private:
    bool m_valid = false;
    QString m_path;
    RadarFirmwareVersion m_version;
    quint32 m_payloadLength = 0;
};
