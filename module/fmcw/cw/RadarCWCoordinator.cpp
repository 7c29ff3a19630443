#include "fmcw/cw/RadarCWCoordinator.h"

#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/RadarAntennas.h"
#include "fmcw/common/RadarDevice.h"
#include "fmcw/common/RadarTemperatureMonitor.h"
#include "fmcw/common/RadarTxPowerMonitor.h"
#include "fmcw/cw/RadarCWController.h"
#include "fmcw/cw/RadarCWDataProcessing.h"
#include "fmcw/cw/RadarCWMode.h"
#include "fmcw/cw/RadarCWOverheatingProtector.h"
#include "fmcw/cw/config/RadarCWConfig.h"
#include "fmcw/cw/config/RadarCWParams.h"
#include "fmcw/cw/config/RadarDeviceCWConfig.h"
#include "host/CoreUserSettings.h"

#include <QDebug>

namespace {
constexpr int kIdleChartSeries = 10;
}

RadarCWCoordinator::RadarCWCoordinator(RadarDevice* device, RadarCWController* controller, RadarCWConfig* config,
                                       RadarCWDataProcessing* processing, CoreUserSettings* coreSettings,
                                       QObject* parent)
    : IRadarCWCoordinator(parent)
    , m_device(device)
    , m_controller(controller)
    , m_config(config)
    , m_processing(processing)
    , m_coreSettings(coreSettings)
{
    m_txPowerTimer.setInterval(kMonitorPeriodMs);
    connect(&m_txPowerTimer, &QTimer::timeout, this, [this] {
        if (m_txPowerMonitor)
            m_txPowerMonitor->update();
    });
}

RadarCWCoordinator::~RadarCWCoordinator()
{
    releaseDevice(MonitorRelease::Now);
}

QList<IRadarSubmoduleCoordinator::Mode> RadarCWCoordinator::supportedModes() const
{
    const QString mode = QString::fromLatin1(RadarCWMode::kUserMode);
    return { { VRN_SHIELD_FMCW_512, mode }, { VRN_SHIELD_FMCW_513, mode }, { VRN_SHIELD_FMCW_514, mode } };
}

bool RadarCWCoordinator::monitorsSupported() const
{
    // The chip numbered 3 has no temperature or Tx-power readout in CW mode.
    return m_config->deviceInfo()->radarType() != RadarConstants::KMR7C;
}

bool RadarCWCoordinator::connectDevice(const QString& uuid, vrn_Device_Shield_Type_t type)
{
    if (m_connected)
        disconnectDevice();
    if (!m_device->connectDevice(uuid, type))
        return false;
    m_device->updateDeviceInfo(*m_config->deviceInfo());
    m_controller->setDevice(m_device->sdkHandle());
    if (!m_controller->createHandle()) {
        m_device->destroyDeviceHandle();
        return false;
    }
    // The board starts from its own defaults: a configuration kept from
    // another board may not fit this one.
    if (!m_config->updateLimits() || !m_config->loadDefaultConfig() || !m_config->applyGuiConfig()) {
        m_controller->destroyHandle();
        m_device->destroyDeviceHandle();
        return false;
    }
    m_uuid = uuid;
    m_type = type;
    m_connected = true;
    if (monitorsSupported())
        startMonitors();
    qInfo().noquote() << "CW mode active on" << uuid;
    emit isConnectedChanged(true);
    return true;
}

void RadarCWCoordinator::startMonitors()
{
    DeviceInfo* info = m_config->deviceInfo();
    m_temperatureMonitor = std::make_unique<RadarTemperatureMonitor>(m_controller, info);
    m_temperatureMonitor->setInterval(kMonitorPeriodMs);
    m_temperatureMonitor->start();
    restartTxPowerMonitor();
}

void RadarCWCoordinator::restartTxPowerMonitor()
{
    stopTxPowerMonitor(MonitorRelease::Now);
    if (!m_connected || !monitorsSupported())
        return;
    m_txPowerMonitor = std::make_unique<RadarTxPowerMonitor>(m_controller, m_config->deviceInfo());
    m_txPowerTimer.start();
}

void RadarCWCoordinator::stopTxPowerMonitor(MonitorRelease release)
{
    m_txPowerTimer.stop();
    releaseMonitor(m_txPowerMonitor, release);
}

