#include "FrameMemory.h"

#include "ErrorText.h"

#include <new>

namespace vrnsim {

namespace {

constexpr uint32_t kFrameMagic = 0x5652464du;    // "VRFM"
constexpr uint32_t kMatrixMagic = 0x5652584du;   // "VRXM"
constexpr uint32_t kVectorMagic = 0x5652564du;   // "VRVM"
constexpr uint32_t kComplexMagic = 0x5652434du;  // "VRCM"
constexpr uint64_t kMaxElements = 1ull << 28;    // 1 GiB of floats per record

// The public record comes first so that its address is the block's address.
struct MatrixBlock {
    vrn_Matrix_R_s matrix;
    uint32_t magic;
    bool ownedByFrame;
};

struct FrameBlock {
    vrn_Frame_R_t frame;
    uint32_t magic;
    uint32_t channels;
    vrn_Matrix_R_s** matrices;
};

struct VectorBlock {
    vrn_Vector_R_s vector;
    uint32_t magic;
};

struct ComplexFrameBlock {
    vrn_Corvix_Frame_C_t frame;
    uint32_t magic;
    uint32_t channels;
    vrn_Matrix_C_s** matrices;
};

MatrixBlock* newMatrix(uint32_t rows, uint32_t cols, bool ownedByFrame)
{
    auto* block = new (std::nothrow) MatrixBlock{};
    if (!block)
        return nullptr;
    const size_t elements = size_t(rows) * cols;
    block->matrix.data = new (std::nothrow) float[elements > 0 ? elements : 1]();
    if (!block->matrix.data) {
        delete block;
        return nullptr;
    }
    block->matrix.rows = rows;
    block->matrix.cols = cols;
    block->matrix.stride = cols;
    block->magic = kMatrixMagic;
    block->ownedByFrame = ownedByFrame;
    return block;
}

void freeMatrix(MatrixBlock* block)
{
    block->magic = 0;
    delete[] block->matrix.data;
    delete block;
}

bool tooLarge(uint64_t a, uint64_t b, uint64_t c = 1)
{
    return a * b * c > kMaxElements;
}

}  // namespace

vrn_Error_t FrameMemory::createFrame(uint32_t numRx, uint32_t chirps, uint32_t samples, vrn_Frame_R_t** frame)
{
    if (!frame)
        return ErrorText::set("Frame creation needs an output pointer");
    if (numRx == 0 || chirps == 0 || samples == 0)
        return ErrorText::set("A frame needs at least one channel, chirp and sample");
    if (tooLarge(numRx, chirps, samples))
        return ErrorText::set("The frame is too large");
    auto* block = new FrameBlock{};
    block->magic = kFrameMagic;
    block->channels = numRx;
    block->matrices = new vrn_Matrix_R_s*[numRx]();
    for (uint32_t i = 0; i < numRx; ++i) {
        MatrixBlock* m = newMatrix(chirps, samples, true);
        if (!m) {
            for (uint32_t j = 0; j < i; ++j)
                freeMatrix(reinterpret_cast<MatrixBlock*>(block->matrices[j]));
            delete[] block->matrices;
            delete block;
            return ErrorText::set("Out of memory while creating a frame");
        }
        block->matrices[i] = &m->matrix;
    }
    block->frame.num_rx = numRx;
    block->frame.rx_data = block->matrices;
    *frame = &block->frame;
    return nullptr;
}

uint32_t FrameMemory::frameChannels(const vrn_Frame_R_t* frame)
{
    const auto* block = reinterpret_cast<const FrameBlock*>(frame);
    return frame && block->magic == kFrameMagic ? block->channels : 0;
}

vrn_Error_t FrameMemory::destroyFrame(vrn_Frame_R_t* frame)
{
    if (!frame)
        return ErrorText::set("Cannot destroy a null frame");
    auto* block = reinterpret_cast<FrameBlock*>(frame);
    if (block->magic != kFrameMagic)
        return ErrorText::set("The frame was not created by this SDK or was destroyed already");
    for (uint32_t i = 0; i < block->channels; ++i)
        freeMatrix(reinterpret_cast<MatrixBlock*>(block->matrices[i]));
    delete[] block->matrices;
    block->magic = 0;
    delete block;
    return nullptr;
}

vrn_Error_t FrameMemory::createMatrix(uint32_t rows, uint32_t cols, vrn_Matrix_R_s** matrix)
{
    if (!matrix)
        return ErrorText::set("Matrix creation needs an output pointer");
    if (rows == 0 || cols == 0)
        return ErrorText::set("A matrix needs at least one row and one column");
    if (tooLarge(rows, cols))
        return ErrorText::set("The matrix is too large");
    MatrixBlock* block = newMatrix(rows, cols, false);
    if (!block)
        return ErrorText::set("Out of memory while creating a matrix");
    *matrix = &block->matrix;
    return nullptr;
}

vrn_Error_t FrameMemory::destroyMatrix(vrn_Matrix_R_s* matrix)
{
    if (!matrix)
        return ErrorText::set("Cannot destroy a null matrix");
    auto* block = reinterpret_cast<MatrixBlock*>(matrix);
    if (block->magic != kMatrixMagic)
        return ErrorText::set("The matrix was not created by this SDK or was destroyed already");
    if (block->ownedByFrame)
        return ErrorText::set("The matrix belongs to a frame; destroy the frame instead");
    freeMatrix(block);
    return nullptr;
}

vrn_Error_t FrameMemory::createVector(uint32_t len, vrn_Vector_R_s** vector)
{
    if (!vector)
        return ErrorText::set("Vector creation needs an output pointer");
    if (len == 0 || len > kMaxElements)
        return ErrorText::set("A vector needs 1 to 268435456 elements");
    auto* block = new VectorBlock{};
    block->vector.len = len;
    block->vector.data = new float[len]();
    block->magic = kVectorMagic;
    *vector = &block->vector;
    return nullptr;
}

vrn_Error_t FrameMemory::destroyVector(vrn_Vector_R_s* vector)
{
    if (!vector)
        return ErrorText::set("Cannot destroy a null vector");
    auto* block = reinterpret_cast<VectorBlock*>(vector);
    if (block->magic != kVectorMagic)
        return ErrorText::set("The vector was not created by this SDK or was destroyed already");
    block->magic = 0;
    delete[] block->vector.data;
    delete block;
    return nullptr;
}

vrn_Error_t FrameMemory::createComplexFrame(uint32_t channels, uint32_t samples, vrn_Corvix_Frame_C_t** frame)
{
    if (!frame)
        return ErrorText::set("Frame creation needs an output pointer");
    if (channels == 0 || channels > 2 || samples == 0)
        return ErrorText::set("A pulsed Doppler frame holds 1 or 2 channels of at least one sample");
    if (tooLarge(channels, samples, 2))
        return ErrorText::set("The frame is too large");
    auto* block = new ComplexFrameBlock{};
    block->magic = kComplexMagic;
    block->channels = channels;
    block->matrices = new vrn_Matrix_C_s*[channels]();
    for (uint32_t i = 0; i < channels; ++i) {
        auto* m = new vrn_Matrix_C_s{};
        m->rows = 1;
        m->cols = samples;
        m->stride = samples;
        m->data = new vrn_Complex_t[samples]();
        block->matrices[i] = m;
    }
    block->frame.num_channels = channels;
    block->frame.channel_data = block->matrices;
    *frame = &block->frame;
    return nullptr;
}

uint32_t FrameMemory::complexFrameChannels(const vrn_Corvix_Frame_C_t* frame)
{
    const auto* block = reinterpret_cast<const ComplexFrameBlock*>(frame);
    return frame && block->magic == kComplexMagic ? block->channels : 0;
}

vrn_Error_t FrameMemory::destroyComplexFrame(vrn_Corvix_Frame_C_t* frame)
{
    if (!frame)
        return ErrorText::set("Cannot destroy a null frame");
    auto* block = reinterpret_cast<ComplexFrameBlock*>(frame);
    if (block->magic != kComplexMagic)
        return ErrorText::set("The frame was not created by this SDK or was destroyed already");
    for (uint32_t i = 0; i < block->channels; ++i) {
        delete[] block->matrices[i]->data;
        delete block->matrices[i];
    }
    delete[] block->matrices;
    block->magic = 0;
    delete block;
    return nullptr;
}

}  // namespace vrnsim
