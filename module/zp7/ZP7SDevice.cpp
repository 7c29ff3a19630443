#include "zp7/ZP7SDevice.h"

#include "fmcw/common/DeviceInfo.h"
#include "zp7/config/ZP7SDeviceConfig.h"
#include "zp7/config/ZP7SFrameParams.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QMutexLocker>
#include <QThread>

#include <algorithm>
#include <limits>

namespace {

const QString kCommunicationFailed = QStringLiteral("Communication with device failed");
const QString kFetchFailed = QStringLiteral("Fetching next frame failed");
const QString kNoDevice = QStringLiteral("No ZP7 device is open");

bool interruptionRequested()
{
    QThread* thread = QThread::currentThread();
    return thread && thread->isInterruptionRequested();
}

bool isLost(vrn_Status_t status)
{
    return status == VRN_STATUS_COMMUNICATION_ERROR || status == VRN_STATUS_COMMUNICATION_LOST;
}

QString sdkText(const char* error)
{
    return error ? QString::fromUtf8(error) : QString();
}

}

ZP7SDevice::ZP7SDevice(const Vrn* vrn, QObject* parent)
    : QObject(parent)
    , m_vrn(vrn)
{
}

ZP7SDevice::~ZP7SDevice()
{
    disconnectDevice();
}

QString ZP7SDevice::statusText(vrn_Status_t status) const
{
    if (!m_vrn || !m_vrn->status_text)
        return QStringLiteral("Status 0x%1").arg(status, 0, 16);
    return QString::fromUtf8(m_vrn->status_text(status));
}

void ZP7SDevice::reportError(const QString& message, const char* error)
{
    qCritical().noquote() << message << sdkText(error);
    emit triggerEvent(RadarEventCode::Error, message, sdkText(error));
}

bool ZP7SDevice::connectDevice(const QString& uuid, vrn_Device_Shield_Type_t shieldType)
{
    if (isConnected())
        disconnectDevice();
    if (!m_vrn || !m_vrn->corvix_create_by_uuid) {
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Failed to connect to the device"),
                          QStringLiteral("The SDK has no pulsed-Doppler entry points"));
        return false;
    }
    m_uuid = uuid;
    m_shieldType = shieldType;
    QMutexLocker locker(&m_mutex);
    vrn_Corvix_Handle handle = nullptr;
    const QByteArray id = uuid.toUtf8();
    const vrn_Status_t status = m_vrn->corvix_create_by_uuid(id.constData(), &handle);
    if (status == VRN_STATUS_OK && handle) {
        m_handle = handle;
        locker.unlock();
        qInfo().noquote() << "ZP7 device opened:" << uuid;
        emit isConnectedChanged(true);
        return true;
    }
    const QString details = status == VRN_STATUS_OK
        ? QStringLiteral("SDK reports no error but returned device handle is invalid")
        : statusText(status);
    locker.unlock();
    if (isLost(status))
        emit triggerEvent(RadarEventCode::DeviceCommunicationFailure, kCommunicationFailed, details);
    else if (status == VRN_STATUS_FIRMWARE_NOT_SUPPORTED)
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("No compatible device found - Firmware not supported"),
                          details);
    else
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Failed to connect to the device"), details);
    return false;
}

bool ZP7SDevice::disconnectDevice()
{
    QMutexLocker locker(&m_mutex);
    if (!m_handle)
        return true;
    const vrn_Error_t error = m_vrn->corvix_destroy(m_handle);
    // The handle is unusable either way; keeping it would invite a second close.
    m_handle = nullptr;
    m_acquiring.store(false);
    const QString text = sdkText(error);
    locker.unlock();
    if (error)
        qCritical().noquote() << "Failed to gracefully disconnect from the ZP7 device:" << text;
    else
        qInfo().noquote() << "ZP7 device closed:" << m_uuid;
    emit isConnectedChanged(false);
    return !error;
}

bool ZP7SDevice::isConnected() const
{
    QMutexLocker locker(&m_mutex);
    return m_handle != nullptr;
}

bool ZP7SDevice::getDefaultConfig(vrn_Corvix_Frame_Config_t& frame, vrn_Corvix_Pulse_Config_t& pulse)
{
    QMutexLocker locker(&m_mutex);
    const vrn_Error_t error = m_handle ? m_vrn->corvix_get_default_config(m_handle, &frame, &pulse) : nullptr;
    const bool open = m_handle != nullptr;
    const QString text = open ? sdkText(error) : kNoDevice;
    locker.unlock();
    if (open && !error)
        return true;
    qCritical().noquote() << "Cannot get default config for ZP7:" << text;
    emit triggerEvent(RadarEventCode::Error, QStringLiteral("Cannot get default config for ZP7"), text);
    return false;
}

