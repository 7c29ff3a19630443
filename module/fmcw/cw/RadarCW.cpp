#include "fmcw/cw/RadarCW.h"

#include "common/ISeriesChartData.h"
#include "common/MathAxis.h"
#include "common/RangeSpectrumUserSettings.h"
#include "common/TimeDomainUserSettings.h"
#include "core/JSONConfigurationObject.h"
#include "core/LoggingConfiguration.h"
#include "flashing/IRadarFirmwareSource.h"
#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/RadarAntennas.h"
#include "fmcw/common/RadarDevice.h"
#include "fmcw/cw/RadarCWController.h"
#include "fmcw/cw/RadarCWCoordinator.h"
#include "fmcw/cw/RadarCWDataProcessing.h"
#include "fmcw/cw/RadarCWView.h"
#include "fmcw/cw/config/RadarCWConfig.h"
#include "fmcw/cw/config/RadarCWParams.h"
#include "fmcw/cw/config/RadarCWParamsLimits.h"
#include "fmcw/cw/config/RadarCWUserSettings.h"
#include "fmcw/cw/config/RadarDeviceCWConfig.h"
#include "host/IBroker.h"
#include "host/ICoreConfiguration.h"
#include "sdk/vrn.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QtQml>

RadarCW::RadarCW(QObject* parent)
    : QObject(parent)
{
}

RadarCW::~RadarCW()
{
    // The view listens to the others and the coordinator drives them: they
    // go first; the controller closes its handle before the device.
    m_view.reset();
    m_coordinator.reset();
    m_processing.reset();
    m_config.reset();
    m_controller.reset();
    m_device.reset();
}

void RadarCW::hostNotice(const QVariant&)
{
}

IRadarSubmoduleCoordinator* RadarCW::coordinator()
{
    return m_coordinator.get();
}

void RadarCW::initialise(ServiceRegistry& registry)
{
    m_sdk = lookupService<Vrn>(registry);
    m_broker = lookupService<IBroker>(registry);
    if (!m_sdk && m_broker)
        m_sdk = m_broker->sdk();
    auto* coreConfiguration = lookupService<ICoreConfiguration>(registry);
    CoreUserSettings* coreSettings = coreConfiguration ? coreConfiguration->coreUserSettings() : nullptr;

    m_device = std::make_unique<RadarDevice>(m_sdk);
    m_controller = std::make_unique<RadarCWController>(m_sdk);
    auto userSettings = std::make_unique<RadarCWUserSettings>(lookupService<RangeSpectrumUserSettings>(registry),
                                                              lookupService<TimeDomainUserSettings>(registry));
    m_config = std::make_unique<RadarCWConfig>(m_controller.get(), std::move(userSettings));
    m_processing = std::make_unique<RadarCWDataProcessing>(m_broker, m_controller.get(), m_config.get());
    m_coordinator = std::make_unique<RadarCWCoordinator>(m_device.get(), m_controller.get(), m_config.get(),
                                                         m_processing.get(), coreSettings);
    m_view = std::make_unique<RadarCWView>(m_coordinator.get(), m_config.get(), m_processing.get());
    m_view->setFirmwareSource(lookupService<IRadarFirmwareSource>(registry));

    // The protector's and the monitors' events arrive queued on this thread.
    RadarCWCoordinator* coordinator = m_coordinator.get();
    connect(m_device.get(), &RadarDevice::triggerEvent, coordinator, &RadarCWCoordinator::onRadarEvent);
    connect(m_controller.get(), &RadarCWController::triggerEvent, coordinator, &RadarCWCoordinator::onRadarEvent);
    connect(m_config.get(), &RadarCWConfig::triggerEvent, coordinator, &RadarCWCoordinator::onRadarEvent);
    connect(m_processing.get(), &RadarCWDataProcessing::triggerEvent, coordinator, &RadarCWCoordinator::onRadarEvent);
    connect(m_config.get(), &RadarCWConfig::deviceConfigUpdated, coordinator,
            &RadarCWCoordinator::onDeviceConfigUpdated);
}

void RadarCW::registerTypes()
{
    qRegisterMetaType<RadarDeviceCWConfig*>("RadarDeviceCWConfig*");
    qRegisterMetaType<RadarCWParams*>("RadarCWParams*");
    qRegisterMetaType<RadarCWParamsLimits*>("RadarCWParamsLimits*");
    qRegisterMetaType<RadarCWUserSettings*>("RadarCWUserSettings*");
    qRegisterMetaType<LoggingConfiguration*>("LoggingConfiguration*");
    qRegisterMetaType<RadarAntennas*>("RadarAntennas*");
    qRegisterMetaType<DeviceInfo*>("DeviceInfo*");
    qRegisterMetaType<MathAxis*>("MathAxis*");
    qRegisterMetaType<ISeriesChartData*>("ISeriesChartData*");
    qRegisterMetaType<RangeSpectrumUserSettings*>("RangeSpectrumUserSettings*");
    qRegisterMetaType<TimeDomainUserSettings*>("TimeDomainUserSettings*");
    qmlRegisterUncreatableType<RadarCWView>("cpp.RadarCWView", 1, 0, "RadarCWView", QStringLiteral("Error: view only"));
    qmlRegisterUncreatableType<RadarDeviceCWConfig>("cpp.RadarDeviceCWConfig", 1, 0, "RadarDeviceCWConfig",
                                                    QStringLiteral("Error: configuration only"));
    qmlRegisterUncreatableType<RadarCWParams>("cpp.RadarCWParams", 1, 0, "RadarCWParams",
                                              QStringLiteral("Error: parameters only"));
    qmlRegisterUncreatableType<RadarCWParamsLimits>("cpp.RadarCWParamsLimits", 1, 0, "RadarCWParamsLimits",
                                                    QStringLiteral("Error: limits only"));
}

void RadarCW::initialiseResources()
{
}

void RadarCW::shutdown()
{
    if (m_coordinator)
        m_coordinator->disconnectDevice();
}

void RadarCW::setupEngine(QQmlEngine* engine)
{
    if (engine && m_view)
        engine->rootContext()->setContextProperty(QStringLiteral("radarCWView"), m_view.get());
}

void RadarCW::addConfiguration(JSONConfigurationObject& root)
{
    if (m_config)
        root.addChild(m_config->userSettings()->configurationNode());
}
