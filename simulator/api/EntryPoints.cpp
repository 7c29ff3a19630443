// The table of entry points that the simulator exports.

#include "Api.h"

#include "ErrorText.h"
#include "FrameMemory.h"

#include <cstring>

namespace vrnsim {

namespace {

const char* statusText(vrn_Status_t status)
{
    return ErrorText::statusText(status);
}

vrn_Error_t frameCreate(uint32_t numRx, uint32_t chirps, uint32_t samples, vrn_Frame_R_t** frame)
{
    return FrameMemory::createFrame(numRx, chirps, samples, frame);
}

vrn_Error_t frameDestroy(vrn_Frame_R_t* frame)
{
    return FrameMemory::destroyFrame(frame);
}

vrn_Error_t frameChannel(const vrn_Frame_R_t* frame, uint32_t index, const vrn_Matrix_R_s** matrix)
{
    if (!frame || !matrix)
        return ErrorText::set("Frame and output must not be null");
    if (index >= frame->num_rx || !frame->rx_data)
        return ErrorText::set("Channel " + std::to_string(index) + " does not exist in a frame of " +
                              std::to_string(frame->num_rx) + " channels");
    *matrix = frame->rx_data[index];
    return nullptr;
}

vrn_Error_t matrixCreate(uint32_t rows, uint32_t cols, vrn_Matrix_R_s** matrix)
{
    return FrameMemory::createMatrix(rows, cols, matrix);
}

vrn_Error_t matrixClear(vrn_Matrix_R_s* matrix)
{
    if (!matrix || !matrix->data)
        return ErrorText::set("Cannot clear a null matrix");
    for (uint32_t r = 0; r < matrix->rows; ++r)
        std::memset(matrix->data + size_t(r) * matrix->stride, 0, sizeof(float) * matrix->cols);
    return nullptr;
}

vrn_Error_t matrixDestroy(vrn_Matrix_R_s* matrix)
{
    return FrameMemory::destroyMatrix(matrix);
}

vrn_Error_t vectorCreate(uint32_t len, vrn_Vector_R_s** vector)
{
    return FrameMemory::createVector(len, vector);
}

vrn_Error_t vectorDestroy(vrn_Vector_R_s* vector)
{
    return FrameMemory::destroyVector(vector);
}

vrn_Error_t complexFrameCreate(uint32_t channels, uint32_t samples, vrn_Corvix_Frame_C_t** frame)
{
    return FrameMemory::createComplexFrame(channels, samples, frame);
}

vrn_Error_t complexFrameDestroy(vrn_Corvix_Frame_C_t* frame)
{
    return FrameMemory::destroyComplexFrame(frame);
}

Vrn makeTable()
{
    Vrn t{};
    t.api_version = VRN_API_VERSION;
    t.struct_size = sizeof(Vrn);
    t.status_text = statusText;

    t.device_list_get = device::listGet;
    t.device_list_size = device::listSize;
    t.device_list_entry = device::listEntry;
    t.device_list_destroy = device::listDestroy;

    t.device_create_by_uuid = device::createByUuid;
    t.device_destroy = device::destroy;
    t.device_get_metrics_limits = device::metricsLimits;
    t.device_translate_metrics = device::translateMetrics;
    t.device_set_config = device::setConfig;
    t.device_get_config = device::getConfig;
    t.device_get_chirp_time = device::chirpTime;
    t.config_get_pulse_repetition_time = device::pulseRepetitionTime;
    t.device_get_next_frame = device::nextFrame;
    t.device_stop_acquisition = device::stopAcquisition;
    t.device_get_temperature = device::temperature;
    t.device_get_num_rx_antennas = device::numRx;
    t.device_get_num_tx_antennas = device::numTx;
    t.device_get_info = device::info;
    t.device_get_firmware_info = device::firmware;
    t.device_get_type = device::type;
    t.device_get_tx_power = device::txPower;

    t.frame_r_create = frameCreate;
    t.frame_r_destroy = frameDestroy;
    t.frame_r_channel = frameChannel;
    t.matrix_r_create = matrixCreate;
    t.matrix_r_clear = matrixClear;
    t.matrix_r_destroy = matrixDestroy;
    t.vector_r_create = vectorCreate;
    t.vector_r_destroy = vectorDestroy;

    t.rs_create = rs::create;
    t.rs_destroy = rs::destroy;
    t.rs_run = rs::run;
    t.rs_run_c = rs::runComplex;
    t.rs_distance_axis = rs::distanceAxis;
    t.rs_frequency_axis = rs::frequencyAxis;
    t.rdm_create = rdm::create;
    t.rdm_destroy = rdm::destroy;
    t.rdm_run = rdm::run;
    t.rdm_range_axis = rdm::rangeAxis;
    t.rdm_speed_axis = rdm::speedAxis;
    t.ps_default_config = ps::defaultConfig;
    t.ps_range_resolution = ps::rangeResolution;
    t.ps_create = ps::create;
    t.ps_destroy = ps::destroy;
    t.ps_input_matrix = ps::inputMatrix;
    t.ps_run = ps::run;
    t.seg_default_config = seg::defaultConfig;
    t.seg_create = seg::create;
    t.seg_destroy = seg::destroy;
    t.seg_run = seg::run;

    t.cw_create = cw::create;
    t.cw_destroy = cw::destroy;
    t.cw_get_default_config = cw::defaultConfig;
    t.cw_get_limits = cw::limits;
    t.cw_set_rf_frequency = cw::setRf;
    t.cw_get_rf_frequency = cw::getRf;
    t.cw_set_dac_value = cw::setDac;
    t.cw_get_dac_value = cw::getDac;
    t.cw_set_tx_antenna_mask = cw::setTxMask;
    t.cw_get_tx_antenna_mask = cw::getTxMask;
    t.cw_set_test_signal_generator = cw::setTestSignal;
    t.cw_get_test_signal_generator = cw::getTestSignal;
    t.cw_set_rx_antenna_mask = cw::setRxMask;
    t.cw_get_rx_antenna_mask = cw::getRxMask;
    t.cw_set_num_samples = cw::setNumSamples;
    t.cw_get_num_samples = cw::getNumSamples;
    t.cw_set_adc_config = cw::setAdc;
    t.cw_get_adc_config = cw::getAdc;
    t.cw_set_baseband_config = cw::setBaseband;
    t.cw_get_baseband_config = cw::getBaseband;
    t.cw_get_sampling_rate_limits = cw::samplingRateLimits;
    t.cw_start_emission = cw::startEmission;
    t.cw_stop_emission = cw::stopEmission;
    t.cw_is_emission_active = cw::isEmissionActive;
    t.cw_get_temperature = cw::temperature;
    t.cw_get_tx_power = cw::txPower;
    t.cw_get_num_samples_per_antenna = cw::samplesPerAntenna;
    t.cw_capture_frame = cw::capture;

    t.corvix_create_by_uuid = corvix::createByUuid;
    t.corvix_destroy = corvix::destroy;
    t.corvix_get_device_info = corvix::info;
    t.corvix_get_firmware_info = corvix::firmware;
    t.corvix_get_limits = corvix::limits;
    t.corvix_get_default_config = corvix::defaultConfig;
    t.corvix_get_config = corvix::getConfig;
    t.corvix_set_config = corvix::setConfig;
    t.corvix_frame_c_create = complexFrameCreate;
    t.corvix_frame_c_destroy = complexFrameDestroy;
    t.corvix_get_next_frame = corvix::nextFrame;
    t.corvix_stop_acquisition = corvix::stopAcquisition;
    t.corvix_get_temperature = corvix::temperature;
    return t;
}

}  // namespace

}  // namespace vrnsim

extern "C" __attribute__((visibility("default"))) const Vrn* vrn_entry_points(void)
{
    static const Vrn table = vrnsim::makeTable();
    return &table;
}
