#include "Api.h"

#include "EntryGuard.h"
#include "FrameMemory.h"
#include "MetricsTranslator.h"
#include "Propagation.h"
#include "Simulator.h"

#include <cstring>
#include <new>

namespace vrnsim {

vrn_Error_t lostText()
{
    return ErrorText::fromStatus(VRN_STATUS_COMMUNICATION_LOST);
}

void unplugScheduled(const std::shared_ptr<Board>& board)
{
    std::string ignored;
    Simulator::instance().unplug(board->spec().uuid, ignored);
}

namespace device {

void fillInfo(const Board& board, vrn_Device_Info_t& info)
{
    const ChipModel& chip = board.chip();
    info = vrn_Device_Info_t{};
    std::strncpy(info.name, chip.name, VRN_NAME_MAX - 1);
    info.min_rf_frequency_Hz = chip.minRfHz;
    info.max_rf_frequency_Hz = chip.maxRfHz;
    info.num_tx_antennas = uint8_t(chip.numTx);
    info.num_rx_antennas = uint8_t(chip.numRx);
    info.max_tx_power = uint8_t(chip.maxTxPowerLevel);
    info.adc_resolution_bits = uint8_t(chip.adcBits);
    info.max_sample_rate_Hz = chip.maxSampleRateHz;
    info.shield_type = static_cast<vrn_Device_Shield_Type_t>(board.spec().shield);
}

void fillFirmware(const Board& board, vrn_Firmware_Info_t& info)
{
    info = vrn_Firmware_Info_t{};
    std::strncpy(info.description, board.spec().firmwareDescription.c_str(), VRN_DESCRIPTION_MAX - 1);
    info.version_major = board.spec().firmware[0];
    info.version_minor = board.spec().firmware[1];
    info.version_build = board.spec().firmware[2];
}

vrn_Error_t listGet(vrn_Device_List_Handle* list)
{
    if (!list)
        return noOutput();
    std::string error;
    if (!Simulator::instance().ensureLoaded(error))
        return ErrorText::set(error);
    auto* handle = new (std::nothrow) vrn_Device_List_s;
    if (!handle)
        return ErrorText::set("Out of memory while listing devices");
    handle->entries = Simulator::instance().availableBoards();
    *list = handle;
    return nullptr;
}

vrn_Error_t listSize(vrn_Device_List_Handle list, uint32_t* count)
{
    if (!list)
        return ErrorText::set("The device list handle is null");
    if (!count)
        return noOutput();
    *count = uint32_t(list->entries.size());
    return nullptr;
}

vrn_Error_t listEntry(vrn_Device_List_Handle list, uint32_t index, vrn_Device_List_Entry_t* entry)
{
    if (!list)
        return ErrorText::set("The device list handle is null");
    if (!entry)
        return noOutput();
    if (index >= list->entries.size())
        return ErrorText::set("Device list index " + std::to_string(index) + " is out of range (" +
                              std::to_string(list->entries.size()) + " entries)");
    if (Simulator::instance().takeListEntryFault(index))
        return ErrorText::set("Reading device list entry " + std::to_string(index) + " failed: " +
                              ErrorText::statusText(VRN_STATUS_COMMUNICATION_ERROR));
    *entry = list->entries[index];
    return nullptr;
}

vrn_Error_t listDestroy(vrn_Device_List_Handle list)
{
    if (!list)
        return ErrorText::set("The device list handle is null");
    delete list;
    return nullptr;
}

vrn_Status_t createByUuid(const char* uuid, vrn_Device_Handle* device)
{
    const vrn_Status_t status = openHandle(uuid, false, device);
    if (status != VRN_STATUS_OK || !*device)
        return status;
    vrn_Device_s& handle = **device;
    std::string ignored;
    // Until the host configures it, a board runs the default scene metrics.
    MetricsTranslator::translate(handle.board->chip(), MetricsTranslator::defaultMetrics(), handle.config, ignored);
    handle.synth.configure(handle.config);
    return VRN_STATUS_OK;
}

vrn_Error_t destroy(vrn_Device_Handle device)
{
    if (!device)
        return ErrorText::set(nullHandleText(device));
    if (device->cw)
        return ErrorText::set("Destroy the CW controller of the device first");
    device->board->close();
    delete device;
    return nullptr;
}

vrn_Error_t metricsLimits(vrn_Device_Handle device, vrn_Metrics_Limits_t* limits)
{
    if (vrn_Error_t refused = refusal(device, limits))
        return refused;
    std::lock_guard<std::mutex> lock(device->mutex);
    MetricsTranslator::limits(device->board->chip(), device->config, *limits);
    return nullptr;
}

vrn_Error_t translateMetrics(vrn_Device_Handle device, const vrn_Metrics_t* metrics, vrn_Device_Config_t* config)
{
    if (!device)
        return ErrorText::set(nullHandleText(device));
    if (!metrics || !config)
        return ErrorText::set("Metrics and configuration records must not be null");
    std::string error;
    vrn_Device_Config_t out{};
    if (!MetricsTranslator::translate(device->board->chip(), *metrics, out, error))
        return ErrorText::set("Cannot translate the metrics: " + error);
    *config = out;
    return nullptr;
}

vrn_Error_t setConfig(vrn_Device_Handle device, const vrn_Device_Config_t* config)
{
    if (!device)
        return ErrorText::set(nullHandleText(device));
    if (!config)
        return ErrorText::set("The configuration record is null");
    if (!device->board->isPlugged())
        return lostText();
    std::string error;
    if (!MetricsTranslator::validate(device->board->chip(), *config, error))
        return ErrorText::set("Invalid device configuration: " + error);
    std::lock_guard<std::mutex> lock(device->mutex);
    // A new configuration restarts acquisition with the next fetch.
    device->board->stopAcquisition();
    std::lock_guard<std::mutex> synthLock(device->synthMutex);
    device->config = *config;
    ++device->generation;
    device->synth.configure(*config);
    return nullptr;
}

vrn_Error_t getConfig(vrn_Device_Handle device, vrn_Device_Config_t* config)
{
    if (vrn_Error_t refused = refusal(device, config))
        return refused;
    std::lock_guard<std::mutex> lock(device->mutex);
    *config = device->config;
    return nullptr;
}

vrn_Error_t chirpTime(vrn_Device_Handle device, const vrn_Device_Config_t* config, float* seconds)
{
    if (!device)
        return ErrorText::set(nullHandleText(device));
    if (!config || !seconds)
        return ErrorText::set("Configuration and output must not be null");
    if (config->sample_rate_Hz == 0)
        return ErrorText::set("The sample rate of the configuration is 0");
    *seconds = float(MetricsTranslator::chirpTime(*config));
    return nullptr;
}

vrn_Error_t pulseRepetitionTime(const vrn_Device_Config_t* config, float* seconds)
{
    if (!config || !seconds)
        return ErrorText::set("Configuration and output must not be null");
    *seconds = float(MetricsTranslator::pulseRepetitionTime(*config));
    return nullptr;
}

vrn_Status_t nextFrame(vrn_Device_Handle device, vrn_Frame_R_t* frame, uint16_t timeoutMs)
{
    if (!device || !frame)
        return ErrorText::status(VRN_STATUS_INVALID_ARGUMENT, "device and frame must not be null");
    vrn_Device_Config_t config;
    uint64_t generation;
    uint32_t channels;
    {
        std::lock_guard<std::mutex> lock(device->mutex);
        config = device->config;
        generation = device->generation;
        std::lock_guard<std::mutex> synthLock(device->synthMutex);
        channels = device->synth.channelCount();
    }
    const bool fits = FrameMemory::holds(frame, channels, [&](const vrn_Matrix_R_s& m) {
        return m.rows == config.num_chirps_per_frame && m.cols == config.num_samples_per_chirp && m.stride >= m.cols;
    });
    if (!fits)
        return ErrorText::status(VRN_STATUS_INVALID_ARGUMENT,
                                 "the frame does not have the configured shape of " + std::to_string(channels) +
                                     " channels x " + std::to_string(config.num_chirps_per_frame) + " chirps x " +
                                     std::to_string(config.num_samples_per_chirp) + " samples");
    Pacing pacing;
    pacing.frameTimeS = config.frame_repetition_time_s;
    pacing.burstS = config.num_chirps_per_frame * double(config.chirp_repetition_time_s);
    pacing.duty = pacing.burstS / pacing.frameTimeS;
    pacing.reportsOverflow = true;
    FrameTicket ticket;
    const vrn_Status_t status = device->board->awaitFrame(pacing, timeoutMs, ticket);
    if (ticket.unplugNow)
        unplugScheduled(device->board);
    if (status != VRN_STATUS_OK)
        return status;
    const double txDbm = Propagation::fmcwTxPowerDbm(config.tx_power_level, device->board->chip().maxTxPowerLevel,
                                                     ticket.temperatureC);
    std::lock_guard<std::mutex> synthLock(device->synthMutex);
    // A configuration set while this fetch waited ends the frame, as on a board.
    if (device->generation != generation)
        return ErrorText::status(VRN_STATUS_FRAME_TIMEOUT, "the configuration changed during the wait");
    device->synth.synthesize(ticket.sceneTime, ticket.index, txDbm, *frame);
    return VRN_STATUS_OK;
}

vrn_Error_t stopAcquisition(vrn_Device_Handle device, uint8_t* stopped)
{
    if (vrn_Error_t refused = refusal(device, stopped))
        return refused;
    device->board->stopAcquisition();
    *stopped = 1;
    return nullptr;
}

vrn_Status_t temperature(vrn_Device_Handle device, float* celsius)
{
    return temperatureOf(device, celsius);
}

vrn_Error_t numRx(vrn_Device_Handle device, uint32_t* count)
{
    if (vrn_Error_t refused = refusal(device, count))
        return refused;
    *count = device->board->chip().numRx;
    return nullptr;
}

vrn_Error_t numTx(vrn_Device_Handle device, uint32_t* count)
{
    if (vrn_Error_t refused = refusal(device, count))
        return refused;
    *count = device->board->chip().numTx;
    return nullptr;
}

vrn_Error_t info(vrn_Device_Handle device, vrn_Device_Info_t* out)
{
    if (vrn_Error_t refused = refusal(device, out))
        return refused;
    fillInfo(*device->board, *out);
    return nullptr;
}

vrn_Error_t firmware(vrn_Device_Handle device, vrn_Firmware_Info_t* out)
{
    if (vrn_Error_t refused = refusal(device, out))
        return refused;
    fillFirmware(*device->board, *out);
    return nullptr;
}

vrn_Error_t type(vrn_Device_Handle device, vrn_Device_Type_t* out)
{
    if (vrn_Error_t refused = refusal(device, out))
        return refused;
    *out = device->board->chip().type;
    return nullptr;
}

vrn_Error_t txPower(vrn_Device_Handle device, uint32_t antenna, float* dBm)
{
    if (vrn_Error_t refused = refusal(device, dBm))
        return refused;
    const ChipModel& chip = device->board->chip();
    if (antenna >= chip.numTx)
        return ErrorText::set("Tx antenna " + std::to_string(antenna) + " does not exist; the " + chip.name +
                              " has " + std::to_string(chip.numTx));
    int32_t status = 0;
    if (device->board->takeTxPowerFault(status))
        return ErrorText::set(std::string("Reading the Tx power failed: ") + ErrorText::statusText(status));
    uint32_t level;
    {
        std::lock_guard<std::mutex> lock(device->mutex);
        level = device->config.tx_power_level;
    }
    *dBm = float(Propagation::fmcwTxPowerDbm(level, chip.maxTxPowerLevel, device->board->temperature()));
    return nullptr;
}

}  // namespace device
}  // namespace vrnsim
