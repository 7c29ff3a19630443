#pragma once

#include <sdk/vrn.h>

#include <string>
#include <vector>

namespace vrnsim {

// Symmetric tapering windows (w[n] == w[size-1-n]) for the FFT stages.
class WindowFunction
{
public:
    // Empty when the record describes a window we can build, else why not.
    static std::string check(const vrn_Window_Config_t& config);
    // The bare window, peak 1 (Blackman starts and ends at 0).
    static std::vector<double> shape(vrn_Window_Type_t type, uint32_t size, double attenuationDb);
    // The coefficients an FFT stage multiplies with: the shape times the
    // scale and, when normalized, divided by its sum, so that a tone's peak
    // height depends neither on the window nor on its length.
    static std::vector<float> coefficients(const vrn_Window_Config_t& config, bool normalized);

private:
    static std::vector<double> chebyshev(uint32_t size, double attenuationDb);
};

}  // namespace vrnsim
