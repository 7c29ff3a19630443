#pragma once

#include "Scene.h"

namespace vrnsim {

// Link budget of the simulated boards, in the normalised units of the ADC
// (full scale is 1, a sample sits at 0.5 without signal).
class Propagation
{
public:
    // Beat amplitude of a target: radar equation in amplitude (1/R^2,
    // square root of the RCS), element pattern cos(angle), receiver gain and
    // transmit power relative to the reference setting (33 dB, 5 dBm), at
    // which 1 m2 at 1 m gives an amplitude of 0.2.
    static double amplitude(const Target& target, double rangeM, double gainDb, double txPowerDbm);

    // Output power of an FMCW transmitter at a power level (0 = lowest).
    static double fmcwTxPowerDbm(unsigned level, unsigned maxLevel, double temperatureC);
};

}  // namespace vrnsim
