#include "Api.h"

#include "ConfigCheck.h"
#include "ErrorText.h"
#include "FftSize.h"
#include "FftwPlanner.h"
#include "RangeSpectrumHandle.h"
#include "WindowFunction.h"

#include <cmath>
#include <memory>
#include <new>

vrn_RS_s::~vrn_RS_s()
{
    magic = 0;
    vrnsim::FftwPlanner::destroy(realPlan);
    vrnsim::FftwPlanner::destroy(complexPlan);
}

namespace vrnsim {
namespace rs {

namespace {

bool valid(vrn_RS_Handle handle)
{
    return handle && handle->magic == vrn_RS_s::kMagic;
}

vrn_Error_t badHandle()
{
    return ErrorText::set("The range spectrum handle is null or was destroyed");
}

std::string checkOutput(const vrn_RS_s& rs, const vrn_Vector_R_s* output)
{
    const uint32_t bins = rs.config.fft_config.fft_size / 2;
    if (!output || !output->data)
        return "The output vector is null";
    if (output->len != bins)
        return "The output vector holds " + std::to_string(output->len) + " values but the spectrum has " +
               std::to_string(bins);
    return std::string();
}

std::string checkColumns(const vrn_RS_s& rs, uint32_t columns)
{
    const uint32_t window = rs.config.fft_config.window_config.size;
    if (columns != window)
        return "The input has " + std::to_string(columns) + " samples per chirp but the window has " +
               std::to_string(window);
    return std::string();
}

void writeSpectrum(vrn_RS_s& rs, float* output)
{
    const uint32_t bins = rs.config.fft_config.fft_size / 2;
    SpectrumScaler::power(reinterpret_cast<const float*>(rs.out.data()), rs.power.data(), bins);
    rs.scaler.fromPower(rs.power.data(), output, bins);
}

}  // namespace

vrn_Error_t create(const vrn_RS_Config_t* config, vrn_RS_Handle* handle)
{
    if (!config || !handle)
        return ErrorText::set("Range spectrum creation needs a configuration and an output pointer");
    std::string error = ConfigCheck::fft(config->fft_config, "range FFT");
    if (error.empty())
        error = ConfigCheck::scale(config->output_scale_type, config->spect_threshold);
    if (!error.empty())
        return ErrorText::set(error);

    std::unique_ptr<vrn_RS_s> rs(new (std::nothrow) vrn_RS_s);
    if (!rs)
        return ErrorText::set("Out of memory while creating the range spectrum");
    rs->config = *config;
    const vrn_PPFFT_Config_t& fft = config->fft_config;
    rs->window = WindowFunction::coefficients(fft.window_config, fft.is_normalized_window != 0);
    rs->scaler = SpectrumScaler(config->output_scale_type, config->spect_threshold);
    const uint32_t n = fft.fft_size;
    if (!rs->realIn.resize(n) || !rs->complexIn.resize(n) || !rs->out.resize(n) || !rs->power.resize(n / 2))
        return ErrorText::set("Out of memory while creating the range spectrum");
    rs->realPlan = FftwPlanner::realForward(int(n), 1, rs->realIn.data(), int(n), rs->out.data());
    rs->complexPlan = FftwPlanner::complexForward(int(n), 1, rs->complexIn.data(), rs->out.data());
    if (!rs->realPlan || !rs->complexPlan)
        return ErrorText::set("The FFT library could not plan the range spectrum");
    *handle = rs.release();
    return nullptr;
}

vrn_Error_t destroy(vrn_RS_Handle handle)
{
    if (!valid(handle))
        return badHandle();
    delete handle;
    return nullptr;
}

// Real input: the first chirp of the matrix only.
vrn_Error_t run(vrn_RS_Handle handle, const vrn_Matrix_R_s* input, vrn_Vector_R_s* output)
{
    if (!valid(handle))
        return badHandle();
    std::string error = ConfigCheck::matrix(input, "input");
    if (error.empty())
        error = checkColumns(*handle, input->cols);
    if (error.empty())
        error = checkOutput(*handle, output);
    if (!error.empty())
        return ErrorText::set(error);

    std::lock_guard<std::mutex> lock(handle->mutex);
    const uint32_t samples = input->cols;
    const float* __restrict x = input->data;
    const float* __restrict w = handle->window.data();
    float* __restrict in = handle->realIn.data();
    float mean = 0.0f;
    if (handle->config.fft_config.mean_removal_enabled) {
        for (uint32_t n = 0; n < samples; ++n)
            mean += x[n];
        mean /= float(samples);
    }
    for (uint32_t n = 0; n < samples; ++n)
        in[n] = (x[n] - mean) * w[n];
    fftwf_execute_dft_r2c(handle->realPlan, in, handle->out.data());
    writeSpectrum(*handle, output->data);
    return nullptr;
}

// Complex (I/Q) input: the first row, positive-frequency half of the spectrum.
vrn_Error_t runComplex(vrn_RS_Handle handle, const vrn_Matrix_C_s* input, vrn_Vector_R_s* output)
{
    if (!valid(handle))
        return badHandle();
    if (!input || !input->data || input->rows == 0 || input->cols == 0)
        return ErrorText::set("The input matrix is null or empty");
    std::string error = checkColumns(*handle, input->cols);
    if (error.empty())
        error = checkOutput(*handle, output);
    if (!error.empty())
        return ErrorText::set(error);

    std::lock_guard<std::mutex> lock(handle->mutex);
    const uint32_t samples = input->cols;
    const vrn_Complex_t* x = input->data;
    float meanRe = 0.0f, meanIm = 0.0f;
    if (handle->config.fft_config.mean_removal_enabled) {
        for (uint32_t n = 0; n < samples; ++n) {
            meanRe += x[n].re;
            meanIm += x[n].im;
        }
        meanRe /= float(samples);
        meanIm /= float(samples);
    }
    fftwf_complex* in = handle->complexIn.data();
    for (uint32_t n = 0; n < samples; ++n) {
        in[n][0] = (x[n].re - meanRe) * handle->window[n];
        in[n][1] = (x[n].im - meanIm) * handle->window[n];
    }
    fftwf_execute_dft(handle->complexPlan, in, handle->out.data());
    writeSpectrum(*handle, output->data);
    return nullptr;
}

// Bin k of a zero-padded spectrum lies at k * 2 R_max / FFT size.
vrn_Error_t distanceAxis(uint32_t fftSize, uint32_t samplesPerChirp, float maxRangeM, vrn_Math_Axis_Spec_s* axis)
{
    if (!axis)
        return ErrorText::set("The axis output pointer is null");
    if (!FftSize::isPowerOfTwo(fftSize) || fftSize < 2)
        return ErrorText::set("The FFT size " + std::to_string(fftSize) + " is not a power of two");
    if (samplesPerChirp == 0 || samplesPerChirp > fftSize)
        return ErrorText::set("The samples per chirp must be between 1 and the FFT size");
    if (!std::isfinite(maxRangeM) || maxRangeM <= 0.0f)
        return ErrorText::set("The maximum range must be a positive number of metres");
    const double step = 2.0 * double(maxRangeM) / double(fftSize);
    *axis = vrn_Math_Axis_Spec_s{0.0, step * double(fftSize / 2 - 1), step};
    return nullptr;
}

vrn_Error_t frequencyAxis(uint32_t fftSize, float sampleRateHz, vrn_Math_Axis_Spec_s* axis)
{
    if (!axis)
        return ErrorText::set("The axis output pointer is null");
    if (!FftSize::isPowerOfTwo(fftSize) || fftSize < 2)
        return ErrorText::set("The FFT size " + std::to_string(fftSize) + " is not a power of two");
    if (!std::isfinite(sampleRateHz) || sampleRateHz <= 0.0f)
        return ErrorText::set("The sample rate must be a positive number of Hz");
    const double step = double(sampleRateHz) / double(fftSize);
    *axis = vrn_Math_Axis_Spec_s{0.0, step * double(fftSize / 2 - 1), step};
    return nullptr;
}

}  // namespace rs
}  // namespace vrnsim
