#pragma once

#include "flashing/IRadarFirmwareSource.h"
#include "flashing/RadarFirmwareImage.h"

#include <QObject>

// Firmware images shipped beside the application in "firmware/radar/".
class RadarFirmwareSource : public QObject, public IRadarFirmwareSource
{
    Q_OBJECT
public:
    explicit RadarFirmwareSource(const QString& applicationDirectory, QObject* parent = nullptr);

    QString firmwareDirectory() const override { return m_directory; }
    QUrl firmwareDirectoryUrl() const override;
    QString filenamePattern() const override;
    QString firmwareImage() const override;
    QString newerImageFor(const QString& boardVersion) const override;

    // The intact image with the highest version; invalid when there is none.
    RadarFirmwareImage newestImage() const;

private:
    QString m_directory;
};
