#include "fmcw/common/RadarDevice.h"

#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/MetricsLimits.h"
#include "fmcw/common/RadarConfigurationUtils.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/common/RadarDeviceParameters.h"
#include "fmcw/common/SegmentationConfiguration.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QMutexLocker>
#include <QThread>

#include <algorithm>
#include <utility>
#include <cmath>
#include <limits>

namespace {

const QString kCommunicationFailed = QStringLiteral("Communication with device failed");

bool interruptionRequested()
{
    QThread* thread = QThread::currentThread();
    return thread && thread->isInterruptionRequested();
}

// Clears the fetch flag however the fetch ends.
struct FetchFlag {
    explicit FetchFlag(std::atomic<int>& flag)
        : m_flag(flag)
    {
        m_flag.exchange(1);
    }
    ~FetchFlag() { m_flag.store(0); }
    std::atomic<int>& m_flag;
};

}

RadarDevice::RadarDevice(const Vrn* vrn, QObject* parent)
    : QObject(parent)
    , m_vrn(vrn)
    , m_utils(new RadarConfigurationUtils(vrn, true, this))
{
    connect(m_utils, &IRadarConfigurationUtils::triggerEvent, this, &RadarDevice::forwardUtilsEvent);
}

void RadarDevice::forwardUtilsEvent(RadarEventCode code, QString message, QString details)
{
    if (m_deferringThread.load() == QThread::currentThread()) {
        m_pendingEvents.append({ code, std::move(message), std::move(details) });
        return;
    }
    emit triggerEvent(code, message, details);
}

void RadarDevice::emitDeferredEvents()
{
    const QVector<PendingEvent> pending = std::exchange(m_pendingEvents, {});
    for (const PendingEvent& event : pending)
        emit triggerEvent(event.code, event.message, event.details);
}

RadarDevice::~RadarDevice()
{
    if (isConnected())
        destroyDeviceHandle();
}

QString RadarDevice::statusText(vrn_Status_t status) const
{
    if (!m_vrn->status_text)
        return QStringLiteral("Status 0x%1").arg(status, 0, 16);
    return QString::fromUtf8(m_vrn->status_text(status));
}

bool RadarDevice::connectDevice(const QString& uuid, vrn_Device_Shield_Type_t shieldType)
{
    m_uuid = uuid;
    m_shieldType = shieldType;
    if (createDeviceHandle())
        return true;
    destroyDeviceHandle();
    return false;
}

bool RadarDevice::createDeviceHandle()
{
    QMutexLocker locker(&m_mutex);
    vrn_Device_Handle handle = nullptr;
    const QByteArray uuid = m_uuid.toUtf8();
    const vrn_Status_t status = m_vrn->device_create_by_uuid(uuid.constData(), &handle);
    switch (status) {
    case VRN_STATUS_OK:
        if (handle) {
            m_handle = handle;
            return true;
        }
        locker.unlock();
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Failed to connect to the device"),
                          QStringLiteral("SDK reports no error but returned device handle is invalid"));
        return false;
    case VRN_STATUS_COMMUNICATION_ERROR: {
        const QString details = statusText(status);
        locker.unlock();
        emit triggerEvent(RadarEventCode::DeviceCommunicationFailure, kCommunicationFailed, details);
        return false;
    }
    case VRN_STATUS_FIRMWARE_NOT_SUPPORTED: {
        const QString details = statusText(status);
        locker.unlock();
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("No compatible device found - Firmware not supported"),
                          details);
        return false;
    }
    default: {
        const QString details = statusText(status);
        locker.unlock();
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Failed to connect to the device"), details);
        return false;
    }
    }
}

bool RadarDevice::destroyDeviceHandle()
{
    QMutexLocker locker(&m_mutex);
    if (!m_handle)
        return true;
    const vrn_Error_t error = m_vrn->device_destroy(m_handle);
    // The handle is unusable either way; keeping it would only invite a
    // second close.
    m_handle = nullptr;
    m_acquiring.store(false);
    if (error) {
        qCritical() << "Failed to gracefully disconnect from the device" << error;
        return false;
    }
    return true;
}

bool RadarDevice::isConnected() const
{
    QMutexLocker locker(&m_mutex);
    return m_handle != nullptr;
}

bool RadarDevice::setConfiguration(RadarDeviceConfiguration& configuration)
{
    return applyConfiguration(configuration, true);
}

