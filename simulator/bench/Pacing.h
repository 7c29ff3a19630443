#pragma once

namespace vrnsim {

// Timing of one running acquisition.
struct Pacing {
    double frameTimeS = 0.1;
    double burstS = 0.0;      // time the chirps of one frame take
    double duty = 0.0;        // share of time the transmitter emits
    // An FMCW board answers the fetch after its FIFO overflowed with a fetch
    // failure, so the host knows frames are missing; a pulsed-Doppler board
    // keeps only the newest frames and says nothing.
    bool reportsOverflow = false;
};

}  // namespace vrnsim
