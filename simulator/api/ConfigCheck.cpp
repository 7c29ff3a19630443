#include "ConfigCheck.h"

#include "FftSize.h"
#include "WindowFunction.h"

#include <cmath>

namespace vrnsim {

std::string ConfigCheck::fft(const vrn_PPFFT_Config_t& config, const std::string& stage)
{
    if (config.fft_type != VRN_FFT_TYPE_R2C && config.fft_type != VRN_FFT_TYPE_C2C)
        return "Unknown " + stage + " type " + std::to_string(int(config.fft_type)) + " (1 real, 2 complex)";
    if (!FftSize::isPowerOfTwo(config.fft_size) || config.fft_size < 2 || config.fft_size > FftSize::kMax)
        return "The " + stage + " size " + std::to_string(config.fft_size) +
               " is not a power of two between 2 and " + std::to_string(FftSize::kMax);
    const std::string window = WindowFunction::check(config.window_config);
    if (!window.empty())
        return window + " (" + stage + ")";
    if (config.window_config.size > config.fft_size)
        return "The " + stage + " size " + std::to_string(config.fft_size) + " is smaller than its window of " +
               std::to_string(config.window_config.size) + " samples";
    return std::string();
}

std::string ConfigCheck::scale(vrn_Scale_Type_t type, float threshold)
{
    if (type != VRN_SCALE_TYPE_LINEAR && type != VRN_SCALE_TYPE_DECIBEL_10LOG &&
        type != VRN_SCALE_TYPE_DECIBEL_20LOG)
        return "Unknown output scale type " + std::to_string(int(type)) + " (0, 10 or 20)";
    if (!std::isfinite(threshold) || threshold < 0.0f)
        return "The spectrum threshold must be a finite number of at least 0";
    if (type != VRN_SCALE_TYPE_LINEAR && threshold <= 0.0f)
        return "A decibel scale needs a positive spectrum threshold";
    return std::string();
}

std::string ConfigCheck::matrix(const vrn_Matrix_R_s* matrix, const char* what)
{
    if (!matrix)
        return std::string("The ") + what + " matrix is null";
    if (!matrix->data || matrix->rows == 0 || matrix->cols == 0 || matrix->stride < matrix->cols)
        return std::string("The ") + what + " matrix has no data or an invalid shape";
    return std::string();
}

}  // namespace vrnsim
