#pragma once

#include <QtGlobal>

#include <vector>

// One frame as the recording files hold it: its number and its samples,
// flattened antenna by antenna, chirp by chirp, sample by sample.
struct RadarFrameRecord
{
    qint32 frameNumber = 0;
    std::vector<float> samples;
};
