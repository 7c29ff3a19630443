#include "fmcw/cw/RadarCWController.h"

#include "fmcw/common/SharedFrame.h"
#include "fmcw/common/RadarAntennas.h"
#include "fmcw/cw/config/RadarCWParamsLimits.h"
#include "fmcw/cw/config/RadarDeviceCWConfig.h"

#include <QDebug>
#include <QMutexLocker>

#include <limits>

namespace {

// What went wrong while the mutex was held, told once it is let go.
struct Failure {
    RadarEventCode code = RadarEventCode::Error;
    QString message;
    QString details;
    bool failed() const { return !message.isEmpty(); }
};

QString errorText(vrn_Error_t error)
{
    return QString::fromUtf8(error);
}

const char* const kNoHandle = "The CW controller handle is empty";

}

RadarCWController::RadarCWController(const Vrn* vrn, QObject* parent)
    : QObject(parent)
    , m_vrn(vrn)
{
}

RadarCWController::~RadarCWController()
{
    destroyHandle();
}

void RadarCWController::setDevice(vrn_Device_Handle device)
{
    QMutexLocker locker(&m_mutex);
    m_device = device;
}

bool RadarCWController::hasHandle() const
{
    QMutexLocker locker(&m_mutex);
    return m_handle != nullptr;
}

QString RadarCWController::statusText(vrn_Status_t status) const
{
    if (!m_vrn || !m_vrn->status_text)
        return QStringLiteral("Status 0x%1").arg(status, 0, 16);
    return QString::fromUtf8(m_vrn->status_text(status));
}

bool RadarCWController::createHandle()
{
    QMutexLocker locker(&m_mutex);
    vrn_CW_Handle handle = nullptr;
    const vrn_Error_t error = m_vrn->cw_create(m_device, &handle);
    if (error) {
        const QString details = errorText(error);
        locker.unlock();
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Failed to init to the cw controller"), details);
        return false;
    }
    if (!handle) {
        locker.unlock();
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Failed to init the cw controller"),
                          QStringLiteral("SDK reports no error but returned handle is invalid"));
        return false;
    }
    m_handle = handle;
    qInfo() << "CW controller initialized";
    return true;
}

void RadarCWController::destroyHandle()
{
    QMutexLocker locker(&m_mutex);
    // Cleared first: whatever the SDK answers, this handle is not used again.
    vrn_CW_Handle handle = m_handle;
    m_handle = nullptr;
    if (!handle)
        return;
    if (vrn_Error_t error = m_vrn->cw_destroy(handle))
        qWarning() << "Failed to gracefully destroy cw controller" << error;
}

bool RadarCWController::isEmissionActiveLocked(bool& active, QString& failure)
{
    uint8_t state = 0;
    if (vrn_Error_t error = m_vrn->cw_is_emission_active(m_handle, &state)) {
        failure = errorText(error);
        return false;
    }
    active = state != 0;
    return true;
}

bool RadarCWController::isEmissionActive()
{
    QMutexLocker locker(&m_mutex);
    if (!m_handle) {
        qWarning() << "Cannot get status of CW emission from cw controller. Handle is empty";
        return false;
    }
    bool active = false;
    QString failure;
    if (!isEmissionActiveLocked(active, failure)) {
        locker.unlock();
        qCritical() << "Failed to get status of CW emission from cw controller" << failure;
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Failed to get status of CW emission from cw controller"),
                          failure);
        return false;
    }
    return active;
}

bool RadarCWController::startEmission()
{
    QMutexLocker locker(&m_mutex);
    if (!m_handle) {
        qWarning() << "Cannot to start CW emission from cw controller. Handle is empty";
        return false;
    }
    bool active = false;
    QString failure;
    if (isEmissionActiveLocked(active, failure) && active)
        return true;
    if (vrn_Error_t error = m_vrn->cw_start_emission(m_handle)) {
        const QString text = errorText(error);
        locker.unlock();
        qCritical() << "Failed to start CW emission from cw controller:" << text;
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Failed to start CW emission from cw controller"),
                          QStringLiteral("SDK reports error"));
        return false;
    }
    qInfo() << "CW emission from cw controller has started";
    return true;
}

bool RadarCWController::stopEmission()
{
    QMutexLocker locker(&m_mutex);
    if (!m_handle) {
        qWarning() << "Cannot to stop CW emission from cw controller. Handle is empty";
        return false;
    }
    bool active = true;
    QString failure;
    if (isEmissionActiveLocked(active, failure) && !active)
        return true;
    if (vrn_Error_t error = m_vrn->cw_stop_emission(m_handle)) {
        const QString text = errorText(error);
        locker.unlock();
        qCritical() << "Failed to stop CW emission from cw controller:" << text;
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Failed to stop CW emission from cw controller"),
                          QStringLiteral("SDK reports error"));
        return false;
    }
    qInfo() << "CW emission from cw controller has stopped";
    return true;
}

