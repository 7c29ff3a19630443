#include "FirmwareImages.h"

#include "host/IFlasher.h"

#include <QCollator>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <algorithm>

namespace FirmwareImages {

QString localFolder(const QString& folder)
{
    const QUrl url(folder);
    return url.isLocalFile() ? url.toLocalFile() : folder;
}

QString newest(const IFlasher& flasher)
{
    QDir dir(localFolder(flasher.firmwareDir()));
    QStringList names = dir.entryList({ flasher.filenamePattern() }, QDir::Files | QDir::Readable);
    if (names.isEmpty())
        return {};
    QCollator collator;
    collator.setNumericMode(true);
    std::sort(names.begin(), names.end(), collator);
    return dir.filePath(names.last());
}

QString userPath(const QString& pathOrUrl)
{
    const QString trimmed = pathOrUrl.trimmed();
    if (trimmed.isEmpty())
        return {};
    return QFileInfo(localFolder(trimmed)).absoluteFilePath();
}

} // namespace FirmwareImages
