#include "RangeDopplerTransform.h"

#include "FftwPlanner.h"
#include "WideLoops.h"

#include <algorithm>
#include <cstdint>
#include <cmath>

namespace vrnsim {

RangeDopplerTransform::~RangeDopplerTransform()
{
    FftwPlanner::destroy(m_rangePlan);
    FftwPlanner::destroy(m_meanPlan);
    FftwPlanner::destroy(m_dopplerPlan);
}

bool RangeDopplerTransform::init(Stage range, Stage doppler, std::string& error)
{
    m_range = std::move(range);
    m_doppler = std::move(doppler);
    const size_t chirps = m_doppler.window.size();
    const size_t bins = m_range.fftSize / 2;
    const size_t nd = m_doppler.fftSize;
    if (!m_rangeIn.resize(chirps * m_range.fftSize) || !m_rangeOut.resize(nd * (bins + 1)) ||
        !m_dopplerOut.resize(bins * nd) || !m_meanIn.resize(m_range.fftSize) || !m_binMean.resize(bins + 1)) {
        error = "Out of memory for the range-Doppler buffers";
        return false;
    }
    m_ones.assign(m_range.window.size(), 1.0f);
    double total = 0.0;
    for (float w : (m_range.weightedMean ? m_range.window : m_ones))
        total += w;
    m_rangeWeightInverse = total > 0.0 ? float(1.0 / total) : 0.0f;

    double chirpTotal = 0.0;
    for (float w : m_doppler.window)
        chirpTotal += m_doppler.weightedMean ? w : 1.0f;
    m_chirpWeight.assign(chirps, 0.0f);
    for (size_t k = 0; k < chirps && chirpTotal > 0.0; ++k)
        m_chirpWeight[k] = float((m_doppler.weightedMean ? m_doppler.window[k] : 1.0) / chirpTotal);
    // What a constant over the chirps becomes after the Doppler window and FFT.
    m_windowRe.assign(nd, 0.0f);
    m_windowIm.assign(nd, 0.0f);
    for (size_t d = 0; d < nd; ++d) {
        double re = 0.0, im = 0.0;
        for (size_t k = 0; k < chirps; ++k) {
            const double phase = -2.0 * M_PI * double(d) * double(k) / double(nd);
            re += m_doppler.window[k] * std::cos(phase);
            im += m_doppler.window[k] * std::sin(phase);
        }
        m_windowRe[d] = float(re);
        m_windowIm[d] = float(im);
    }

    m_rangePlan = FftwPlanner::realForward(int(m_range.fftSize), int(chirps), m_rangeIn.data(),
                                           int(m_range.fftSize), m_rangeOut.data());
    m_meanPlan =
        FftwPlanner::realForward(int(m_range.fftSize), 1, m_meanIn.data(), int(m_range.fftSize), m_binMean.data());
    // Small maps: a corner turn into contiguous rows costs less than what
    // FFTW loses on strided columns; once the spectra outgrow the cache the
    // turn costs more, and FFTW reads the columns itself.
    m_cornerTurn = chirps * bins <= kCornerTurnLimit;
    if (m_cornerTurn) {
        if (!m_dopplerIn.resize(bins * nd)) {
            error = "Out of memory for the range-Doppler buffers";
            return false;
        }
        m_dopplerPlan = FftwPlanner::complexForward(int(nd), int(bins), m_dopplerIn.data(), m_dopplerOut.data());
    } else {
        m_dopplerPlan = FftwPlanner::complexColumns(int(nd), int(bins), m_rangeOut.data(), int(bins + 1),
                                                    m_dopplerOut.data());
    }
    if (!m_rangePlan || !m_meanPlan || !m_dopplerPlan) {
        error = "The FFT library could not plan the range-Doppler transforms";
        return false;
    }
    return true;
}

std::string RangeDopplerTransform::checkInput(const vrn_Matrix_R_s& input) const
{
    if (input.rows != chirps() || input.cols != samples())
        return "The input matrix is " + std::to_string(input.rows) + " x " + std::to_string(input.cols) +
               " but the windows expect " + std::to_string(chirps()) + " chirps x " + std::to_string(samples()) +
               " samples";
    return std::string();
}

VRNSIM_WIDE_LOOPS void RangeDopplerTransform::run(const vrn_Matrix_R_s& input)
{
    const uint32_t samples = this->samples();
    const uint32_t chirps = this->chirps();
    const uint32_t rangeFft = m_range.fftSize;
    const float* __restrict rangeWindow = m_range.window.data();
    // Plain or window-weighted mean over a chirp, see Stage::weightedMean.
    const float* __restrict rangeWeight = m_range.weightedMean ? rangeWindow : m_ones.data();
    const float rangeScale = m_rangeWeightInverse;
    const bool dopplerMean = m_doppler.meanRemoval;
    float* __restrict meanChirp = m_meanIn.data();
    if (dopplerMean)
        std::fill(meanChirp, meanChirp + samples, 0.0f);

    for (uint32_t k = 0; k < chirps; ++k) {
        const float* __restrict x = input.data + size_t(k) * input.stride;
        float* __restrict in = m_rangeIn.data() + size_t(k) * rangeFft;
        const float mean = m_range.meanRemoval ? weightedSum(x, rangeWeight, samples) * rangeScale : 0.0f;
        const float dopplerWeight = m_doppler.window[k];
        if (dopplerMean) {
            const float share = m_chirpWeight[k];
            for (uint32_t n = 0; n < samples; ++n) {
                const float v = (x[n] - mean) * rangeWindow[n];
                in[n] = v * dopplerWeight;
                meanChirp[n] += v * share;
            }
        } else {
            for (uint32_t n = 0; n < samples; ++n)
                in[n] = (x[n] - mean) * rangeWindow[n] * dopplerWeight;
        }
    }
    fftwf_execute_dft_r2c(m_rangePlan, m_rangeIn.data(), m_rangeOut.data());
    if (m_cornerTurn) {
        turnCorner();
        fftwf_execute_dft(m_dopplerPlan, m_dopplerIn.data(), m_dopplerOut.data());
    } else {
        fftwf_execute_dft(m_dopplerPlan, m_rangeOut.data(), m_dopplerOut.data());
    }
    if (dopplerMean)
        fftwf_execute_dft_r2c(m_meanPlan, m_meanIn.data(), m_binMean.data());
    m_meanDone = !dopplerMean;
}

// Chirp-major range spectra into one row per range bin, in tiles that stay
// in the first-level cache on both sides.
void RangeDopplerTransform::turnCorner()
{
    constexpr size_t kTile = 16;
    const size_t chirps = this->chirps();
    const size_t bins = rangeBins();
    const size_t nd = m_doppler.fftSize;
    const size_t stride = bins + 1;
    // A complex float moves as one 64-bit word.
    const uint64_t* __restrict from = reinterpret_cast<const uint64_t*>(m_rangeOut.data());
    uint64_t* __restrict to = reinterpret_cast<uint64_t*>(m_dopplerIn.data());
    for (size_t k0 = 0; k0 < chirps; k0 += kTile) {
        const size_t k1 = std::min(k0 + kTile, chirps);
        for (size_t b0 = 0; b0 < bins; b0 += kTile) {
            const size_t b1 = std::min(b0 + kTile, bins);
            for (size_t b = b0; b < b1; ++b)
                for (size_t k = k0; k < k1; ++k)
                    to[b * nd + k] = from[k * stride + b];
        }
    }
}

VRNSIM_WIDE_LOOPS void RangeDopplerTransform::removeMean()
{
    if (m_meanDone)
        return;
    const uint32_t nd = m_doppler.fftSize;
    const float* __restrict wr = m_windowRe.data();
    const float* __restrict wi = m_windowIm.data();
    for (uint32_t b = 0; b < rangeBins(); ++b) {
        float* __restrict d = reinterpret_cast<float*>(m_dopplerOut.data() + size_t(b) * nd);
        const float mr = m_binMean[b][0], mi = m_binMean[b][1];
        for (uint32_t i = 0; i < nd; ++i) {
            d[2 * i] -= mr * wr[i] - mi * wi[i];
            d[2 * i + 1] -= mr * wi[i] + mi * wr[i];
        }
    }
    m_meanDone = true;
}

VRNSIM_WIDE_LOOPS void RangeDopplerTransform::shiftedPower(uint32_t rangeBin, float* __restrict out) const
{
    const size_t nd = m_doppler.fftSize;
    const size_t half = nd / 2;
    const float mr = m_meanDone ? 0.0f : m_binMean[rangeBin][0];
    const float mi = m_meanDone ? 0.0f : m_binMean[rangeBin][1];
    // |d - m w|^2 over `count` bins, plain pointers and a size_t counter so
    // that the loop vectorises.
    auto span = [mr, mi](const float* __restrict d, const float* __restrict wr, const float* __restrict wi,
                         float* __restrict to, size_t count) {
        for (size_t i = 0; i < count; ++i) {
            const float re = d[2 * i] - (mr * wr[i] - mi * wi[i]);
            const float im = d[2 * i + 1] - (mr * wi[i] + mi * wr[i]);
            to[i] = re * re + im * im;
        }
    };
    // FFT bin i goes to column (i + half) mod nd: two straight runs.
    const float* d = row(rangeBin);
    span(d + 2 * half, m_windowRe.data() + half, m_windowIm.data() + half, out, nd - half);
    span(d, m_windowRe.data(), m_windowIm.data(), out + (nd - half), half);
}

}  // namespace vrnsim
