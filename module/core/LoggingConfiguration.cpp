#include "core/LoggingConfiguration.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

LoggingConfiguration::LoggingConfiguration(QObject* parent)
    : QObject(parent)
{
}

void LoggingConfiguration::setLoggingPath(const QString& loggingPath)
{
    if (m_loggingPath == loggingPath)
        return;
    m_loggingPath = loggingPath;
    emit loggingPathChanged();
}

void LoggingConfiguration::setLoggingFileName(const QString& loggingFileName)
{
    if (m_loggingFileName == loggingFileName)
        return;
    m_loggingFileName = loggingFileName;
    emit loggingFileNameChanged();
}

void LoggingConfiguration::setLoggingFileNameTimestamp(const QString& loggingFileNameTimestamp)
{
    if (m_loggingFileNameTimestamp == loggingFileNameTimestamp)
        return;
    m_loggingFileNameTimestamp = loggingFileNameTimestamp;
    emit loggingFileNameTimestampChanged();
}

void LoggingConfiguration::setNumberOfLogs(int numberOfLogs)
{
    if (m_numberOfLogs == numberOfLogs)
        return;
    m_numberOfLogs = numberOfLogs;
    emit numberOfLogsChanged();
}

void LoggingConfiguration::setIsCustomFileName(bool isCustomFileName)
{
    if (m_isCustomFileName == isCustomFileName)
        return;
    m_isCustomFileName = isCustomFileName;
    emit isCustomFileNameChanged();
}

QString LoggingConfiguration::fileName() const
{
    return m_isCustomFileName ? m_loggingFileName : m_loggingFileNameTimestamp;
}

QString LoggingConfiguration::logFilePath() const
{
    return QDir(m_loggingPath).filePath(fileName() + QStringLiteral(".csv"));
}

void LoggingConfiguration::collectTimestamp()
{
    setLoggingFileNameTimestamp(QStringLiteral("target_log_")
                                + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss")));
}

bool LoggingConfiguration::checkIfFileExist() const
{
    return QFileInfo::exists(logFilePath());
}

bool LoggingConfiguration::checkIfFileCanBeOverwritten() const
{
    const QFileInfo info(logFilePath());
    if (!info.exists())
        return true;
    return info.isFile() && info.isWritable();
}

bool LoggingConfiguration::checkIfLoggingPathIsValid()
{
    if (m_loggingPath.isEmpty())
        setLoggingPath(QStandardPaths::writableLocation(QStandardPaths::DesktopLocation));
    if (m_loggingPath.isEmpty())
        return false;
    const QDir directory(m_loggingPath);
    if (directory.exists())
        return true;
    // mkdir, not mkpath: one missing level only.
    return QDir().mkdir(directory.absolutePath());
}
