#include "recording/RecordingFileAccess.h"

#include <QDebug>

namespace RecordingFileAccess {

bool isOpenFor(const QFile* file, QIODevice::OpenModeFlag mode)
{
    return file && file->isOpen() && (file->openMode() & mode) == mode;
}

bool flushAndClose(std::unique_ptr<QFile>& file)
{
    if (!file)
        return true;
    bool flushed = true;
    if (file->openMode() & QIODevice::WriteOnly) {
        flushed = file->flush();
        if (!flushed)
            qCritical() << "Cannot flush recording file" << file->fileName() << ":" << file->errorString();
    }
    file->close();
    file.reset();
    return flushed;
}

}
