#include "fmcw/common/RadarConfigurationUtils.h"

#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/MetricsLimits.h"
#include "fmcw/common/PresenceSensingConfig.h"
#include "fmcw/common/RadarDeviceBase.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/common/RadarDeviceParameters.h"
#include "fmcw/common/SegmentationConfiguration.h"

#include <QDebug>
#include <QHash>

namespace {

const QHash<QString, vrn_Mimo_Mode_t>& mimoModesBySdkName()
{
    // Function-local statics: built once, on first use, and the compiler
    // guards that first use against concurrent callers.
    static const QHash<QString, vrn_Mimo_Mode_t> table {
        { QStringLiteral("off"), VRN_MIMO_OFF },
        { QStringLiteral("tdm"), VRN_MIMO_TDM },
    };
    return table;
}

const QHash<int, QString>& mimoNamesBySdkMode()
{
    static const QHash<int, QString> table {
        { VRN_MIMO_OFF, QStringLiteral("off") },
        { VRN_MIMO_TDM, QStringLiteral("tdm") },
    };
    return table;
}

QString text(vrn_Error_t error)
{
    return QString::fromUtf8(error);
}

}

RadarConfigurationUtils::RadarConfigurationUtils(const Vrn* vrn, bool segmentationUserDefaults, QObject* parent)
    : IRadarConfigurationUtils(parent)
    , m_vrn(vrn)
    , m_segmentationUserDefaults(segmentationUserDefaults)
{
}

bool RadarConfigurationUtils::createFrame(const RadarDeviceConfiguration& config, vrn_Frame_R_t*& frame)
{
    const RadarDeviceParameters* parameters = config.parameters();
    const Metrics* metrics = config.metrics();
    if (!parameters || !metrics) {
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Failed to create frame"),
                          QStringLiteral("Device Configuration is NULL"));
        return false;
    }
    const quint32 channels = quint32(activeAntennaCount(metrics->rx()->mask()))
                           * quint32(activeAntennaCount(metrics->tx()->mask()));
    vrn_Frame_R_t* created = nullptr;
    const vrn_Error_t error = m_vrn->frame_r_create(channels, parameters->numChirpsPerFrame(),
                                                    parameters->numSamplesPerChirp(), &created);
    if (error || !created) {
        // An SDK that hands out a frame together with an error still owns
        // nothing of it afterwards: give it back rather than leak it.
        if (created)
            destroyFrame(created);
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Failed to create frame"), text(error));
        return false;
    }
    frame = created;
    return true;
}

void RadarConfigurationUtils::destroyFrame(vrn_Frame_R_t*& frame)
{
    if (!frame)
        return;
    if (vrn_Error_t error = m_vrn->frame_r_destroy(frame))
        qCritical() << "Cannot destroy frame" << error;
    frame = nullptr;
}

void RadarConfigurationUtils::clearFrame(vrn_Frame_R_t*& frame)
{
    if (!frame)
        return;
    for (uint32_t channel = 0; channel < frame->num_rx; ++channel) {
        // One bad channel must not keep the others from being cleared.
        if (vrn_Error_t error = m_vrn->matrix_r_clear(frame->rx_data[channel]))
            qCritical() << "Failed to clear frame" << error;
    }
    // The matrices stay with the SDK until the frame is destroyed.
    frame->num_rx = 0;
}

float RadarConfigurationUtils::getChirpTime(RadarDeviceBase* const& device, const vrn_Device_Config_t& deviceConfig)
{
    float chirpTime = 0.0f;
    const vrn_Error_t error
        = m_vrn->device_get_chirp_time(device ? device->sdkHandle() : nullptr, &deviceConfig, &chirpTime);
    if (error)
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Cannot get chirp time"), text(error));
    return chirpTime;
}

vrn_Metrics_t RadarConfigurationUtils::sdkMetrics(const RadarDeviceConfiguration& config)
{
    vrn_Metrics_t metrics = config.metrics()->toSdkMetrics();
    // The published minimum of the maximum range is floored to one decimal,
    // so the user can pick a value just below what the SDK accepts.
    const double limit = config.limits() ? double(config.limits()->exactMaxRangeMMin()) : 0.0;
    const double metric = double(metrics.max_range_m);
    metrics.max_range_m = static_cast<float>(limit <= metric ? metric : limit);
    return metrics;
}

bool RadarConfigurationUtils::convertConfiguration(RadarDeviceBase* const& device, RadarDeviceConfiguration& config,
                                                   vrn_Device_Config_t& out)
{
    if (!config.metrics()) {
        m_lastTranslationError = QStringLiteral("Metrics are NULL");
        qCritical() << "Cannot translate metrics to config" << "Metrics are NULL";
        return false;
    }
    const vrn_Metrics_t metrics = sdkMetrics(config);
    const vrn_Error_t error
        = m_vrn->device_translate_metrics(device ? device->sdkHandle() : nullptr, &metrics, &out);
    m_lastTranslationError = text(error);
    if (error) {
        qCritical() << "Cannot translate metrics to config" << error;
        return false;
    }
    return true;
}

bool RadarConfigurationUtils::getDefaultSegmentationConfig(RadarDeviceBase* const& device,
                                                           RadarDeviceConfiguration& config,
                                                           SegmentationConfiguration& out)
{
    vrn_Device_Config_t deviceConfig {};
    if (!convertConfiguration(device, config, deviceConfig))
        return false;
    vrn_Segmentation_Config_t segmentation {};
    const auto deviceType = static_cast<vrn_Device_Type_t>(config.deviceInfo()->deviceType());
    const vrn_Error_t error = m_vrn->seg_default_config(deviceType, &deviceConfig, &segmentation);
    if (error) {
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Cannot get default config for segmentation"),
                          text(error));
        return false;
    }
    out.setFromSdk(segmentation, m_segmentationUserDefaults);
    return true;
}

