#pragma once

class QString;
class QTextStream;

// Command-line tools for raw-data recordings.

// Both name a recording by its base or by any of its files ("rec",
// "rec.raw.bin", "rec.json" all mean the same recording).

// Prints the header of BASE.raw.bin by its text-file keys, the kind of
// frames it holds (FMCW chirps or pulsed-Doppler I/Q) and the number of
// whole frames, and says so when the last frame is cut short. Non-zero when
// the file is missing or not a readable binary recording.
int inspectRecording(const QString& path, QTextStream& out, QTextStream& err);

// Writes BASE.raw.txt from BASE.raw.bin on the converter's thread, drawing a
// progress bar on out. Non-zero when the binary file is missing or the
// conversion reported an error.
int convertRecording(const QString& path, QTextStream& out, QTextStream& err);
