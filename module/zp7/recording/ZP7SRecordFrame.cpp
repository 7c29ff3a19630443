#include "zp7/recording/ZP7SRecordFrame.h"

#include <vector>

namespace ZP7SRecordFrame {

namespace {
static_assert(sizeof(vrn_Complex_t) == 2 * sizeof(float), "a complex sample must be two packed floats");

// The real view and the complex frame it looks into, released together.
struct RealView {
    ZP7SFrame source;
    std::vector<vrn_Matrix_R_s> matrices;
    std::vector<vrn_Matrix_R_s*> pointers;
    vrn_Frame_R_t frame {};
};
} // namespace

SharedFrame wrap(const ZP7SFrame& frame)
{
    if (!frame || !frame->channel_data || frame->num_channels == 0)
        return SharedFrame();
    auto view = std::make_shared<RealView>();
    view->source = frame;
    view->matrices.resize(frame->num_channels);
    view->pointers.resize(frame->num_channels, nullptr);
    for (uint32_t channel = 0; channel < frame->num_channels; ++channel) {
        const vrn_Matrix_C_s* complex = frame->channel_data[channel];
        // A missing channel stays null: the recorder reports the frame as
        // one with missing antenna data and skips it.
        if (!complex || !complex->data)
            continue;
        vrn_Matrix_R_s& real = view->matrices[channel];
        real.rows = complex->rows;
        real.cols = 2 * complex->cols;
        real.stride = 2 * complex->stride;
        real.data = reinterpret_cast<float*>(complex->data);
        view->pointers[channel] = &real;
    }
    view->frame.num_rx = frame->num_channels;
    view->frame.rx_data = view->pointers.data();
    return SharedFrame(view, &view->frame);
}

} // namespace ZP7SRecordFrame
