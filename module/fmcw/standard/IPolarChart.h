#pragma once

#include "fmcw/processing/RadarTrackedObject.h"

#include <QObject>
#include <QVector>
#include <memory>

// What the pipeline hands to the painted polar chart of the segmentation
// page: the configured segments once, then per refresh the tracked targets
// and which segments hold one.
class IPolarChart : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~IPolarChart() override = default;

    // Segment widths in degrees.
    virtual void setSegments(const QVector<float>& segmentsDegrees) = 0;
    virtual void setTrackedObjects(RadarTrackedObjects objects) = 0;
    virtual void setActiveSegments(std::shared_ptr<const QVector<int>> segments) = 0;
};
