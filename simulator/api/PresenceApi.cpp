#include "Api.h"

#include "ChipModel.h"
#include "ConfigCheck.h"
#include "ErrorText.h"
#include "MetricsTranslator.h"
#include "PresenceHandle.h"

#include <memory>
#include <new>

namespace vrnsim {
namespace ps {

namespace {

bool valid(vrn_PresenceSensing_Handle handle)
{
    return handle && handle->magic == vrn_PresenceSensing_s::kMagic;
}

vrn_Error_t badHandle()
{
    return ErrorText::set("The presence sensing handle is null or was destroyed");
}

// The frames presence sensing is tuned for: one receiver, 15 cm range
// resolution, 9.6 m, five frames a second.
vrn_Metrics_t defaultMetrics()
{
    vrn_Metrics_t m = MetricsTranslator::defaultMetrics();
    m.rx_mask = 0x4;
    m.range_resolution_m = 0.15f;
    m.frame_repetition_time_s = 0.2f;
    return m;
}

}  // namespace

vrn_Error_t defaultConfig(vrn_Device_Type_t type, vrn_PresenceSensing_Config_t* config)
{
    if (!config)
        return ErrorText::set("The configuration output pointer is null");
    const ChipModel* chip = ChipModel::byType(type);
    if (!chip || chip->pulsedDoppler)
        return ErrorText::set("Presence sensing needs an FMCW chip (KMR7A, KMR7B or KMR7C)");
    vrn_Device_Config_t device{};
    std::string error;
    if (!MetricsTranslator::translate(*chip, defaultMetrics(), device, error))
        return ErrorText::set(error);
    *config = PresenceDetector::defaults(device);
    return nullptr;
}

vrn_Error_t rangeResolution(const vrn_Device_Config_t* config, float* meters)
{
    if (!config || !meters)
        return ErrorText::set("Range resolution needs a device configuration and an output pointer");
    const double length = PresenceDetector::binLength(*config);
    if (length <= 0.0)
        return ErrorText::set("The device configuration has no bandwidth or no samples per chirp");
    *meters = float(length);
    return nullptr;
}

vrn_Error_t create(const vrn_PresenceSensing_Config_t* config, vrn_PresenceSensing_Handle* handle)
{
    if (!config || !handle)
        return ErrorText::set("Presence sensing creation needs a configuration and an output pointer");
    std::string error = PresenceDetector::check(*config);
    if (!error.empty())
        return ErrorText::set(error);
    std::unique_ptr<vrn_PresenceSensing_s> ps(new (std::nothrow) vrn_PresenceSensing_s);
    if (!ps)
        return ErrorText::set("Out of memory while creating presence sensing");
    if (!ps->detector.init(*config, error))
        return ErrorText::set(error);
    *handle = ps.release();
    return nullptr;
}

vrn_Error_t destroy(vrn_PresenceSensing_Handle handle)
{
    if (!valid(handle))
        return badHandle();
    delete handle;
    return nullptr;
}

// The algorithm works on the channel's chirps x samples matrix as it is.
vrn_Error_t inputMatrix(const vrn_Matrix_R_s* channel, const vrn_Matrix_R_s** input)
{
    if (!input)
        return ErrorText::set("The input output pointer is null");
    const std::string error = ConfigCheck::matrix(channel, "channel");
    if (!error.empty())
        return ErrorText::set(error);
    *input = channel;
    return nullptr;
}

vrn_Error_t run(vrn_PresenceSensing_Handle handle, const vrn_Matrix_R_s* input,
                vrn_PresenceSensing_Result_t* result)
{
    if (!valid(handle))
        return badHandle();
    if (!result)
        return ErrorText::set("The result output pointer is null");
    std::string error = ConfigCheck::matrix(input, "input");
    if (error.empty())
        error = handle->detector.checkInput(*input);
    if (!error.empty())
        return ErrorText::set(error);
    std::lock_guard<std::mutex> lock(handle->mutex);
    *result = handle->detector.run(*input);
    return nullptr;
}

}  // namespace ps
}  // namespace vrnsim
