#pragma once

#include "recording/RadarFrameRecord.h"
#include "recording/RadarRecordingHeader.h"

#include <QIODevice>
#include <QString>

#include <vector>

// Reads a recording file. Rows come back with host-order samples.
class IRadarFileReader
{
public:
    virtual ~IRadarFileReader() = default;

    virtual bool open(const QString& fileName, QIODevice::OpenMode mode) = 0;
    // Tells whether the named file is a recording this reader accepts; leaves
    // no file open.
    virtual bool checkFile(const QString& fileName) = 0;
    // The header is copied out even when reading fails part-way.
    virtual bool readHeader(RadarRecordingHeader& header) = 0;
    // Fills the first rowCount rows (the vector grows when it is shorter).
    virtual bool readFrames(quint32 rowCount, quint32 samplesPerRow, std::vector<RadarFrameRecord>& rows) = 0;
    // False when data still buffered could not be written out.
    virtual bool close() = 0;
};
