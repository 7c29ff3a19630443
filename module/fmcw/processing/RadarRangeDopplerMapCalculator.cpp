#include "fmcw/processing/RadarRangeDopplerMapCalculator.h"

#include "common/MathAxis.h"
#include "fmcw/processing/RangeDopplerUserSettings.h"
#include "host/IBroker.h"

#include <QDebug>

std::unique_ptr<RadarRangeDopplerMapCalculator> RadarRangeDopplerMapCalculator::create(
    IBroker& broker, const RangeDopplerUserSettings& settings, MathAxis* rangeAxis, MathAxis* speedAxis,
    quint64 bandwidthHz, float frameRepetitionTimeS, float chirpRepetitionTimeS, float centerFrequencyHz)
{
    // The SDK's speed axis depends on the chirp, not on the frame timing.
    Q_UNUSED(frameRepetitionTimeS)
    vrn_RDM_Config_t config {};
    settings.copyTo(config);
    Handle handle = createRangeDopplerMapHandle(broker, config);
    if (!handle)
        return nullptr;
    std::unique_ptr<RadarRangeDopplerMapCalculator> calculator(
        new RadarRangeDopplerMapCalculator(broker, std::move(handle), config));
    if (bandwidthHz != 0 && rangeAxis && speedAxis)
        calculator->computeAxes(*rangeAxis, *speedAxis, bandwidthHz, chirpRepetitionTimeS, centerFrequencyHz);
    return calculator;
}

RadarRangeDopplerMapCalculator::Handle RadarRangeDopplerMapCalculator::createRangeDopplerMapHandle(
    IBroker& broker, const vrn_RDM_Config_t& config)
{
    const Vrn* vrn = broker.sdk();
    if (!vrn) {
        qCritical() << "Cannot create Range Doppler Map handle:" << "No radar SDK is loaded";
        return nullptr;
    }
    vrn_RDM_Handle handle = nullptr;
    if (vrn_Error_t error = vrn->rdm_create(&config, &handle)) {
        qCritical() << "Cannot create Range Doppler Map handle:" << error;
        return nullptr;
    }
    return Handle(handle, [vrn](vrn_RDM_Handle owned) {
        if (vrn_Error_t error = vrn->rdm_destroy(owned))
            qCritical() << "Cannot destroy Range Doppler Map handle:" << error;
    });
}

RadarRangeDopplerMapCalculator::RadarRangeDopplerMapCalculator(IBroker& broker, Handle handle,
                                                               const vrn_RDM_Config_t& config)
    : m_broker(&broker)
    , m_handle(std::move(handle))
    , m_config(config)
{
}

void RadarRangeDopplerMapCalculator::computeAxes(MathAxis& rangeAxis, MathAxis& speedAxis, quint64 bandwidthHz,
                                                 float chirpRepetitionTimeS, float centerFrequencyHz)
{
    const Vrn* vrn = m_broker->sdk();
    vrn_Math_Axis_Spec_s axis {};
    if (vrn_Error_t error = vrn->rdm_range_axis(m_handle.get(), bandwidthHz, &axis))
        qCritical() << "Cannot calculate Range Axis for Doppler Map:" << error;
    else
        rangeAxis.setSpec(axis);
    axis = vrn_Math_Axis_Spec_s {};
    if (vrn_Error_t error = vrn->rdm_speed_axis(m_handle.get(), centerFrequencyHz, chirpRepetitionTimeS, &axis))
        qCritical() << "Cannot calculate Speed Axis for Doppler Map:" << error;
    else
        speedAxis.setSpec(axis);
}

SharedMatrix RadarRangeDopplerMapCalculator::processData(const SharedFrame& frame, quint32 antennaIndex)
{
    const Vrn* vrn = m_broker->sdk();
    if (!m_handle || !vrn) {
        qCritical() << "Cannot calculate Range Doppler Map. Cannot get Range Doppler Map handle";
        return nullptr;
    }
    const vrn_Matrix_R_s* input = nullptr;
    if (!frame || antennaIndex >= frame->num_rx || !frame->rx_data || !frame->rx_data[antennaIndex]
        || vrn->frame_r_channel(frame.get(), antennaIndex, &input) || !input) {
        qCritical() << "Cannot calculate Range Doppler Map. Cannot get input data. Data is NULL";
        return nullptr;
    }
    vrn_Matrix_R_s* created = nullptr;
    if (vrn_Error_t error = vrn->matrix_r_create(m_config.range_fft_config.fft_size / 2,
                                                 m_config.doppler_fft_config.fft_size, &created)) {
        qCritical() << "Cannot create Range Doppler Map output matrix:" << error;
        return nullptr;
    }
    SharedMatrix map = makeSharedMatrix(vrn, created);
    if (vrn_Error_t error = vrn->rdm_run(m_handle.get(), input, created)) {
        qCritical() << "Failed to calculate Range Doppler Map data" << error;
        return nullptr;
    }
    return map;
}
