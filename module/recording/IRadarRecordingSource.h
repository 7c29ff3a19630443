#pragma once

#include "recording/RadarRecordingHeader.h"

#include <QByteArray>

// What a recording needs from the configuration running when it starts.
class IRadarRecordingSource
{
public:
    virtual ~IRadarRecordingSource() = default;

    // Header values of the device configuration; the constant fields keep
    // their defaults.
    virtual RadarRecordingHeader recordingHeader() const = 0;
    // The configuration document saved as "<base>.json" beside the frames;
    // empty when there is nothing to save.
    virtual QByteArray configurationJson() const = 0;
};