void RadarCWCoordinator::stopTemperatureMonitor(MonitorRelease release)
{
    if (!m_temperatureMonitor)
        return;
    m_temperatureMonitor->stop();
    releaseMonitor(m_temperatureMonitor, release);
}

void RadarCWCoordinator::disconnectDevice()
{
    releaseDevice(MonitorRelease::Now);
}

void RadarCWCoordinator::releaseDevice(MonitorRelease release)
{
    if (!m_connected || m_releasing)
        return;
    m_releasing = true;
    stopTemperatureMonitor(release);
    stopTxPowerMonitor(release);
    m_protector.reset();
    if (m_emitting) {
        m_controller->stopEmission();
        setEmitting(false);
    }
    m_controller->destroyHandle();
    m_device->destroyDeviceHandle();
    m_processing->clear();
    setChartSeriesCount(kIdleChartSeries);
    m_connected = false;
    m_releasing = false;
    qInfo() << "CW mode left";
    emit isConnectedChanged(false);
}

void RadarCWCoordinator::setEmitting(bool emitting)
{
    if (emitting == m_emitting)
        return;
    m_emitting = emitting;
    emit isEmissionActiveChanged(emitting);
}

bool RadarCWCoordinator::startEmission()
{
    if (!m_connected)
        return false;
    RadarDeviceCWConfig* device = m_config->deviceConfig();
    if (device->txAntennas()->activeCount() == 0) {
        qWarning() << "CW emission not started: no Tx antenna is enabled";
        return false;
    }
    // A protector of an earlier start must not switch this emission.
    m_protector.reset();
    if (!m_controller->startEmission())
        return false;
    const quint32 dutyCycle = device->params()->dutyCycle();
    if (dutyCycle < 100)
        m_protector = std::make_unique<RadarCWOverheatingProtector>(m_controller, quint8(dutyCycle), kProtectorPeriodMs);
    restartTxPowerMonitor();
    m_emitting = true;
    emit isEmissionActiveChanged(true);
    return true;
}

bool RadarCWCoordinator::stopEmission()
{
    m_protector.reset();
    stopTxPowerMonitor(MonitorRelease::Now);
    if (!m_connected || !m_controller->stopEmission())
        return false;
    m_emitting = false;
    emit isEmissionActiveChanged(false);
    return true;
}

bool RadarCWCoordinator::aroundEmission(const std::function<bool()>& operation)
{
    const bool wasEmitting = m_emitting;
    if (wasEmitting)
        stopEmission();
    const bool result = operation();
    if (wasEmitting)
        startEmission();
    return result;
}

bool RadarCWCoordinator::applyDefaultConfig()
{
    return aroundEmission([this] { return m_config->loadDefaultConfig() && m_config->applyGuiConfig(); });
}

bool RadarCWCoordinator::applyGuiConfig()
{
    return aroundEmission([this] { return m_config->applyGuiConfig(); });
}

void RadarCWCoordinator::setChartSeriesCount(int count)
{
    if (m_coreSettings)
        m_coreSettings->setChartSeriesCount(count);
}

void RadarCWCoordinator::onDeviceConfigUpdated(RadarDeviceCWConfig* config)
{
    // One chart series per receiver the frames will carry.
    if (config)
        setChartSeriesCount(config->rxAntennas()->activeCount());
}

void RadarCWCoordinator::onRadarEvent(RadarEventCode code, QString message, QString details)
{
    // Letting a lost board go fails on every step; the user hears of the
    // loss, not of each refusal.
    if (m_releasing && code != RadarEventCode::DeviceCommunicationFailure) {
        qWarning().noquote() << "While leaving CW mode:" << message << details;
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
        if (m_releasing)
            return;
        releaseDevice(MonitorRelease::Deferred);
        emit enqueueUserMessage(Constants::Error, message, details);
        break;
    case RadarEventCode::NoDataAvailable:
        stopEmission();
        emit enqueueUserMessage(Constants::Error, message, details);
        break;
    case RadarEventCode::TemperatureNotSupported:
        stopTemperatureMonitor(MonitorRelease::Deferred);
        break;
    default:
        break;
    }
}
