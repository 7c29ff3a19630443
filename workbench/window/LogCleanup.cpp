#include "LogCleanup.h"

#include "LogFile.h"

#include "core/Logging.h"

#include <QDir>
#include <QLocale>

LogCleanup::LogCleanup(Logging& logging, LogFile* logFile, QObject* parent)
    : QObject(parent)
    , m_logging(logging)
    , m_logFile(logFile)
{
    refresh();
}

QString LogCleanup::directory() const
{
    return QDir::toNativeSeparators(LogFile::directory());
}

QString LogCleanup::totalSize() const
{
    return QLocale::c().formattedDataSize(m_totalBytes);
}

void LogCleanup::clearOld()
{
    m_logging.clearLogs(false);
    if (m_logFile)
        m_logFile->reopenIfRemoved();
    refresh();
}

void LogCleanup::clearAll()
{
    m_logging.clearLogs(true);
    if (m_logFile)
        m_logFile->reopenIfRemoved();
    refresh();
}

void LogCleanup::refresh()
{
    const QFileInfoList files = QDir(LogFile::directory()).entryInfoList(QDir::Files);
    qint64 bytes = 0;
    for (const QFileInfo& file : files)
        bytes += file.size();
    if (files.size() == m_fileCount && bytes == m_totalBytes)
        return;
    m_fileCount = int(files.size());
    m_totalBytes = bytes;
    emit filesChanged();
}
