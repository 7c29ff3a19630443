#pragma once

#include "TargetDetector.h"

#include <sdk/vrn.h>

#include <vector>

namespace vrnsim {

// Keeps targets from frame to frame under stable identifiers and tells which
// angular segments hold one. Detections are matched to tracks by distance in
// the plane, nearest pairs first, within a gate. With hysteresis a track is
// shown from its second hit on, follows its detections smoothed, and
// survives three missed frames; without it a track is shown at once and ends
// at its first miss. Segments are adjacent sectors of the given widths,
// laid out from negative to positive azimuth and centred on boresight.
class TargetTracker
{
public:
    struct Setup {
        uint32_t maxTracks = 1;
        bool hysteresis = true;
        double maxRangeM = 0.0;
        std::vector<float> segmentWidthsDeg;
    };

    void configure(const Setup& setup);
    void update(const std::vector<Detection>& detections);
    void fill(vrn_Segmentation_Result_t& result) const;

private:
    struct Track {
        uint32_t id = 0;
        double x = 0.0, y = 0.0;  // metres, y along boresight, x towards Rx3
        double speed = 0.0;
        uint32_t hits = 0;
        uint32_t misses = 0;
    };
    bool shown(const Track& track) const;
    uint32_t nextId();

    Setup m_setup;
    std::vector<Track> m_tracks;
    uint32_t m_lastId = 0;
};

}  // namespace vrnsim
