#pragma once

#include <fftw3.h>

#include <cstddef>
#include <cstring>

namespace vrnsim {

// A zero-filled array in FFTW's allocator, so every plan made on it may use
// SIMD loads; moves only, like the memory it owns.
template <typename T>
class AlignedBuffer
{
public:
    AlignedBuffer() = default;
    explicit AlignedBuffer(size_t count) { resize(count); }
    ~AlignedBuffer() { fftwf_free(m_data); }
    AlignedBuffer(const AlignedBuffer&) = delete;
    AlignedBuffer& operator=(const AlignedBuffer&) = delete;

    // False when the memory cannot be had; the old contents are gone either way.
    bool resize(size_t count)
    {
        fftwf_free(m_data);
        m_data = static_cast<T*>(fftwf_malloc(sizeof(T) * (count > 0 ? count : 1)));
        m_size = m_data ? count : 0;
        if (m_data)
            std::memset(static_cast<void*>(m_data), 0, sizeof(T) * m_size);
        return m_data != nullptr;
    }

    T* data() { return m_data; }
    const T* data() const { return m_data; }
    size_t size() const { return m_size; }
    T& operator[](size_t i) { return m_data[i]; }
    const T& operator[](size_t i) const { return m_data[i]; }

private:
    T* m_data = nullptr;
    size_t m_size = 0;
};

}  // namespace vrnsim
