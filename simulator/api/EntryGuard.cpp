#include "EntryGuard.h"

#include "Simulator.h"

namespace vrnsim {

vrn_Error_t noOutput()
{
    return ErrorText::set("An output pointer is null");
}

vrn_Status_t openBoard(const char* uuid, bool pulsedDoppler, std::shared_ptr<Board>& board, bool& nullHandle)
{
    std::string error;
    if (!Simulator::instance().ensureLoaded(error))
        return ErrorText::status(VRN_STATUS_DEVICE_NOT_FOUND, error);
    board = Simulator::instance().find(uuid);
    if (!board)
        return ErrorText::status(VRN_STATUS_DEVICE_NOT_FOUND, std::string("no board \"") + uuid + "\"");
    if (board->chip().pulsedDoppler != pulsedDoppler)
        return ErrorText::status(VRN_STATUS_NOT_SUPPORTED,
                                 pulsedDoppler ? "the board carries an FMCW chip, not a ZP7"
                                               : "the ZP7 is a pulsed-Doppler device; open it as such");
    const vrn_Status_t status = board->open(nullHandle);
    if (status == VRN_STATUS_FIRMWARE_NOT_SUPPORTED)
        return ErrorText::status(status, "this SDK needs firmware 2.0.0 or later");
    return status;
}

vrn_Status_t readTemperature(Board& board, float* celsius)
{
    int32_t status = 0;
    if (board.takeTemperatureFault(status))
        return status;
    *celsius = float(board.temperature());
    return VRN_STATUS_OK;
}

}  // namespace vrnsim
