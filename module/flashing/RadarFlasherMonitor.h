#pragma once

#include "frame/RadarEventCode.h"
#include "host/IFlasher.h"

#include <QObject>
#include <memory>
#include <string>

class IRadarFirmwareSource;
class SdkRadarFlasher;

// Watches the serial ports for radar baseboards and offers a flasher for
// each to the host.
class RadarFlasherMonitor : public QObject
{
    Q_OBJECT
public:
    RadarFlasherMonitor(IRadarFirmwareSource* firmwareSource, std::unique_ptr<SdkRadarFlasher> flasher,
                        QObject* parent = nullptr);
    ~RadarFlasherMonitor() override;

signals:
    void flasherAdded(std::shared_ptr<IFlasher> flasher);
    void flasherRemoved(std::string name);
    void triggerEvent(RadarEventCode code, QString message, QString details);

public slots:
    void detectDevices();

private:
    IRadarFirmwareSource* m_firmwareSource;
    std::unique_ptr<SdkRadarFlasher> m_flasher;
};
