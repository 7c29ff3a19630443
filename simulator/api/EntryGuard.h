#pragma once

// The refusals that the entry points on an open board share: a null handle,
// a null output, a board that was unplugged, each with one text for every
// handle type, and the opening of a board by its uuid.

#include "Api.h"
#include "ErrorText.h"
#include "Handles.h"

#include <memory>
#include <mutex>
#include <new>
#include <type_traits>

namespace vrnsim {

// Common answer of a call given a null output pointer.
vrn_Error_t noOutput();

inline const char* nullHandleText(const vrn_Device_s*) { return "The device handle is null"; }
inline const char* nullHandleText(const vrn_CW_Controller_s*) { return "The CW controller handle is null"; }
inline const char* nullHandleText(const vrn_Corvix_Device_s*) { return "The ZP7 device handle is null"; }

inline Board& boardOf(const vrn_Device_s& device) { return *device.board; }
inline Board& boardOf(const vrn_CW_Controller_s& cw) { return *cw.device->board; }
inline Board& boardOf(const vrn_Corvix_Device_s& device) { return *device.board; }

template <typename... Outputs>
bool anyNull(const Outputs*... outputs)
{
    return (... || (outputs == nullptr));
}

// The FMCW device calls check their outputs before the board, the CW and ZP7
// calls after it. Each family keeps its order, so a call with two faults
// answers as it always did.

// Empty when the handle and every output are set and the board is plugged;
// otherwise the text of the first check that fails, in that order.
template <typename Handle, typename... Outputs>
vrn_Error_t refusal(const Handle* handle, const Outputs*... outputs)
{
    if (!handle)
        return ErrorText::set(nullHandleText(handle));
    if (anyNull(outputs...))
        return noOutput();
    if (!boardOf(*handle).isPlugged())
        return lostText();
    return nullptr;
}

// Checks the handle, the board and then the outputs, and runs body(*handle)
// under the handle's lock: for calls that read or write its settings. A body
// that cannot fail may return nothing.
template <typename Handle, typename Body, typename... Outputs>
vrn_Error_t underLock(Handle* handle, Body body, const Outputs*... outputs)
{
    if (!handle)
        return ErrorText::set(nullHandleText(handle));
    if (!boardOf(*handle).isPlugged())
        return lostText();
    if (anyNull(outputs...))
        return noOutput();
    std::lock_guard<std::mutex> lock(handle->mutex);
    if constexpr (std::is_void_v<decltype(body(*handle))>) {
        body(*handle);
        return nullptr;
    } else {
        return body(*handle);
    }
}

// Finds the board of `uuid` and opens it for a handle of the given kind.
// On VRN_STATUS_OK `board` is open, unless the bench asks for a null handle
// (`nullHandle`), in which case it is left closed.
vrn_Status_t openBoard(const char* uuid, bool pulsedDoppler, std::shared_ptr<Board>& board, bool& nullHandle);

// Opens a board and wraps it in a new handle; `*out` stays null when the
// bench asks for a null handle.
template <typename Handle>
vrn_Status_t openHandle(const char* uuid, bool pulsedDoppler, Handle** out)
{
    if (!uuid || !out)
        return ErrorText::status(VRN_STATUS_INVALID_ARGUMENT, "uuid and output handle must not be null");
    std::shared_ptr<Board> board;
    bool nullHandle = false;
    const vrn_Status_t status = openBoard(uuid, pulsedDoppler, board, nullHandle);
    if (status != VRN_STATUS_OK)
        return status;
    if (nullHandle) {
        *out = nullptr;
        return VRN_STATUS_OK;
    }
    auto* handle = new (std::nothrow) Handle(board);
    if (!handle) {
        board->close();
        return ErrorText::status(VRN_STATUS_COMMUNICATION_ERROR, "out of memory");
    }
    *out = handle;
    return VRN_STATUS_OK;
}

// Reads the board's temperature for the status-answering calls, unless a
// scheduled fault answers instead.
vrn_Status_t readTemperature(Board& board, float* celsius);

// The temperature call of a device or ZP7 handle.
template <typename Handle>
vrn_Status_t temperatureOf(const Handle* handle, float* celsius)
{
    if (!handle || !celsius)
        return ErrorText::status(VRN_STATUS_INVALID_ARGUMENT, "device and output must not be null");
    if (!boardOf(*handle).isPlugged())
        return VRN_STATUS_COMMUNICATION_LOST;
    return readTemperature(boardOf(*handle), celsius);
}

}  // namespace vrnsim
