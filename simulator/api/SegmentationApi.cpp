#include "Api.h"

#include "ChipModel.h"
#include "ConfigCheck.h"
#include "ErrorText.h"
#include "FftSize.h"
#include "MetricsTranslator.h"
#include "SegmentationHandle.h"
#include "WindowFunction.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>

namespace vrnsim {
namespace seg {

namespace {

constexpr double kDefaultMaxRangeM = 5.0;

bool valid(vrn_Segmentation_Handle handle)
{
    return handle && handle->magic == vrn_Segmentation_s::kMagic;
}

vrn_Error_t badHandle()
{
    return ErrorText::set("The segmentation handle is null or was destroyed");
}

bool positive(float v)
{
    return std::isfinite(v) && v > 0.0f;
}

bool isLevel(vrn_Level_t level)
{
    return level == VRN_LEVEL_HIGH || level == VRN_LEVEL_MED || level == VRN_LEVEL_LOW;
}

std::string check(const vrn_Segmentation_Config_t& c)
{
    if (c.num_samples_per_chirp < 8 || c.num_samples_per_chirp > 4096)
        return "Segmentation needs 8 to 4096 samples per chirp";
    if (c.num_chirps_per_frame < 4 || c.num_chirps_per_frame > 1024)
        return "Segmentation needs 4 to 1024 chirps per frame";
    if (!positive(c.bandwidth_Hz) || !positive(c.chirp_repetition_time_s) || !positive(c.center_frequency_Hz))
        return "The bandwidth, chirp repetition time and centre frequency must be positive";
    if (!positive(c.max_detection_range_m))
        return "The maximum detection range must be positive";
    if (c.max_num_tracks < 1 || c.max_num_tracks > VRN_SEGMENTATION_MAX_TRACKS)
        return "The maximum number of tracks must be between 1 and " + std::to_string(VRN_SEGMENTATION_MAX_TRACKS);
    if (c.num_segments < 1 || c.num_segments > VRN_SEGMENTATION_MAX_SEGMENTS)
        return "Segmentation needs 1 to " + std::to_string(VRN_SEGMENTATION_MAX_SEGMENTS) + " segments";
    for (uint32_t s = 0; s < c.num_segments; ++s)
        if (!positive(c.segments_degrees[s]) || c.segments_degrees[s] > 360.0f)
            return "Segment " + std::to_string(s) + " must be wider than 0 and at most 360 degrees";
    if (!isLevel(c.detection_sensitivity) || !isLevel(c.static_target_removal))
        return "The detection sensitivity and static target removal must be High (0), Med (1) or Low (2)";
    return std::string();
}

RangeDopplerTransform::Stage stage(uint32_t length, vrn_Window_Type_t type, bool meanRemoval)
{
    RangeDopplerTransform::Stage s;
    // Zero padding by two keeps a target's peak within half a bin of the
    // grid and costs little at these sizes.
    s.fftSize = 2 * FftSize::nextPowerOfTwo(length);
    s.meanRemoval = meanRemoval;
    s.weightedMean = true;
    s.window = WindowFunction::coefficients(vrn_Window_Config_t{type, length, 1.0f, 0.0f}, true);
    return s;
}

}  // namespace

vrn_Error_t defaultConfig(vrn_Device_Type_t type, const vrn_Device_Config_t* device,
                          vrn_Segmentation_Config_t* config)
{
    if (!device || !config)
        return ErrorText::set("Segmentation defaults need a device configuration and an output pointer");
    const ChipModel* chip = ChipModel::byType(type);
    if (!chip || chip->pulsedDoppler)
        return ErrorText::set("Segmentation needs an FMCW chip (KMR7A, KMR7B or KMR7C)");
    const double bandwidth = double(device->upper_frequency_Hz) - double(device->lower_frequency_Hz);
    if (bandwidth <= 0.0 || device->num_samples_per_chirp == 0 || device->num_chirps_per_frame == 0)
        return ErrorText::set("The device configuration has no bandwidth, samples or chirps");
    vrn_Segmentation_Config_t c{};
    c.num_samples_per_chirp = device->num_samples_per_chirp;
    c.num_chirps_per_frame = device->num_chirps_per_frame;
    c.bandwidth_Hz = float(bandwidth);
    c.chirp_repetition_time_s = device->chirp_repetition_time_s;
    c.center_frequency_Hz = float((double(device->lower_frequency_Hz) + double(device->upper_frequency_Hz)) / 2.0);
    const double maxRange = MetricsTranslator::kSpeedOfLight / (2.0 * bandwidth) * device->num_samples_per_chirp / 2.0;
    c.max_detection_range_m = float(std::min(kDefaultMaxRangeM, maxRange));
    c.enable_hysteresis = 1;
    c.max_num_tracks = 5;
    c.num_segments = 3;
    c.segments_degrees[0] = c.segments_degrees[1] = c.segments_degrees[2] = 40.0f;
    c.detection_sensitivity = VRN_LEVEL_MED;
    c.static_target_removal = VRN_LEVEL_MED;
    *config = c;
    return nullptr;
}

vrn_Error_t create(const vrn_Segmentation_Config_t* config, vrn_Segmentation_Handle* handle)
{
    if (!config || !handle)
        return ErrorText::set("Segmentation creation needs a configuration and an output pointer");
    std::string error = check(*config);
    if (!error.empty())
        return ErrorText::set(error);
    std::unique_ptr<vrn_Segmentation_s> seg(new (std::nothrow) vrn_Segmentation_s);
    if (!seg)
        return ErrorText::set("Out of memory while creating segmentation");
    seg->config = *config;
    const uint32_t samples = config->num_samples_per_chirp;
    const uint32_t chirps = config->num_chirps_per_frame;
    const bool meanAcrossChirps = config->static_target_removal != VRN_LEVEL_LOW;
    for (RangeDopplerTransform* t : {&seg->rx1, &seg->rx3}) {
        if (!t->init(stage(samples, VRN_WINDOW_BLACKMANHARRIS, true), stage(chirps, VRN_WINDOW_BLACKMANHARRIS, meanAcrossChirps),
                     error))
            return ErrorText::set(error);
    }
    TargetDetector::Setup detection;
    detection.rangeBins = seg->rx1.rangeBins();
    detection.dopplerBins = seg->rx1.dopplerBins();
    detection.binLengthM =
        MetricsTranslator::rangeBinLength(double(config->bandwidth_Hz), samples, 2 * seg->rx1.rangeBins());
    detection.speedStepMs = MetricsTranslator::speedBinStep(double(config->center_frequency_Hz), seg->rx1.dopplerBins(),
                                                            double(config->chirp_repetition_time_s));
    detection.maxRangeM = config->max_detection_range_m;
    detection.sensitivity = config->detection_sensitivity;
    detection.staticRemoval = config->static_target_removal;
    detection.maxDetections = VRN_SEGMENTATION_MAX_TRACKS;
    seg->detector.configure(detection);

    TargetTracker::Setup tracking;
    tracking.maxTracks = config->max_num_tracks;
    tracking.hysteresis = config->enable_hysteresis != 0;
    tracking.maxRangeM = config->max_detection_range_m;
    tracking.segmentWidthsDeg.assign(config->segments_degrees, config->segments_degrees + config->num_segments);
    seg->tracker.configure(tracking);
    *handle = seg.release();
    return nullptr;
}

vrn_Error_t destroy(vrn_Segmentation_Handle handle)
{
    if (!valid(handle))
        return badHandle();
    delete handle;
    return nullptr;
}

vrn_Error_t run(vrn_Segmentation_Handle handle, const vrn_Frame_R_t* frame, vrn_Segmentation_Result_t* result)
{
    if (!valid(handle))
        return badHandle();
    if (!frame || !result)
        return ErrorText::set("Segmentation needs a frame and a result pointer");
    if (frame->num_rx != 2 || !frame->rx_data)
        return ErrorText::set("Segmentation needs a frame of the two channels Rx1 and Rx3; this one has " +
                              std::to_string(frame->num_rx));
    std::string error;
    for (uint32_t i = 0; i < 2 && error.empty(); ++i) {
        error = ConfigCheck::matrix(frame->rx_data[i], "channel");
        if (error.empty())
            error = handle->rx1.checkInput(*frame->rx_data[i]);
    }
    if (!error.empty())
        return ErrorText::set(error);

    std::lock_guard<std::mutex> lock(handle->mutex);
    handle->rx1.run(*frame->rx_data[0]);
    handle->rx3.run(*frame->rx_data[1]);
    handle->rx1.removeMean();
    handle->rx3.removeMean();
    handle->tracker.update(handle->detector.detect(handle->rx1, handle->rx3));
    handle->tracker.fill(*result);
    return nullptr;
}

}  // namespace seg
}  // namespace vrnsim
