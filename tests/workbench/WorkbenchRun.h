#pragma once

// Runs the workbench executable as a user would from a shell and keeps what
// it said and how it ended; and the file reading and writing around it.

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>

struct WorkbenchRun {
    int exitCode = -1; // -1 when it did not end in time
    QString out;
    QString err;
};

inline WorkbenchRun runWorkbench(const QStringList& arguments, int timeoutMs = 120000)
{
    QProcess workbench;
    workbench.start(WORKBENCH, arguments);
    WorkbenchRun run;
    if (!workbench.waitForFinished(timeoutMs))
        return run;
    run.exitCode = workbench.exitCode();
    run.out = QString::fromUtf8(workbench.readAllStandardOutput());
    run.err = QString::fromUtf8(workbench.readAllStandardError());
    return run;
}

inline bool writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(content) == content.size();
}

inline QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline QStringList readLines(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

inline QJsonObject readJson(const QString& path)
{
    return QJsonDocument::fromJson(readFile(path)).object();
}
