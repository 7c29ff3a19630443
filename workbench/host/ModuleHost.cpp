#include "ModuleHost.h"

#include "core/JSONConfigurationFile.h"
#include "core/JSONConfigurationObject.h"
#include "host/IModule.h"
#include "sdk/vrn.h"
#include "vrn_sim.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QQmlEngine>
#include <QStandardPaths>

ModuleHost::ModuleHost() = default;

ModuleHost::~ModuleHost()
{
    stop();
}

QString ModuleHost::defaultSettingsPath()
{
    const QString directory = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return QDir(directory).filePath(QStringLiteral("tavrin-workbench/settings.json"));
}

QString ModuleHost::start(const Options& options)
{
    const QString applicationDirectory = QCoreApplication::applicationDirPath();

    // A missing SDK is not fatal: the module then sees no boards.
    const QString sdkPath = options.sdkPath.isEmpty() ? SdkLibrary::defaultPath(applicationDirectory) : options.sdkPath;
    const QString sdkError = m_sdk.load(sdkPath);
    if (!sdkError.isEmpty()) {
        if (!options.sdkPath.isEmpty())
            return sdkError;
        qWarning().noquote() << sdkError << "- running without boards";
    }
    if (!options.benchPath.isEmpty()) {
        const QString benchError = m_sdk.loadBench(options.benchPath);
        if (!benchError.isEmpty())
            return benchError;
    }
    // The simulator tells when boards are plugged or unplugged, as the
    // operating system does for real boards.
    if (const VrnSimControl* control = m_sdk.control()) {
        control->set_change_callback(
            [](void* notifier) { static_cast<HostDeviceChangeNotifier*>(notifier)->notifyLater(); }, &m_changeNotifier);
    }

    const QString modulePath =
        options.modulePath.isEmpty() ? ModuleLibrary::defaultPath(applicationDirectory) : options.modulePath;
    const QString moduleError = m_moduleLibrary.load(modulePath);
    if (!moduleError.isEmpty())
        return moduleError;
    m_module = m_moduleLibrary.createModule();
    if (!m_module)
        return QStringLiteral("The module %1 could not create its module object").arg(modulePath);

    m_broker = std::make_unique<HostBroker>(m_sdk.sdk(), applicationDirectory);
    publishService<IBroker>(m_registry, m_broker.get());
    publishService<IDeviceChangeNotifier>(m_registry, &m_changeNotifier);
    publishService<IDeviceRegister>(m_registry, &m_deviceRegister);
    publishService<IFlasherRegister>(m_registry, &m_flasherRegister);
    publishService<IPlaybackRegister>(m_registry, &m_playbackRegister);
    publishService<ICoreConfiguration>(m_registry, &m_coreConfiguration);
    publishService<Vrn>(m_registry, const_cast<Vrn*>(m_sdk.sdk()));

    m_engine = std::make_unique<QQmlEngine>();
    m_module->initialise(m_registry);
    m_module->registerTypes();
    m_module->initialiseResources();
    m_module->setupEngine(m_engine.get());
    m_settingsRoot = std::make_unique<JSONConfigurationObject>(QStringLiteral("settings"));
    m_module->addConfiguration(*m_settingsRoot);
    m_settingsRoot->addChild(m_hostSettings.configurationNode());

    m_settingsPath = options.settingsPath.isEmpty() ? defaultSettingsPath() : options.settingsPath;
    if (QFileInfo::exists(m_settingsPath)) {
        const QString error = loadFromFile(*m_settingsRoot, m_settingsPath);
        if (!error.isEmpty())
            m_settingsError = QStringLiteral("Settings file %1: %2").arg(m_settingsPath, error);
    }
    return {};
}

bool ModuleHost::saveSettings()
{
    if (!m_settingsRoot || !m_settingsError.isEmpty())
        return false;
    QDir().mkpath(QFileInfo(m_settingsPath).absolutePath());
    return saveToFile(*m_settingsRoot, m_settingsPath);
}

void ModuleHost::stop()
{
    if (const VrnSimControl* control = m_sdk.control())
        control->set_change_callback(nullptr, nullptr);
    if (!m_module)
        return;
    m_module->shutdown();
    // The settings tree calls into the module's objects: it goes first.
    m_settingsRoot.reset();
    delete m_module;
    m_module = nullptr;
    m_engine.reset();
}
