#include "Api.h"

#include "ConfigCheck.h"
#include "ErrorText.h"
#include "MetricsTranslator.h"
#include "RangeDopplerHandle.h"
#include "WindowFunction.h"

#include <cmath>
#include <memory>
#include <new>

namespace vrnsim {
namespace rdm {

namespace {

bool valid(vrn_RDM_Handle handle)
{
    return handle && handle->magic == vrn_RDM_s::kMagic;
}

vrn_Error_t badHandle()
{
    return ErrorText::set("The range-Doppler handle is null or was destroyed");
}

RangeDopplerTransform::Stage stageOf(const vrn_PPFFT_Config_t& fft)
{
    RangeDopplerTransform::Stage stage;
    stage.fftSize = fft.fft_size;
    stage.meanRemoval = fft.mean_removal_enabled != 0;
    stage.window = WindowFunction::coefficients(fft.window_config, fft.is_normalized_window != 0);
    return stage;
}

}  // namespace

vrn_Error_t create(const vrn_RDM_Config_t* config, vrn_RDM_Handle* handle)
{
    if (!config || !handle)
        return ErrorText::set("Range-Doppler creation needs a configuration and an output pointer");
    std::string error = ConfigCheck::fft(config->range_fft_config, "range FFT");
    if (error.empty())
        error = ConfigCheck::fft(config->doppler_fft_config, "Doppler FFT");
    if (error.empty())
        error = ConfigCheck::scale(config->output_scale_type, config->spect_threshold);
    if (error.empty() && config->range_fft_config.fft_size < 4)
        error = "The range FFT size must be at least 4";
    if (!error.empty())
        return ErrorText::set(error);

    std::unique_ptr<vrn_RDM_s> rdm(new (std::nothrow) vrn_RDM_s);
    if (!rdm)
        return ErrorText::set("Out of memory while creating the range-Doppler map");
    rdm->config = *config;
    rdm->scaler = SpectrumScaler(config->output_scale_type, config->spect_threshold);
    if (!rdm->power.resize(config->doppler_fft_config.fft_size))
        return ErrorText::set("Out of memory while creating the range-Doppler map");
    if (!rdm->transform.init(stageOf(config->range_fft_config), stageOf(config->doppler_fft_config), error))
        return ErrorText::set(error);
    *handle = rdm.release();
    return nullptr;
}

vrn_Error_t destroy(vrn_RDM_Handle handle)
{
    if (!valid(handle))
        return badHandle();
    delete handle;
    return nullptr;
}

// Output row r is range bin r; column Doppler FFT size / 2 is zero speed and
// a receding target (phase growing from chirp to chirp) lies right of it.
vrn_Error_t run(vrn_RDM_Handle handle, const vrn_Matrix_R_s* input, vrn_Matrix_R_s* output)
{
    if (!valid(handle))
        return badHandle();
    std::string error = ConfigCheck::matrix(input, "input");
    if (error.empty())
        error = ConfigCheck::matrix(output, "output");
    if (error.empty())
        error = handle->transform.checkInput(*input);
    const uint32_t rows = handle->transform.rangeBins();
    const uint32_t columns = handle->transform.dopplerBins();
    if (error.empty() && (output->rows != rows || output->cols != columns))
        error = "The output matrix is " + std::to_string(output->rows) + " x " + std::to_string(output->cols) +
                " but the map is " + std::to_string(rows) + " range bins x " + std::to_string(columns) +
                " Doppler bins";
    if (!error.empty())
        return ErrorText::set(error);

    std::lock_guard<std::mutex> lock(handle->mutex);
    RangeDopplerTransform& transform = handle->transform;
    transform.run(*input);
    float* power = handle->power.data();
    for (uint32_t r = 0; r < rows; ++r) {
        transform.shiftedPower(r, power);
        handle->scaler.fromPower(power, output->data + size_t(r) * output->stride, columns);
    }
    return nullptr;
}

// Range bin r lies at r * (c / 2B) * samples / range FFT size.
vrn_Error_t rangeAxis(vrn_RDM_Handle handle, uint64_t bandwidthHz, vrn_Math_Axis_Spec_s* axis)
{
    if (!valid(handle))
        return badHandle();
    if (!axis)
        return ErrorText::set("The axis output pointer is null");
    if (bandwidthHz == 0)
        return ErrorText::set("The bandwidth must be positive");
    const RangeDopplerTransform& t = handle->transform;
    const double step = MetricsTranslator::rangeBinLength(double(bandwidthHz), t.samples(), 2 * t.rangeBins());
    *axis = vrn_Math_Axis_Spec_s{0.0, step * double(t.rangeBins() - 1), step};
    return nullptr;
}

// The axis is centred on 0 like the map.
vrn_Error_t speedAxis(vrn_RDM_Handle handle, float centerFrequencyHz, float chirpRepetitionTimeS,
                      vrn_Math_Axis_Spec_s* axis)
{
    if (!valid(handle))
        return badHandle();
    if (!axis)
        return ErrorText::set("The axis output pointer is null");
    if (!std::isfinite(centerFrequencyHz) || centerFrequencyHz <= 0.0f)
        return ErrorText::set("The centre frequency must be positive");
    if (!std::isfinite(chirpRepetitionTimeS) || chirpRepetitionTimeS <= 0.0f)
        return ErrorText::set("The chirp repetition time must be positive");
    const uint32_t bins = handle->transform.dopplerBins();
    const double n = bins;
    const double step = MetricsTranslator::speedBinStep(double(centerFrequencyHz), bins, double(chirpRepetitionTimeS));
    *axis = vrn_Math_Axis_Spec_s{-step * (n / 2.0), step * (n / 2.0 - 1.0), step};
    return nullptr;
}

}  // namespace rdm
}  // namespace vrnsim
