#include "ErrorText.h"

#include <cstdio>

namespace vrnsim {

namespace {

thread_local std::string t_error;
thread_local std::string t_statusText;
thread_local vrn_Status_t t_detailStatus = 0;
thread_local std::string t_detail;

const char* baseText(vrn_Status_t status)
{
    switch (status) {
    case VRN_STATUS_OK: return "Success";
    case VRN_STATUS_INVALID_ARGUMENT: return "Invalid argument";
    case VRN_STATUS_NOT_SUPPORTED: return "The device does not support this feature";
    case VRN_STATUS_COMMUNICATION_ERROR: return "Communication with the device failed";
    case VRN_STATUS_DEVICE_NOT_FOUND: return "No device with this identifier is connected";
    case VRN_STATUS_COMMUNICATION_LOST: return "Communication with the device was lost";
    case VRN_STATUS_DEVICE_BUSY: return "The device is already open";
    case VRN_STATUS_FRAME_TIMEOUT: return "No frame became ready within the timeout";
    case VRN_STATUS_FRAME_FETCH_FAILED: return "Fetching the frame from the device failed";
    case VRN_STATUS_FIRMWARE_NOT_SUPPORTED: return "The firmware of the device is not supported";
    default: return nullptr;
    }
}

}  // namespace

vrn_Error_t ErrorText::set(std::string text)
{
    t_error = std::move(text);
    return t_error.c_str();
}

vrn_Status_t ErrorText::status(vrn_Status_t status, std::string detail)
{
    if (!detail.empty()) {
        t_detailStatus = status;
        t_detail = std::move(detail);
    }
    return status;
}

const char* ErrorText::statusText(vrn_Status_t status)
{
    const char* base = baseText(status);
    char buffer[64];
    if (!base) {
        std::snprintf(buffer, sizeof buffer, "Unknown status 0x%x", unsigned(status));
        base = buffer;
    }
    t_statusText = base;
    if (status != VRN_STATUS_OK && status == t_detailStatus && !t_detail.empty())
        t_statusText += ": " + t_detail;
    return t_statusText.c_str();
}

vrn_Error_t ErrorText::fromStatus(vrn_Status_t status)
{
    return set(statusText(status));
}

}  // namespace vrnsim