void RadarConfigurationUtils::parseDeviceConfig(RadarDeviceParameters* parameters, vrn_Device_Config_t& config)
{
    if (!parameters)
        return;
    parameters->setNumSamplesPerChirp(config.num_samples_per_chirp);
    parameters->setNumChirpsPerFrame(config.num_chirps_per_frame);
    parameters->setFrameRepetitionTimeS(config.frame_repetition_time_s);
    parameters->setLowerFrequencyHz(config.lower_frequency_Hz);
    parameters->setUpperFrequencyHz(config.upper_frequency_Hz);
    parameters->setChirpRepetitionTimeS(config.chirp_repetition_time_s);
    const auto& names = mimoNamesBySdkMode();
    const auto found = names.constFind(int(config.mimo_mode));
    if (found == names.constEnd()) {
        qWarning() << "Current mimo mode from SDK configuration does not fit into any defined type by configuration";
        parameters->setMimoMode(QStringLiteral("off"));
    } else {
        parameters->setMimoMode(found.value());
    }
    float pulseRepetitionTime = 0.0f;
    if (vrn_Error_t error = m_vrn->config_get_pulse_repetition_time(&config, &pulseRepetitionTime))
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Failed to get Pulse Repetition Time"), text(error));
    parameters->setPulseRepetitionTimeS(pulseRepetitionTime);
}

void RadarConfigurationUtils::setupSdkDeviceConfiguration(RadarDeviceConfiguration& config, vrn_Device_Config_t& out)
{
    const RadarDeviceParameters& parameters = *config.parameters();
    const Metrics& metrics = *config.metrics();
    out.num_samples_per_chirp = parameters.numSamplesPerChirp();
    out.num_chirps_per_frame = parameters.numChirpsPerFrame();
    out.sample_rate_Hz = metrics.sampleRateHz();
    out.frame_repetition_time_s = parameters.frameRepetitionTimeS();
    out.sample_rate_Hz = metrics.sampleRateHz();
    out.frame_repetition_time_s = parameters.frameRepetitionTimeS();
    out.lower_frequency_Hz = parameters.lowerFrequencyHz();
    out.upper_frequency_Hz = parameters.upperFrequencyHz();
    out.tx_power_level = metrics.txPowerLevel();
    // Only the receivers matter to the algorithms that use this record; the
    // transmitter mask keeps the caller's zero.
    out.rx_mask = metrics.rx()->mask();
    out.chirp_repetition_time_s = parameters.chirpRepetitionTimeS();
    out.if_gain_dB = metrics.ifGainDB();
    const auto& modes = mimoModesBySdkName();
    const auto found = modes.constFind(parameters.mimoMode());
    if (found == modes.constEnd()) {
        qWarning() << "Current mimo mode from configuration does not fit into any defined type by SDK";
        out.mimo_mode = VRN_MIMO_OFF;
    } else {
        out.mimo_mode = found.value();
    }
}

void RadarConfigurationUtils::fillDefaultPresenceSensing(RadarDeviceConfiguration& config)
{
    vrn_PresenceSensing_Config_t defaults {};
    const auto deviceType = static_cast<vrn_Device_Type_t>(config.deviceInfo()->deviceType());
    if (vrn_Error_t error = m_vrn->ps_default_config(deviceType, &defaults)) {
        emit triggerEvent(RadarEventCode::Error,
                          QStringLiteral("Failed to get default presence sensing configuration from SDK"),
                          text(error));
    }
    PresenceSensingConfig& presence = *config.presenceSensing();
    presence.setMinDetectionRange(defaults.min_detection_range_m);
    presence.setMaxDetectionRange(defaults.max_detection_range_m);
    presence.setRangeHysteresisPercentage(defaults.range_hysteresis_percentage);
    presence.setAbsenceConfirmCount(defaults.absence_confirm_count);
    presence.setPresenceConfirmCount(defaults.presence_confirm_count);
}

void RadarConfigurationUtils::fillPresenceSensingRecord(RadarDeviceConfiguration& config,
                                                        vrn_PresenceSensing_Config_t& out)
{
    const auto deviceType = static_cast<vrn_Device_Type_t>(config.deviceInfo()->deviceType());
    if (vrn_Error_t error = m_vrn->ps_default_config(deviceType, &out)) {
        emit triggerEvent(RadarEventCode::Error,
                          QStringLiteral("Failed to get default presence sensing configuration from SDK"),
                          text(error));
    }
    const PresenceSensingConfig& presence = *config.presenceSensing();
    out.min_detection_range_m = presence.minDetectionRange();
    out.max_detection_range_m = presence.maxDetectionRange();
    out.absence_confirm_count = presence.absenceConfirmCount();
    out.presence_confirm_count = presence.presenceConfirmCount();
    vrn_Device_Config_t deviceConfig {};
    setupSdkDeviceConfiguration(config, deviceConfig);
    float rangeResolution = out.range_resolution_m;
    if (vrn_Error_t error = m_vrn->ps_range_resolution(&deviceConfig, &rangeResolution))
        qWarning() << "Cannot compute the presence sensing range resolution" << error;
    out.range_resolution_m = rangeResolution;
}

float RadarConfigurationUtils::bandwidth(const RadarDeviceParameters& parameters)
{
    const quint64 difference = parameters.upperFrequencyHz() - parameters.lowerFrequencyHz();
    return static_cast<float>(difference);
}

int RadarConfigurationUtils::activeAntennaCount(quint32 mask)
{
    return RadarAntennas::popCount(mask & 0xFu);
}
