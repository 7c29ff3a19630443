#pragma once

#include "Board.h"
#include "DopplerSynthesizer.h"

#include <sdk/vrn.h>

#include <memory>
#include <mutex>

// An opened ZP7 board; `mutex` guards its configuration and is not held
// while a fetch waits.
struct vrn_Corvix_Device_s {
    explicit vrn_Corvix_Device_s(std::shared_ptr<vrnsim::Board> b)
        : board(std::move(b)), synth(board->spec().scene, board->noise())
    {}
    std::shared_ptr<vrnsim::Board> board;
    std::mutex mutex;
    vrn_Corvix_Frame_Config_t frame{};
    vrn_Corvix_Pulse_Config_t pulse{};
    vrnsim::DopplerSynthesizer synth;
};
