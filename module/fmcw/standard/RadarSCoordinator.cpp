#include "fmcw/standard/RadarSCoordinator.h"

#include "fmcw/common/IRadarTemperatureMonitor.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/RadarDevice.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/standard/IRadarConfiguration.h"
#include "fmcw/standard/IRadarDataProcessing.h"
#include "host/CoreUserSettings.h"
#include "host/IPlayback.h"

#include <QDebug>

namespace {
constexpr int kTemperatureIntervalMs = 5000;
constexpr int kIdleChartSeries = 10;
} // namespace

RadarSCoordinator::RadarSCoordinator(IRadarDataProcessing* processing, CoreUserSettings* coreSettings,
                                     IRadarConfiguration* configuration, RadarDevice* device, QObject* parent)
    : IRadarSCoordinator(parent)
    , m_processing(processing)
    , m_coreSettings(coreSettings)
    , m_configuration(configuration)
    , m_device(device)
{
    // A pipeline whose provider ran dry is idle: the pages and a later
    // start must know that acquisition is over.
    if (m_processing)
        connect(m_processing, &IRadarDataProcessing::acquisitionEnded, this, &RadarSCoordinator::stopAcquisition);
}

RadarSCoordinator::~RadarSCoordinator() = default;

QList<IRadarSubmoduleCoordinator::Mode> RadarSCoordinator::supportedModes() const
{
    return { { VRN_SHIELD_FMCW_512, QStringLiteral("Standard") },
             { VRN_SHIELD_FMCW_513, QStringLiteral("Standard") },
             { VRN_SHIELD_FMCW_514, QStringLiteral("Standard") } };
}

void RadarSCoordinator::setChartSeriesCount(int count)
{
    if (m_coreSettings)
        m_coreSettings->setChartSeriesCount(count);
}

bool RadarSCoordinator::connectDevice(const QString& uuid, vrn_Device_Shield_Type_t type)
{
    if (!m_processing || !m_configuration || !m_device)
        return false;
    if (m_connected)
        disconnectDevice();
    // A playback holds the pipeline: the board takes it over.
    if (m_playback && m_playback->isActive())
        m_playback->close();
    m_processing->setDataProvider(nullptr);
    if (!m_device->connectDevice(uuid, type))
        return false;
    m_configuration->bindDevice(m_device);
    if (!m_configuration->applyGuiConfiguration()) {
        m_configuration->releaseDevice();
        m_device->destroyDeviceHandle();
        return false;
    }
    m_uuid = uuid;
    m_type = type;
    RadarDeviceConfiguration* applied = m_configuration->appliedConfiguration();
    setChartSeriesCount(applied->metrics()->rx()->activeCount() * applied->metrics()->tx()->activeCount());
    m_processing->setDataProvider(m_device);
    m_connected = true;
    startAcquisition();
    if (m_monitorFactory) {
        m_temperatureMonitor = m_monitorFactory(*m_device);
        if (m_temperatureMonitor) {
            m_temperatureMonitor->setInterval(kTemperatureIntervalMs);
            m_temperatureMonitor->start();
        }
    }
    emit isConnectedChanged(true);
    return true;
}

void RadarSCoordinator::stopTemperatureMonitor(MonitorRelease release)
{
    if (!m_temperatureMonitor)
        return;
    m_temperatureMonitor->stop();
    releaseMonitor(m_temperatureMonitor, release);
}

void RadarSCoordinator::disconnectDevice()
{
    releaseDevice(MonitorRelease::Now);
}

void RadarSCoordinator::releaseDevice(MonitorRelease monitorRelease)
{
    // A lost board reports again while it is being let go (its stop fails):
    // that report must not start a second disconnection.
    if (!m_connected || m_disconnecting)
        return;
    m_disconnecting = true;
    stopTemperatureMonitor(monitorRelease);
    stopAcquisition();
    m_processing->stopAcquisition();
    m_configuration->releaseDevice();
    setChartSeriesCount(kIdleChartSeries);
    m_device->destroyDeviceHandle();
    m_processing->setDataProvider(nullptr);
    m_processing->resetCalculators();
    m_connected = false;
    m_disconnecting = false;
    emit isConnectedChanged(false);
}

void RadarSCoordinator::startAcquisition()
{
    if (m_acquiring || !m_processing || !m_processing->dataProvider())
        return;
    m_fifoOverflowCounter = 0;
    emit fifoOverflowCounterChanged(0);
    m_processing->startAcquisition();
    m_acquiring = true;
    emit isAcquisitionActiveChanged(true);
}

void RadarSCoordinator::stopAcquisition()
{
    if (!m_acquiring)
        return;
    // Cleared first: the device's stop may report a failure synchronously.
    m_acquiring = false;
    m_processing->stopAcquisition();
    // Only a board that was asked for frames is acquiring; stopping an
    // idle one can fail and would report a lost board for nothing.
    if (m_device && m_device->isAcquiring())
        m_device->stopAcquisition();
    emit isAcquisitionActiveChanged(false);
}

bool RadarSCoordinator::aroundAcquisition(const std::function<bool()>& operation)
{
    const bool wasAcquiring = m_acquiring;
    if (wasAcquiring)
        stopAcquisition();
    const bool result = operation();
    if (wasAcquiring)
        startAcquisition();
    return result;
}

bool RadarSCoordinator::applyDefaultConfiguration()
{
    return aroundAcquisition([this] {
        RadarDeviceConfiguration* edited = m_configuration->editedConfiguration();
        return m_configuration->applyDefaultConfiguration(edited->application())
            && m_configuration->applyGuiConfiguration();
    });
}

bool RadarSCoordinator::applyGuiConfiguration()
{
    return aroundAcquisition([this] { return m_configuration->applyGuiConfiguration(); });
}

bool RadarSCoordinator::applyConfiguration(const QString& filePath)
{
    // A refused file leaves both the edited and the running configuration
    // as they were, and acquisition is not interrupted.
    if (!m_configuration->loadConfiguration(filePath, false))
        return false;
    return applyGuiConfiguration();
}

bool RadarSCoordinator::revertConfiguration()
{
    return aroundAcquisition([this] { return m_configuration->revertConfiguration(); });
}

void RadarSCoordinator::onRadarEvent(RadarEventCode code, QString message, QString details)
{
    switch (code) {
    case RadarEventCode::Error:
        emit enqueueUserMessage(Constants::Error, message, details);
        break;
    case RadarEventCode::Notice:
        emit enqueueUserMessage(Constants::Warning, message, details);
        break;
    case RadarEventCode::FrameFetchFailed:
        if (m_acquiring) {
            ++m_fifoOverflowCounter;
            emit fifoOverflowCounterChanged(m_fifoOverflowCounter);
        }
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
        break;
    default:
        break;
    }
}

void RadarSCoordinator::onPlaybackActiveChanged(bool value)
{
    if (value) {
        startAcquisition();
        qDebug() << "Playback started";
        return;
    }
    stopAcquisition();
    m_configuration->setPlaybackActive(false);
    m_configuration->releaseDevice();
    m_processing->stopAcquisition();
    m_processing->setDataProvider(nullptr);
    m_processing->resetCalculators();
    setChartSeriesCount(kIdleChartSeries);
    qDebug() << "Playback stopped";
}