bool ZP7SDevice::getConfig(vrn_Corvix_Frame_Config_t& frame, vrn_Corvix_Pulse_Config_t& pulse)
{
    QMutexLocker locker(&m_mutex);
    const vrn_Error_t error = m_handle ? m_vrn->corvix_get_config(m_handle, &frame, &pulse) : nullptr;
    const bool open = m_handle != nullptr;
    const QString text = open ? sdkText(error) : kNoDevice;
    locker.unlock();
    if (open && !error)
        return true;
    qCritical().noquote() << "Cannot get config for ZP7:" << text;
    emit triggerEvent(RadarEventCode::Error, QStringLiteral("Cannot get config for ZP7"), text);
    return false;
}

bool ZP7SDevice::setConfig(const vrn_Corvix_Frame_Config_t& frame, const vrn_Corvix_Pulse_Config_t& pulse)
{
    QMutexLocker locker(&m_mutex);
    if (!m_handle) {
        locker.unlock();
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Cannot set config for ZP7"), kNoDevice);
        return false;
    }
    const vrn_Error_t error = m_vrn->corvix_set_config(m_handle, &frame, &pulse);
    // A new configuration ends the board's acquisition; the next fetch
    // starts it again.
    if (!error)
        m_acquiring.store(false);
    locker.unlock();
    if (!error) {
        qInfo().nospace() << "ZP7 configured: " << frame.num_samples << " samples, PRT " << frame.pulse_repetition_time_s
                          << " s, frame time " << frame.frame_repetition_time_s << " s, channel " << int(pulse.channel)
                          << ", Tx power " << pulse.tx_power_level << ", gain " << pulse.abb_gain_index;
        return true;
    }
    reportError(QStringLiteral("Cannot set config for ZP7"), error);
    return false;
}

bool ZP7SDevice::getLimits(vrn_Corvix_Limits_t& limits)
{
    QMutexLocker locker(&m_mutex);
    vrn_Corvix_Limits_t read {};
    const vrn_Error_t error = m_handle ? m_vrn->corvix_get_limits(m_handle, &read) : nullptr;
    const bool open = m_handle != nullptr;
    const QString text = open ? sdkText(error) : kNoDevice;
    locker.unlock();
    if (!open || error) {
        qCritical().noquote() << "Cannot get limits for ZP7:" << text;
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Cannot get limits for ZP7"), text);
        return false;
    }
    // Limits whose bounds cross would make every value refused (or every
    // value accepted): the pages must not offer them.
    const bool consistent = read.tx_power_level_min <= read.tx_power_level_max
        && read.abb_gain_index_min <= read.abb_gain_index_max && read.num_samples_min <= read.num_samples_max
        && read.num_samples_min > 0 && read.pulse_repetition_time_s_min > 0.0f
        && read.pulse_repetition_time_s_min <= read.pulse_repetition_time_s_max
        && read.frame_repetition_time_s_min > 0.0f
        && read.frame_repetition_time_s_min <= read.frame_repetition_time_s_max;
    if (!consistent) {
        const QString details = QStringLiteral("The device reported limits whose minimum exceeds the maximum or is 0");
        qCritical().noquote() << "Getting limits for ZP7 failed:" << details;
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Getting limits for ZP7 failed"), details);
        return false;
    }
    limits = read;
    return true;
}

bool ZP7SDevice::readDeviceInfo(DeviceInfo& into)
{
    // Read under the lock, published after it: the change signals reach
    // the pages, and a receiver may ask the device for more.
    QMutexLocker locker(&m_mutex);
    if (!m_handle)
        return false;
    vrn_Device_Info_t info {};
    const vrn_Error_t infoError = m_vrn->corvix_get_device_info(m_handle, &info);
    vrn_Firmware_Info_t firmware {};
    const vrn_Error_t firmwareError = m_vrn->corvix_get_firmware_info(m_handle, &firmware);
    const QString infoText = sdkText(infoError);
    const QString firmwareText = sdkText(firmwareError);
    locker.unlock();

    if (infoError) {
        const QString message = QStringLiteral("Failed to get device info: ") + infoText;
        qCritical().noquote() << message;
        emit triggerEvent(RadarEventCode::Error, message, infoText);
        return false;
    }
    into.setDeviceName(QString::fromUtf8(info.name, int(qstrnlen(info.name, sizeof info.name))));
    into.setNumTxAntennas(info.num_tx_antennas);
    into.setNumRxAntennas(info.num_rx_antennas);
    into.setMinRfFrequencyHz(info.min_rf_frequency_Hz);
    into.setMaxRfFrequencyHz(info.max_rf_frequency_Hz);
    into.setDeviceType(int(VRN_DEVICE_TYPE_ZP7));
    if (firmwareError) {
        // The board works without its firmware's name; the page shows none.
        qCritical().noquote() << "Failed to get firmware info:" << firmwareText;
    } else {
        into.setDeviceFirmwareNumber(QStringLiteral("v%1.%2.%3")
                                         .arg(firmware.version_major)
                                         .arg(firmware.version_minor)
                                         .arg(firmware.version_build));
        into.setDeviceFirmwareName(QString::fromUtf8(
            firmware.description, int(qstrnlen(firmware.description, sizeof firmware.description))));
    }
    return true;
}

