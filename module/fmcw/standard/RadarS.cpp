#include "fmcw/standard/RadarS.h"

#include "common/ISeriesChartData.h"
#include "common/RangeSpectrumUserSettings.h"
#include "common/TimeDomainUserSettings.h"
#include "core/JSONConfigurationObject.h"
#include "common/MathAxis.h"
#include "flashing/IRadarFirmwareSource.h"
#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/MetricsLimits.h"
#include "fmcw/common/PresenceSensingConfig.h"
#include "fmcw/common/RadarDevice.h"
#include "fmcw/common/RadarDeviceParameters.h"
#include "fmcw/common/SegmentationConfiguration.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/common/RadarTemperatureMonitor.h"
#include "fmcw/processing/IRangeDopplerChartData.h"
#include "fmcw/processing/RangeDopplerUserSettings.h"
#include "fmcw/standard/IRadarUserSettings.h"
#include "fmcw/standard/RadarConfiguration.h"
#include "fmcw/standard/RadarDataProcessing.h"
#include "fmcw/standard/RadarPlayback.h"
#include "fmcw/standard/RadarSCoordinator.h"
#include "fmcw/standard/RadarUserSettings.h"
#include "fmcw/standard/RadarView.h"
#include "fmcw/standard/items/PixmapImage.h"
#include "fmcw/standard/items/PolarChart.h"
#include "fmcw/standard/items/RangeDopplerColorBar.h"
#include "host/CoreUserSettings.h"
#include "host/IBroker.h"
#include "host/ICoreConfiguration.h"
#include "host/IPlaybackRegister.h"
#include "sdk/vrn.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QtQml>

RadarS::RadarS(QObject* parent)
    : QObject(parent)
{
}

RadarS::~RadarS()
{
    // The view and the playback listen to the others: they go first.
    m_view.reset();
    m_playback.reset();
    m_coordinator.reset();
    m_processing.reset();
    m_device.reset();
    m_configuration.reset();
    m_userSettings.reset();
}

void RadarS::hostNotice(const QVariant&)
{
}

IRadarSubmoduleCoordinator* RadarS::coordinator()
{
    return m_coordinator.get();
}

void RadarS::initialise(ServiceRegistry& registry)
{
    m_sdk = lookupService<Vrn>(registry);
    m_broker = lookupService<IBroker>(registry);
    m_iCoreConfiguration = lookupService<ICoreConfiguration>(registry);
    m_iPlaybackRegister = lookupService<IPlaybackRegister>(registry);
    if (!m_sdk && m_broker)
        m_sdk = m_broker->sdk();
    CoreUserSettings* coreSettings = m_iCoreConfiguration ? m_iCoreConfiguration->coreUserSettings() : nullptr;

    m_userSettings = std::make_unique<RadarUserSettings>(lookupService<RangeSpectrumUserSettings>(registry),
                                                         lookupService<TimeDomainUserSettings>(registry));
    m_configuration = std::make_unique<RadarConfiguration>(m_sdk, m_userSettings.get());
    m_device = std::make_unique<RadarDevice>(m_sdk);
    m_processing = std::make_unique<RadarDataProcessing>(m_broker, coreSettings, m_configuration.get(),
                                                         m_userSettings.get());
    m_coordinator = std::make_unique<RadarSCoordinator>(m_processing.get(), coreSettings, m_configuration.get(),
                                                        m_device.get());
    m_playback = std::make_shared<RadarPlayback>(m_sdk, m_configuration.get(), m_processing.get());
    m_view = std::make_unique<RadarView>(m_coordinator.get(), m_configuration.get(), m_processing.get(),
                                         m_playback.get(), m_userSettings.get());
    m_view->setFirmwareSource(lookupService<IRadarFirmwareSource>(registry));
    if (coreSettings)
        m_view->setRecordingSettings(coreSettings->recordingUserSettings());

    RadarConfiguration* configuration = m_configuration.get();
    m_coordinator->setMonitorFactory([configuration](RadarDevice& device) -> std::unique_ptr<IRadarTemperatureMonitor> {
        return std::make_unique<RadarTemperatureMonitor>(&device, configuration->appliedConfiguration()->deviceInfo());
    });
    m_coordinator->setPlayback(m_playback.get());
    RadarSCoordinator* coordinator = m_coordinator.get();
    m_playback->setBeforeOpen([coordinator] { coordinator->disconnectDevice(); });
    RadarView* view = m_view.get();
    m_configuration->setListener([view] { view->changeRevertApplyAvailability(); });

    // Events of the worker-side objects arrive queued on the GUI thread.
    connect(m_configuration.get(), &IRadarConfiguration::triggerEvent, coordinator, &RadarSCoordinator::onRadarEvent);
    connect(m_device.get(), &RadarDevice::triggerEvent, coordinator, &RadarSCoordinator::onRadarEvent);
    connect(m_processing.get(), &IRadarDataProcessing::triggerEvent, coordinator, &RadarSCoordinator::onRadarEvent);
    connect(m_playback.get(), &IPlayback::isActiveChanged, coordinator, &RadarSCoordinator::onPlaybackActiveChanged);
    // The end of the recording is seen on the worker; closing belongs here.
    RadarPlayback* playback = m_playback.get();
    connect(playback, &RadarPlayback::finished, playback, &RadarPlayback::close, Qt::QueuedConnection);

    if (m_iPlaybackRegister)
        m_iPlaybackRegister->registerPlayback(m_playback);
}

