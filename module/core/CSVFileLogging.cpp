#include "core/CSVFileLogging.h"

#include "core/CSVFile.h"
#include "core/LoggingConfiguration.h"

#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

CSVFileLogging::CSVFileLogging(QObject* parent)
    : QObject(parent)
{
}

CSVFileLogging::~CSVFileLogging()
{
    // Members die in reverse order, which would close the file under a
    // writer that may still flush into it; release the writer first.
    m_writer.reset();
    m_file.reset();
}

bool CSVFileLogging::startLogging(const LoggingConfiguration& configuration)
{
    m_filePath = configuration.logFilePath();
    stopLogging();

    if (hasEnoughSpace()) {
        m_file = openFile(m_filePath);
        if (!m_file) {
            emit errorDetected(QStringLiteral("Cannot open file for csv logging!"), QString());
        } else {
            m_writer = createWriter();
            return true;
        }
    }
    stopLogging();
    return false;
}

void CSVFileLogging::writeRows(const CSVLoggerBuffer& rows)
{
    if (!m_writer)
        return;
    if (!hasEnoughSpace())
        return;
    if (!m_writer->writeRows(rows)) {
        emit errorDetected(QStringLiteral("Cannot write data to csv file!"), QString());
        stopLogging();
    }
}

void CSVFileLogging::stopLogging()
{
    if (!m_file)
        return;
    // The writer goes first: it may still hold buffered text for the file.
    destroyWriter(std::move(m_writer));
    closeFile(std::move(m_file));
}

void CSVFileLogging::finishLogging()
{
    stopLogging();
    emit finishedLogging();
}

std::unique_ptr<CSVFile> CSVFileLogging::createWriter()
{
    return std::make_unique<CSVFile>(m_file.get());
}

void CSVFileLogging::destroyWriter(std::unique_ptr<CSVFile> writer)
{
    writer.reset();
}

std::unique_ptr<QFile> CSVFileLogging::openFile(const QString& path)
{
    auto file = std::make_unique<QFile>(path);
    if (!file->open(QIODevice::WriteOnly | QIODevice::Truncate))
        return nullptr;
    return file;
}

void CSVFileLogging::closeFile(std::unique_ptr<QFile> file)
{
    if (file)
        file->close();
}

qint64 CSVFileLogging::availableBytes(const QString& path) const
{
    // The file itself usually does not exist yet; its directory does.
    const QStorageInfo storage(QFileInfo(path).absolutePath());
    return storage.isValid() ? storage.bytesAvailable() : -1;
}

bool CSVFileLogging::hasEnoughSpace()
{
    if (availableBytes(m_filePath) >= minimumFreeBytes)
        return true;
    emit errorDetected(QStringLiteral("Not enough space to store data for logging!"), QString());
    return false;
}
