// A text recording as the text reader takes it: the file check, the key
// lines of the header, then frames of the size the header states until the
// file ends or a line is refused.
#include "FuzzSupport.h"
#include "recording/RadarTxtFile.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzSupport::quietLog();
    const QString path = FuzzSupport::writeScratch(QStringLiteral("input.txt"), data, size);

    RadarTxtFile file;
    RadarRecordingHeader header;
    if (!file.checkFile(path) || !file.open(path, QIODevice::ReadOnly) || !file.readHeader(header))
        return 0;
    // A text frame costs at least two bytes a sample, so the input bounds
    // what a frame can hold; the cap keeps a stated size from allocating
    // before the reader has seen a single value.
    const quint32 samples = std::min<quint32>(header.samplesPerFrame, quint32(size));
    std::vector<RadarFrameRecord> rows(1);
    for (int i = 0; i < 64 && file.readFrames(1, samples, rows); ++i) {
    }
    file.close();
    return 0;
}