bool RadarDevice::recalculateConfiguration(RadarDeviceConfiguration& configuration)
{
    if (!configuration.limits()) {
        qWarning() << "Passed limits are invalid. Limits are NULL";
        return false;
    }
    return applyConfiguration(configuration, false);
}

bool RadarDevice::applyConfiguration(RadarDeviceConfiguration& configuration, bool sendToDevice)
{
    if (!configuration.metrics()) {
        qWarning() << "Passed metrics are invalid. Metrics are NULL";
        return false;
    }

    vrn_Metrics_Limits_t limits {};
    QMutexLocker locker(&m_mutex);
    const vrn_Error_t limitsError = m_vrn->device_get_metrics_limits(m_handle, &limits);
    locker.unlock();
    if (limitsError) {
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Failed to get metric limits"),
                          QString::fromUtf8(limitsError));
    } else if (configuration.limits()) {
        configuration.limits()->setFromSdk(limits);
    }

    vrn_Device_Config_t deviceConfig {};
    locker.relock();
    RadarDeviceBase* self = this;
    // The conversion raises the maximum range to the exact SDK minimum.
    const bool translated = m_utils->convertConfiguration(self, configuration, deviceConfig);
    // The user is told the SDK's reason (which scene value it cannot meet),
    // as with every other refusal of the device.
    const QString translationError = m_utils->lastTranslationError();
    locker.unlock();
    if (!translated) {
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Cannot translate metrics to config"),
                          translationError);
        return false;
    }

    if (sendToDevice) {
        locker.relock();
        const vrn_Error_t setError = m_vrn->device_set_config(m_handle, &deviceConfig);
        locker.unlock();
        if (setError) {
            emit triggerEvent(RadarEventCode::Error, QStringLiteral("Cannot set device config"),
                              QString::fromUtf8(setError));
            return false;
        }
    }

    m_utils->parseDeviceConfig(configuration.parameters(), deviceConfig);
    // The ramp time within each chirp repetition: recordings carry it in
    // their header, so it is read whenever the chirp timing changes.
    if (sendToDevice && configuration.parameters()) {
        locker.relock();
        m_deferringThread.store(QThread::currentThread());
        const float chirpTime = m_utils->getChirpTime(self, deviceConfig);
        m_deferringThread.store(nullptr);
        locker.unlock();
        emitDeferredEvents();
        configuration.parameters()->setChirpTime(chirpTime);
    }
    return true;
}

double RadarDevice::frameTimeLimitMs(float frameRepetitionTimeS)
{
    const double frameMs = double(frameRepetitionTimeS) * 1000.0 * 1.25;
    return 3.0 * std::max(100.0, frameMs);
}

RadarFrameResult RadarDevice::getNextFrame(const RadarDeviceConfiguration& configuration)
{
    FetchFlag flag(m_fetchInProgress);

    vrn_Frame_R_t* created = nullptr;
    if (!m_utils->createFrame(configuration, created))
        return RadarFrameResult();
    SharedFrame frame = makeSharedFrame(m_vrn, created);

    const float frameTime = configuration.metrics() ? configuration.metrics()->frameRepetitionTimeS() : 0.0f;
    const qint64 limitNs = static_cast<qint64>(frameTimeLimitMs(frameTime) * 1e6);
    QElapsedTimer clock;
    clock.start();

    if (interruptionRequested())
        return RadarFrameResult();

    for (;;) {
        QMutexLocker locker(&m_mutex);
        if (!m_handle)
            return RadarFrameResult();
        // The board starts acquiring on the first frame asked of it.
        m_acquiring.store(true);
        const vrn_Status_t status
            = m_vrn->device_get_next_frame(m_handle, const_cast<vrn_Frame_R_t*>(frame.get()), kFrameWaitMs);
        locker.unlock();

        switch (status) {
        case VRN_STATUS_OK:
            return RadarFrameResult { true, frame.get(), frame };
        case VRN_STATUS_FRAME_TIMEOUT:
            if (clock.nsecsElapsed() > limitNs) {
                emit triggerEvent(RadarEventCode::DeviceCommunicationFailure,
                                  QStringLiteral("Too many timeouts occurred. Please reconnect device again."),
                                  statusText(status));
                return RadarFrameResult();
            }
            if (interruptionRequested())
                return RadarFrameResult();
            continue;
        case VRN_STATUS_FRAME_FETCH_FAILED:
            // One lost frame: the consumer skips it and acquisition goes on.
            emit triggerEvent(RadarEventCode::FrameFetchFailed, QStringLiteral("Fetching next frame failed"),
                              statusText(status));
            return RadarFrameResult { true, nullptr, SharedFrame() };
        case VRN_STATUS_COMMUNICATION_LOST:
            emit triggerEvent(RadarEventCode::DeviceCommunicationFailure, kCommunicationFailed, statusText(status));
            return RadarFrameResult();
        default:
            emit triggerEvent(RadarEventCode::NoDataAvailable,
                              QStringLiteral("Cannot fetch data from Radar. Please restart acquisition and try again"),
                              statusText(status));
            return RadarFrameResult();
        }
    }
}

