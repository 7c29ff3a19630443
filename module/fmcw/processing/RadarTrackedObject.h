#pragma once

#include <QVector>
#include <QtGlobal>

#include <memory>

// One target the segmentation follows from frame to frame.
struct RadarTrackedObject {
    quint32 id = 0;       // stable while the target is followed
    float distance = 0.0f; // m
    float angle = 0.0f;    // degrees, 0 straight ahead, positive to the right
    float speed = 0.0f;    // m/s, positive when receding
};

using RadarTrackedObjects = std::shared_ptr<const QVector<RadarTrackedObject>>;
