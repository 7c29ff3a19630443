#include "TargetDetector.h"

#include "RangeDopplerTransform.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace vrnsim {

namespace {

// Bins around a peak that belong to its main lobe (windows and zero padding
// of two spread a point target over a few bins each way).
constexpr int kLobeRange = 4;
constexpr int kLobeDoppler = 4;
// What a strong target leaves along its own range row or Doppler column:
// window side lobes, and the remainder of mean removal that the Doppler
// window spreads next to zero speed. A real second target there that is
// 40 dB weaker is lost with them.
constexpr float kSideLobes = 1.0e-4f;
// A target this far below the strongest one is taken for its side lobes or
// converter distortion.
constexpr float kDynamicRange = 1.0e-6f;  // 60 dB

}  // namespace

void TargetDetector::configure(const Setup& setup)
{
    m_setup = setup;
    m_firstBin = std::max<uint32_t>(1, uint32_t(std::ceil(setup.minRangeM / setup.binLengthM)));
    m_lastBin = std::min<uint32_t>(setup.rangeBins, uint32_t(std::floor(setup.maxRangeM / setup.binLengthM)) + 1);
    // The threshold over the median: noise power is exponentially
    // distributed, so a cell exceeds factor * median with probability
    // 2^-factor; about 1e-6, 1e-9 and 1e-14 from high to low.
    switch (setup.sensitivity) {
    case VRN_LEVEL_HIGH: m_thresholdFactor = 20.0; break;
    case VRN_LEVEL_LOW: m_thresholdFactor = 45.0; break;
    case VRN_LEVEL_MED:
    default: m_thresholdFactor = 30.0; break;
    }
    m_power.assign(size_t(setup.rangeBins) * setup.dopplerBins, 0.0f);
}

// Mean removal leaves a moving target's average over the frame behind as a
// constant that the Doppler window spreads over the bins next to zero; those
// bins are notched. High removal notches wider and also takes swaying
// furniture and fans.
bool TargetDetector::blanked(uint32_t doppler) const
{
    const uint32_t n = m_setup.dopplerBins;
    uint32_t notch = 0;
    switch (m_setup.staticRemoval) {
    case VRN_LEVEL_HIGH: notch = 4; break;
    case VRN_LEVEL_MED: notch = 2; break;
    default: return false;
    }
    return doppler <= notch || doppler >= n - notch;
}

bool TargetDetector::isLocalMaximum(uint32_t r, uint32_t d) const
{
    const uint32_t n = m_setup.dopplerBins;
    const float centre = m_power[size_t(r) * n + d];
    for (int dr = -1; dr <= 1; ++dr) {
        const int rr = int(r) + dr;
        if (rr < 0 || rr >= int(m_setup.rangeBins))
            continue;
        for (int dd = -1; dd <= 1; ++dd) {
            if (dr == 0 && dd == 0)
                continue;
            const uint32_t col = uint32_t((int(d) + dd + int(n)) % int(n));
            if (m_power[size_t(rr) * n + col] > centre)
                return false;
        }
    }
    return true;
}

std::vector<Detection> TargetDetector::detect(const RangeDopplerTransform& rx1, const RangeDopplerTransform& rx3)
{
    std::vector<Detection> detections;
    const uint32_t n = m_setup.dopplerBins;
    if (m_firstBin >= m_lastBin)
        return detections;
    m_scratch.clear();
    for (uint32_t r = m_firstBin; r < m_lastBin; ++r) {
        const float* a = rx1.row(r);
        const float* b = rx3.row(r);
        float* p = m_power.data() + size_t(r) * n;
        for (uint32_t d = 0; d < n; ++d) {
            p[d] = blanked(d) ? 0.0f : a[2 * d] * a[2 * d] + a[2 * d + 1] * a[2 * d + 1] + b[2 * d] * b[2 * d] +
                                           b[2 * d + 1] * b[2 * d + 1];
            m_scratch.push_back(p[d]);
        }
    }
    auto middle = m_scratch.begin() + m_scratch.size() / 2;
    std::nth_element(m_scratch.begin(), middle, m_scratch.end());
    const float threshold = float(*middle * m_thresholdFactor);

    m_peaks.clear();
    for (uint32_t r = m_firstBin; r < m_lastBin; ++r)
        for (uint32_t d = 0; d < n; ++d) {
            const float p = m_power[size_t(r) * n + d];
            if (p > threshold && p > 0.0f && isLocalMaximum(r, d))
                m_peaks.push_back({r, d, p});
        }
    std::sort(m_peaks.begin(), m_peaks.end(), [](const Peak& a, const Peak& b) { return a.power > b.power; });

    std::vector<Peak> kept;
    for (const Peak& peak : m_peaks) {
        if (kept.size() >= m_setup.maxDetections)
            break;
        if (!kept.empty() && peak.power < kept.front().power * kDynamicRange)
            break;
        const bool ownLobe = std::any_of(kept.begin(), kept.end(), [&](const Peak& k) {
            const int dd = std::abs(int(k.doppler) - int(peak.doppler));
            const int wrapped = std::min(dd, int(n) - dd);
            const bool sameRange = std::abs(int(k.range) - int(peak.range)) <= kLobeRange;
            const bool sameSpeed = wrapped <= kLobeDoppler;
            const bool faint = peak.power < k.power * kSideLobes;
            return (sameRange && sameSpeed) || (faint && (sameRange || sameSpeed));
        });
        if (!ownLobe)
            kept.push_back(peak);
    }

    for (const Peak& peak : kept) {
        const float* a = rx1.row(peak.range) + 2 * size_t(peak.doppler);
        const float* b = rx3.row(peak.range) + 2 * size_t(peak.doppler);
        // Rx1 * conj(Rx3)
        const double re = double(a[0]) * b[0] + double(a[1]) * b[1];
        const double im = double(a[1]) * b[0] - double(a[0]) * b[1];
        const double sine = std::max(-1.0, std::min(1.0, std::atan2(im, re) / M_PI));
        const int signedBin = peak.doppler < n / 2 ? int(peak.doppler) : int(peak.doppler) - int(n);
        Detection det;
        det.rangeM = float(peak.range * m_setup.binLengthM);
        det.angleDeg = float(std::asin(sine) * 180.0 / M_PI);
        det.speedMs = float(signedBin * m_setup.speedStepMs);
        det.power = peak.power;
        detections.push_back(det);
    }
    return detections;
}

}  // namespace vrnsim
