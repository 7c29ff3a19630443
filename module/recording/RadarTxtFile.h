#pragma once

#include "recording/IRadarFileReader.h"
#include "recording/IRadarFileWriter.h"

#include <QByteArray>
#include <QFile>

#include <memory>

// The text recording. The writer keeps two kinds of write apart on purpose:
// a line write puts CR LF before its text (so the file opens with an empty
// line and the last comment runs into the first key), a key write puts CR LF
// after key and value. The reader expects one item per line instead.
class RadarTxtFile : public IRadarFileReader, public IRadarFileWriter
{
public:
    RadarTxtFile() = default;
    ~RadarTxtFile() override;

    bool open(const QString& fileName, QIODevice::OpenMode mode) override;
    // Accepts a file whose header the reader can read.
    bool checkFile(const QString& fileName) override;
    bool readHeader(RadarRecordingHeader& header) override;
    bool readFrames(quint32 rowCount, quint32 samplesPerRow, std::vector<RadarFrameRecord>& rows) override;
    bool writeHeader(const RadarRecordingHeader& header) override;
    bool writeFrames(quint32 rowCount, quint32 samplesPerRow, const std::vector<RadarFrameRecord>& rows) override;
    bool writeFrame(quint32 samplesPerRow, const RadarFrameRecord& row) override;
    bool close() override;
    QString errorString() const override;

private:
    bool isOpenFor(QIODevice::OpenModeFlag mode) const;
    bool writeLine(const QByteArray& text);
    bool writeKey(const char* key, const QByteArray& value);
    // One line without its line end; false when longer than 128 characters
    // or when the file has no more lines.
    bool readLine(QByteArray& line);
    bool readKey(const char* key, QByteArray& value);

    std::unique_ptr<QFile> m_file;
    QByteArray m_rowText; // reused between frames to avoid reallocating
};
