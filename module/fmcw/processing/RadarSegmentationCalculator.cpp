#include "fmcw/processing/RadarSegmentationCalculator.h"

#include "fmcw/common/SegmentationConfiguration.h"
#include "host/IBroker.h"

#include <QDebug>

std::unique_ptr<RadarSegmentationCalculator> RadarSegmentationCalculator::create(
    IBroker& broker, const SegmentationConfiguration& configuration, quint32 samplesPerChirp,
    quint32 chirpsPerFrame, float bandwidthHz, float chirpRepetitionTimeS, float centerFrequencyHz)
{
    const Vrn* vrn = broker.sdk();
    if (!vrn) {
        qCritical() << "Cannot create Segmentation handle:" << "No radar SDK is loaded";
        return nullptr;
    }
    vrn_Segmentation_Config_t config = configuration.toSdk();
    config.num_samples_per_chirp = samplesPerChirp;
    config.num_chirps_per_frame = chirpsPerFrame;
    config.bandwidth_Hz = bandwidthHz;
    config.chirp_repetition_time_s = chirpRepetitionTimeS;
    config.center_frequency_Hz = centerFrequencyHz;

    vrn_Segmentation_Handle handle = nullptr;
    if (vrn_Error_t error = vrn->seg_create(&config, &handle)) {
        qCritical() << "Cannot create Segmentation handle:" << error;
        return nullptr;
    }
    Handle shared(handle, [vrn](vrn_Segmentation_Handle owned) {
        if (vrn_Error_t error = vrn->seg_destroy(owned))
            qCritical() << "Cannot destroy Segmentation handle:" << error;
    });
    return std::unique_ptr<RadarSegmentationCalculator>(
        new RadarSegmentationCalculator(broker, std::move(shared), config));
}

RadarSegmentationCalculator::RadarSegmentationCalculator(IBroker& broker, Handle handle,
                                                         const vrn_Segmentation_Config_t& config)
    : m_broker(&broker)
    , m_handle(std::move(handle))
    , m_config(config)
{
}

RadarSegmentationResult RadarSegmentationCalculator::process(const SharedFrame& frame)
{
    const Vrn* vrn = m_broker->sdk();
    if (!m_handle || !vrn) {
        qCritical() << "Cannot calculate Segmentation. Cannot get Segmentation handle";
        return {};
    }
    if (!frame || frame->num_rx < 2 || !frame->rx_data) {
        qCritical() << "Cannot calculate Segmentation. Cannot get input data. Data is NULL";
        return {};
    }
    // A view of the two channels the SDK reads; the matrices stay the
    // frame's.
    vrn_Matrix_R_s* channels[2] = { frame->rx_data[0], frame->rx_data[frame->num_rx == 2 ? 1 : 2] };
    if (!channels[0] || !channels[1]) {
        qCritical() << "Cannot calculate Segmentation. Cannot get input data. Data is NULL";
        return {};
    }
    const vrn_Frame_R_t input { 2, channels };
    // Too large for the stack of a worker thread that runs this every frame.
    auto result = std::make_unique<vrn_Segmentation_Result_t>();
    if (vrn_Error_t error = vrn->seg_run(m_handle.get(), &input, result.get())) {
        qCritical() << "Cannot calculate Segmentation result" << error;
        return {};
    }

    auto objects = std::make_shared<QVector<RadarTrackedObject>>();
    const quint32 tracks = qMin<quint32>(result->num_tracks, VRN_SEGMENTATION_MAX_TRACKS);
    objects->reserve(int(tracks));
    for (quint32 i = 0; i < tracks; ++i) {
        const vrn_Segmentation_Track_t& track = result->tracks[i];
        objects->append({ track.id, track.range_m, track.angle_deg, track.speed_m_s });
    }
    auto segments = std::make_shared<QVector<int>>();
    const quint32 count = qMin<quint32>(result->num_segments, VRN_SEGMENTATION_MAX_SEGMENTS);
    for (quint32 i = 0; i < count; ++i)
        segments->append(result->segment_occupied[i] != 0 ? 1 : 0);
    return { std::move(objects), std::move(segments) };
}
