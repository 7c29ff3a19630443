#include "flashing/RadarFirmwareSource.h"

#include <QDir>
#include <QFileInfo>

RadarFirmwareSource::RadarFirmwareSource(const QString& applicationDirectory, QObject* parent)
    : QObject(parent)
    , m_directory(applicationDirectory + QStringLiteral("/firmware/radar/"))
{
}

QUrl RadarFirmwareSource::firmwareDirectoryUrl() const
{
    return QUrl(QStringLiteral("file:///") + QDir::cleanPath(m_directory).remove(QRegExp(QStringLiteral("^/+"))));
}

QString RadarFirmwareSource::filenamePattern() const
{
    return QStringLiteral("RadarBaseboardKT4*.bin");
}

QString RadarFirmwareSource::firmwareImage() const
{
    const QFileInfoList images =
        QDir(m_directory).entryInfoList({ filenamePattern() }, QDir::Files, QDir::Name | QDir::Reversed);
    return images.isEmpty() ? QString() : images.first().absoluteFilePath();
}
