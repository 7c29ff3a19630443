#pragma once

#include <QString>
#include <QUrl>

// Where the firmware images for the radar baseboards are found.
class IRadarFirmwareSource
{
public:
    virtual ~IRadarFirmwareSource() = default;
    virtual QString firmwareDirectory() const = 0;
    virtual QUrl firmwareDirectoryUrl() const = 0;
    virtual QString filenamePattern() const = 0;
    // Path of the image with the highest version in the directory; empty
    // when there is no intact one.
    virtual QString firmwareImage() const = 0;
    // Path of that image when its version is higher than `boardVersion`
    // ("2.5.1" or "v2.5.1", as the device information shows it); empty when
    // the board is up to date, there is no image or the version is unreadable.
    virtual QString newerImageFor(const QString& boardVersion) const = 0;
};
