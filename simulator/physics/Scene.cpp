#include "Scene.h"

#include <cmath>

namespace vrnsim {

TargetState Scene::stateAt(const Target& target, double t) const
{
    TargetState s;
    const double lo = target.minRangeM;
    const double span = target.maxRangeM - target.minRangeM;
    if (target.speedMs == 0.0 || span <= 0.0) {
        s.rangeM = target.rangeM;
        s.speedMs = 0.0;
    } else {
        // Unfold the bouncing motion onto a line of period 2 * span, then fold
        // it back: the rising half moves with the configured speed, the
        // falling half against it.
        double u = std::fmod(target.rangeM - lo + target.speedMs * t, 2.0 * span);
        if (u < 0)
            u += 2.0 * span;
        if (u <= span) {
            s.rangeM = lo + u;
            s.speedMs = target.speedMs;
        } else {
            s.rangeM = lo + 2.0 * span - u;
            s.speedMs = -target.speedMs;
        }
    }
    if (target.breathingM > 0.0) {
        const double w = 2.0 * M_PI * target.breathingHz;
        s.rangeM += target.breathingM * std::sin(w * t);
        s.speedMs += target.breathingM * w * std::cos(w * t);
    }
    return s;
}

}  // namespace vrnsim
