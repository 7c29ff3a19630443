#pragma once

// Runs the workbench executable as a user would from a shell and keeps what
// it said and how it ended.

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
