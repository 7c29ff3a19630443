#pragma once

#include <QtGlobal>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace WordSwap {

// Puts host-order 32-bit words into big-endian order, or back, in place.
// Written as one loop over the whole buffer so that the compiler turns it
// into vector byte shuffles; memcpy keeps it free of aliasing and alignment
// assumptions about the float buffer it is usually given.
inline void toFromBigEndian(void* words, std::size_t count)
{
#if Q_BYTE_ORDER == Q_LITTLE_ENDIAN
    auto* bytes = static_cast<unsigned char*>(words);
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t word;
        std::memcpy(&word, bytes + i * 4, 4);
        word = __builtin_bswap32(word);
        std::memcpy(bytes + i * 4, &word, 4);
    }
#else
    Q_UNUSED(words)
    Q_UNUSED(count)
#endif
}

// Copies `count` host-order 32-bit words into `target` in big-endian order:
// the copy and the swap in one pass over the memory.
inline void copyToBigEndian(void* target, const void* source, std::size_t count)
{
#if Q_BYTE_ORDER == Q_LITTLE_ENDIAN
    auto* out = static_cast<unsigned char*>(target);
    const auto* in = static_cast<const unsigned char*>(source);
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t word;
        std::memcpy(&word, in + i * 4, 4);
        word = __builtin_bswap32(word);
        std::memcpy(out + i * 4, &word, 4);
    }
#else
    std::memcpy(target, source, count * 4);
#endif
}

}
