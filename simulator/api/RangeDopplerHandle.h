#pragma once

#include "AlignedBuffer.h"
#include "RangeDopplerTransform.h"
#include "SpectrumScaler.h"

#include <sdk/vrn.h>

#include <mutex>

// A range-Doppler module: the transform and one row of scratch for the
// magnitudes; `mutex` serialises runs on a shared handle.
struct vrn_RDM_s {
    static constexpr uint32_t kMagic = 0x5652444du;  // "VRDM"
    ~vrn_RDM_s() { magic = 0; }

    uint32_t magic = kMagic;
    vrn_RDM_Config_t config{};
    vrnsim::RangeDopplerTransform transform;
    vrnsim::SpectrumScaler scaler;
    vrnsim::AlignedBuffer<float> power;  // one output row
    std::mutex mutex;
};
