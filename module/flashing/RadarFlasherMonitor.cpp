#include "flashing/RadarFlasherMonitor.h"

#include "flashing/SdkRadarFlasher.h"

#include <QDebug>

RadarFlasherMonitor::RadarFlasherMonitor(IRadarFirmwareSource* firmwareSource,
                                         std::unique_ptr<SdkRadarFlasher> flasher, QObject* parent)
    : QObject(parent)
    , m_firmwareSource(firmwareSource)
    , m_flasher(std::move(flasher))
{
}

RadarFlasherMonitor::~RadarFlasherMonitor() = default;

void RadarFlasherMonitor::detectDevices()
{
    // Boards in bootloader mode answer to this identity whatever their type.
    const auto bootloaderPorts = m_flasher->findComPorts("03EB", "6124");
    if (!bootloaderPorts.empty())
        qDebug() << "Detected devices in bootloader mode.";
}
