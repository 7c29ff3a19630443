#pragma once

#include "flashing/ISdkRadarFlasher.h"

#include <QMap>
#include <QObject>
#include <QStringList>
#include <memory>

// Asks the flashing library which serial ports hold baseboards, in normal
// mode and in bootloader mode. Lives on the flasher monitor's detection
// thread, so that a slow port enumeration never holds up the window.
class RadarFlasherPortScanner : public QObject
{
    Q_OBJECT
public:
    explicit RadarFlasherPortScanner(std::unique_ptr<ISdkRadarFlasher> library, QObject* parent = nullptr);

public slots:
    void scan(const QString& vendorId, const QStringList& productIds);

signals:
    // Normal-mode ports with their product IDs, and the bootloader-mode ports.
    void scanned(const QMap<QString, QString>& normalPorts, const QStringList& bootloaderPorts);

private:
    ISdkRadarFlasher* m_library; // a child, so that it moves to the thread with the scanner
};
