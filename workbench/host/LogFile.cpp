#include "LogFile.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QMutexLocker>
#include <QTextStream>

namespace {

// The handler may run on any thread; the file and the previous handler are
// shared by all of them.
QMutex logMutex;
QFile* logFile = nullptr;
QtMessageHandler previousHandler = nullptr;

const char* levelName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return "debug";
    case QtInfoMsg:
        return "info";
    case QtWarningMsg:
        return "warning";
    case QtCriticalMsg:
        return "critical";
    case QtFatalMsg:
        return "fatal";
    }
    return "log";
}

void writeLine(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    {
        QMutexLocker lock(&logMutex);
        if (logFile && logFile->isOpen()) {
            QTextStream stream(logFile);
            stream << QDateTime::currentDateTime().toString(Qt::ISODateWithMs) << ' ' << levelName(type) << ' '
                   << message;
            if (context.file)
                stream << " (" << context.file << ':' << context.line << ", " << context.function << ')';
            stream << '\n';
            stream.flush();
        }
    }
    if (previousHandler)
        previousHandler(type, context, message);
}

QString newFileName()
{
    return QStringLiteral("tavrin-workbench_%1.log")
        .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss")));
}

} // namespace

LogFile::LogFile() = default;

LogFile::~LogFile()
{
    {
        QMutexLocker lock(&logMutex);
        delete logFile;
        logFile = nullptr;
    }
    qInstallMessageHandler(previousHandler);
    previousHandler = nullptr;
}

QString LogFile::directory()
{
    // The same place the module's log clean-up looks in.
    return QCoreApplication::applicationDirPath() + QStringLiteral("/logs/");
}

QString LogFile::open()
{
    if (!QDir().mkpath(directory()))
        return QStringLiteral("Cannot create the log directory %1").arg(directory());
    auto* file = new QFile(QDir(directory()).filePath(newFileName()));
    if (!file->open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text)) {
        const QString error = QStringLiteral("Cannot write the log file %1: %2").arg(file->fileName(), file->errorString());
        delete file;
        return error;
    }
    QMutexLocker lock(&logMutex);
    const bool first = logFile == nullptr;
    delete logFile;
    logFile = file;
    lock.unlock();
    if (first)
        previousHandler = qInstallMessageHandler(writeLine);
    return {};
}

void LogFile::reopenIfRemoved()
{
    QMutexLocker lock(&logMutex);
    if (!logFile || QFileInfo::exists(logFile->fileName()))
        return;
    lock.unlock();
    open();
}

QString LogFile::path() const
{
    QMutexLocker lock(&logMutex);
    return logFile ? logFile->fileName() : QString();
}
