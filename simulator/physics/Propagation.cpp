#include "Propagation.h"

#include <algorithm>
#include <cmath>

namespace vrnsim {

double Propagation::amplitude(const Target& target, double rangeM, double gainDb, double txPowerDbm)
{
    constexpr double kReference = 0.2;
    const double r = std::max(rangeM, 0.05);
    const double deg = M_PI / 180.0;
    const double pattern = std::cos(target.angleDeg * deg) * std::cos(target.elevationDeg * deg);
    const double gain = std::pow(10.0, (gainDb - 33.0 + txPowerDbm - 5.0) / 20.0);
    return kReference * std::sqrt(target.rcsM2) / (r * r) * pattern * gain;
}

double Propagation::fmcwTxPowerDbm(unsigned level, unsigned maxLevel, double temperatureC)
{
    // 0.5 dB per step below 5 dBm at the top level; the amplifier loses a
    // little output as it warms up.
    const double steps = double(maxLevel) - double(std::min(level, maxLevel));
    return 5.0 - 0.5 * steps - 0.02 * (temperatureC - 25.0);
}

}  // namespace vrnsim
