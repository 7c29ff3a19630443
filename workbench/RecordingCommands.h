#pragma once

class QString;
class QTextStream;

// Command-line tools for raw-data recordings.

// Prints the header of BASE.raw.bin by its text-file keys and the number of
// whole frames, and says so when the last frame is cut short. Non-zero when
// the file is not a readable binary recording.
int inspectRecording(const QString& rawBinPath, QTextStream& out, QTextStream& err);

// Writes BASE.raw.txt from BASE.raw.bin on the converter's thread, drawing a
// progress bar on out. Non-zero when the conversion reported an error.
int convertRecording(const QString& basePath, QTextStream& out, QTextStream& err);
