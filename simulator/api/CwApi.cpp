#include "Api.h"

#include "AntennaMask.h"
#include "CwModel.h"
#include "EntryGuard.h"
#include "FrameMemory.h"

#include <new>

namespace vrnsim {
namespace cw {

vrn_Error_t create(vrn_Device_Handle device, vrn_CW_Handle* handle)
{
    if (vrn_Error_t refused = refusal(device, handle))
        return refused;
    std::lock_guard<std::mutex> lock(device->mutex);
    if (device->cw)
        return ErrorText::set("The device already has a CW controller");
    // CW mode takes over the transmitter: frame acquisition ends.
    device->board->stopAcquisition();
    auto* cw = new (std::nothrow) vrn_CW_Controller_s(device);
    if (!cw)
        return ErrorText::set("Out of memory while creating the CW controller");
    cw->config = CwModel::defaultConfig(device->board->chip());
    device->cw = cw;
    *handle = cw;
    return nullptr;
}

vrn_Error_t destroy(vrn_CW_Handle handle)
{
    if (!handle)
        return ErrorText::set(nullHandleText(handle));
    handle->device->board->setEmission(0.0);
    {
        std::lock_guard<std::mutex> lock(handle->device->mutex);
        handle->device->cw = nullptr;
    }
    delete handle;
    return nullptr;
}

vrn_Error_t defaultConfig(vrn_CW_Handle handle, vrn_CW_Config_t* config)
{
    return underLock(
        handle, [&](vrn_CW_Controller_s& cw) { *config = CwModel::defaultConfig(cw.device->board->chip()); }, config);
}

vrn_Error_t limits(vrn_CW_Handle handle, vrn_CW_Limits_t* limits)
{
    return underLock(
        handle, [&](vrn_CW_Controller_s& cw) { *limits = CwModel::limits(cw.device->board->chip()); }, limits);
}

vrn_Error_t setRf(vrn_CW_Handle handle, float hz)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) -> vrn_Error_t {
        const ChipModel& chip = cw.device->board->chip();
        if (!(double(hz) >= double(chip.minRfHz) && double(hz) <= double(chip.maxRfHz)))
            return ErrorText::set("RF frequency " + std::to_string(hz / 1e9) + " GHz is outside the range of the " +
                                  chip.name);
        cw.config.rf_center_frequency_Hz = hz;
        return nullptr;
    });
}

vrn_Error_t getRf(vrn_CW_Handle handle, float* hz)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) { *hz = cw.config.rf_center_frequency_Hz; }, hz);
}

vrn_Error_t setDac(vrn_CW_Handle handle, uint32_t dac)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) -> vrn_Error_t {
        if (dac > CwModel::kDacMax)
            return ErrorText::set("DAC value " + std::to_string(dac) + " is above 255");
        cw.config.dac_value = dac;
        return nullptr;
    });
}

vrn_Error_t getDac(vrn_CW_Handle handle, uint32_t* dac)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) { *dac = cw.config.dac_value; }, dac);
}

vrn_Error_t setTxMask(vrn_CW_Handle handle, uint32_t mask)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) -> vrn_Error_t {
        // 0 switches every transmitter off, which a CW test may want.
        if (mask >> cw.device->board->chip().numTx)
            return ErrorText::set("Tx antenna mask " + std::to_string(mask) + " names a missing transmitter");
        cw.config.tx_mask = mask;
        // Switching the transmitters during emission switches what is on air.
        if (cw.emitting)
            cw.device->board->setEmission(mask ? 1.0 : 0.0);
        return nullptr;
    });
}

vrn_Error_t getTxMask(vrn_CW_Handle handle, uint32_t* mask)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) { *mask = cw.config.tx_mask; }, mask);
}

