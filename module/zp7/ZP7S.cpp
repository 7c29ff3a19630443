#include "zp7/ZP7S.h"

#include "common/ISeriesChartData.h"
#include "common/MathAxis.h"
#include "common/RangeSpectrumUserSettings.h"
#include "common/TimeDomainUserSettings.h"
#include "flashing/IRadarFirmwareSource.h"
#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/RadarAntennas.h"
#include "host/CoreUserSettings.h"
#include "host/IBroker.h"
#include "host/ICoreConfiguration.h"
#include "host/IPlaybackRegister.h"
#include "zp7/ZP7SCoordinator.h"
#include "zp7/ZP7SDataProcessing.h"
#include "zp7/ZP7SDevice.h"
#include "zp7/ZP7SView.h"
#include "zp7/config/ZP7SConfig.h"
#include "zp7/config/ZP7SDeviceConfig.h"
#include "zp7/config/ZP7SFrameParams.h"
#include "zp7/config/ZP7SLimits.h"
#include "zp7/config/ZP7SPulseConfigParams.h"
#include "zp7/config/ZP7SUserSettings.h"
#include "zp7/recording/ZP7SPlayback.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QtQml>

ZP7S::ZP7S(QObject* parent)
    : QObject(parent)
{
}

ZP7S::~ZP7S()
{
    // The view and the playback listen to the others and the coordinator
    // drives them: they go first; the device closes its handle last.
    m_view.reset();
    m_playback.reset();
    m_coordinator.reset();
    m_processing.reset();
    m_config.reset();
    m_device.reset();
}

void ZP7S::hostNotice(const QVariant&)
{
}

IRadarSubmoduleCoordinator* ZP7S::coordinator()
{
    return m_coordinator.get();
}

void ZP7S::initialise(ServiceRegistry& registry)
{
    m_sdk = lookupService<Vrn>(registry);
    auto* broker = lookupService<IBroker>(registry);
    if (!m_sdk && broker)
        m_sdk = broker->sdk();
    auto* coreConfiguration = lookupService<ICoreConfiguration>(registry);
    CoreUserSettings* coreSettings = coreConfiguration ? coreConfiguration->coreUserSettings() : nullptr;
    m_playbackRegister = lookupService<IPlaybackRegister>(registry);

    m_device = std::make_unique<ZP7SDevice>(m_sdk);
    auto userSettings = std::make_unique<ZP7SUserSettings>(lookupService<RangeSpectrumUserSettings>(registry),
                                                           lookupService<TimeDomainUserSettings>(registry));
    m_config = std::make_unique<ZP7SConfig>(m_device.get(), std::move(userSettings));
    m_processing = std::make_unique<ZP7SDataProcessing>(m_config.get(), coreSettings);
    m_coordinator = std::make_unique<ZP7SCoordinator>(m_device.get(), m_config.get(), m_processing.get(), coreSettings);
    m_playback = std::make_shared<ZP7SPlayback>(m_sdk, m_config.get(), m_processing.get());
    m_view = std::make_unique<ZP7SView>(m_coordinator.get(), m_config.get(), m_processing.get(), m_playback.get());
    m_view->setFirmwareSource(lookupService<IRadarFirmwareSource>(registry));
    if (coreSettings)
        m_view->setRecordingSettings(coreSettings->recordingUserSettings());

    // Events of the worker-side objects arrive queued on this thread.
    ZP7SCoordinator* coordinator = m_coordinator.get();
    connect(m_device.get(), &ZP7SDevice::triggerEvent, coordinator, &ZP7SCoordinator::onRadarEvent);
    connect(m_config.get(), &ZP7SConfig::triggerEvent, coordinator, &ZP7SCoordinator::onRadarEvent);
    connect(m_processing.get(), &ZP7SDataProcessing::triggerEvent, coordinator, &ZP7SCoordinator::onRadarEvent);
    m_coordinator->setPlayback(m_playback.get());
    m_playback->setBeforeOpen([coordinator] { coordinator->disconnectDevice(); });
    connect(m_playback.get(), &IPlayback::isActiveChanged, coordinator, &ZP7SCoordinator::onPlaybackActiveChanged);
    // The end of the recording is seen on the worker; closing belongs here.
    ZP7SPlayback* playback = m_playback.get();
    connect(playback, &ZP7SPlayback::finished, playback, &ZP7SPlayback::close, Qt::QueuedConnection);

    if (m_playbackRegister)
        m_playbackRegister->registerPlayback(m_playback);
}

void ZP7S::registerTypes()
{
    qRegisterMetaType<ZP7SDeviceConfig*>("ZP7SDeviceConfig*");
    qRegisterMetaType<ZP7SFrameParams*>("ZP7SFrameParams*");
    qRegisterMetaType<ZP7SPulseConfigParams*>("ZP7SPulseConfigParams*");
    qRegisterMetaType<ZP7SLimits*>("ZP7SLimits*");
    qRegisterMetaType<ZP7SUserSettings*>("ZP7SUserSettings*");
    qRegisterMetaType<RadarAntennas*>("RadarAntennas*");
    qRegisterMetaType<DeviceInfo*>("DeviceInfo*");
    qRegisterMetaType<MathAxis*>("MathAxis*");
    qRegisterMetaType<ISeriesChartData*>("ISeriesChartData*");
    qRegisterMetaType<RangeSpectrumUserSettings*>("RangeSpectrumUserSettings*");
    qRegisterMetaType<TimeDomainUserSettings*>("TimeDomainUserSettings*");
    qRegisterMetaType<RecordingUserSettings*>("RecordingUserSettings*");
    qRegisterMetaType<Constants::UserMessageType>("Constants::UserMessageType");
    qmlRegisterUncreatableType<ZP7SView>("cpp.ZP7SView", 1, 0, "ZP7SView", QStringLiteral("Error: view only"));
    qmlRegisterUncreatableType<ZP7SDeviceConfig>("cpp.ZP7SDeviceConfig", 1, 0, "ZP7SDeviceConfig",
                                                 QStringLiteral("Error: configuration only"));
    qmlRegisterUncreatableType<ZP7SFrameParams>("cpp.ZP7SFrameParams", 1, 0, "ZP7SFrameParams",
                                                QStringLiteral("Error: parameters only"));
    qmlRegisterUncreatableType<ZP7SPulseConfigParams>("cpp.ZP7SPulseConfigParams", 1, 0, "ZP7SPulseConfigParams",
                                                      QStringLiteral("Error: parameters only"));
    qmlRegisterUncreatableType<ZP7SLimits>("cpp.ZP7SLimits", 1, 0, "ZP7SLimits", QStringLiteral("Error: limits only"));
}

void ZP7S::initialiseResources()
{
}

void ZP7S::shutdown()
{
    if (m_playback)
        m_playback->close();
    if (m_coordinator)
        m_coordinator->disconnectDevice();
    if (m_processing)
        m_processing->stopAcquisition();
    if (m_playbackRegister && m_playback)
        m_playbackRegister->unregisterPlayback(m_playback->name());
}

void ZP7S::setupEngine(QQmlEngine* engine)
{
    if (engine && m_view)
        engine->rootContext()->setContextProperty(QStringLiteral("zp7sView"), m_view.get());
}

void ZP7S::addConfiguration(JSONConfigurationObject&)
{
    // The chart settings are the module's shared ones, saved by the module.
}
