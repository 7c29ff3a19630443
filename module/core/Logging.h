#pragma once

#include <QObject>
#include <QString>
#include <QVariantList>
#include <QVector>

class QDateTime;
class QFileInfo;

// Keeps the application's own log directory from growing without bound by
// deleting log files older than the age the user picked.
class Logging : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool autoClearLogs READ autoClearLogs WRITE setAutoClearLogs NOTIFY autoClearLogsChanged)
    Q_PROPERTY(QString clearLimit READ clearLimit WRITE setClearLimit NOTIFY clearLimitChanged)
    // For the page's selector: a list of {"text", "seconds"} maps.
    Q_PROPERTY(QVariantList clearOptions READ clearOptionsModel CONSTANT)
public:
    struct ClearOption
    {
        QString text;
        qint64 ageSeconds;
    };

    explicit Logging(QObject* parent = nullptr);

    bool autoClearLogs() const { return m_autoClearLogs; }
    // Switching on clears the old files at once.
    void setAutoClearLogs(bool autoClearLogs);
    QString clearLimit() const { return m_clearLimit; }
    void setClearLimit(const QString& clearLimit);
    const QVector<ClearOption>& clearOptions() const { return m_clearOptions; }
    QVariantList clearOptionsModel() const;

    // Removes every log file, or only those born before now minus the age
    // of the clearLimit option. Files whose birth time the file system
    // does not keep are never removed: their age is unknown.
    Q_INVOKABLE void clearLogs(bool clearAll);
    Q_INVOKABLE void loadDefaults();

signals:
    void autoClearLogsChanged();
    void clearLimitChanged();

protected:
    // The application directory followed by "/logs/".
    virtual QString logDirectory() const;
    // Creation time of a file; invalid when the file system has none.
    virtual QDateTime birthTime(const QFileInfo& file) const;

private:
    bool m_autoClearLogs = false;
    QString m_clearLimit;
    QVector<ClearOption> m_clearOptions;
};
