#include "ProcessProbe.h"

#include <QDir>
#include <QFile>

namespace {

qint64 statusKiB(const QByteArray& key)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly | QIODevice::Text))
        return -1;
    for (QByteArray line = status.readLine(); !line.isEmpty(); line = status.readLine()) {
        if (line.startsWith(key))
            return line.mid(key.size()).trimmed().split(' ').value(0).toLongLong();
    }
    return -1;
}

} // namespace

namespace ProcessProbe {

qint64 residentKiB()
{
    return statusKiB("VmRSS:");
}

qint64 peakResidentKiB()
{
    return statusKiB("VmHWM:");
}

int threadCount()
{
    return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

} // namespace ProcessProbe
