#pragma once

#include "common/SharedFrame.h"
#include "fmcw/processing/RadarSegmentationResult.h"
#include "sdk/vrn.h"

#include <QtGlobal>

#include <memory>

class IBroker;
class SegmentationConfiguration;

// Runs the SDK's segmentation on each frame: targets with their distance,
// angle and speed, and which of the configured angular segments hold one.
// The SDK reads the Rx1 and Rx3 channels. A new configuration means a new
// calculator; created on the GUI thread, run on the acquisition worker,
// never both at once.
class RadarSegmentationCalculator
{
public:
    using Handle = std::shared_ptr<vrn_Segmentation_s>;

    // The user's settings come from `configuration`; the chirp values of the
    // current scene are given alongside. None when the SDK refuses (logged).
    static std::unique_ptr<RadarSegmentationCalculator> create(IBroker& broker,
                                                               const SegmentationConfiguration& configuration,
                                                               quint32 samplesPerChirp, quint32 chirpsPerFrame,
                                                               float bandwidthHz, float chirpRepetitionTimeS,
                                                               float centerFrequencyHz);

    // A frame of two channels is taken as Rx1, Rx3; of three or more, its
    // first and third channel are (all three receivers of one transmitter).
    // Empty pointers on failure (logged).
    RadarSegmentationResult process(const SharedFrame& frame);

    const vrn_Segmentation_Config_t& configuration() const { return m_config; }

private:
    RadarSegmentationCalculator(IBroker& broker, Handle handle, const vrn_Segmentation_Config_t& config);

    IBroker* m_broker;
    Handle m_handle;
    vrn_Segmentation_Config_t m_config;
};
