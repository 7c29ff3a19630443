#include "FakeVrn.h"

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
        FakeVrn& f = *current();
        f.lastUuid = uuid;
        *device = reinterpret_cast<vrn_Device_Handle>(&f);
        return VRN_STATUS_OK;
    };
    table.device_destroy = [](vrn_Device_Handle) -> vrn_Error_t {
        ++current()->destroyCalls;
        return current()->destroyError;
    };
    table.device_get_metrics_limits = [](vrn_Device_Handle, vrn_Metrics_Limits_t* limits) -> vrn_Error_t {
        if (current()->limitsError)
            return current()->limitsError;
        *limits = current()->limits;
        return nullptr;
    };
    table.device_translate_metrics = [](vrn_Device_Handle, const vrn_Metrics_t* metrics,
                                        vrn_Device_Config_t* config) -> vrn_Error_t {
        current()->lastMetrics = *metrics;
        if (current()->translateError)
            return current()->translateError;
        *config = current()->translated;
        return nullptr;
    };
    table.device_set_config = [](vrn_Device_Handle, const vrn_Device_Config_t* config) -> vrn_Error_t {
        ++current()->setConfigCalls;
        current()->lastSetConfig = *config;
        return current()->setConfigError;
    };
    table.device_get_chirp_time = [](vrn_Device_Handle, const vrn_Device_Config_t*, float* chirpTime) -> vrn_Error_t {
        *chirpTime = current()->chirpTime;
        return current()->chirpTimeError;
    };
    table.config_get_pulse_repetition_time = [](const vrn_Device_Config_t*, float* prt) -> vrn_Error_t {
        if (current()->prtError)
            return current()->prtError;
        *prt = current()->prt;
        return nullptr;
    };
    // Time-outs answer at once: the waits of a real board are exercised
    // against the simulated SDK.
    table.device_get_next_frame = [](vrn_Device_Handle, vrn_Frame_R_t*, uint16_t) -> vrn_Status_t {
        FakeVrn& f = *current();
        const int call = f.nextFrameCalls++;
        return f.frameStatuses.value(call, f.frameStatuses.last());
    };
    table.device_stop_acquisition = [](vrn_Device_Handle, uint8_t* stopped) -> vrn_Error_t {
        ++current()->stopCalls;
        if (current()->stopError)
            return current()->stopError;
        *stopped = current()->stopped;
        return nullptr;
    };
    table.device_get_temperature = [](vrn_Device_Handle, float* celsius) -> vrn_Status_t {
        if (current()->temperatureStatus == VRN_STATUS_OK)
            *celsius = current()->temperature;
        return current()->temperatureStatus;
    };
    table.device_get_num_rx_antennas = [](vrn_Device_Handle, uint32_t* count) -> vrn_Error_t {
        *count = current()->info.num_rx_antennas;
        return current()->infoError;
    };
    table.device_get_num_tx_antennas = [](vrn_Device_Handle, uint32_t* count) -> vrn_Error_t {
        *count = current()->info.num_tx_antennas;
        return current()->infoError;
    };
    table.device_get_info = [](vrn_Device_Handle, vrn_Device_Info_t* info) -> vrn_Error_t {
        if (current()->infoError)
            return current()->infoError;
        *info = current()->info;
        return nullptr;
    };
    table.device_get_firmware_info = [](vrn_Device_Handle, vrn_Firmware_Info_t* info) -> vrn_Error_t {
        *info = current()->firmware;
        return nullptr;
    };
    table.device_get_type = [](vrn_Device_Handle, vrn_Device_Type_t* type) -> vrn_Error_t {
        *type = VRN_DEVICE_TYPE_KMR7A;
        return nullptr;
    };
    table.device_get_tx_power = [](vrn_Device_Handle, uint32_t antenna, float* power) -> vrn_Error_t {
        const float value = current()->txPower.value(int(antenna), 0.0f);
        if (value != value)
            return "tx power read failed";
        *power = value;
        return nullptr;
    };
    table.frame_r_create = [](uint32_t num_rx, uint32_t chirps, uint32_t samples,
                              vrn_Frame_R_t** frame) -> vrn_Error_t {
        FakeVrn& f = *current();
        f.lastFrameChannels = num_rx;
        if (f.frameCreateError)
            return f.frameCreateError;
        auto* created = new vrn_Frame_R_t;
        created->num_rx = num_rx;
        // One extra null slot ends the list, so that destroy finds every
        // matrix even after a clear has set the channel count to 0.
        created->rx_data = new vrn_Matrix_R_s*[num_rx + 1];
        for (uint32_t i = 0; i < num_rx; ++i)
            created->rx_data[i] = new vrn_Matrix_R_s { chirps, samples, samples, nullptr };
        created->rx_data[num_rx] = nullptr;
        ++f.framesAlive;
        *frame = created;
        return nullptr;
    };
    table.frame_r_destroy = [](vrn_Frame_R_t* frame) -> vrn_Error_t {
        ++current()->frameDestroyCalls;
        --current()->framesAlive;
        for (vrn_Matrix_R_s** matrix = frame->rx_data; *matrix; ++matrix)
            delete *matrix;
        delete[] frame->rx_data;
        delete frame;
        return nullptr;
    };
    table.matrix_r_clear = [](vrn_Matrix_R_s*) -> vrn_Error_t {
        FakeVrn& f = *current();
        return f.clearErrors.value(f.clearCalls++, nullptr);
    };
    table.seg_default_config = [](vrn_Device_Type_t, const vrn_Device_Config_t*,
                                  vrn_Segmentation_Config_t* config) -> vrn_Error_t {
        if (current()->segError)
            return current()->segError;
        *config = current()->segDefaults;
        return nullptr;
    };
    table.ps_default_config = [](vrn_Device_Type_t, vrn_PresenceSensing_Config_t* config) -> vrn_Error_t {
        if (current()->psError)
            return current()->psError;
        *config = current()->psDefaults;
        return nullptr;
    };
    table.ps_range_resolution = [](const vrn_Device_Config_t*, float* resolution) -> vrn_Error_t {
        *resolution = 0.25f;
        return nullptr;
    };
}
