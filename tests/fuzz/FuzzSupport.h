#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QString>
#include <QtGlobal>
#include <cstddef>
#include <cstdlib>
#include <cstdint>

// What every fuzz target shares: a quiet log (a rejected input is the
// normal case, and its warning would drown the fuzzer's own output) and a
// scratch file for the readers that take a path instead of bytes.
namespace FuzzSupport {

inline void quietLog()
{
    static const bool installed = [] {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        return true;
    }();
    Q_UNUSED(installed);
}

inline QByteArray bytesOf(const uint8_t* data, size_t size)
{
    return QByteArray(reinterpret_cast<const char*>(data), int(size));
}

// A per-process folder, on tmpfs when there is one, since every input is
// written once per execution.
// Removed when the process exits normally; a crashing input leaves it.
// Held on the heap so it is still there when the exit handler runs.
inline QString scratchDir()
{
    static const QString* const dir = [] {
        const QString root = QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm") : QDir::tempPath();
        auto* path = new QString(QStringLiteral("%1/radar-fuzz-%2").arg(root).arg(qint64(QCoreApplication::applicationPid())));
        QDir().mkpath(*path);
        std::atexit([] { QDir(scratchDir()).removeRecursively(); });
        return path;
    }();
    return *dir;
}

inline QString writeScratch(const QString& name, const uint8_t* data, size_t size)
{
    const QString path = scratchDir() + QLatin1Char('/') + name;
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(reinterpret_cast<const char*>(data), qint64(size));
    return path;
}

}
