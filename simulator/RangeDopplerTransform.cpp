#include "RangeDopplerTransform.h"

#include "FftwPlanner.h"

#include <algorithm>

namespace vrnsim {

RangeDopplerTransform::~RangeDopplerTransform()
{
    FftwPlanner::destroy(m_rangePlan);
    FftwPlanner::destroy(m_dopplerPlan);
}

bool RangeDopplerTransform::init(Stage range, Stage doppler, std::string& error)
{
    m_range = std::move(range);
    m_doppler = std::move(doppler);
    const size_t chirps = m_doppler.window.size();
    const size_t bins = m_range.fftSize / 2;
    if (!m_rangeIn.resize(chirps * m_range.fftSize) || !m_rangeOut.resize(chirps * (bins + 1)) ||
        !m_dopplerIn.resize(bins * m_doppler.fftSize) || !m_dopplerOut.resize(bins * m_doppler.fftSize)) {
        error = "Out of memory for the range-Doppler buffers";
        return false;
    }
    m_binMean.assign(2 * bins, 0.0f);
    m_ones.assign(m_range.window.size(), 1.0f);
    double total = 0.0;
    for (float w : (m_range.weightedMean ? m_range.window : m_ones))
        total += w;
    m_rangeWeightInverse = total > 0.0 ? float(1.0 / total) : 0.0f;
    m_rangePlan = FftwPlanner::realForward(int(m_range.fftSize), int(chirps), m_rangeIn.data(),
                                           int(m_range.fftSize), m_rangeOut.data());
    m_dopplerPlan =
        FftwPlanner::complexForward(int(m_doppler.fftSize), int(bins), m_dopplerIn.data(), m_dopplerOut.data());
    if (!m_rangePlan || !m_dopplerPlan) {
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

void RangeDopplerTransform::run(const vrn_Matrix_R_s& input)
{
    const uint32_t samples = this->samples();
    const uint32_t chirps = this->chirps();
    const uint32_t rangeFft = m_range.fftSize;
    const uint32_t bins = rangeBins();
    const uint32_t dopplerFft = m_doppler.fftSize;
    const float* __restrict rangeWindow = m_range.window.data();
    // Plain or window-weighted mean over a chirp, see Stage::weightedMean.
    const float* __restrict rangeWeight = m_range.weightedMean ? rangeWindow : m_ones.data();
    const float rangeScale = m_rangeWeightInverse;

    for (uint32_t k = 0; k < chirps; ++k) {
        const float* __restrict x = input.data + size_t(k) * input.stride;
        float* __restrict in = m_rangeIn.data() + size_t(k) * rangeFft;
        float mean = 0.0f;
        if (m_range.meanRemoval) {
            for (uint32_t n = 0; n < samples; ++n)
                mean += x[n] * rangeWeight[n];
            mean *= rangeScale;
        }
        for (uint32_t n = 0; n < samples; ++n)
            in[n] = (x[n] - mean) * rangeWindow[n];
    }
    fftwf_execute_dft_r2c(m_rangePlan, m_rangeIn.data(), m_rangeOut.data());

    // Mean across the chirps per range bin, then the corner turn into one
    // contiguous row per range bin with the Doppler window applied.
    float* __restrict mean = m_binMean.data();
    std::fill(m_binMean.begin(), m_binMean.end(), 0.0f);
    const size_t rangeStride = size_t(bins) + 1;
    const float* __restrict dopplerWindow = m_doppler.window.data();
    if (m_doppler.meanRemoval) {
        float total = 0.0f;
        for (uint32_t k = 0; k < chirps; ++k) {
            const float* __restrict r = reinterpret_cast<const float*>(m_rangeOut.data() + k * rangeStride);
            const float weight = m_doppler.weightedMean ? dopplerWindow[k] : 1.0f;
            total += weight;
            for (uint32_t i = 0; i < 2 * bins; ++i)
                mean[i] += weight * r[i];
        }
        const float inv = 1.0f / total;
        for (uint32_t i = 0; i < 2 * bins; ++i)
            mean[i] *= inv;
    }
    float* __restrict d = reinterpret_cast<float*>(m_dopplerIn.data());
    for (uint32_t k = 0; k < chirps; ++k) {
        const float* __restrict r = reinterpret_cast<const float*>(m_rangeOut.data() + k * rangeStride);
        const float w = dopplerWindow[k];
        for (uint32_t b = 0; b < bins; ++b) {
            float* cell = d + 2 * (size_t(b) * dopplerFft + k);
            cell[0] = (r[2 * b] - mean[2 * b]) * w;
            cell[1] = (r[2 * b + 1] - mean[2 * b + 1]) * w;
        }
    }
    fftwf_execute_dft(m_dopplerPlan, m_dopplerIn.data(), m_dopplerOut.data());
}

}  // namespace vrnsim
