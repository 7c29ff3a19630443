#pragma once

#include "fmcw/processing/RadarTrackedObject.h"

// What segmentation found in one frame. Both are empty pointers when the
// frame could not be processed.
struct RadarSegmentationResult {
    RadarTrackedObjects trackedObjects;
    // One entry per configured segment: 1 when a target lies in it, else 0;
    // the polar chart's highlight list.
    std::shared_ptr<const QVector<int>> segments;
};