float RadarCWController::getTemperature()
{
    const float unknown = std::numeric_limits<float>::quiet_NaN();
    QMutexLocker locker(&m_mutex);
    if (!m_handle)
        return unknown;
    float temperature = unknown;
    const vrn_Status_t status = m_vrn->cw_get_temperature(m_handle, &temperature);
    const QString text = status == VRN_STATUS_OK ? QString() : statusText(status);
    locker.unlock();
    switch (status) {
    case VRN_STATUS_OK:
        return temperature;
    case VRN_STATUS_NOT_SUPPORTED:
        emit triggerEvent(RadarEventCode::TemperatureNotSupported,
                          QStringLiteral("Temperature monitoring is not supported"), text);
        break;
    case VRN_STATUS_COMMUNICATION_ERROR:
    case VRN_STATUS_COMMUNICATION_LOST:
        emit triggerEvent(RadarEventCode::DeviceCommunicationFailure,
                          QStringLiteral("Device communication error while fetching temperature"), text);
        break;
    default:
        qCritical().noquote() << "Failed to get cw controller temperature:" << text;
        break;
    }
    return unknown;
}

float RadarCWController::getTxPower(int antennaIndex)
{
    const float unknown = std::numeric_limits<float>::quiet_NaN();
    QMutexLocker locker(&m_mutex);
    if (!m_handle || antennaIndex < 0)
        return unknown;
    float power = unknown;
    const vrn_Status_t status = m_vrn->cw_get_tx_power(m_handle, quint32(antennaIndex), &power);
    const QString text = status == VRN_STATUS_OK ? QString() : statusText(status);
    locker.unlock();
    switch (status) {
    case VRN_STATUS_OK:
        return power;
    case VRN_STATUS_COMMUNICATION_ERROR:
    case VRN_STATUS_COMMUNICATION_LOST:
        emit triggerEvent(RadarEventCode::DeviceCommunicationFailure,
                          QStringLiteral("Device communication error while fetching TX Power"), text);
        break;
    default:
        qCritical().noquote() << "Failed to get cw controller Tx power:" << text;
        break;
    }
    return unknown;
}

bool RadarCWController::getSamplingRateLimits(const vrn_Device_ADC_Config_t& adc, quint32& minHz, quint32& maxHz)
{
    QMutexLocker locker(&m_mutex);
    if (!m_handle) {
        qWarning() << "Failed to get sampling rate limits:" << kNoHandle;
        return false;
    }
    uint32_t low = 0;
    uint32_t high = 0;
    if (vrn_Error_t error = m_vrn->cw_get_sampling_rate_limits(m_handle, &adc, &low, &high)) {
        const QString text = errorText(error);
        locker.unlock();
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Failed to get sampling rate limits"), text);
        return false;
    }
    minHz = low;
    maxHz = high;
    return true;
}

RadarCWController::FrameResult RadarCWController::fetchFrame(const RadarDeviceCWConfig& config)
{
    const FrameResult none { false, SharedFrame() };
    const quint32 channels = quint32(config.rxAntennas()->activeCount());
    QMutexLocker locker(&m_mutex);
    if (!m_handle) {
        qWarning() << "Failed to get frame for CW mode:" << kNoHandle;
        return none;
    }
    uint32_t samples = 0;
    if (vrn_Error_t error = m_vrn->cw_get_num_samples_per_antenna(m_handle, &samples)) {
        const QString text = errorText(error);
        locker.unlock();
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Failed to get num of samples per antenna for CW mode"),
                          text);
        return none;
    }
    vrn_Frame_R_t* created = nullptr;
    if (vrn_Error_t error = m_vrn->frame_r_create(channels, 1, samples, &created)) {
        const QString text = errorText(error);
        locker.unlock();
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Failed to get frame for CW mode"), text);
        return none;
    }
    SharedFrame frame = makeSharedFrame(m_vrn, created);
    const vrn_Status_t status = m_vrn->cw_capture_frame(m_handle, created);
    if (status == VRN_STATUS_OK) {
        locker.unlock();
        qDebug() << "Received frame for CW mode";
        return { true, frame };
    }
    const QString text = statusText(status);
    locker.unlock();
    // Given back to the SDK outside the lock, through its owner.
    frame.reset();
    if (status == VRN_STATUS_COMMUNICATION_LOST)
        emit triggerEvent(RadarEventCode::DeviceCommunicationFailure,
                          QStringLiteral("Device communication error while fetching frame"), QString());
    else
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Failed to get frame for CW mode"), text);
    return none;
}

bool RadarCWController::report(const char* message, const QString& details)
{
    qCritical().noquote() << message << details;
    emit triggerEvent(RadarEventCode::Error, QString::fromUtf8(message), details);
    return false;
}

