#pragma once

// Only the alias is taken from the FMCW device's header, so the recording
// library needs no link to it.
#include "fmcw/common/SharedFrame.h"

#include <QMetaType>

#include <memory>
#include <utility>
#include <vector>

// What the recorder hands over per signal: (frame number, frame) pairs.
using RadarBuffer = std::vector<std::pair<int, SharedFrame>>;
using RadarBufferPtr = std::shared_ptr<RadarBuffer>;

Q_DECLARE_METATYPE(RadarBufferPtr)
