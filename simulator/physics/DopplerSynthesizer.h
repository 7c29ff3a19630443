#pragma once

#include "NoiseSource.h"
#include "Scene.h"

#include <sdk/vrn.h>

namespace vrnsim {

// Complex baseband of the pulsed-Doppler chip: one I/Q sample per pulse, so
// a target shows as a tone at its Doppler frequency (2 v / lambda, positive
// for approaching targets) with its range in the phase. I and Q are
// normalised 12-bit ADC values around 0.5 like the FMCW samples.
class DopplerSynthesizer
{
public:
    DopplerSynthesizer(const Scene& scene, const NoiseSource& noise);

    void synthesize(const vrn_Corvix_Frame_Config_t& frameConfig, const vrn_Corvix_Pulse_Config_t& pulse,
                    double sceneTime, uint64_t index, vrn_Corvix_Frame_C_t& frame) const;

private:
    const Scene& m_scene;
    const NoiseSource& m_noise;
};

}  // namespace vrnsim
