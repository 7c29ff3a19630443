#include "PresenceDetector.h"

#include "FftSize.h"
#include "FftwPlanner.h"
#include "MetricsTranslator.h"
#include "WindowFunction.h"

#include <algorithm>
#include <cmath>

namespace vrnsim {

namespace {

double maxRange(const vrn_Device_Config_t& device)
{
    return PresenceDetector::binLength(device) * (FftSize::nextPowerOfTwo(device.num_samples_per_chirp) / 2);
}

}  // namespace

PresenceDetector::~PresenceDetector()
{
    FftwPlanner::destroy(m_plan);
}

double PresenceDetector::binLength(const vrn_Device_Config_t& config)
{
    const double bandwidth = double(config.upper_frequency_Hz) - double(config.lower_frequency_Hz);
    if (bandwidth <= 0.0 || config.num_samples_per_chirp == 0)
        return 0.0;
    return MetricsTranslator::rangeBinLength(bandwidth, config.num_samples_per_chirp,
                                             FftSize::nextPowerOfTwo(config.num_samples_per_chirp));
}

vrn_PresenceSensing_Config_t PresenceDetector::defaults(const vrn_Device_Config_t& device)
{
    vrn_PresenceSensing_Config_t c{};
    c.device_config = device;
    c.min_detection_range_m = 0.3f;
    c.max_detection_range_m = 5.0f;
    c.range_hysteresis_percentage = 10.0f;
    c.absence_confirm_count = 10;
    c.presence_confirm_count = 3;
    c.range_resolution_m = float(binLength(device));
    // About twenty times the motion energy that receiver noise at the
    // default gain leaves in a bin; a person at 5 m is a hundred times above.
    c.sensitivity_threshold = 1.0e-6f;
    return c;
}

std::string PresenceDetector::check(const vrn_PresenceSensing_Config_t& c)
{
    const vrn_Device_Config_t& d = c.device_config;
    if (d.num_samples_per_chirp < 8 || d.num_samples_per_chirp > 4096)
        return "Presence sensing needs 8 to 4096 samples per chirp";
    if (d.num_chirps_per_frame < 2)
        return "Presence sensing needs at least 2 chirps per frame";
    if (binLength(d) <= 0.0)
        return "The device configuration has no bandwidth (upper frequency not above lower)";
    if (!std::isfinite(c.min_detection_range_m) || !std::isfinite(c.max_detection_range_m) ||
        c.min_detection_range_m < 0.0f || c.min_detection_range_m >= c.max_detection_range_m)
        return "The minimum detection range must be at least 0 and below the maximum detection range";
    if (c.max_detection_range_m > maxRange(d) * 1.001)
        return "The maximum detection range " + std::to_string(c.max_detection_range_m) +
               " m lies beyond the frame's maximum range of " + std::to_string(maxRange(d)) + " m";
    if (!std::isfinite(c.range_hysteresis_percentage) || c.range_hysteresis_percentage < 0.0f ||
        c.range_hysteresis_percentage > 100.0f)
        return "The range hysteresis must be between 0 and 100 percent";
    if (c.absence_confirm_count == 0 || c.presence_confirm_count == 0)
        return "The presence and absence confirm counts must be at least 1";
    if (!std::isfinite(c.sensitivity_threshold) || c.sensitivity_threshold <= 0.0f)
        return "The sensitivity threshold must be positive";
    return std::string();
}

bool PresenceDetector::init(const vrn_PresenceSensing_Config_t& config, std::string& error)
{
    m_config = config;
    m_samples = config.device_config.num_samples_per_chirp;
    m_chirps = config.device_config.num_chirps_per_frame;
    m_fftSize = FftSize::nextPowerOfTwo(m_samples);
    m_binLength = binLength(config.device_config);
    const vrn_Window_Config_t window{VRN_WINDOW_BLACKMANHARRIS, m_samples, 1.0f, 0.0f};
    m_window = WindowFunction::coefficients(window, true);
    const uint32_t bins = m_fftSize / 2;
    if (!m_in.resize(size_t(m_chirps) * m_fftSize) || !m_out.resize(size_t(m_chirps) * (bins + 1))) {
        error = "Out of memory while creating presence sensing";
        return false;
    }
    m_energy.assign(bins, 0.0f);
    m_mean.assign(2 * bins, 0.0f);
    m_previous.assign(2 * bins, 0.0f);
    m_plan = FftwPlanner::realForward(int(m_fftSize), int(m_chirps), m_in.data(), int(m_fftSize), m_out.data());
    if (!m_plan) {
        error = "The FFT library could not plan presence sensing";
        return false;
    }
    return true;
}

std::string PresenceDetector::checkInput(const vrn_Matrix_R_s& input) const
{
    if (input.rows != m_chirps || input.cols != m_samples)
        return "The input matrix is " + std::to_string(input.rows) + " x " + std::to_string(input.cols) +
               " but the configuration has " + std::to_string(m_chirps) + " chirps x " +
               std::to_string(m_samples) + " samples";
    return std::string();
}

void PresenceDetector::rangeProfiles(const vrn_Matrix_R_s& input)
{
    for (uint32_t k = 0; k < m_chirps; ++k) {
        const float* x = input.data + size_t(k) * input.stride;
        float* in = m_in.data() + size_t(k) * m_fftSize;
        float mean = 0.0f;
        for (uint32_t n = 0; n < m_samples; ++n)
            mean += x[n];
        mean /= float(m_samples);
        for (uint32_t n = 0; n < m_samples; ++n)
            in[n] = (x[n] - mean) * m_window[n];
    }
    fftwf_execute_dft_r2c(m_plan, m_in.data(), m_out.data());
}

float PresenceDetector::strongest(double low, double high, uint32_t& bin) const
{
    float best = 0.0f;
    bin = 0;
    for (uint32_t b = 1; b < m_energy.size(); ++b) {
        const double range = b * m_binLength;
        if (range < low || range > high)
            continue;
        if (m_energy[b] > best) {
            best = m_energy[b];
            bin = b;
        }
    }
    return best;
}

vrn_PresenceSensing_Result_t PresenceDetector::run(const vrn_Matrix_R_s& input)
{
    rangeProfiles(input);
    const uint32_t bins = m_fftSize / 2;
    const size_t stride = bins + 1;
    const float* out = reinterpret_cast<const float*>(m_out.data());
    std::fill(m_mean.begin(), m_mean.end(), 0.0f);
    for (uint32_t k = 0; k < m_chirps; ++k)
        for (uint32_t i = 0; i < 2 * bins; ++i)
            m_mean[i] += out[2 * stride * k + i];
    const float inv = 1.0f / float(m_chirps);
    for (float& v : m_mean)
        v *= inv;
    std::fill(m_energy.begin(), m_energy.end(), 0.0f);
    for (uint32_t k = 0; k < m_chirps; ++k) {
        for (uint32_t b = 0; b < bins; ++b) {
            const float re = out[2 * (stride * k + b)] - m_mean[2 * b];
            const float im = out[2 * (stride * k + b) + 1] - m_mean[2 * b + 1];
            m_energy[b] += (re * re + im * im) * inv;
        }
    }
    if (m_havePrevious) {
        for (uint32_t b = 0; b < bins; ++b) {
            const float re = m_mean[2 * b] - m_previous[2 * b];
            const float im = m_mean[2 * b + 1] - m_previous[2 * b + 1];
            m_energy[b] += re * re + im * im;
        }
    }
    m_previous.swap(m_mean);
    m_havePrevious = true;

    double low = m_config.min_detection_range_m;
    double high = m_config.max_detection_range_m;
    if (m_present) {
        const double widen = m_config.range_hysteresis_percentage / 100.0;
        low *= 1.0 - widen;
        high *= 1.0 + widen;
    }
    uint32_t bin = 0;
    const float energy = strongest(low, high, bin);
    const bool moving = energy > m_config.sensitivity_threshold;
    if (!m_present) {
        m_moving = moving ? m_moving + 1 : 0;
        if (m_moving >= m_config.presence_confirm_count) {
            m_present = true;
            m_quiet = 0;
        }
    } else {
        m_quiet = moving ? 0 : m_quiet + 1;
        if (m_quiet >= m_config.absence_confirm_count) {
            m_present = false;
            m_moving = 0;
        }
    }
    if (moving)
        m_lastRange = float(bin * m_binLength);
    ++m_frames;

    vrn_PresenceSensing_Result_t result{};
    result.state = m_present ? VRN_PRESENCE_STATE_PRESENCE : VRN_PRESENCE_STATE_ABSENCE;
    result.target_range_m = m_present ? m_lastRange : 0.0f;
    result.motion_energy = energy;
    result.frame_count = m_frames;
    return result;
}

}  // namespace vrnsim