bool RadarCWController::setConfiguration(const RadarDeviceCWConfig& config)
{
    // Read before the lock: the configuration belongs to the pages' thread.
    const vrn_CW_Config_t c = config.toSdkConfig();
    QMutexLocker locker(&m_mutex);
    if (!m_handle) {
        locker.unlock();
        return report("Cannot set configuration into cw controller", QString::fromUtf8(kNoHandle));
    }
    const char* failed = nullptr;
    vrn_Error_t error = nullptr;
    // The device takes the values in this order: the carrier before the
    // transmitter, the ADC before the baseband that its rate depends on.
    if ((error = m_vrn->cw_set_rf_frequency(m_handle, c.rf_center_frequency_Hz)))
        failed = "Cannot set RF frequency into cw controller";
    else if ((error = m_vrn->cw_set_dac_value(m_handle, c.dac_value)))
        failed = "Cannot set DAC value into cw controller";
    else if ((error = m_vrn->cw_set_tx_antenna_mask(m_handle, c.tx_mask)))
        failed = "Cannot set Tx antenna state into cw controller";
    else if ((error = m_vrn->cw_set_test_signal_generator(m_handle, &c.test_signal)))
        failed = "Cannot set Test signal generator config into cw controller";
    else if ((error = m_vrn->cw_set_rx_antenna_mask(m_handle, c.rx_mask)))
        failed = "Cannot set Rx antenna state into cw controller";
    else if ((error = m_vrn->cw_set_num_samples(m_handle, c.num_samples)))
        failed = "Cannot set Rx number of samples into cw controller";
    else if ((error = m_vrn->cw_set_adc_config(m_handle, &c.adc)))
        failed = "Cannot set ADC config into cw controller";
    else if ((error = m_vrn->cw_set_baseband_config(m_handle, &c.baseband)))
        failed = "Cannot set Baseband config into cw controller";
    if (!failed)
        return true;
    const QString details = errorText(error);
    locker.unlock();
    return report(failed, details);
}

bool RadarCWController::getConfiguration(RadarDeviceCWConfig& config)
{
    // Starts from what the configuration holds: the duty cycle is no value
    // of the device.
    vrn_CW_Config_t c = config.toSdkConfig();
    QMutexLocker locker(&m_mutex);
    if (!m_handle) {
        locker.unlock();
        return report("Cannot get configuration from cw controller", QString::fromUtf8(kNoHandle));
    }
    const char* failed = nullptr;
    vrn_Error_t error = nullptr;
    if ((error = m_vrn->cw_get_rf_frequency(m_handle, &c.rf_center_frequency_Hz)))
        failed = "Cannot get RF frequency from cw controller";
    else if ((error = m_vrn->cw_get_dac_value(m_handle, &c.dac_value)))
        failed = "Cannot get DAC value from cw controller";
    else if ((error = m_vrn->cw_get_tx_antenna_mask(m_handle, &c.tx_mask)))
        failed = "Cannot get Tx antenna state from cw controller";
    else if ((error = m_vrn->cw_get_test_signal_generator(m_handle, &c.test_signal)))
        failed = "Cannot get Test signal generator config from cw controller";
    else if ((error = m_vrn->cw_get_rx_antenna_mask(m_handle, &c.rx_mask)))
        failed = "Cannot get Rx antenna state from cw controller";
    else if ((error = m_vrn->cw_get_num_samples(m_handle, &c.num_samples)))
        failed = "Cannot get Rx antenna number of samples from cw controller";
    else if ((error = m_vrn->cw_get_adc_config(m_handle, &c.adc)))
        failed = "Cannot get ADC config from cw controller";
    else if ((error = m_vrn->cw_get_baseband_config(m_handle, &c.baseband)))
        failed = "Cannot get Baseband config from cw controller";
    const QString details = failed ? errorText(error) : QString();
    // The setters signal the pages, which may call back in.
    locker.unlock();
    if (failed)
        return report(failed, details);
    config.setFromSdkConfig(c);
    return true;
}

bool RadarCWController::getDefaultConfiguration(RadarDeviceCWConfig& config)
{
    QMutexLocker locker(&m_mutex);
    if (!m_handle) {
        locker.unlock();
        return report("Cannot get default configuration from device", QString::fromUtf8(kNoHandle));
    }
    vrn_CW_Config_t c {};
    if (vrn_Error_t error = m_vrn->cw_get_default_config(m_handle, &c)) {
        const QString details = errorText(error);
        locker.unlock();
        return report("Cannot get default configuration from device", details);
    }
    locker.unlock();
    config.setFromSdkConfig(c);
    qInfo() << "Default SDK configuration for radar loaded.";
    return true;
}

bool RadarCWController::getLimits(RadarCWParamsLimits& limits)
{
    QMutexLocker locker(&m_mutex);
    if (!m_handle) {
        locker.unlock();
        return report("Cannot get limits from cw controller", QString::fromUtf8(kNoHandle));
    }
    vrn_CW_Limits_t sdkLimits {};
    if (vrn_Error_t error = m_vrn->cw_get_limits(m_handle, &sdkLimits)) {
        const QString details = errorText(error);
        locker.unlock();
        return report("Cannot get limits from cw controller", details);
    }
    locker.unlock();
    limits.setFromSdk(sdkLimits);
    return true;
}
