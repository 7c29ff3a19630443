#pragma once

#include "Target.h"

#include <vector>

namespace vrnsim {

class Scene
{
public:
    std::vector<Target> targets;

    // Position and radial speed of a target at scene time t (seconds). Motion
    // is a pure function of time so frames depend only on their time stamp.
    TargetState stateAt(const Target& target, double t) const;
};

}  // namespace vrnsim
