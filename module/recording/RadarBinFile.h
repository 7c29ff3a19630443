#pragma once

#include "recording/IRadarFileReader.h"
#include "recording/IRadarFileWriter.h"

#include <QDataStream>
#include <QFile>

#include <memory>

// The binary recording: an 88-byte big-endian header, then one record per
// frame (big-endian frame number, then the samples as big-endian singles),
// no count and no trailer. The writer copies sample words unchanged (the
// recorder has already put them in big-endian order); the reader always
// swaps them back to host order.
class RadarBinFile : public IRadarFileReader, public IRadarFileWriter
{
public:
    RadarBinFile() = default;
    ~RadarBinFile() override;

    bool open(const QString& fileName, QIODevice::OpenMode mode) override;
    bool checkFile(const QString& fileName) override;
    bool readHeader(RadarRecordingHeader& header) override;
    bool readFrames(quint32 rowCount, quint32 samplesPerRow, std::vector<RadarFrameRecord>& rows) override;
    bool writeHeader(const RadarRecordingHeader& header) override;
    bool writeFrames(quint32 rowCount, quint32 samplesPerRow, const std::vector<RadarFrameRecord>& rows) override;
    bool writeFrame(quint32 samplesPerRow, const RadarFrameRecord& row) override;
    bool close() override;

    // Size on disk of one frame record.
    static qint64 recordSize(quint32 samplesPerFrame) { return 4 + 4 * qint64(samplesPerFrame); }

private:
    bool isOpenFor(QIODevice::OpenModeFlag mode) const;
    void skipHeaderIfAtStart();

    std::unique_ptr<QFile> m_file;
    QDataStream m_stream;
};
