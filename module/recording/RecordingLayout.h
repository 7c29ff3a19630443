#pragma once

#include "recording/RadarRecordingHeader.h"

#include <QString>

// Which kind of frames a recording holds, read from its header: playbacks
// take only their own kind, and the inspection names it, so that a
// pulsed-Doppler recording is never read as FMCW chirps or the reverse.
namespace RecordingLayout {

enum class Kind {
    Unreadable, // no readable binary recording
    Fmcw,       // real samples, chirps x samples per antenna
    Doppler,    // complex interleaved I/Q, one chirp per frame
    Other,      // a header this system does not write
};

Kind kindOf(const RadarRecordingHeader& header);
// Of the recording at `basePath` (its ".raw.bin").
Kind kindOfRecording(const QString& basePath);

// One line for people: "FMCW, real samples, 64 chirps per frame",
// "Doppler, complex interleaved I/Q, one chirp per frame", ...
QString describe(const RadarRecordingHeader& header);

// Why the playback named `playbackName` refuses a recording of `found`, for
// the user message's details.
QString refusal(const QString& binPath, Kind found, const QString& playbackName);

} // namespace RecordingLayout
