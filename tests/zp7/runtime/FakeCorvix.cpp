#include "FakeCorvix.h"

namespace {

FakeCorvix& fake()
{
    return *FakeCorvix::current();
}

}

FakeCorvix*& FakeCorvix::current()
{
    static FakeCorvix* instance = nullptr;
    return instance;
}

FakeCorvix::FakeCorvix(FakeVrn& vrn)
{
    current() = this;
    Vrn& t = vrn.table;
    t.corvix_create_by_uuid = [](const char*, vrn_Corvix_Handle* device) -> vrn_Status_t {
        *device = reinterpret_cast<vrn_Corvix_Handle>(&fake());
        return VRN_STATUS_OK;
    };
    t.corvix_destroy = [](vrn_Corvix_Handle) -> vrn_Error_t { return nullptr; };
    t.corvix_get_limits = [](vrn_Corvix_Handle, vrn_Corvix_Limits_t* limits) {
        if (!fake().limitsError)
            *limits = fake().limits;
        return fake().limitsError;
    };
    t.corvix_get_config = [](vrn_Corvix_Handle, vrn_Corvix_Frame_Config_t* frame, vrn_Corvix_Pulse_Config_t* pulse) {
        if (!fake().configError) {
            *frame = { 128, 500e-6f, 0.1f };
            *pulse = { VRN_CORVIX_CHANNEL_TX1_RX1, 7, 48 };
        }
        return fake().configError;
    };
    t.corvix_frame_c_create = [](uint32_t channels, uint32_t samples, vrn_Corvix_Frame_C_t** out) -> vrn_Error_t {
        auto* frame = new vrn_Corvix_Frame_C_t { channels, new vrn_Matrix_C_s*[channels] };
        for (uint32_t c = 0; c < channels; ++c)
            frame->channel_data[c] = new vrn_Matrix_C_s { 1, samples, samples, new vrn_Complex_t[samples]() };
        ++fake().framesAlive;
        *out = frame;
        return nullptr;
    };
    t.corvix_frame_c_destroy = [](vrn_Corvix_Frame_C_t* frame) -> vrn_Error_t {
        for (uint32_t c = 0; c < frame->num_channels; ++c) {
            delete[] frame->channel_data[c]->data;
            delete frame->channel_data[c];
        }
        delete[] frame->channel_data;
        delete frame;
        --fake().framesAlive;
        return nullptr;
    };
    t.corvix_get_next_frame = [](vrn_Corvix_Handle, vrn_Corvix_Frame_C_t*, uint16_t) -> vrn_Status_t {
        const int call = fake().fetches++;
        return fake().frameStatuses.value(call, fake().frameStatuses.last());
    };
    t.corvix_stop_acquisition = [](vrn_Corvix_Handle) {
        ++fake().stopCalls;
        return fake().stopError;
    };
    t.corvix_get_temperature = [](vrn_Corvix_Handle, float* celsius) -> vrn_Status_t {
        if (fake().temperatureStatus == VRN_STATUS_OK)
            *celsius = 31.5f;
        return fake().temperatureStatus;
    };
}

FakeCorvix::~FakeCorvix()
{
    if (current() == this)
        current() = nullptr;
}
