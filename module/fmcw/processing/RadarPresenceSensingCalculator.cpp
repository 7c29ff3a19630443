#include "fmcw/processing/RadarPresenceSensingCalculator.h"

#include "fmcw/common/RadarConfigurationUtils.h"
#include "host/IBroker.h"

#include <QDebug>

std::unique_ptr<RadarPresenceSensingCalculator> RadarPresenceSensingCalculator::create(
    IBroker& broker, RadarConfigurationUtils& utils, RadarDeviceConfiguration& configuration)
{
    const Vrn* vrn = broker.sdk();
    if (!vrn) {
        qCritical() << "Cannot create Presence Sensing handle" << "No radar SDK is loaded";
        return nullptr;
    }
    vrn_PresenceSensing_Config_t config {};
    utils.fillPresenceSensingRecord(configuration, config);
    // The algorithm must see the frames as the scene produces them, not as
    // the chip's defaults describe them.
    vrn_Device_Config_t deviceConfig {};
    utils.setupSdkDeviceConfiguration(configuration, deviceConfig);
    config.device_config = deviceConfig;

    vrn_PresenceSensing_Handle handle = nullptr;
    if (vrn_Error_t error = vrn->ps_create(&config, &handle)) {
        qCritical() << "Cannot create Presence Sensing handle" << error;
        return nullptr;
    }
    Handle shared(handle, [vrn](vrn_PresenceSensing_Handle owned) {
        if (vrn_Error_t error = vrn->ps_destroy(owned))
            qCritical() << "Cannot destroy Presence Sensing handle:" << error;
    });
    return std::unique_ptr<RadarPresenceSensingCalculator>(
        new RadarPresenceSensingCalculator(broker, std::move(shared)));
}

RadarPresenceSensingCalculator::RadarPresenceSensingCalculator(IBroker& broker, Handle handle)
    : m_broker(&broker)
    , m_handle(std::move(handle))
{
}

SharedPresenceResult RadarPresenceSensingCalculator::process(const SharedFrame& frame)
{
    const Vrn* vrn = m_broker->sdk();
    if (!m_handle || !vrn) {
        qCritical() << "Cannot calculate Presence Sensing data. Cannot get Presence Sensing handle";
        return nullptr;
    }
    const vrn_Matrix_R_s* channel = nullptr;
    if (!frame || frame->num_rx == 0 || !frame->rx_data || !frame->rx_data[0]
        || vrn->frame_r_channel(frame.get(), 0, &channel) || !channel) {
        qCritical() << "Cannot calculate Presence Sensing. Cannot get input data. Data is NULL";
        return nullptr;
    }
    const vrn_Matrix_R_s* input = nullptr;
    if (vrn->ps_input_matrix(channel, &input) || !input)
        return nullptr;
    auto result = std::make_shared<vrn_PresenceSensing_Result_t>();
    if (vrn_Error_t error = vrn->ps_run(m_handle.get(), input, result.get())) {
        qCritical() << "Cannot calculate Presence Sensing result" << error;
        return nullptr;
    }
    return result;
}
