#include "flashing/RadarFirmwareSource.h"

#include <QDebug>
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

RadarFirmwareImage RadarFirmwareSource::newestImage() const
{
    // The version is taken from each header rather than the file name: a
    // renamed file must not pass for another version, and a damaged one is
    // never offered.
    RadarFirmwareImage newest;
    const QFileInfoList files = QDir(m_directory).entryInfoList({ filenamePattern() }, QDir::Files, QDir::Name);
    for (const QFileInfo& file : files) {
        QString error;
        const RadarFirmwareImage image = RadarFirmwareImage::read(file.absoluteFilePath(), error);
        if (!image.isValid()) {
            qWarning().noquote() << "Skipping firmware image:" << error;
            continue;
        }
        if (!newest.isValid() || newest.version() < image.version())
            newest = image;
    }
    return newest;
}

QString RadarFirmwareSource::firmwareImage() const
{
    return newestImage().path();
}

QString RadarFirmwareSource::newerImageFor(const QString& boardVersion) const
{
    RadarFirmwareVersion board;
    if (!RadarFirmwareVersion::parse(boardVersion, board)) {
        qWarning().noquote() << QStringLiteral("Cannot compare firmware images with the board's version \"%1\"")
                                    .arg(boardVersion);
        return QString();
    }
    const RadarFirmwareImage image = newestImage();
    if (!image.isValid() || !(board < image.version()))
        return QString();
    qInfo().noquote() << QStringLiteral("Firmware %1 is available for a board running %2: %3")
                             .arg(image.version().toString(), board.toString(), image.path());
    return image.path();
}
