#pragma once

#include "HostServices.h"
#include "HostSettings.h"
#include "ModuleLibrary.h"
#include "SdkLibrary.h"

#include "host/ServiceRegistry.h"

#include <QString>
#include <memory>

class IModule;
class JSONConfigurationObject;
class QQmlEngine;

// Loads a module and drives it through its life the way the host does:
// create, initialise, register types, initialise resources, set up the QML
// engine, add configuration; at the end shut down and destroy.
class ModuleHost
{
public:
    struct Options {
        QString modulePath;
        QString sdkPath;
        QString settingsPath;
        QString benchPath;
    };

    ModuleHost();
    ~ModuleHost();

    // Empty text when the module runs; otherwise why it could not start.
    QString start(const Options& options);
    // Shuts the module down and destroys it; safe to call twice.
    void stop();

    // Set when the settings file could not be read; the file is then left
    // as it is on disk and saveSettings() refuses to overwrite it.
    QString settingsError() const { return m_settingsError; }
    bool saveSettings();
    QString settingsPath() const { return m_settingsPath; }

    IModule* module() const { return m_module; }
    // The engine the module set its pages and context properties up in.
    QQmlEngine* engine() const { return m_engine.get(); }
    const ServiceRegistry& registry() const { return m_registry; }
    SdkLibrary& sdkLibrary() { return m_sdk; }
    HostDeviceRegister& deviceRegister() { return m_deviceRegister; }
    HostFlasherRegister& flasherRegister() { return m_flasherRegister; }
    HostDeviceChangeNotifier& deviceChangeNotifier() { return m_changeNotifier; }
    HostPlaybackRegister& playbackRegister() { return m_playbackRegister; }
    HostCoreConfiguration& coreConfiguration() { return m_coreConfiguration; }
    // The host's own settings, saved in the same file as the module's.
    HostSettings& hostSettings() { return m_hostSettings; }

    static QString defaultSettingsPath();

private:
    SdkLibrary m_sdk;
    ModuleLibrary m_moduleLibrary;
    std::unique_ptr<HostBroker> m_broker;
    HostDeviceChangeNotifier m_changeNotifier;
    HostDeviceRegister m_deviceRegister;
    HostFlasherRegister m_flasherRegister;
    HostPlaybackRegister m_playbackRegister;
    HostCoreConfiguration m_coreConfiguration;
    HostSettings m_hostSettings { *m_coreConfiguration.coreUserSettings() };
    ServiceRegistry m_registry;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<JSONConfigurationObject> m_settingsRoot;
    QString m_settingsPath;
    QString m_settingsError;
    IModule* m_module = nullptr;
};
