#include "FakeVrn.h"

namespace {

FakeVrn& fake()
{
    return *FakeVrn::current();
}

// The scripted error, or `value` written to `out`.
template<typename T>
vrn_Error_t answer(const char* error, T* out, const T& value)
{
    if (!error)
        *out = value;
    return error;
}

// Keeps the record a create call was given, then refuses it or hands out
// the fake itself as the handle.
template<typename Config, typename Handle>
vrn_Error_t create(Config& kept, const Config* config, const char* error, Handle* handle)
{
    kept = *config;
    return answer(error, handle, reinterpret_cast<Handle>(&fake()));
}

}

FakeVrn::FakeVrn()
{
    current() = this;
    table.api_version = VRN_API_VERSION;
    table.struct_size = sizeof(Vrn);
    table.status_text = [](vrn_Status_t status) -> const char* {
        static thread_local QByteArray text;
        text = "status 0x" + QByteArray::number(status, 16);
        return text.constData();
    };

    table.device_create_by_uuid = [](const char* uuid, vrn_Device_Handle* device) -> vrn_Status_t {
        fake().lastUuid = uuid;
        *device = reinterpret_cast<vrn_Device_Handle>(&fake());
        return VRN_STATUS_OK;
    };
    table.device_destroy = [](vrn_Device_Handle) -> vrn_Error_t {
        ++fake().destroyCalls;
        return fake().destroyError;
    };
    table.device_get_metrics_limits = [](vrn_Device_Handle, vrn_Metrics_Limits_t* limits) {
        return answer(fake().limitsError, limits, fake().limits);
    };
    table.device_translate_metrics = [](vrn_Device_Handle, const vrn_Metrics_t* metrics, vrn_Device_Config_t* config) {
        fake().lastMetrics = *metrics;
        return answer(fake().translateError, config, fake().translated);
    };
    table.device_set_config = [](vrn_Device_Handle, const vrn_Device_Config_t* config) -> vrn_Error_t {
        ++fake().setConfigCalls;
        fake().lastSetConfig = *config;
        return fake().setConfigError;
    };
    table.device_get_chirp_time = [](vrn_Device_Handle, const vrn_Device_Config_t*, float* chirpTime) -> vrn_Error_t {
        *chirpTime = fake().chirpTime;
        return fake().chirpTimeError;
    };
    table.config_get_pulse_repetition_time = [](const vrn_Device_Config_t*, float* prt) {
        return answer(fake().prtError, prt, fake().prt);
    };
    table.device_get_next_frame = [](vrn_Device_Handle, vrn_Frame_R_t*, uint16_t) -> vrn_Status_t {
        const int call = fake().nextFrameCalls++;
        return fake().frameStatuses.value(call, fake().frameStatuses.last());
    };
    table.device_stop_acquisition = [](vrn_Device_Handle, uint8_t* stopped) {
        ++fake().stopCalls;
        return answer(fake().stopError, stopped, fake().stopped);
    };
    table.device_get_temperature = [](vrn_Device_Handle, float* celsius) -> vrn_Status_t {
        if (fake().temperatureStatus == VRN_STATUS_OK)
            *celsius = fake().temperature;
        return fake().temperatureStatus;
    };
    table.device_get_num_rx_antennas = [](vrn_Device_Handle, uint32_t* count) -> vrn_Error_t {
        *count = fake().info.num_rx_antennas;
        return fake().infoError;
    };
    table.device_get_num_tx_antennas = [](vrn_Device_Handle, uint32_t* count) -> vrn_Error_t {
        *count = fake().info.num_tx_antennas;
        return fake().infoError;
    };
    table.device_get_info = [](vrn_Device_Handle, vrn_Device_Info_t* info) {
        return answer(fake().infoError, info, fake().info);
    };
    table.device_get_firmware_info = [](vrn_Device_Handle, vrn_Firmware_Info_t* info) {
        return answer(nullptr, info, fake().firmware);
    };
    table.device_get_type = [](vrn_Device_Handle, vrn_Device_Type_t* type) {
        return answer(nullptr, type, VRN_DEVICE_TYPE_KMR7A);
    };
    table.device_get_tx_power = [](vrn_Device_Handle, uint32_t antenna, float* power) {
        const float value = fake().txPower.value(int(antenna), 0.0f);
        return answer(value != value ? "tx power read failed" : nullptr, power, value);
    };

    table.frame_r_create = [](uint32_t num_rx, uint32_t chirps, uint32_t samples,
                              vrn_Frame_R_t** frame) -> vrn_Error_t {
        if (fake().frameCreateError)
            return fake().frameCreateError;
        auto* created = new vrn_Frame_R_t { num_rx, new vrn_Matrix_R_s*[num_rx + 1] };
        for (uint32_t i = 0; i < num_rx; ++i)
            created->rx_data[i] = new vrn_Matrix_R_s { chirps, samples, samples, new float[chirps * samples]() };
        // One extra null slot ends the list, so that destroy finds every
        // matrix even after a clear has set the channel count to 0.
        created->rx_data[num_rx] = nullptr;
        ++fake().framesAlive;
        *frame = created;
        return nullptr;
    };
    table.frame_r_destroy = [](vrn_Frame_R_t* frame) -> vrn_Error_t {
        ++fake().frameDestroyCalls;
        --fake().framesAlive;
        for (vrn_Matrix_R_s** matrix = frame->rx_data; *matrix; ++matrix) {
            delete[] (*matrix)->data;
            delete *matrix;
        }
        delete[] frame->rx_data;
        delete frame;
        return nullptr;
    };
    table.frame_r_channel = [](const vrn_Frame_R_t* frame, uint32_t index, const vrn_Matrix_R_s** matrix) {
        return answer(index >= frame->num_rx ? "no such channel" : nullptr, matrix,
                      const_cast<const vrn_Matrix_R_s*>(frame->rx_data[qMin(index, frame->num_rx)]));
    };
    table.matrix_r_clear = [](vrn_Matrix_R_s*) -> vrn_Error_t {
        return fake().clearErrors.value(fake().clearCalls++, nullptr);
    };
    table.vector_r_create = [](uint32_t len, vrn_Vector_R_s** vector) -> vrn_Error_t {
        *vector = new vrn_Vector_R_s { len, new float[len]() };
        ++fake().vectorsAlive;
        return nullptr;
    };
    table.vector_r_destroy = [](vrn_Vector_R_s* vector) -> vrn_Error_t {
        delete[] vector->data;
        delete vector;
        --fake().vectorsAlive;
        return nullptr;
    };
    table.matrix_r_create = [](uint32_t rows, uint32_t cols, vrn_Matrix_R_s** matrix) -> vrn_Error_t {
        *matrix = new vrn_Matrix_R_s { rows, cols, cols, new float[rows * cols]() };
        ++fake().matricesAlive;
        return nullptr;
    };
    table.matrix_r_destroy = [](vrn_Matrix_R_s* matrix) -> vrn_Error_t {
        delete[] matrix->data;
        delete matrix;
        --fake().matricesAlive;
        return nullptr;
    };

    table.rs_create = [](const vrn_RS_Config_t* config, vrn_RS_Handle* handle) {
        return create(fake().rsConfig, config, fake().rsCreateError, handle);
    };
    table.rs_destroy = [](vrn_RS_Handle) -> vrn_Error_t {
        ++fake().rsDestroyCalls;
        return fake().rsDestroyError;
    };
    table.rs_run = [](vrn_RS_Handle, const vrn_Matrix_R_s* input, vrn_Vector_R_s* output) -> vrn_Error_t {
        if (const char* error = fake().rsRunErrors.value(fake().rsRuns++, nullptr))
            return error;
        for (uint32_t k = 0; k < output->len; ++k)
            output->data[k] = input->data[0] + float(k);
        return nullptr;
    };
    table.rs_run_c = [](vrn_RS_Handle, const vrn_Matrix_C_s* input, vrn_Vector_R_s* output) -> vrn_Error_t {
        if (const char* error = fake().rsRunErrors.value(fake().rsRuns++, nullptr))
            return error;
        std::fill(output->data, output->data + output->len, input->data[0].re);
        return nullptr;
    };
    table.rs_distance_axis = [](uint32_t, uint32_t, float, vrn_Math_Axis_Spec_s* axis) {
        return answer(fake().axisError, axis, fake().axis);
    };
    table.rs_frequency_axis = [](uint32_t fft, float rate, vrn_Math_Axis_Spec_s* axis) {
        return answer(fake().axisError, axis, vrn_Math_Axis_Spec_s { 0.0, rate / 2.0, double(rate) / fft });
    };

    table.rdm_create = [](const vrn_RDM_Config_t* config, vrn_RDM_Handle* handle) {
        return create(fake().rdmConfig, config, fake().rdmCreateError, handle);
    };
    table.rdm_destroy = [](vrn_RDM_Handle) { return fake().rdmDestroyError; };
    table.rdm_run = [](vrn_RDM_Handle, const vrn_Matrix_R_s* input, vrn_Matrix_R_s* output) -> vrn_Error_t {
        if (fake().rdmRunError)
            return fake().rdmRunError;
        std::fill(output->data, output->data + output->rows * output->cols, input->data[0]);
        return nullptr;
    };
    table.rdm_range_axis = [](vrn_RDM_Handle, uint64_t bandwidth, vrn_Math_Axis_Spec_s* axis) {
        fake().lastBandwidth = bandwidth;
        return answer(fake().rangeAxisError, axis, vrn_Math_Axis_Spec_s { 0.0, 12.0, 0.1 });
    };
    table.rdm_speed_axis = [](vrn_RDM_Handle, float centre, float chirpTime, vrn_Math_Axis_Spec_s* axis) {
        fake().lastCenterFrequency = centre;
        fake().lastChirpTime = chirpTime;
        return answer(fake().speedAxisError, axis, vrn_Math_Axis_Spec_s { -2.5, 2.5, 0.02 });
    };

    table.ps_default_config = [](vrn_Device_Type_t, vrn_PresenceSensing_Config_t* config) {
        return answer(fake().psError, config, fake().psDefaults);
    };
    table.ps_range_resolution = [](const vrn_Device_Config_t*, float* resolution) {
        return answer(nullptr, resolution, 0.25f);
    };
    table.ps_create = [](const vrn_PresenceSensing_Config_t* config, vrn_PresenceSensing_Handle* handle) {
        return create(fake().psConfig, config, fake().psCreateError, handle);
    };
    table.ps_destroy = [](vrn_PresenceSensing_Handle) -> vrn_Error_t {
        ++fake().psDestroyCalls;
        return fake().psDestroyError;
    };
    table.ps_input_matrix = [](const vrn_Matrix_R_s* channel, const vrn_Matrix_R_s** input) {
        return answer(fake().psInputMissing ? "no input" : nullptr, input, channel);
    };
    table.ps_run = [](vrn_PresenceSensing_Handle, const vrn_Matrix_R_s* input,
                      vrn_PresenceSensing_Result_t* result) -> vrn_Error_t {
        const int run = fake().psRuns++;
        if (const char* error = fake().psRunErrors.value(run, nullptr))
            return error;
        result->state = VRN_PRESENCE_STATE_PRESENCE;
        result->motion_energy = input->data[0];
        result->frame_count = uint32_t(run + 1);
        return nullptr;
    };

    table.seg_default_config = [](vrn_Device_Type_t, const vrn_Device_Config_t*, vrn_Segmentation_Config_t* config) {
        return answer(fake().segError, config, fake().segDefaults);
    };
    table.seg_create = [](const vrn_Segmentation_Config_t* config, vrn_Segmentation_Handle* handle) {
        return create(fake().segConfig, config, fake().segCreateError, handle);
    };
    table.seg_destroy = [](vrn_Segmentation_Handle) -> vrn_Error_t { return nullptr; };
    table.seg_run = [](vrn_Segmentation_Handle, const vrn_Frame_R_t* frame, vrn_Segmentation_Result_t* result) {
        fake().segInputMarkers.clear();
        for (uint32_t i = 0; i < frame->num_rx; ++i)
            fake().segInputMarkers.append(frame->rx_data[i]->data[0]);
        return answer(fake().segRunError, result, fake().segResult);
    };
}

SharedFrame FakeVrn::newFrame(uint32_t channels, uint32_t chirps, uint32_t samples)
{
    vrn_Frame_R_t* frame = nullptr;
    table.frame_r_create(channels, chirps, samples, &frame);
    for (uint32_t c = 0; c < channels; ++c)
        std::fill(frame->rx_data[c]->data, frame->rx_data[c]->data + chirps * samples, 10.0f * float(c + 1));
    const Vrn* vrn = &table;
    return SharedFrame(frame, [vrn](const vrn_Frame_R_t* f) { vrn->frame_r_destroy(const_cast<vrn_Frame_R_t*>(f)); });
}