vrn_Error_t setTestSignal(vrn_CW_Handle handle, const vrn_Device_Test_Signal_Generator_t* config)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) -> vrn_Error_t {
        if (!config)
            return ErrorText::set("The test-signal record is null");
        std::string error;
        if (!CwModel::checkTestSignal(cw.device->board->chip(), *config, error))
            return ErrorText::set(error);
        cw.config.test_signal = *config;
        return nullptr;
    });
}

vrn_Error_t getTestSignal(vrn_CW_Handle handle, vrn_Device_Test_Signal_Generator_t* config)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) { *config = cw.config.test_signal; }, config);
}

vrn_Error_t setRxMask(vrn_CW_Handle handle, uint32_t mask)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) -> vrn_Error_t {
        if (!AntennaMask::fits(mask, cw.device->board->chip().numRx))
            return ErrorText::set("Rx antenna mask " + std::to_string(mask) + " selects no existing receiver");
        cw.config.rx_mask = mask;
        return nullptr;
    });
}

vrn_Error_t getRxMask(vrn_CW_Handle handle, uint32_t* mask)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) { *mask = cw.config.rx_mask; }, mask);
}

vrn_Error_t setNumSamples(vrn_CW_Handle handle, uint32_t samples)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) -> vrn_Error_t {
        if (samples < CwModel::kMinSamples || samples > CwModel::kMaxSamples)
            return ErrorText::set("Number of samples " + std::to_string(samples) + " is outside 2 to 4094");
        cw.config.num_samples = samples;
        return nullptr;
    });
}

vrn_Error_t getNumSamples(vrn_CW_Handle handle, uint32_t* samples)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) { *samples = cw.config.num_samples; }, samples);
}

vrn_Error_t setAdc(vrn_CW_Handle handle, const vrn_Device_ADC_Config_t* config)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) -> vrn_Error_t {
        if (!config)
            return ErrorText::set("The ADC record is null");
        std::string error;
        if (!CwModel::checkAdc(*config, error))
            return ErrorText::set(error);
        uint32_t minHz = 0, maxHz = 0;
        CwModel::samplingRateLimits(*config, minHz, maxHz);
        if (config->sample_rate_Hz < minHz || config->sample_rate_Hz > maxHz)
            return ErrorText::set("Sampling rate " + std::to_string(config->sample_rate_Hz) +
                                  " Hz is outside what this ADC setting allows: " + std::to_string(minHz) + " to " +
                                  std::to_string(maxHz) + " Hz");
        cw.config.adc = *config;
        return nullptr;
    });
}

vrn_Error_t getAdc(vrn_CW_Handle handle, vrn_Device_ADC_Config_t* config)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) { *config = cw.config.adc; }, config);
}

vrn_Error_t setBaseband(vrn_CW_Handle handle, const vrn_Device_Baseband_Config_t* config)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) -> vrn_Error_t {
        if (!config)
            return ErrorText::set("The baseband record is null");
        std::string error;
        if (!CwModel::checkBaseband(cw.device->board->chip(), *config, error))
            return ErrorText::set(error);
        cw.config.baseband = *config;
        return nullptr;
    });
}

vrn_Error_t getBaseband(vrn_CW_Handle handle, vrn_Device_Baseband_Config_t* config)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) { *config = cw.config.baseband; }, config);
}

vrn_Error_t samplingRateLimits(vrn_CW_Handle handle, const vrn_Device_ADC_Config_t* config, uint32_t* minHz,
                               uint32_t* maxHz)
{
    return underLock(handle, [&](vrn_CW_Controller_s&) -> vrn_Error_t {
        if (!config || !minHz || !maxHz)
            return ErrorText::set("ADC record and outputs must not be null");
        std::string error;
        if (!CwModel::checkAdc(*config, error))
            return ErrorText::set(error);
        CwModel::samplingRateLimits(*config, *minHz, *maxHz);
        return nullptr;
    });
}

vrn_Error_t startEmission(vrn_CW_Handle handle)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) -> vrn_Error_t {
        cw.emitting = true;
        cw.device->board->setEmission(cw.config.tx_mask ? 1.0 : 0.0);
        return nullptr;
    });
}

