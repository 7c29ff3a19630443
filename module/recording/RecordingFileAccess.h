#pragma once

#include <QFile>
#include <memory>

// What the binary and the text recording files do alike with their QFile.
namespace RecordingFileAccess {

bool isOpenFor(const QFile* file, QIODevice::OpenModeFlag mode);

// Flushes a file open for writing, then closes and releases it. The last
// kilobytes sit in the file's buffer, so a full disk shows only in this
// flush: it is checked, logged and answered instead of left to close().
bool flushAndClose(std::unique_ptr<QFile>& file);

}
