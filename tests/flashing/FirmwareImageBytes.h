#pragma once

#include <QByteArray>
#include <QtEndian>

// A baseboard firmware image written out field by field, independently of
// the reader under test.
inline QByteArray firmwareImageBytes(quint16 major, quint16 minor, quint16 build,
                                     const QByteArray& payload = "firmware bytes")
{
    quint32 crc = 0xFFFFFFFFu;
    for (const char byte : payload) {
        crc ^= quint8(byte);
        for (int k = 0; k < 8; ++k)
            crc = (crc & 1) ? 0xEDB88320u ^ (crc >> 1) : crc >> 1;
    }
    QByteArray bytes("RBK4", 4);
    bytes.resize(20);
    auto* h = reinterpret_cast<uchar*>(bytes.data());
    qToLittleEndian<quint16>(major, h + 4);
    qToLittleEndian<quint16>(minor, h + 6);
    qToLittleEndian<quint16>(build, h + 8);
    qToLittleEndian<quint16>(0, h + 10);
    qToLittleEndian<quint32>(quint32(payload.size()), h + 12);
    qToLittleEndian<quint32>(~crc, h + 16);
    return bytes + payload;
}
