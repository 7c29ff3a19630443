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
    // Path of the newest image in the directory; empty when there is none.
    virtual QString firmwareImage() const = 0;
};
