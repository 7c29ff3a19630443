#pragma once

#include <QString>

// Writes every log line of the process into a file of its own in the
// application's log directory (<application directory>/logs/, where the
// log clean-up looks), besides passing it on to the handler before it.
// One per process; the previous handler returns when it goes.
class LogFile
{
public:
    LogFile();
    ~LogFile();

    // Opens tavrin-workbench_<yyyyMMdd-HHmmss>.log. Empty text on success,
    // otherwise why the log stays on standard error only.
    QString open();
    // Starts a new file when the clean-up removed the one being written.
    void reopenIfRemoved();
    QString path() const;

    static QString directory();
};
