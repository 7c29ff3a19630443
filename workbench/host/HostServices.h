#pragma once

#include "host/CoreUserSettings.h"
#include "host/IBroker.h"
#include "host/ICoreConfiguration.h"
#include "host/IDeviceChangeNotifier.h"
#include "host/IDeviceRegister.h"
#include "host/IFlasherRegister.h"
#include "host/IPlaybackRegister.h"

#include <QMap>

// The workbench's implementations of the services a module looks up.

class HostBroker : public IBroker
{
public:
    HostBroker(const Vrn* sdk, QString applicationDirectory);
    const Vrn* sdk() const override { return m_sdk; }
    QString applicationDirectory() const override { return m_applicationDirectory; }

private:
    const Vrn* m_sdk;
    QString m_applicationDirectory;
};

class HostDeviceChangeNotifier : public IDeviceChangeNotifier
{
    Q_OBJECT
public:
    using IDeviceChangeNotifier::IDeviceChangeNotifier;
    // Safe to call from any thread: the notice is delivered on this object's thread.
    void notifyLater();
};

class HostDeviceRegister : public IDeviceRegister
{
    Q_OBJECT
public:
    using IDeviceRegister::IDeviceRegister;
    QList<std::shared_ptr<IDevice>> devices() const { return m_devices.values(); }
    std::shared_ptr<IDevice> device(const QString& name) const { return m_devices.value(name); }

signals:
    void devicesChanged();

public slots:
    void registerDevice(std::shared_ptr<IDevice> device) override;
    void unregisterDevice(QString name) override;

private:
    QMap<QString, std::shared_ptr<IDevice>> m_devices;
};

class HostFlasherRegister : public IFlasherRegister
{
    Q_OBJECT
public:
    using IFlasherRegister::IFlasherRegister;
    QList<std::shared_ptr<IFlasher>> flashers() const { return m_flashers.values(); }
    std::shared_ptr<IFlasher> flasher(const QString& name) const { return m_flashers.value(name); }

signals:
    void flashersChanged();

public slots:
    void registerFlasher(std::shared_ptr<IFlasher> flasher) override;
    void unregisterFlasher(std::string name) override;

private:
    QMap<QString, std::shared_ptr<IFlasher>> m_flashers;
};

class HostPlaybackRegister : public IPlaybackRegister
{
    Q_OBJECT
public:
    using IPlaybackRegister::IPlaybackRegister;
    QList<std::shared_ptr<IPlayback>> playbacks() const { return m_playbacks.values(); }

public slots:
    void registerPlayback(std::shared_ptr<IPlayback> playback) override;
    void unregisterPlayback(QString name) override;

private:
    QMap<QString, std::shared_ptr<IPlayback>> m_playbacks;
};

class HostCoreConfiguration : public ICoreConfiguration
{
public:
    CoreUserSettings* coreUserSettings() override { return &m_settings; }

private:
    CoreUserSettings m_settings;
};
