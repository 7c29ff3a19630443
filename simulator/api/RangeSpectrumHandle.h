#pragma once

#include "AlignedBuffer.h"
#include "SpectrumScaler.h"

#include <sdk/vrn.h>

#include <mutex>
#include <vector>

// A range-spectrum module: its window, buffers and both plans (real input
// for FMCW chirps, complex input for I/Q captures), made once at creation.
// `mutex` lets two threads share a handle without sharing its scratch memory.
struct vrn_RS_s {
    static constexpr uint32_t kMagic = 0x56525253u;  // "VRRS"
    ~vrn_RS_s();

    uint32_t magic = kMagic;
    vrn_RS_Config_t config{};
    std::vector<float> window;
    vrnsim::SpectrumScaler scaler;
    vrnsim::AlignedBuffer<float> realIn;
    vrnsim::AlignedBuffer<fftwf_complex> complexIn;
    vrnsim::AlignedBuffer<fftwf_complex> out;
    vrnsim::AlignedBuffer<float> power;
    fftwf_plan realPlan = nullptr;
    fftwf_plan complexPlan = nullptr;
    std::mutex mutex;
};
