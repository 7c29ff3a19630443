#pragma once

#include <sdk/vrn.h>

#include <string>

namespace vrnsim {

// Checks of the processing records shared by the range spectrum and the
// range-Doppler map. Each answers an empty text or the reason for refusal.
class ConfigCheck
{
public:
    // `stage` names the FFT in the text, e.g. "range FFT".
    static std::string fft(const vrn_PPFFT_Config_t& config, const std::string& stage);
    static std::string scale(vrn_Scale_Type_t type, float threshold);
    static std::string matrix(const vrn_Matrix_R_s* matrix, const char* what);
};

}  // namespace vrnsim
