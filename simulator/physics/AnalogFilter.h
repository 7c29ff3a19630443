#pragma once

namespace vrnsim {

// Magnitude responses of the analog filters between the mixer and the
// converter, at a frequency f in Hz.
class AnalogFilter
{
public:
    // Fourth-order Butterworth low pass: the anti-alias filters.
    static double lowPass(double f, double cutoffHz);
    // First-order high pass: the CW baseband's DC block.
    static double highPass(double f, double cutoffHz);
};

}  // namespace vrnsim
