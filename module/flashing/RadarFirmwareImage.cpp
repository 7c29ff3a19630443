#include "flashing/RadarFirmwareImage.h"

#include <QFile>
#include <QtEndian>

#include <array>

namespace {

// CRC-32 as IEEE 802.3 (reflected polynomial 0xEDB88320), the checksum the
// image tool writes.
quint32 crc32(const QByteArray& data)
{
    static const std::array<quint32, 256> table = [] {
        std::array<quint32, 256> t {};
        for (quint32 i = 0; i < 256; ++i) {
            quint32 c = i;
            for (int k = 0; k < 8; ++k)
                c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            t[i] = c;
        }
        return t;
    }();
    quint32 crc = 0xFFFFFFFFu;
    for (const char byte : data)
        crc = table[(crc ^ quint8(byte)) & 0xFF] ^ (crc >> 8);
    return crc ^ 0xFFFFFFFFu;
}

} // namespace

RadarFirmwareImage RadarFirmwareImage::read(const QString& path, QString& error)
{
    RadarFirmwareImage image;
    image.m_path = path;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = QStringLiteral("The firmware image %1 cannot be read: %2").arg(path, file.errorString());
        return image;
    }
    const QByteArray bytes = file.readAll();
    if (bytes.size() < kHeaderSize) {
        error = QStringLiteral("The firmware image %1 is too short for its header (%2 bytes)")
                    .arg(path)
                    .arg(bytes.size());
        return image;
    }
    if (!bytes.startsWith("RBK4")) {
        error = QStringLiteral("The file %1 is not a baseboard firmware image").arg(path);
        return image;
    }
    const auto* header = reinterpret_cast<const uchar*>(bytes.constData());
    const quint32 length = qFromLittleEndian<quint32>(header + 12);
    if (quint64(length) != quint64(bytes.size() - kHeaderSize)) {
        error = QStringLiteral("The firmware image %1 announces %2 bytes of payload but holds %3")
                    .arg(path)
                    .arg(length)
                    .arg(bytes.size() - kHeaderSize);
        return image;
    }
    if (qFromLittleEndian<quint32>(header + 16) != crc32(bytes.mid(kHeaderSize))) {
        error = QStringLiteral("The firmware image %1 is damaged: its checksum does not match").arg(path);
        return image;
    }
    image.m_version.major = qFromLittleEndian<quint16>(header + 4);
    image.m_version.minor = qFromLittleEndian<quint16>(header + 6);
    image.m_version.build = qFromLittleEndian<quint16>(header + 8);
    image.m_payloadLength = length;
    image.m_valid = true;
    return image;
}
