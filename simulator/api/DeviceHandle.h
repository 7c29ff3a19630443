#pragma once

#include "Board.h"
#include "FmcwSynthesizer.h"

#include <sdk/vrn.h>

#include <memory>
#include <mutex>

// An opened FMCW board. `mutex` guards the configuration and is never held
// while a fetch waits, so other calls on the handle get in; `synthMutex`
// guards the synthesiser's scratch memory (taken after `mutex` when both are
// needed). The board has its own lock.
struct vrn_Device_s {
    explicit vrn_Device_s(std::shared_ptr<vrnsim::Board> b)
        : board(std::move(b)), synth(board->chip(), board->spec().scene, board->noise())
    {}
    std::shared_ptr<vrnsim::Board> board;
    std::mutex mutex;
    vrn_Device_Config_t config{};
    uint64_t generation = 0;  // counts configurations, under both mutexes
    std::mutex synthMutex;
    vrnsim::FmcwSynthesizer synth;
    vrn_CW_Controller_s* cw = nullptr;
};
