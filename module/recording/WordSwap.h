#pragma once

#include <cstddef>

// Big-endian order of 32-bit words for the binary recording format. Both
// run over whole buffers at memory speed (four words per vector step on
// x86), since every sample of every recorded frame passes through here.
namespace WordSwap {

// Copies `count` host-order 32-bit words into `target` in big-endian order
// (or back): the copy and the swap in one pass. `target` may equal
// `source`; other overlaps are not allowed.
void copyToBigEndian(void* target, const void* source, std::size_t count);

// The same in place.
inline void toFromBigEndian(void* words, std::size_t count)
{
    copyToBigEndian(words, words, count);
}

}
