#pragma once

#include "PresenceDetector.h"

#include <sdk/vrn.h>

#include <mutex>

// A presence-sensing run: the detector keeps the history between frames;
// `mutex` keeps two threads from interleaving frames on one handle.
struct vrn_PresenceSensing_s {
    static constexpr uint32_t kMagic = 0x56525053u;  // "VRPS"
    ~vrn_PresenceSensing_s() { magic = 0; }

    uint32_t magic = kMagic;
    vrnsim::PresenceDetector detector;
    std::mutex mutex;
};
