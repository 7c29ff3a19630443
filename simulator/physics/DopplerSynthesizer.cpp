#include "DopplerSynthesizer.h"

#include "Adc.h"
#include "DopplerModel.h"
#include "MetricsTranslator.h"
#include "Propagation.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <vector>

namespace vrnsim {

DopplerSynthesizer::DopplerSynthesizer(const Scene& scene, const NoiseSource& noise)
    : m_scene(scene), m_noise(noise)
{}

void DopplerSynthesizer::synthesize(const vrn_Corvix_Frame_Config_t& frameConfig,
                                    const vrn_Corvix_Pulse_Config_t& pulse, double sceneTime, uint64_t index,
                                    vrn_Corvix_Frame_C_t& frame) const
{
    const uint32_t samples = frameConfig.num_samples;
    const double prt = frameConfig.pulse_repetition_time_s;
    const double lambda = MetricsTranslator::kSpeedOfLight / DopplerModel::kCenterFrequencyHz;
    const double gainDb = DopplerModel::gainDb(pulse.abb_gain_index);
    const double txDbm = DopplerModel::txPowerDbm(pulse.tx_power_level);
    std::vector<float> re(samples), im(samples);
    NoiseSource::Stream noise = m_noise.stream(index);

    for (uint32_t ch = 0; ch < frame.num_channels; ++ch) {
        // A one-channel frame carries the selected channel; a two-channel
        // frame carries both, the unselected one receiving no echo.
        const bool active = frame.num_channels == 1 || ch == uint32_t(pulse.channel);
        std::fill(re.begin(), re.end(), 0.5f);
        std::fill(im.begin(), im.end(), 0.5f);
        if (active) {
            for (const Target& target : m_scene.targets) {
                const TargetState s = m_scene.stateAt(target, sceneTime);
                const double amplitude = Propagation::amplitude(target, s.rangeM, gainDb - 34.0 + 33.0, txDbm - 1.0);
                // Complex baseband keeps exp(-j 4 pi R / lambda): a closing
                // target turns its phase forwards.
                std::complex<double> z = std::polar(amplitude, -4.0 * M_PI * s.rangeM / lambda);
                const std::complex<double> step = std::polar(1.0, -4.0 * M_PI * s.speedMs * prt / lambda);
                for (uint32_t n = 0; n < samples; ++n) {
                    re[n] += float(z.real());
                    im[n] += float(z.imag());
                    z *= step;
                }
            }
        }
        if (m_noise.level() > 0.0f) {
            m_noise.addRow(noise, re.data(), samples);
            m_noise.addRow(noise, im.data(), samples);
        }
        Adc::quantise(re.data(), samples);
        Adc::quantise(im.data(), samples);
        vrn_Complex_t* out = frame.channel_data[ch]->data;
        for (uint32_t n = 0; n < samples; ++n) {
            out[n].re = re[n];
            out[n].im = im[n];
        }
    }
}

}  // namespace vrnsim
