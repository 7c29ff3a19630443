#include "RecordingAudit.h"

#include "RecordingCheck.h"

#include "recording/RadarBinFile.h"

#include <QDebug>
#include <algorithm>
#include <vector>

RecordingAudit RecordingAudit::of(const QString& binPath, const QSet<int>& counted)
{
    RecordingAudit audit;
    const RecordingCheck::BinaryFrames frames = RecordingCheck::binaryFrames(binPath);
    if (!frames.error.isEmpty()) {
        audit.error = frames.error;
        audit.lost = counted.size();
        return audit;
    }
    if (frames.tornBytes != 0)
        audit.error = QStringLiteral("%1 ends with %2 bytes of a torn frame").arg(binPath).arg(frames.tornBytes);
    audit.fileFrames = frames.wholeFrames;

    std::vector<RadarFrameRecord> records;
    RadarBinFile file;
    RadarRecordingHeader header;
    if (!file.open(binPath, QIODevice::ReadOnly) || !file.readHeader(header)
        || (frames.wholeFrames > 0
            && !file.readFrames(quint32(frames.wholeFrames), header.samplesPerFrame, records))) {
        audit.error = QStringLiteral("%1: the frames cannot be read back").arg(binPath);
        audit.lost = counted.size();
        return audit;
    }
    QSet<int> inFile;
    for (const RadarFrameRecord& record : records)
        inFile.insert(record.frameNumber);
    // The view hears of a frame through a queued signal, so a frame taken
    // just before the recorder started may be counted just after it did.
    const int first = records.empty() ? INT_MAX : records.front().frameNumber;
    // The view shows how many frames were taken (1 for the first); the file
    // numbers them from 0.
    for (int shown : counted) {
        const int number = shown - 1;
        if (inFile.contains(number))
            continue;
        if (number < first)
            ++audit.beforeStart;
        else
            ++audit.lost;
    }
    if (qEnvironmentVariableIsSet("SOAK_DEBUG")) {
        QList<int> shown = counted.values();
        std::sort(shown.begin(), shown.end());
        qInfo() << "SOAKDBG file" << (records.empty() ? -1 : records.front().frameNumber)
                << (records.empty() ? -1 : records.back().frameNumber) << records.size() << "shown" << shown;
    }
    return audit;
}
