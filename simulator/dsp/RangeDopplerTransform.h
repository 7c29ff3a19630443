#pragma once

#include "AlignedBuffer.h"

#include <sdk/vrn.h>

#include <string>
#include <vector>

namespace vrnsim {

// The complex range-Doppler map of one channel (chirps x samples, real):
// a windowed, zero-padded real FFT per chirp of which the positive half is
// kept, then a windowed, zero-padded complex FFT per range bin across the
// chirps. Mean removal over a chirp takes out the ADC offset; mean removal
// across the chirps takes out everything that does not move.
//
// Both transforms are linear, which the layout exploits so that the data
// is touched once before and once after the FFTs: the Doppler window is
// applied to the samples together with the range window, the range spectra
// stay where the real FFT writes them and the Doppler FFT reads them down
// the columns, and the mean across chirps is the range FFT of the mean chirp,
// subtracted after the Doppler FFT as that mean times the transform of the
// Doppler window. Buffers and plans are made once; run() allocates nothing.
class RangeDopplerTransform
{
public:
    struct Stage {
        uint32_t fftSize = 0;
        bool meanRemoval = true;
        // Remove the window-weighted mean instead of the plain one. Both take
        // out what is constant; but the plain mean of a tone over a chirp (or
        // of a moving target over a frame) is not zero, and removing it
        // leaves a copy of the window's main lobe at bin 0, about 30 dB below
        // the tone. The weighted mean of a tone outside that lobe is down at
        // the window's side lobes, so detection prefers it.
        bool weightedMean = false;
        std::vector<float> window;  // its length is the input length of the stage
    };

    RangeDopplerTransform() = default;
    ~RangeDopplerTransform();
    RangeDopplerTransform(const RangeDopplerTransform&) = delete;
    RangeDopplerTransform& operator=(const RangeDopplerTransform&) = delete;

    // range.window has samples-per-chirp entries, doppler.window chirps-per-frame.
    bool init(Stage range, Stage doppler, std::string& error);
    // The matrix must be window-of-Doppler rows by window-of-range columns.
    std::string checkInput(const vrn_Matrix_R_s& input) const;
    // Both FFTs; the mean across chirps is still in the result until
    // removeMean() or shiftedPower() takes it out.
    void run(const vrn_Matrix_R_s& input);
    void removeMean();
    // Squared magnitudes of one range bin, mean removed, zero speed moved to
    // the middle (Doppler FFT size / 2) and negative speeds to its left.
    void shiftedPower(uint32_t rangeBin, float* out) const;

    uint32_t samples() const { return uint32_t(m_range.window.size()); }
    uint32_t chirps() const { return uint32_t(m_doppler.window.size()); }
    uint32_t rangeBins() const { return m_range.fftSize / 2; }
    uint32_t dopplerBins() const { return m_doppler.fftSize; }
    // Row r holds range bin r; its entries are the Doppler bins in FFT order
    // (bin 0 first, negative speeds in the upper half), interleaved re/im.
    const float* row(uint32_t rangeBin) const
    {
        return reinterpret_cast<const float*>(m_dopplerOut.data() + size_t(rangeBin) * m_doppler.fftSize);
    }

private:
    // Range spectra (complex values) up to which the Doppler FFT gets its
    // rows by a corner turn: 128 KiB.
    static constexpr size_t kCornerTurnLimit = 16384;
    void turnCorner();

    Stage m_range;
    Stage m_doppler;
    bool m_meanDone = true;
    bool m_cornerTurn = false;
    AlignedBuffer<float> m_rangeIn;             // chirps x range FFT size, zero tail
    AlignedBuffer<fftwf_complex> m_rangeOut;    // Doppler FFT size x (range bins + 1), zero rows below the chirps
    AlignedBuffer<fftwf_complex> m_dopplerIn;   // range bins x Doppler FFT size, zero tail (corner turn only)
    AlignedBuffer<fftwf_complex> m_dopplerOut;  // range bins x Doppler FFT size
    AlignedBuffer<float> m_meanIn;              // the mean chirp, zero tail
    AlignedBuffer<fftwf_complex> m_binMean;     // its range FFT: the mean per range bin
    std::vector<float> m_windowRe, m_windowIm;  // Doppler FFT of the Doppler window
    std::vector<float> m_ones;                  // weights of a plain mean
    std::vector<float> m_chirpWeight;           // share of each chirp in the mean chirp
    float m_rangeWeightInverse = 0.0f;          // 1 / sum of the range weights
    fftwf_plan m_rangePlan = nullptr;
    fftwf_plan m_meanPlan = nullptr;
    fftwf_plan m_dopplerPlan = nullptr;
};

}  // namespace vrnsim
