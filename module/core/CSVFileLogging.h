#pragma once

#include "core/CSVLoggerBuffer.h"

#include <QObject>
#include <QString>

#include <memory>

class CSVFile;
class LoggingConfiguration;
class QFile;

// One logging run into one CSV file: checks the free space, opens the file,
// appends rows and closes it again. Failures reach the user through
// errorDetected(); nothing is logged, the user message is the report.
//
// Used from its owner's thread only. A producer on another thread hands
// rows over through collectLoggingDataBuffer() / collectingStopped(),
// connected queued by whoever wires the two together.
class CSVFileLogging : public QObject
{
    Q_OBJECT
public:
    // Bytes that must stay free on the log's volume: below that the disk
    // belongs to the rest of the system, not to our logs.
    static constexpr qint64 minimumFreeBytes = 10000000;

    explicit CSVFileLogging(QObject* parent = nullptr);
    ~CSVFileLogging() override;

    QString filePath() const { return m_filePath; }
    bool isLogging() const { return m_writer != nullptr; }

    // Closes any previous file first. False when the space is short or the
    // file cannot be opened; errorDetected() has then said why.
    virtual bool startLogging(const LoggingConfiguration& configuration);
    // Appends rows. Short space drops them and keeps the file (and repeats
    // the message on every call, so the user sees it while it lasts); a
    // failing write ends the run.
    void writeRows(const CSVLoggerBuffer& rows);
    void stopLogging();
    // stopLogging(), then finishedLogging().
    void finishLogging();

signals:
    void finishedLogging();
    void errorDetected(const QString& message, const QString& details);
    void collectLoggingDataBuffer(const CSVLoggerBuffer* buffer);
    void collectingStopped();

protected:
    virtual std::unique_ptr<CSVFile> createWriter();
    virtual void destroyWriter(std::unique_ptr<CSVFile> writer);
    // Null when the file cannot be opened write-only.
    virtual std::unique_ptr<QFile> openFile(const QString& path);
    virtual void closeFile(std::unique_ptr<QFile> file);
    // Bytes free for us on the volume holding path's directory; negative
    // when unknown.
    virtual qint64 availableBytes(const QString& path) const;

    CSVFile* writer() const { return m_writer.get(); }
    QFile* file() const { return m_file.get(); }

private:
    bool hasEnoughSpace();

    QString m_filePath;
    std::unique_ptr<CSVFile> m_writer;
    std::unique_ptr<QFile> m_file;
};
