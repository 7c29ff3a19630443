#include "FakeCw.h"

namespace {

FakeCw& cw()
{
    return *FakeCw::current();
}

// Records the call and answers its scripted error, if any.
vrn_Error_t record(const char* name)
{
    cw().calls.append(QByteArray(name));
    return cw().errors.value(QByteArray(name), nullptr);
}

}

FakeCw*& FakeCw::current()
{
    static FakeCw* instance = nullptr;
    return instance;
}

FakeCw::FakeCw(FakeVrn& vrn)
{
    current() = this;
    config.rf_center_frequency_Hz = 60.5e9f;
    config.dac_value = 200;
    config.tx_mask = 1;
    config.rx_mask = 7;
    config.num_samples = 128;
    config.test_signal = { 0, 100000.0f };
    config.adc = { 1000000, 1, 0, 0, 0 };
    config.baseband = { 4, 0, 0, 1 };
    limits = { 58e9f, 63.5e9f, 0, 255, 2, 4094, 1000.0f, 1e6f };

    Vrn& t = vrn.table;
    t.cw_create = [](vrn_Device_Handle, vrn_CW_Handle* handle) -> vrn_Error_t {
        cw().calls.append("cw_create");
        if (cw().createError)
            return cw().createError;
        *handle = cw().nullHandle ? nullptr : reinterpret_cast<vrn_CW_Handle>(&cw());
        return nullptr;
    };
    t.cw_destroy = [](vrn_CW_Handle) { return record("cw_destroy"); };
    t.cw_get_default_config = [](vrn_CW_Handle, vrn_CW_Config_t* c) {
        vrn_Error_t e = record("cw_get_default_config");
        if (!e)
            *c = cw().config;
        return e;
    };
    t.cw_get_limits = [](vrn_CW_Handle, vrn_CW_Limits_t* l) {
        vrn_Error_t e = record("cw_get_limits");
        if (!e)
            *l = cw().limits;
        return e;
    };
    // Each setter keeps its value unless scripted to fail; its getter
    // answers what was kept.
#define FAKE_CW_PAIR(setName, getName, member, Argument, value)                                                        \
    t.setName = [](vrn_CW_Handle, Argument argument) {                                                                 \
        vrn_Error_t e = record(#setName);                                                                              \
        if (!e)                                                                                                        \
            cw().config.member = value;                                                                                \
        return e;                                                                                                      \
    };                                                                                                                 \
    t.getName = [](vrn_CW_Handle, decltype(vrn_CW_Config_t::member)* out) {                                            \
        vrn_Error_t e = record(#getName);                                                                              \
        if (!e)                                                                                                        \
            *out = cw().config.member;                                                                                 \
        return e;                                                                                                      \
    };
    FAKE_CW_PAIR(cw_set_rf_frequency, cw_get_rf_frequency, rf_center_frequency_Hz, float, argument)
    FAKE_CW_PAIR(cw_set_dac_value, cw_get_dac_value, dac_value, uint32_t, argument)
    FAKE_CW_PAIR(cw_set_tx_antenna_mask, cw_get_tx_antenna_mask, tx_mask, uint32_t, argument)
    FAKE_CW_PAIR(cw_set_rx_antenna_mask, cw_get_rx_antenna_mask, rx_mask, uint32_t, argument)
    FAKE_CW_PAIR(cw_set_num_samples, cw_get_num_samples, num_samples, uint32_t, argument)
    FAKE_CW_PAIR(cw_set_test_signal_generator, cw_get_test_signal_generator, test_signal,
                 const vrn_Device_Test_Signal_Generator_t*, *argument)
    FAKE_CW_PAIR(cw_set_adc_config, cw_get_adc_config, adc, const vrn_Device_ADC_Config_t*, *argument)
    FAKE_CW_PAIR(cw_set_baseband_config, cw_get_baseband_config, baseband, const vrn_Device_Baseband_Config_t*, *argument)
#undef FAKE_CW_PAIR
    t.cw_get_sampling_rate_limits = [](vrn_CW_Handle, const vrn_Device_ADC_Config_t*, uint32_t* low, uint32_t* high) {
        vrn_Error_t e = record("cw_get_sampling_rate_limits");
        if (!e) {
            *low = 1221;
            *high = 2000000;
        }
        return e;
    };
    t.cw_start_emission = [](vrn_CW_Handle) {
        vrn_Error_t e = record("cw_start_emission");
        if (!e)
            cw().emitting = true;
        return e;
    };
    t.cw_stop_emission = [](vrn_CW_Handle) {
        vrn_Error_t e = record("cw_stop_emission");
        if (!e)
            cw().emitting = false;
        return e;
    };
    t.cw_is_emission_active = [](vrn_CW_Handle, uint8_t* active) {
        vrn_Error_t e = record("cw_is_emission_active");
        if (!e)
            *active = cw().emitting ? 1 : 0;
        return e;
    };
    t.cw_get_temperature = [](vrn_CW_Handle, float* celsius) -> vrn_Status_t {
        cw().calls.append("cw_get_temperature");
        *celsius = 41.5f;
        return VRN_STATUS_OK;
    };
    t.cw_get_tx_power = [](vrn_CW_Handle, uint32_t, float* dBm) -> vrn_Status_t {
        cw().calls.append("cw_get_tx_power");
        *dBm = cw().emitting ? 3.0f : -60.0f;
        return VRN_STATUS_OK;
    };
    t.cw_get_num_samples_per_antenna = [](vrn_CW_Handle, uint32_t* samples) {
        vrn_Error_t e = record("cw_get_num_samples_per_antenna");
        if (!e)
            *samples = cw().config.num_samples;
        return e;
    };
    t.cw_capture_frame = [](vrn_CW_Handle, vrn_Frame_R_t*) -> vrn_Status_t {
        cw().calls.append("cw_capture_frame");
        return cw().captureStatus;
    };
}

FakeCw::~FakeCw()
{
    if (current() == this)
        current() = nullptr;
}
