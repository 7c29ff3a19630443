#pragma once

#include "ChipModel.h"
#include "NoiseSource.h"
#include "Scene.h"

#include <sdk/vrn.h>

namespace vrnsim {

// One CW capture: per enabled Rx, num_samples ADC values of the receiver's
// baseband. A steady carrier turns every moving target into a Doppler tone
// at 2 v / lambda; still targets give DC, which the high-pass removes. The
// test-signal generator adds its tone to every receiver.
class CwSynthesizer
{
public:
    CwSynthesizer(const ChipModel& chip, const Scene& scene, const NoiseSource& noise);

    // frame must hold popcount(rx_mask) matrices of 1 x num_samples.
    void capture(const vrn_CW_Config_t& config, bool emitting, double sceneTime, uint64_t index,
                 double temperatureC, vrn_Frame_R_t& frame) const;

private:
    const ChipModel& m_chip;
    const Scene& m_scene;
    const NoiseSource& m_noise;
};

}  // namespace vrnsim