vrn_Error_t stopEmission(vrn_CW_Handle handle)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) -> vrn_Error_t {
        cw.emitting = false;
        cw.device->board->setEmission(0.0);
        return nullptr;
    });
}

vrn_Error_t isEmissionActive(vrn_CW_Handle handle, uint8_t* active)
{
    return underLock(handle, [&](vrn_CW_Controller_s& cw) { *active = cw.emitting ? 1 : 0; }, active);
}

vrn_Status_t temperature(vrn_CW_Handle handle, float* celsius)
{
    if (!handle || !celsius)
        return ErrorText::status(VRN_STATUS_INVALID_ARGUMENT, "handle and output must not be null");
    Board& board = *handle->device->board;
    if (!board.isPlugged())
        return VRN_STATUS_COMMUNICATION_LOST;
    if (!board.chip().cwTemperature)
        return ErrorText::status(VRN_STATUS_NOT_SUPPORTED, "the sensor cannot be read in CW mode on this chip");
    return readTemperature(board, celsius);
}

vrn_Status_t txPower(vrn_CW_Handle handle, uint32_t antenna, float* dBm)
{
    if (!handle || !dBm)
        return ErrorText::status(VRN_STATUS_INVALID_ARGUMENT, "handle and output must not be null");
    Board& board = *handle->device->board;
    if (!board.isPlugged())
        return VRN_STATUS_COMMUNICATION_LOST;
    if (!board.chip().cwTxPower)
        return ErrorText::status(VRN_STATUS_NOT_SUPPORTED, "the power detector cannot be read in CW mode on this chip");
    if (antenna >= board.chip().numTx)
        return ErrorText::status(VRN_STATUS_INVALID_ARGUMENT, "no such Tx antenna");
    int32_t status = 0;
    if (board.takeTxPowerFault(status))
        return status;
    std::lock_guard<std::mutex> lock(handle->mutex);
    // The detector sees nothing while the antenna does not emit.
    const bool on = handle->emitting && (handle->config.tx_mask & (1u << antenna));
    *dBm = on ? float(CwModel::txPowerDbm(handle->config.dac_value, board.temperature())) : -60.0f;
    return VRN_STATUS_OK;
}

vrn_Error_t samplesPerAntenna(vrn_CW_Handle handle, uint32_t* samples)
{
    return getNumSamples(handle, samples);
}

vrn_Status_t capture(vrn_CW_Handle handle, vrn_Frame_R_t* frame)
{
    if (!handle || !frame)
        return ErrorText::status(VRN_STATUS_INVALID_ARGUMENT, "handle and frame must not be null");
    std::lock_guard<std::mutex> lock(handle->mutex);
    const vrn_CW_Config_t& config = handle->config;
    const uint32_t channels = AntennaMask::count(config.rx_mask);
    const bool fits = FrameMemory::holds(
        frame, channels, [&](const vrn_Matrix_R_s& m) { return m.rows >= 1 && m.cols == config.num_samples; });
    if (!fits)
        return ErrorText::status(VRN_STATUS_INVALID_ARGUMENT,
                                 "a CW frame needs " + std::to_string(channels) + " channels of 1 x " +
                                     std::to_string(config.num_samples) + " samples");
    Board& board = *handle->device->board;
    FrameTicket ticket;
    const vrn_Status_t status = board.takeCapture(config.num_samples / double(config.adc.sample_rate_Hz), ticket);
    if (ticket.unplugNow)
        unplugScheduled(handle->device->board);
    if (status != VRN_STATUS_OK)
        return status;
    handle->synth.capture(config, handle->emitting, ticket.sceneTime, ticket.index, ticket.temperatureC, *frame);
    return VRN_STATUS_OK;
}

}  // namespace cw
}  // namespace vrnsim
