#pragma once

#include <QObject>
#include <QString>

// Where a logging run writes and under which name, edited by the logging
// page. The file name is either the user's own or one generated from the
// time the user pressed start.
class LoggingConfiguration : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString loggingPath READ loggingPath WRITE setLoggingPath NOTIFY loggingPathChanged)
    Q_PROPERTY(QString loggingFileName READ loggingFileName WRITE setLoggingFileName NOTIFY loggingFileNameChanged)
    Q_PROPERTY(QString loggingFileNameTimestamp READ loggingFileNameTimestamp WRITE setLoggingFileNameTimestamp
                   NOTIFY loggingFileNameTimestampChanged)
    Q_PROPERTY(int numberOfLogs READ numberOfLogs WRITE setNumberOfLogs NOTIFY numberOfLogsChanged)
    Q_PROPERTY(bool isCustomFileName READ isCustomFileName WRITE setIsCustomFileName NOTIFY isCustomFileNameChanged)
public:
    explicit LoggingConfiguration(QObject* parent = nullptr);

    QString loggingPath() const { return m_loggingPath; }
    void setLoggingPath(const QString& loggingPath);
    QString loggingFileName() const { return m_loggingFileName; }
    void setLoggingFileName(const QString& loggingFileName);
    QString loggingFileNameTimestamp() const { return m_loggingFileNameTimestamp; }
    void setLoggingFileNameTimestamp(const QString& loggingFileNameTimestamp);
    // How many files the producer has written with this configuration; the
    // producer counts, the page shows it.
    int numberOfLogs() const { return m_numberOfLogs; }
    void setNumberOfLogs(int numberOfLogs);
    bool isCustomFileName() const { return m_isCustomFileName; }
    void setIsCustomFileName(bool isCustomFileName);

    // The chosen name (without extension) and the full path of the file.
    QString fileName() const;
    QString logFilePath() const;

    // Names the next file "target_log_" + local "yyyyMMdd-HHmmss".
    Q_INVOKABLE void collectTimestamp();
    // Whether the file a run would write already exists (the page asks
    // before overwriting it).
    Q_INVOKABLE bool checkIfFileExist() const;
    // True when the file is absent, or is a plain file we may write; a
    // directory of that name can never be overwritten.
    Q_INVOKABLE bool checkIfFileCanBeOverwritten() const;
    // Falls back to the desktop for an empty path; creates one missing
    // level at most, so a mistyped parent is not silently built.
    Q_INVOKABLE bool checkIfLoggingPathIsValid();

signals:
    void loggingPathChanged();
    void loggingFileNameChanged();
    void loggingFileNameTimestampChanged();
    void numberOfLogsChanged();
    void isCustomFileNameChanged();

private:
    QString m_loggingPath;
    QString m_loggingFileName;
    QString m_loggingFileNameTimestamp;
    int m_numberOfLogs = 0;
    bool m_isCustomFileName = false;
};
