#include "frame/Radar.h"

#include "core/JSONConfigurationObject.h"
#include "flashing/RadarFirmwareSource.h"
#include "flashing/RadarFlasherMonitor.h"
#include "flashing/SdkRadarFlasher.h"
#include "fmcw/cw/RadarCW.h"
#include "fmcw/standard/RadarS.h"
#include "frame/IRadarSubmoduleCoordinator.h"
#include "frame/RadarConstants.h"
#include "frame/RadarCoordinator.h"
#include "frame/RadarDeviceMonitor.h"
#include "frame/RadarGeneralUserSettings.h"
#include "host/IBroker.h"
#include "host/IDeviceChangeNotifier.h"
#include "host/IDeviceRegister.h"
#include "host/IFlasherRegister.h"
#include "zp7/ZP7S.h"

#include <QCoreApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QtQml>

// Resource initialisers live in the global namespace.
static void initialiseRadarResources()
{
    Q_INIT_RESOURCE(radar_pages);
    Q_INIT_RESOURCE(radar_cw_pages);
    Q_INIT_RESOURCE(radar_zp7_pages);
    Q_INIT_RESOURCE(radar_configurations);
}

Radar::Radar()
{
    m_submodules.append(std::make_shared<RadarS>());
    m_submodules.append(std::make_shared<ZP7S>());
    m_submodules.append(std::make_shared<RadarCW>());
}

Radar::~Radar()
{
    // Members go in reverse order; the submodules are released last-in
    // first-out, as the list would do it.
    while (!m_submodules.isEmpty())
        m_submodules.removeLast();
}

void Radar::hostNotice(const QVariant& notice)
{
    for (const auto& submodule : qAsConst(m_submodules))
        submodule->hostNotice(notice);
}

void Radar::initialise(ServiceRegistry& registry)
{
    auto* broker = lookupService<IBroker>(registry);
    auto* changeNotifier = lookupService<IDeviceChangeNotifier>(registry);
    auto* deviceRegister = lookupService<IDeviceRegister>(registry);
    auto* flasherRegister = lookupService<IFlasherRegister>(registry);

    m_generalUserSettings = std::make_shared<RadarGeneralUserSettings>();
    m_firmwareSource = std::make_shared<RadarFirmwareSource>(
        broker ? broker->applicationDirectory() : QCoreApplication::applicationDirPath());
    m_coordinator = std::make_shared<RadarCoordinator>();
    auto sdkFlasher = std::make_unique<SdkRadarFlasher>();
    m_flasherMonitor = std::make_shared<RadarFlasherMonitor>(m_firmwareSource.get(), std::move(sdkFlasher));
    // The baseboards' USB identity is a deployment setting; the monitor
    // follows it, also once the settings file has been read.
    const auto applyBaseboardIdentity = [settings = m_generalUserSettings.get(), monitor = m_flasherMonitor.get()] {
        RadarBaseboardIdentity identity;
        identity.vendorId = settings->baseboardVendorId().toStdString();
        identity.productIds.clear();
        for (const QString& productId : settings->baseboardProductIds())
            identity.productIds.push_back(productId.toStdString());
        monitor->setIdentity(identity);
    };
    applyBaseboardIdentity();
    QObject::connect(m_generalUserSettings.get(), &RadarGeneralUserSettings::baseboardIdentityChanged,
                     m_flasherMonitor.get(), applyBaseboardIdentity);
    m_deviceMonitor = std::make_shared<RadarDeviceMonitor>(broker, m_coordinator.get());

    publishService<RangeSpectrumUserSettings>(registry, m_generalUserSettings->rangeSpectrum());
    publishService<TimeDomainUserSettings>(registry, m_generalUserSettings->timeDomain());
    publishService<IRadarFirmwareSource>(registry, m_firmwareSource.get());

    for (const auto& submodule : qAsConst(m_submodules)) {
        submodule->initialise(registry);
        static_cast<IRadarSubmoduleCoordinatorRegister*>(m_coordinator.get())
            ->registerSubmoduleCoordinator(submodule->coordinator());
    }

    // Monitors run detection on their own threads: automatic connections
    // deliver their signals queued on the receivers' threads.
    QObject::connect(m_coordinator.get(), &IRadarCoordinator::triggerDetectDevices, m_deviceMonitor.get(),
                     &RadarDeviceMonitor::detectDevices);
    if (changeNotifier)
        QObject::connect(changeNotifier, &IDeviceChangeNotifier::deviceChangeNotify, m_deviceMonitor.get(),
                         &RadarDeviceMonitor::detectDevices);
    if (deviceRegister) {
        QObject::connect(m_deviceMonitor.get(), &RadarDeviceMonitor::deviceAdded, deviceRegister,
                         &IDeviceRegister::registerDevice);
        QObject::connect(m_deviceMonitor.get(), &RadarDeviceMonitor::deviceRemoved, deviceRegister,
                         &IDeviceRegister::unregisterDevice);
    }
    QObject::connect(m_flasherMonitor.get(), &RadarFlasherMonitor::triggerEvent, m_coordinator.get(),
                     &IRadarCoordinator::triggerEvent);
    if (changeNotifier)
        QObject::connect(changeNotifier, &IDeviceChangeNotifier::deviceChangeNotify, m_flasherMonitor.get(),
                         &RadarFlasherMonitor::detectDevices);
    if (flasherRegister) {
        QObject::connect(m_flasherMonitor.get(), &RadarFlasherMonitor::flasherAdded, flasherRegister,
                         &IFlasherRegister::registerFlasher);
        QObject::connect(m_flasherMonitor.get(), &RadarFlasherMonitor::flasherRemoved, flasherRegister,
                         &IFlasherRegister::unregisterFlasher);
    }
}

void Radar::registerTypes()
{
    qmlRegisterUncreatableMetaObject(RadarConstants::staticMetaObject, "cpp.RadarConstants", 1, 0,
                                     "RadarConstants", QStringLiteral("Error: only enums"));
    qRegisterMetaType<RadarGeneralUserSettings*>("RadarGeneralUserSettings*");
    qRegisterMetaType<RadarEventCode>("RadarEventCode");
    qRegisterMetaType<vrn_Device_Shield_Type_t>("vrn_Device_Shield_Type_t");
    for (const auto& submodule : qAsConst(m_submodules))
        submodule->registerTypes();
}

void Radar::initialiseResources()
{
    initialiseRadarResources();
    for (const auto& submodule : qAsConst(m_submodules))
        submodule->initialiseResources();
}

void Radar::shutdown()
{
    for (const auto& submodule : qAsConst(m_submodules))
        submodule->shutdown();
    m_deviceMonitor.reset();
    m_flasherMonitor.reset();
    m_coordinator.reset();
    m_firmwareSource.reset();
}

void Radar::setupEngine(QQmlEngine* engine)
{
    if (engine)
        engine->rootContext()->setContextProperty(QStringLiteral("radarCoordinator"), m_coordinator.get());
    for (const auto& submodule : qAsConst(m_submodules))
        submodule->setupEngine(engine);
}

void Radar::addConfiguration(JSONConfigurationObject& root)
{
    root.addChild(m_generalUserSettings->configurationNode());
    root.addChild(m_coordinator->configurationNode());
    for (const auto& submodule : qAsConst(m_submodules))
        submodule->addConfiguration(root);
}

std::pair<QString, QString> Radar::moduleInfo() const
{
    return { QStringLiteral("Radar"), QStringLiteral("1.0") };
}
