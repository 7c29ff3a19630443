#include "RecordingCheck.h"

#include "recording/RadarBinFile.h"

#include <QFile>
#include <QFileInfo>

namespace RecordingCheck {

BinaryFrames binaryFrames(const QString& binPath)
{
    BinaryFrames result;
    if (!QFileInfo::exists(binPath)) {
        result.error = QStringLiteral("%1 is missing (no such file)").arg(binPath);
        return result;
    }
    RadarBinFile file;
    if (!file.checkFile(binPath)) {
        result.error = QStringLiteral("%1 is not a binary recording (expected \"VNRB\" and version 1.0)").arg(binPath);
        return result;
    }
    if (!file.open(binPath, QIODevice::ReadOnly) || !file.readHeader(result.header)) {
        result.error = QStringLiteral("%1: the header is incomplete").arg(binPath);
        return result;
    }
    file.close();
    result.headerRead = true;
    if (result.header.samplesPerFrame == 0) {
        result.error = QStringLiteral("%1: Samples_per_Frame is 0, frames cannot be counted").arg(binPath);
        return result;
    }
    const qint64 recordSize = RadarBinFile::recordSize(result.header.samplesPerFrame);
    const qint64 payload = qMax<qint64>(0, QFileInfo(binPath).size() - RadarRecordingHeader::kHeaderSize);
    result.wholeFrames = payload / recordSize;
    result.tornBytes = payload % recordSize;
    return result;
}

qint64 textFrames(const QString& txtPath)
{
    QFile file(txtPath);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    // Every frame line follows the line end of the line before it; a text
    // copy is large, so it is scanned in blocks, keeping the tail of each
    // block in case a key is split between two.
    static const QByteArray key = QByteArrayLiteral("\n# Frame_Number = ");
    constexpr qint64 kBlock = 1 << 20;
    qint64 count = 0;
    QByteArray window;
    while (!file.atEnd()) {
        const QByteArray block = file.read(kBlock);
        if (block.isEmpty())
            return file.error() == QFileDevice::NoError ? count : -1;
        window += block;
        int from = 0;
        for (int at = window.indexOf(key, from); at >= 0; at = window.indexOf(key, from)) {
            ++count;
            from = at + key.size();
        }
        window = window.right(qMin(window.size() - from, key.size() - 1));
    }
    return count;
}

QString checkTextCopy(const QString& binPath, const QString& txtPath)
{
    const BinaryFrames binary = binaryFrames(binPath);
    if (!binary.error.isEmpty())
        return binary.error;
    const qint64 text = textFrames(txtPath);
    if (text < 0)
        return QStringLiteral("The text copy %1 cannot be read").arg(txtPath);
    if (text != binary.wholeFrames)
        return QStringLiteral("The text copy %1 is incomplete: it holds %2 of the %3 frames of %4")
            .arg(txtPath)
            .arg(text)
            .arg(binary.wholeFrames)
            .arg(binPath);
    return {};
}

} // namespace RecordingCheck
