#pragma once

#include "sdk/vrn.h"

#include <QMetaType>

#include <memory>
#include <utility>
#include <vector>

// A frame shared read-only between the acquisition thread, the recorder and
// the file writer; its deleter hands it back to the SDK. Declared here until
// the FMCW device offers the same alias; both spell the identical type.
using SharedFrame = std::shared_ptr<const vrn_Frame_R_t>;

// What the recorder hands over per signal: (frame number, frame) pairs.
using RadarBuffer = std::vector<std::pair<int, SharedFrame>>;
using RadarBufferPtr = std::shared_ptr<RadarBuffer>;

Q_DECLARE_METATYPE(RadarBufferPtr)
