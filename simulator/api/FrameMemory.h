#pragma once

#include <sdk/vrn.h>

namespace vrnsim {

// Allocation of the SDK's frames, matrices and vectors. Every record carries
// a hidden header behind the public part, so a frame stays destroyable after
// its user zeroed num_rx and foreign pointers are refused.
class FrameMemory
{
public:
    static vrn_Error_t createFrame(uint32_t numRx, uint32_t chirps, uint32_t samples, vrn_Frame_R_t** frame);
    static vrn_Error_t destroyFrame(vrn_Frame_R_t* frame);
    // Real channel count of a frame made here, 0 for anything else.
    static uint32_t frameChannels(const vrn_Frame_R_t* frame);
    // Whether `frame` holds `channels` matrices that each pass `fits`. A
    // frame made here whose user zeroed num_rx after clearing it is still
    // ours to fill: it gets its channel count back first.
    template <typename Fits>
    static bool holds(vrn_Frame_R_t* frame, uint32_t channels, Fits fits)
    {
        if (frame->num_rx == 0 && frameChannels(frame) == channels)
            frame->num_rx = channels;
        bool ok = frame->num_rx == channels && frame->rx_data;
        for (uint32_t i = 0; ok && i < channels; ++i) {
            const vrn_Matrix_R_s* m = frame->rx_data[i];
            ok = m && m->data && fits(*m);
        }
        return ok;
    }
    static vrn_Error_t createMatrix(uint32_t rows, uint32_t cols, vrn_Matrix_R_s** matrix);
    static vrn_Error_t destroyMatrix(vrn_Matrix_R_s* matrix);
    static vrn_Error_t createVector(uint32_t len, vrn_Vector_R_s** vector);
    static vrn_Error_t destroyVector(vrn_Vector_R_s* vector);

    static vrn_Error_t createComplexFrame(uint32_t channels, uint32_t samples, vrn_Corvix_Frame_C_t** frame);
    static vrn_Error_t destroyComplexFrame(vrn_Corvix_Frame_C_t* frame);
    static uint32_t complexFrameChannels(const vrn_Corvix_Frame_C_t* frame);
};

}  // namespace vrnsim
