#include "TargetTracker.h"

#include <algorithm>
#include <cmath>

namespace vrnsim {

namespace {

constexpr double kGateM = 0.75;      // a walking person moves well under this per frame
constexpr double kSmoothing = 0.5;   // weight of the new detection with hysteresis
constexpr uint32_t kHitsToShow = 2;
constexpr uint32_t kMissesToKeep = 3;
constexpr double kDeg = M_PI / 180.0;

}  // namespace

void TargetTracker::configure(const Setup& setup)
{
    m_setup = setup;
    m_tracks.clear();
    m_lastId = 0;
}

uint32_t TargetTracker::nextId()
{
    // Identifiers count up from 1 and skip any still in use after a wrap.
    do {
        m_lastId = m_lastId == UINT32_MAX ? 1 : m_lastId + 1;
    } while (std::any_of(m_tracks.begin(), m_tracks.end(), [&](const Track& t) { return t.id == m_lastId; }));
    return m_lastId;
}

bool TargetTracker::shown(const Track& track) const
{
    return !m_setup.hysteresis || track.hits >= kHitsToShow;
}

void TargetTracker::update(const std::vector<Detection>& detections)
{
    struct Pair {
        double distance;
        size_t track, detection;
    };
    std::vector<double> dx(detections.size()), dy(detections.size());
    for (size_t j = 0; j < detections.size(); ++j) {
        dx[j] = detections[j].rangeM * std::sin(detections[j].angleDeg * kDeg);
        dy[j] = detections[j].rangeM * std::cos(detections[j].angleDeg * kDeg);
    }
    std::vector<Pair> pairs;
    for (size_t i = 0; i < m_tracks.size(); ++i)
        for (size_t j = 0; j < detections.size(); ++j) {
            const double d = std::hypot(m_tracks[i].x - dx[j], m_tracks[i].y - dy[j]);
            if (d <= kGateM)
                pairs.push_back({d, i, j});
        }
    std::sort(pairs.begin(), pairs.end(), [](const Pair& a, const Pair& b) { return a.distance < b.distance; });

    std::vector<bool> trackMatched(m_tracks.size(), false), detectionUsed(detections.size(), false);
    const double weight = m_setup.hysteresis ? kSmoothing : 1.0;
    for (const Pair& p : pairs) {
        if (trackMatched[p.track] || detectionUsed[p.detection])
            continue;
        trackMatched[p.track] = detectionUsed[p.detection] = true;
        Track& t = m_tracks[p.track];
        t.x += weight * (dx[p.detection] - t.x);
        t.y += weight * (dy[p.detection] - t.y);
        t.speed += weight * (detections[p.detection].speedMs - t.speed);
        ++t.hits;
        t.misses = 0;
    }
    const uint32_t missesToKeep = m_setup.hysteresis ? kMissesToKeep : 0;
    std::vector<Track> kept;
    for (size_t i = 0; i < m_tracks.size(); ++i) {
        Track& t = m_tracks[i];
        if (!trackMatched[i] && ++t.misses > missesToKeep)
            continue;
        kept.push_back(t);
    }
    m_tracks.swap(kept);
    // Strongest detections first claim the free track slots.
    for (size_t j = 0; j < detections.size() && m_tracks.size() < m_setup.maxTracks; ++j) {
        if (detectionUsed[j])
            continue;
        Track t;
        t.id = nextId();
        t.x = dx[j];
        t.y = dy[j];
        t.speed = detections[j].speedMs;
        t.hits = 1;
        m_tracks.push_back(t);
    }
}

void TargetTracker::fill(vrn_Segmentation_Result_t& result) const
{
    result = vrn_Segmentation_Result_t{};
    const size_t segments = std::min<size_t>(m_setup.segmentWidthsDeg.size(), VRN_SEGMENTATION_MAX_SEGMENTS);
    double total = 0.0;
    for (size_t s = 0; s < segments; ++s)
        total += m_setup.segmentWidthsDeg[s];
    result.num_segments = uint32_t(segments);
    for (const Track& t : m_tracks) {
        if (!shown(t) || result.num_tracks >= VRN_SEGMENTATION_MAX_TRACKS)
            continue;
        const double range = std::hypot(t.x, t.y);
        const double angle = std::atan2(t.x, t.y) / kDeg;
        vrn_Segmentation_Track_t& out = result.tracks[result.num_tracks++];
        out.id = t.id;
        out.range_m = float(range);
        out.angle_deg = float(angle);
        out.speed_m_s = float(t.speed);
        if (range > m_setup.maxRangeM)
            continue;
        double low = -total / 2.0;
        for (size_t s = 0; s < segments; ++s) {
            const double high = low + m_setup.segmentWidthsDeg[s];
            const bool last = s + 1 == segments;
            if (angle >= low && (angle < high || (last && angle <= high)))
                result.segment_occupied[s] = 1;
            low = high;
        }
    }
}

}  // namespace vrnsim
