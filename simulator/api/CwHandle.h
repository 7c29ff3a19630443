#pragma once

#include "CwSynthesizer.h"
#include "DeviceHandle.h"

#include <sdk/vrn.h>

#include <mutex>

// The CW test mode of an opened FMCW device; `mutex` guards its settings.
struct vrn_CW_Controller_s {
    explicit vrn_CW_Controller_s(vrn_Device_s* d)
        : device(d), synth(d->board->chip(), d->board->spec().scene, d->board->noise())
    {}
    vrn_Device_s* device;
    std::mutex mutex;
    vrn_CW_Config_t config{};
    bool emitting = false;
    vrnsim::CwSynthesizer synth;
};
