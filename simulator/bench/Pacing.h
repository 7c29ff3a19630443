#pragma once

namespace vrnsim {

// Timing of one running acquisition.
struct Pacing {
    double frameTimeS = 0.1;
    double burstS = 0.0;      // time the chirps of one frame take
    double duty = 0.0;        // share of time the transmitter emits
};

}  // namespace vrnsim
