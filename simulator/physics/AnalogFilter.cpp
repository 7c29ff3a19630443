#include "AnalogFilter.h"

#include <cmath>

namespace vrnsim {

double AnalogFilter::lowPass(double f, double cutoffHz)
{
    const double x = f / cutoffHz;
    return 1.0 / std::sqrt(1.0 + x * x * x * x * x * x * x * x);
}

double AnalogFilter::highPass(double f, double cutoffHz)
{
    return f / std::sqrt(f * f + cutoffHz * cutoffHz);
}

}  // namespace vrnsim
