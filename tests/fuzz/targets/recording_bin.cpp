// A binary recording as the playback opens it: the file check, the header,
// the frame size and period it states, then every record the file length
// promises, followed by the layout the recording commands describe.
#include "FuzzSupport.h"
#include "recording/RadarBinFile.h"
#include "recording/RecordingLayout.h"
#include "recording/RecordingReplay.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzSupport::quietLog();
    const QString base = FuzzSupport::scratchDir() + QStringLiteral("/input");
    const QString binPath = FuzzSupport::writeScratch(QStringLiteral("input.bin"), data, size);

    RecordingReplay replay;
    QString message, details;
    if (replay.open(binPath, message, details)) {
        replay.start();
        replay.setPaused(true);
        const quint32 frames = std::min<quint32>(replay.totalFrames(), 64);
        RadarFrameRecord row;
        for (quint32 i = 0; i < frames; ++i) {
            replay.step();
            if (replay.next(row) != RecordingReplay::Fetch::Frame)
                break;
        }
        replay.close();
    }

    RadarRecordingHeader header;
    if (RecordingReplay::readHeader(binPath, header))
        RecordingLayout::describe(header);
    RecordingLayout::kindOfRecording(base);
    return 0;
}
