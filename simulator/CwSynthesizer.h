#pragma once

#include "BoardSpec.h"
#include "NoiseSource.h"

#include <sdk/vrn.h>

namespace vrnsim {

// One CW capture: per enabled Rx, num_samples ADC values of the receiver's
// baseband. A steady carrier turns every moving target into a Doppler tone
// at 2 v / lambda; still targets give DC, which the high-pass removes. The
// test-signal generator adds its tone to every receiver.
class CwSynthesizer
{
public:
    CwSynthesizer(const BoardSpec& spec, const NoiseSource& noise);

    // frame must hold popcount(rx_mask) matrices of 1 x num_samples.
    void capture(const vrn_CW_Config_t& config, bool emitting, double sceneTime, uint64_t index,
                 double temperatureC, vrn_Frame_R_t& frame) const;

private:
    const BoardSpec& m_spec;
    const NoiseSource& m_noise;
};

}  // namespace vrnsim
