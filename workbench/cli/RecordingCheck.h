#pragma once

#include "recording/RadarRecordingHeader.h"

#include <QString>

// What the files of a recording really hold, read from disk: the session
// reports these counts instead of trusting its own, and a text copy that
// holds fewer frames than its binary file is caught here.
namespace RecordingCheck {

struct BinaryFrames {
    QString error;             // empty when the file is a readable recording
    bool headerRead = false;   // the header below is the file's
    RadarRecordingHeader header;
    qint64 wholeFrames = 0;    // complete records after the header
    qint64 tornBytes = 0;      // bytes of an incomplete last record
};

// Reads the header of a ".raw.bin" and counts its whole frame records.
BinaryFrames binaryFrames(const QString& binPath);

// Counts the frames of a ".raw.txt" by their "# Frame_Number = " lines; -1
// when the file cannot be read.
qint64 textFrames(const QString& txtPath);

// Empty when the text copy holds every whole frame of the binary file,
// otherwise a message saying how many of how many it holds.
QString checkTextCopy(const QString& binPath, const QString& txtPath);

} // namespace RecordingCheck
