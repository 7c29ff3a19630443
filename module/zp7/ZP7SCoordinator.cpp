#include "zp7/ZP7SCoordinator.h"

#include "fmcw/common/RadarTemperatureMonitor.h"
#include "host/CoreUserSettings.h"
#include "host/IPlayback.h"
#include "zp7/ZP7SDataProcessing.h"
#include "zp7/ZP7SDevice.h"
#include "zp7/config/ZP7SConfig.h"

#include <QDebug>

namespace {
constexpr int kIdleChartSeries = 10;
// I and Q of the one channel the board sends.
constexpr int kAcquiredSeries = 2;
}

ZP7SCoordinator::ZP7SCoordinator(ZP7SDevice* device, ZP7SConfig* config, ZP7SDataProcessing* processing,
                                 CoreUserSettings* coreSettings, QObject* parent)
    : IRadarSubmoduleCoordinator(parent)
    , m_device(device)
    , m_config(config)
    , m_processing(processing)
    , m_coreSettings(coreSettings)
{
    // An acquisition whose provider failed or ran dry is over: the pages
    // and a later start must know it.
    connect(m_processing, &ZP7SDataProcessing::acquisitionEnded, this, &ZP7SCoordinator::stopAcquisition);
}

ZP7SCoordinator::~ZP7SCoordinator()
{
    releaseDevice(MonitorRelease::Now);
}

QList<IRadarSubmoduleCoordinator::Mode> ZP7SCoordinator::supportedModes() const
{
    return { { VRN_SHIELD_ZP7_768, QStringLiteral("Standard") } };
}

void ZP7SCoordinator::setChartSeriesCount(int count)
{
    if (m_coreSettings)
        m_coreSettings->setChartSeriesCount(count);
}

bool ZP7SCoordinator::connectDevice(const QString& uuid, vrn_Device_Shield_Type_t type)
{
    if (m_connected)
        disconnectDevice();
    // A playback holds the acquisition: the board takes it over.
    if (m_playback && m_playback->isActive())
        m_playback->close();
    m_processing->setDataProvider(nullptr);
    if (!m_device->connectDevice(uuid, type))
        return false;
    m_config->setPlaybackActive(false);
    if (!m_config->loadFromDevice()) {
        m_config->clear();
        m_device->disconnectDevice();
        return false;
    }
    m_uuid = uuid;
    m_type = type;
    m_connected = true;
    setChartSeriesCount(kAcquiredSeries);
    m_processing->setDataProvider(m_device);
    m_temperatureMonitor = std::make_unique<RadarTemperatureMonitor>(m_device, m_config->deviceInfo());
    m_temperatureMonitor->setInterval(kTemperatureIntervalMs);
    m_temperatureMonitor->start();
    m_temperatureMonitor->update();
    emit isConnectedChanged(true);
    startAcquisition();
    qInfo().noquote() << "ZP7 mode active on" << uuid;
    return true;
}

void ZP7SCoordinator::stopTemperatureMonitor(MonitorRelease release)
{
    if (!m_temperatureMonitor)
        return;
    m_temperatureMonitor->stop();
    releaseMonitor(m_temperatureMonitor, release);
}

void ZP7SCoordinator::disconnectDevice()
{
    releaseDevice(MonitorRelease::Now);
}

void ZP7SCoordinator::releaseDevice(MonitorRelease release)
{
    // A lost board reports again while it is let go (its stop fails): that
    // report must not start a second release.
    if (!m_connected || m_releasing)
        return;
    m_releasing = true;
    stopTemperatureMonitor(release);
    stopAcquisition();
    m_processing->setDataProvider(nullptr);
    m_device->disconnectDevice();
    m_config->clear();
    m_processing->clear();
    setChartSeriesCount(kIdleChartSeries);
    m_connected = false;
    m_releasing = false;
    qInfo() << "ZP7 mode left";
    emit isConnectedChanged(false);
}

void ZP7SCoordinator::setAcquiring(bool acquiring)
{
    if (acquiring == m_acquiring)
        return;
    m_acquiring = acquiring;
    emit isAcquisitionActiveChanged(acquiring);
}

void ZP7SCoordinator::startAcquisition()
{
    if (m_acquiring || !m_processing->dataProvider())
        return;
    m_processing->resetFrameCounter();
    m_processing->startAcquisition();
    setAcquiring(m_processing->isAcquisitionActive());
}

void ZP7SCoordinator::stopAcquisition()
{
    if (!m_acquiring)
        return;
    // Cleared first: the board's stop may report a failure synchronously.
    m_acquiring = false;
    m_processing->stopAcquisition();
    if (m_device->isAcquiring())
        m_device->stopAcquisition();
    emit isAcquisitionActiveChanged(false);
}

bool ZP7SCoordinator::aroundAcquisition(const std::function<bool()>& operation)
{
    const bool wasAcquiring = m_acquiring;
    if (wasAcquiring)
        stopAcquisition();
    const bool result = operation();
    if (wasAcquiring)
        startAcquisition();
    return result;
}

bool ZP7SCoordinator::applyDefaultConfiguration()
{
    return aroundAcquisition([this] { return m_config->applyDefaultConfig(); });
}

bool ZP7SCoordinator::applyGuiConfiguration()
{
    return aroundAcquisition([this] { return m_config->applyGuiConfig(); });
}

bool ZP7SCoordinator::applyConfiguration(const QString& filePath)
{
    return aroundAcquisition([this, filePath] { return m_config->applyConfigFile(filePath); });
}

bool ZP7SCoordinator::revertConfiguration()
{
    m_config->revert();
    return true;
}

void ZP7SCoordinator::onRadarEvent(RadarEventCode code, QString message, QString details)
{
    // Letting a lost board go fails on every step; the user hears of the
    // loss, not of each refusal.
    if (m_releasing) {
        qWarning().noquote() << "While leaving ZP7 mode:" << message << details;
        return;
    }
    switch (code) {
    case RadarEventCode::Error:
        emit enqueueUserMessage(Constants::Error, message, details);
        break;
    case RadarEventCode::Notice:
        emit enqueueUserMessage(Constants::Warning, message, details);
        break;
    case RadarEventCode::FrameFetchFailed:
        break;
    case RadarEventCode::DeviceCommunicationFailure:
        // The failure may come from the temperature monitor's own reading,
        // which is still under way: the monitor goes once it has returned.
        releaseDevice(MonitorRelease::Deferred);
        emit enqueueUserMessage(Constants::Error, message, details);
        break;
    case RadarEventCode::NoDataAvailable:
        stopAcquisition();
        emit enqueueUserMessage(Constants::Error, message, details);
        break;
    case RadarEventCode::TemperatureNotSupported:
        stopTemperatureMonitor(MonitorRelease::Deferred);
        emit enqueueUserMessage(Constants::Warning, message, details);
        break;
    }
}

void ZP7SCoordinator::onPlaybackActiveChanged(bool active)
{
    if (active) {
        setChartSeriesCount(kAcquiredSeries);
        startAcquisition();
        qDebug() << "ZP7 playback started";
        return;
    }
    stopAcquisition();
    m_processing->setDataProvider(nullptr);
    m_config->setPlaybackActive(false);
    // The recording's configuration and its last frame stay on show until
    // a board or another recording takes their place.
    qDebug() << "ZP7 playback stopped";
}