void RadarDevice::stopAcquisition()
{
    QMutexLocker locker(&m_mutex);
    if (!m_handle)
        return;
    // Cleared whatever the answer: a board that cannot be stopped is
    // reported once, not asked again.
    m_acquiring.store(false);
    uint8_t stopped = 0;
    const vrn_Error_t error = m_vrn->device_stop_acquisition(m_handle, &stopped);
    locker.unlock();
    if (error) {
        emit triggerEvent(RadarEventCode::DeviceCommunicationFailure, QStringLiteral("Failed to stop acquisition"),
                          QString::fromUtf8(error));
        return;
    }
    if (!stopped)
        qWarning() << "Cannot stop acquisition - returned result is FALSE";
}

float RadarDevice::getTemperature()
{
    const float unknown = std::numeric_limits<float>::quiet_NaN();
    QMutexLocker locker(&m_mutex);
    if (!m_handle)
        return unknown;
    float temperature = unknown;
    const vrn_Status_t status = m_vrn->device_get_temperature(m_handle, &temperature);
    locker.unlock();
    switch (status) {
    case VRN_STATUS_OK:
        return temperature;
    case VRN_STATUS_NOT_SUPPORTED:
        emit triggerEvent(RadarEventCode::TemperatureNotSupported,
                          QStringLiteral("Temperature monitoring is not supported"), statusText(status));
        break;
    case VRN_STATUS_COMMUNICATION_ERROR:
    case VRN_STATUS_COMMUNICATION_LOST:
        emit triggerEvent(RadarEventCode::DeviceCommunicationFailure, kCommunicationFailed, statusText(status));
        break;
    default:
        qCritical() << "Failed to get device temperature:" << statusText(status);
        break;
    }
    return unknown;
}

float RadarDevice::getTxPower(int antennaIndex)
{
    const float unknown = std::numeric_limits<float>::quiet_NaN();
    QMutexLocker locker(&m_mutex);
    if (!m_handle || antennaIndex < 0)
        return unknown;
    float power = unknown;
    if (vrn_Error_t error = m_vrn->device_get_tx_power(m_handle, uint32_t(antennaIndex), &power)) {
        qCritical() << "Failed to get TX_Power:" << error;
        return unknown;
    }
    return power;
}

int RadarDevice::getNumRxAntennas()
{
    QMutexLocker locker(&m_mutex);
    uint32_t count = 0;
    if (vrn_Error_t error = m_vrn->device_get_num_rx_antennas(m_handle, &count)) {
        qCritical() << "Failed to get rx num:" << error;
        return 0;
    }
    return int(count);
}

int RadarDevice::getNumTxAntennas()
{
    QMutexLocker locker(&m_mutex);
    uint32_t count = 0;
    if (vrn_Error_t error = m_vrn->device_get_num_tx_antennas(m_handle, &count)) {
        qCritical() << "Failed to get tx num:" << error;
        return 0;
    }
    return int(count);
}

QString RadarDevice::getFirmwareVersion()
{
    QMutexLocker locker(&m_mutex);
    vrn_Firmware_Info_t firmware {};
    if (vrn_Error_t error = m_vrn->device_get_firmware_info(m_handle, &firmware)) {
        qCritical() << "Failed to get firmware information:" << error;
        return QString();
    }
    return QStringLiteral("%1%2%3").arg(firmware.version_major).arg(firmware.version_minor).arg(firmware.version_build);
}

