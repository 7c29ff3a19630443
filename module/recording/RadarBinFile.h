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
//
// A record is written whole or not at all: a failed writeFrame() cuts the
// file back to where the record began, so the file always ends at a whole
// record and a later write may succeed once there is room again.
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
    QString errorString() const override { return m_errorString; }

    // Size on disk of one frame record.
    static qint64 recordSize(quint32 samplesPerFrame) { return 4 + 4 * qint64(samplesPerFrame); }

private:
    bool isOpenFor(QIODevice::OpenModeFlag mode) const;
    void skipHeaderIfAtStart();
    // Cuts a failed record off again and keeps the system's reason.
    void rollBack(qint64 recordStart, int savedErrno);

    std::unique_ptr<QFile> m_file;
    QDataStream m_stream;
    QString m_errorString;
};
