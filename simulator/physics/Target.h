#pragma once

namespace vrnsim {

// One reflecting object in front of a board.
struct Target {
    enum class Kind { Reflector, Person };
    Kind kind = Kind::Reflector;
    double rangeM = 1.0;        // at scene time 0
    double speedMs = 0.0;       // radial, positive moving away from the board
    double angleDeg = 0.0;      // azimuth, positive towards Rx3
    double elevationDeg = 0.0;  // positive towards Rx2
    double rcsM2 = 1.0;
    double minRangeM = 0.2;     // the target turns round at these bounds
    double maxRangeM = 20.0;
    double breathingM = 0.0;    // chest displacement amplitude
    double breathingHz = 0.25;
};

// Where a target is at one instant.
struct TargetState {
    double rangeM = 0;
    double speedMs = 0;
};

}  // namespace vrnsim
