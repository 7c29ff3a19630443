#include "recording/WordSwap.h"

#include <QtGlobal>

#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace WordSwap {

void copyToBigEndian(void* target, const void* source, std::size_t count)
{
#if Q_BYTE_ORDER == Q_LITTLE_ENDIAN
    auto* out = static_cast<unsigned char*>(target);
    const auto* in = static_cast<const unsigned char*>(source);
    std::size_t i = 0;
#if defined(__SSE2__)
    // Baseline x86-64 has no byte shuffle: swap the bytes of each 16-bit
    // lane, then the two 16-bit halves of each word.
    for (; i + 4 <= count; i += 4) {
        __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + i * 4));
        v = _mm_or_si128(_mm_slli_epi16(v, 8), _mm_srli_epi16(v, 8));
        v = _mm_shufflelo_epi16(v, _MM_SHUFFLE(2, 3, 0, 1));
        v = _mm_shufflehi_epi16(v, _MM_SHUFFLE(2, 3, 0, 1));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i * 4), v);
    }
#endif
    for (; i < count; ++i) {
        std::uint32_t word;
        std::memcpy(&word, in + i * 4, 4);
        word = __builtin_bswap32(word);
        std::memcpy(out + i * 4, &word, 4);
    }
#else
    if (target != source)
        std::memcpy(target, source, count * 4);
#endif
}

}