void RadarDevice::updateDeviceInfo(DeviceInfo& info)
{
    // Read everything under the lock, publish after it: the change signals
    // reach the pages, and a receiver may ask the device for more.
    QMutexLocker locker(&m_mutex);
    vrn_Device_Info_t device {};
    const vrn_Error_t infoError = m_vrn->device_get_info(m_handle, &device);
    vrn_Firmware_Info_t firmware {};
    const vrn_Error_t firmwareError = m_vrn->device_get_firmware_info(m_handle, &firmware);
    vrn_Device_Type_t type = VRN_DEVICE_TYPE_UNKNOWN;
    const vrn_Error_t typeError = m_vrn->device_get_type(m_handle, &type);
    locker.unlock();

    if (infoError) {
        qCritical() << "Failed to get device info:" << infoError;
    } else {
        const QString name = QString::fromUtf8(device.name, int(qstrnlen(device.name, sizeof device.name)));
        info.setDeviceName(name);
        info.setNumTxAntennas(device.num_tx_antennas);
        info.setNumRxAntennas(device.num_rx_antennas);
        info.setMinRfFrequencyHz(device.min_rf_frequency_Hz);
        info.setMaxRfFrequencyHz(device.max_rf_frequency_Hz);
        qDebug() << "deviceName" << name;
        qDebug() << "txAntennas" << device.num_tx_antennas;
        qDebug() << "rxAntennas" << device.num_rx_antennas;
    }

    if (firmwareError) {
        qCritical() << "Failed to get firmware info:" << firmwareError;
    } else {
        const QString version = QStringLiteral("v%1.%2.%3")
                                    .arg(firmware.version_major)
                                    .arg(firmware.version_minor)
                                    .arg(firmware.version_build);
        const QString description
            = QString::fromUtf8(firmware.description, int(qstrnlen(firmware.description, sizeof firmware.description)));
        info.setDeviceFirmwareNumber(version);
        info.setDeviceFirmwareName(description);
        qDebug() << "firmwareVersion" << version;
        qDebug() << "firmwareDescription" << description;
    }

    if (typeError)
        qCritical() << "Failed to get device type:" << typeError;
    else
        info.setDeviceType(int(type));
}

void RadarDevice::updateTxPower(RadarDeviceConfiguration& configuration)
{
    DeviceInfo* info = configuration.deviceInfo();
    const Metrics* metrics = configuration.metrics();
    if (!info || !metrics)
        return;
    QVector<float> powers = info->deviceTxPower();
    powers.resize(std::max<int>(info->numTxAntennas(), RadarAntennas::kMaxAntennas));
    int highestActive = -1;
    for (int position = 0; position < RadarAntennas::kMaxAntennas; ++position) {
        if (!metrics->tx()->isActive(position))
            continue;
        highestActive = position;
        const float power = getTxPower(position);
        if (!std::isnan(power))
            powers[position] = power;
    }
    // Keep one entry per antenna of the device (and at least up to the
    // active one, should the count not be known yet).
    powers.resize(std::max<int>(info->numTxAntennas(), highestActive + 1));
    info->setDeviceTxPower(powers);
}

void RadarDevice::updateApplicationDefaults(RadarDeviceConfiguration& configuration,
                                            SegmentationDefaults segmentation)
{
    switch (configuration.application()) {
    case RadarConstants::Segmentation: {
        QMutexLocker locker(&m_mutex);
        m_deferringThread.store(QThread::currentThread());
        RadarDeviceBase* self = this;
        // The defaults land in a scratch copy and reach the configuration
        // after the lock is released, since its change signals go to the
        // pages. The user's range, tracks, segments and levels survive an
        // apply: then only the derived chirp values are taken over.
        SegmentationConfiguration scratch;
        const bool ok = m_utils->getDefaultSegmentationConfig(self, configuration, scratch);
        m_deferringThread.store(nullptr);
        locker.unlock();
        if (ok)
            configuration.segmentation()->setFromSdk(scratch.toSdk(), segmentation == SegmentationDefaults::Everything);
        emitDeferredEvents();
        if (!ok) {
            emit triggerEvent(RadarEventCode::Error,
                              QStringLiteral("Failed to get default configuration for Segmentation calculations"),
                              QString());
        }
        break;
    }
    case RadarConstants::PresenceSensing:
        m_utils->fillDefaultPresenceSensing(configuration);
        break;
    case RadarConstants::None:
        break;
    }
}
