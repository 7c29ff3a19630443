#include "Api.h"

#include "DopplerModel.h"
#include "EntryGuard.h"
#include "FrameMemory.h"

namespace vrnsim {
namespace corvix {

vrn_Status_t createByUuid(const char* uuid, vrn_Corvix_Handle* device)
{
    const vrn_Status_t status = openHandle(uuid, true, device);
    if (status == VRN_STATUS_OK && *device)
        DopplerModel::defaults((*device)->frame, (*device)->pulse);
    return status;
}

vrn_Error_t destroy(vrn_Corvix_Handle device)
{
    if (!device)
        return ErrorText::set(nullHandleText(device));
    device->board->close();
    delete device;
    return nullptr;
}

vrn_Error_t info(vrn_Corvix_Handle device, vrn_Device_Info_t* out)
{
    return underLock(device, [&](vrn_Corvix_Device_s& d) { device::fillInfo(*d.board, *out); }, out);
}

vrn_Error_t firmware(vrn_Corvix_Handle device, vrn_Firmware_Info_t* out)
{
    return underLock(device, [&](vrn_Corvix_Device_s& d) { device::fillFirmware(*d.board, *out); }, out);
}

vrn_Error_t limits(vrn_Corvix_Handle device, vrn_Corvix_Limits_t* out)
{
    return underLock(device, [&](vrn_Corvix_Device_s&) { *out = DopplerModel::limits(); }, out);
}

vrn_Error_t defaultConfig(vrn_Corvix_Handle device, vrn_Corvix_Frame_Config_t* frame,
                          vrn_Corvix_Pulse_Config_t* pulse)
{
    return underLock(device, [&](vrn_Corvix_Device_s&) { DopplerModel::defaults(*frame, *pulse); }, frame, pulse);
}

vrn_Error_t getConfig(vrn_Corvix_Handle device, vrn_Corvix_Frame_Config_t* frame, vrn_Corvix_Pulse_Config_t* pulse)
{
    const auto copy = [&](vrn_Corvix_Device_s& d) {
        *frame = d.frame;
        *pulse = d.pulse;
    };
    return underLock(device, copy, frame, pulse);
}

vrn_Error_t setConfig(vrn_Corvix_Handle device, const vrn_Corvix_Frame_Config_t* frame,
                      const vrn_Corvix_Pulse_Config_t* pulse)
{
    return underLock(device, [&](vrn_Corvix_Device_s& d) -> vrn_Error_t {
        if (!frame || !pulse)
            return ErrorText::set("Frame and pulse records must not be null");
        std::string error;
        if (!DopplerModel::check(*frame, *pulse, error))
            return ErrorText::set("Invalid ZP7 configuration: " + error);
        d.board->stopAcquisition();
        d.frame = *frame;
        d.pulse = *pulse;
        return nullptr;
    });
}

vrn_Status_t nextFrame(vrn_Corvix_Handle device, vrn_Corvix_Frame_C_t* frame, uint16_t timeoutMs)
{
    if (!device || !frame)
        return ErrorText::status(VRN_STATUS_INVALID_ARGUMENT, "device and frame must not be null");
    // Work on a copy of the configuration so that the wait holds no lock.
    vrn_Corvix_Frame_Config_t frameConfig;
    vrn_Corvix_Pulse_Config_t pulse;
    {
        std::lock_guard<std::mutex> lock(device->mutex);
        frameConfig = device->frame;
        pulse = device->pulse;
    }
    const uint32_t capacity = FrameMemory::complexFrameChannels(frame);
    if (frame->num_channels == 0 && capacity > 0)
        frame->num_channels = capacity;
    bool fits = (frame->num_channels == 1 || frame->num_channels == 2) && frame->channel_data;
    for (uint32_t i = 0; fits && i < frame->num_channels; ++i) {
        const vrn_Matrix_C_s* m = frame->channel_data[i];
        fits = m && m->data && m->rows == 1 && m->cols == frameConfig.num_samples;
    }
    if (!fits)
        return ErrorText::status(VRN_STATUS_INVALID_ARGUMENT, "a ZP7 frame needs 1 or 2 channels of 1 x " +
                                                                  std::to_string(frameConfig.num_samples) + " samples");
    Pacing pacing;
    pacing.frameTimeS = frameConfig.frame_repetition_time_s;
    pacing.burstS = frameConfig.num_samples * double(frameConfig.pulse_repetition_time_s);
    // Pulses are short: a few percent of the pulse repetition time.
    pacing.duty = 0.05 * pacing.burstS / pacing.frameTimeS;
    FrameTicket ticket;
    const vrn_Status_t status = device->board->awaitFrame(pacing, timeoutMs, ticket);
    if (ticket.unplugNow)
        unplugScheduled(device->board);
    if (status != VRN_STATUS_OK)
        return status;
    device->synth.synthesize(frameConfig, pulse, ticket.sceneTime, ticket.index, *frame);
    return VRN_STATUS_OK;
}

vrn_Error_t stopAcquisition(vrn_Corvix_Handle device)
{
    // Without the handle lock: a fetch waiting for its frame holds it.
    if (vrn_Error_t refused = refusal(device))
        return refused;
    device->board->stopAcquisition();
    return nullptr;
}

vrn_Status_t temperature(vrn_Corvix_Handle device, float* celsius)
{
    return temperatureOf(device, celsius);
}

}  // namespace corvix
}  // namespace vrnsim