double ZP7SDevice::frameTimeLimitMs(float frameRepetitionTimeS)
{
    const double frameMs = double(frameRepetitionTimeS) * 1000.0 * 1.25;
    return 3.0 * std::max(100.0, frameMs);
}

ZP7SFrame ZP7SDevice::createFrame(quint16 samples)
{
    vrn_Corvix_Frame_C_t* created = nullptr;
    if (vrn_Error_t error = m_vrn->corvix_frame_c_create(1, samples, &created)) {
        emit triggerEvent(RadarEventCode::NoDataAvailable, kFetchFailed, sdkText(error));
        return {};
    }
    const Vrn* vrn = m_vrn;
    // The last holder (acquisition, recorder or chart) hands it back.
    return ZP7SFrame(created, [vrn](const vrn_Corvix_Frame_C_t* frame) {
        if (vrn_Error_t error = vrn->corvix_frame_c_destroy(const_cast<vrn_Corvix_Frame_C_t*>(frame)))
            qCritical() << "Failed to release a ZP7 frame:" << error;
    });
}

ZP7SFrameResult ZP7SDevice::getNextFrame(const ZP7SDeviceConfig& configuration)
{
    const quint16 samples = configuration.frameParams()->numOfSamples();
    const float rate = configuration.frameParams()->frameRepetitionRate();
    ZP7SFrame frame = createFrame(samples);
    if (!frame)
        return {};
    const qint64 limitNs = qint64(frameTimeLimitMs(rate > 0.0f ? 1.0f / rate : 0.0f) * 1e6);
    QElapsedTimer clock;
    clock.start();

    for (;;) {
        if (interruptionRequested())
            return { true, ZP7SFrame() };
        QMutexLocker locker(&m_mutex);
        if (!m_handle)
            return {};
        // The board starts acquiring on the first frame asked of it.
        m_acquiring.store(true);
        const vrn_Status_t status
            = m_vrn->corvix_get_next_frame(m_handle, const_cast<vrn_Corvix_Frame_C_t*>(frame.get()), kFrameWaitMs);
        const QString text = status == VRN_STATUS_OK ? QString() : statusText(status);
        locker.unlock();

        if (status == VRN_STATUS_OK)
            return { true, frame };
        if (status == VRN_STATUS_FRAME_TIMEOUT && clock.nsecsElapsed() <= limitNs)
            continue;
        qWarning().noquote() << "ZP7 frame fetch ended:" << text;
        if (isLost(status))
            emit triggerEvent(RadarEventCode::DeviceCommunicationFailure, kCommunicationFailed, text);
        else
            emit triggerEvent(RadarEventCode::NoDataAvailable, kFetchFailed, text);
        return {};
    }
}

void ZP7SDevice::stopAcquisition()
{
    QMutexLocker locker(&m_mutex);
    if (!m_handle || !m_acquiring.exchange(false))
        return;
    const vrn_Error_t error = m_vrn->corvix_stop_acquisition(m_handle);
    const QString text = sdkText(error);
    locker.unlock();
    if (error) {
        qCritical().noquote() << "Failed to stop acquisition:" << text;
        emit triggerEvent(RadarEventCode::DeviceCommunicationFailure, QStringLiteral("Failed to stop acquisition"),
                          text);
    }
}

float ZP7SDevice::getTemperature()
{
    const float unknown = std::numeric_limits<float>::quiet_NaN();
    QMutexLocker locker(&m_mutex);
    if (!m_handle)
        return unknown;
    float temperature = unknown;
    const vrn_Status_t status = m_vrn->corvix_get_temperature(m_handle, &temperature);
    const QString text = status == VRN_STATUS_OK ? QString() : statusText(status);
    locker.unlock();
    if (status == VRN_STATUS_OK)
        return temperature;
    if (isLost(status)) {
        emit triggerEvent(RadarEventCode::DeviceCommunicationFailure, kCommunicationFailed, text);
    } else {
        // Reported once: the coordinator stops the readout on this event.
        qCritical().noquote() << "Failed to get device temperature:" << text;
        emit triggerEvent(RadarEventCode::TemperatureNotSupported, QStringLiteral("Failed to get device temperature"),
                          text);
    }
    return unknown;
}
