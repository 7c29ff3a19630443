#include "HostServices.h"

#include <QMetaObject>

HostBroker::HostBroker(const Vrn* sdk, QString applicationDirectory)
    : m_sdk(sdk)
    , m_applicationDirectory(std::move(applicationDirectory))
{
}

void HostDeviceChangeNotifier::notifyLater()
{
    QMetaObject::invokeMethod(this, &IDeviceChangeNotifier::deviceChangeNotify, Qt::QueuedConnection);
}

void HostDeviceRegister::registerDevice(std::shared_ptr<IDevice> device)
{
    if (!device)
        return;
    m_devices.insert(device->name(), std::move(device));
    emit devicesChanged();
}

void HostDeviceRegister::unregisterDevice(QString name)
{
    if (m_devices.remove(name) > 0)
        emit devicesChanged();
}

void HostFlasherRegister::registerFlasher(std::shared_ptr<IFlasher> flasher)
{
    if (!flasher)
        return;
    m_flashers.insert(QString::fromStdString(flasher->name()), std::move(flasher));
    emit flashersChanged();
}

void HostFlasherRegister::unregisterFlasher(std::string name)
{
    if (m_flashers.remove(QString::fromStdString(name)) > 0)
        emit flashersChanged();
}

void HostPlaybackRegister::registerPlayback(std::shared_ptr<IPlayback> playback)
{
    if (playback)
        m_playbacks.insert(playback->name(), std::move(playback));
}

void HostPlaybackRegister::unregisterPlayback(QString name)
{
    m_playbacks.remove(name);
}