void RadarS::registerTypes()
{
    qRegisterMetaType<ISeriesChartData*>("ISeriesChartData*");
    qRegisterMetaType<IRangeDopplerChartData*>("IRangeDopplerChartData*");
    qRegisterMetaType<RadarDeviceConfiguration*>("RadarDeviceConfiguration*");
    qRegisterMetaType<RadarDeviceParameters*>("RadarDeviceParameters*");
    qRegisterMetaType<Metrics*>("Metrics*");
    qRegisterMetaType<MetricsLimits*>("MetricsLimits*");
    qRegisterMetaType<RadarAntennas*>("RadarAntennas*");
    qRegisterMetaType<PresenceSensingConfig*>("PresenceSensingConfig*");
    qRegisterMetaType<SegmentationConfiguration*>("SegmentationConfiguration*");
    qRegisterMetaType<DeviceInfo*>("DeviceInfo*");
    qRegisterMetaType<MathAxis*>("MathAxis*");
    qRegisterMetaType<IRadarUserSettings*>("IRadarUserSettings*");
    qRegisterMetaType<RangeSpectrumUserSettings*>("RangeSpectrumUserSettings*");
    qRegisterMetaType<TimeDomainUserSettings*>("TimeDomainUserSettings*");
    qRegisterMetaType<RangeDopplerUserSettings*>("RangeDopplerUserSettings*");
    qRegisterMetaType<RecordingUserSettings*>("RecordingUserSettings*");
    qRegisterMetaType<Constants::UserMessageType>("Constants::UserMessageType");
    qRegisterMetaType<Constants::Chart>("Constants::Chart");
    qRegisterMetaType<RadarConstants::RadarType>("RadarConstants::RadarType");
    qmlRegisterType<PixmapImage>("Radar", 1, 0, "PixmapImage");
    qmlRegisterType<PolarChart>("Radar", 1, 0, "PolarChart");
    qmlRegisterType<RangeDopplerColorBar>("Radar", 1, 0, "RangeDopplerColorBar");
    qmlRegisterUncreatableType<RadarView>("cpp.RadarView", 1, 0, "RadarView", QStringLiteral("Error: view only"));
    qmlRegisterUncreatableType<RadarDeviceConfiguration>("cpp.RadarDeviceConfiguration", 1, 0,
                                                         "RadarDeviceConfiguration",
                                                         QStringLiteral("Error: configuration only"));
}

void RadarS::initialiseResources()
{
}

void RadarS::shutdown()
{
    if (m_playback)
        m_playback->close();
    if (m_coordinator)
        m_coordinator->disconnectDevice();
    if (m_processing)
        m_processing->stopAcquisition();
    if (m_iPlaybackRegister && m_playback)
        m_iPlaybackRegister->unregisterPlayback(m_playback->name());
}

void RadarS::setupEngine(QQmlEngine* engine)
{
    if (engine && m_view)
        engine->rootContext()->setContextProperty(QStringLiteral("radarView"), m_view.get());
}

void RadarS::addConfiguration(JSONConfigurationObject& root)
{
    if (m_userSettings)
        root.addChild(m_userSettings->configurationNode());
}
