#pragma once

#include <QObject>
#include <QString>

class LogFile;
class Logging;

// The Settings page's view of the host's log files: the module's clean-up
// (automatic clearing and its age limit) over the directory the host writes
// its log into, how many files and bytes lie there, and clearing on demand.
class LogCleanup : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Logging* logging READ logging CONSTANT)
    Q_PROPERTY(QString directory READ directory CONSTANT)
    Q_PROPERTY(int fileCount READ fileCount NOTIFY filesChanged)
    Q_PROPERTY(QString totalSize READ totalSize NOTIFY filesChanged)
public:
    // `logFile` may be null: the host then writes no log of its own.
    LogCleanup(Logging& logging, LogFile* logFile, QObject* parent = nullptr);

    Logging* logging() const { return &m_logging; }
    QString directory() const;
    int fileCount() const { return m_fileCount; }
    QString totalSize() const;

    // Removes the files older than the age limit, or all of them; the
    // running session then goes on in a new file.
    Q_INVOKABLE void clearOld();
    Q_INVOKABLE void clearAll();
    Q_INVOKABLE void refresh();

signals:
    void filesChanged();

private:
    Logging& m_logging;
    LogFile* m_logFile;
    int m_fileCount = 0;
    qint64 m_totalBytes = 0;
};
