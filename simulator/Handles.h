#pragma once

// Definitions of the SDK's opaque handles.

#include "Board.h"
#include "CwSynthesizer.h"
#include "DopplerSynthesizer.h"
#include "FmcwSynthesizer.h"

#include <sdk/vrn.h>

#include <memory>
#include <mutex>
#include <vector>

struct vrn_Device_List_s {
    std::vector<vrn_Device_List_Entry_t> entries;
};

// An opened FMCW board. `mutex` guards the configuration and is never held
// while a fetch waits, so other calls on the handle get in; `synthMutex`
// guards the synthesiser's scratch memory (taken after `mutex` when both are
// needed). The board has its own lock.
struct vrn_Device_s {
    explicit vrn_Device_s(std::shared_ptr<vrnsim::Board> b)
        : board(std::move(b)), synth(board->spec(), board->noise())
    {}
    std::shared_ptr<vrnsim::Board> board;
    std::mutex mutex;
    vrn_Device_Config_t config{};
    uint64_t generation = 0;  // counts configurations, under both mutexes
    std::mutex synthMutex;
    vrnsim::FmcwSynthesizer synth;
    vrn_CW_Controller_s* cw = nullptr;
};

struct vrn_CW_Controller_s {
    explicit vrn_CW_Controller_s(vrn_Device_s* d)
        : device(d), synth(d->board->spec(), d->board->noise())
    {}
    vrn_Device_s* device;
    std::mutex mutex;
    vrn_CW_Config_t config{};
    bool emitting = false;
    vrnsim::CwSynthesizer synth;
};

struct vrn_Corvix_Device_s {
    explicit vrn_Corvix_Device_s(std::shared_ptr<vrnsim::Board> b)
        : board(std::move(b)), synth(board->spec(), board->noise())
    {}
    std::shared_ptr<vrnsim::Board> board;
    std::mutex mutex;
    vrn_Corvix_Frame_Config_t frame{};
    vrn_Corvix_Pulse_Config_t pulse{};
    vrnsim::DopplerSynthesizer synth;
};
