#pragma once

#include "ChipModel.h"
#include "NoiseSource.h"
#include "Scene.h"

#include <sdk/vrn.h>

#include <vector>

namespace vrnsim {

// Turns the scene of a board into the ADC samples of one FMCW frame.
//
// Within a frame each target is a beat tone at 2 R S / c (S the chirp slope)
// whose phase carries the range (4 pi f0 R / c), the antenna positions
// (angle) and the Doppler advance from chirp to chirp (4 pi v Tc / lambda).
// The tone is computed once per frame and target; every row then costs two
// multiply-adds per target and sample.
class FmcwSynthesizer
{
public:
    FmcwSynthesizer(const ChipModel& chip, const Scene& scene, const NoiseSource& noise);

    void configure(const vrn_Device_Config_t& config);
    uint32_t channelCount() const { return uint32_t(m_channels.size()); }

    // Fills a frame of channelCount() matrices of chirps x samples.
    // sceneTime: seconds since the board was plugged, at the first chirp.
    void synthesize(double sceneTime, uint64_t frameIndex, double txPowerDbm, vrn_Frame_R_t& frame);

private:
    struct Channel {
        uint32_t txOrder;   // rank of its transmitter among the active ones
        double x, y;        // Tx + Rx position, wavelengths
    };

    const ChipModel& m_chip;
    const Scene& m_scene;
    const NoiseSource& m_noise;
    vrn_Device_Config_t m_config{};
    std::vector<Channel> m_channels;
    std::vector<float> m_baseRe, m_baseIm;  // one tone per target
};

}  // namespace vrnsim
