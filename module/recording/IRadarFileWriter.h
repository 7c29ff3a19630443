#pragma once

#include "recording/RadarFrameRecord.h"
#include "recording/RadarRecordingHeader.h"

#include <QIODevice>
#include <QString>

#include <vector>

// Writes a recording file. The rows handed in are written as they are: for
// the binary format the samples must already be in big-endian order.
class IRadarFileWriter
{
public:
    virtual ~IRadarFileWriter() = default;

    virtual bool open(const QString& fileName, QIODevice::OpenMode mode) = 0;
    virtual bool writeHeader(const RadarRecordingHeader& header) = 0;
    // Writes the first rowCount rows, stopping at the first failure.
    virtual bool writeFrames(quint32 rowCount, quint32 samplesPerRow, const std::vector<RadarFrameRecord>& rows) = 0;
    virtual bool writeFrame(quint32 samplesPerRow, const RadarFrameRecord& row) = 0;
    // False when data still buffered could not be written out.
    virtual bool close() = 0;
    // The system's reason for the last failure, for the user's message.
    virtual QString errorString() const = 0;
};
