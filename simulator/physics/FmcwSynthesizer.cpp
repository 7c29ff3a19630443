#include "FmcwSynthesizer.h"

#include "Adc.h"
#include "AnalogFilter.h"
#include "AntennaMask.h"
#include "MetricsTranslator.h"
#include "Propagation.h"

#include <algorithm>
#include <cmath>
#include <complex>

namespace vrnsim {

FmcwSynthesizer::FmcwSynthesizer(const ChipModel& chip, const Scene& scene, const NoiseSource& noise)
    : m_chip(chip), m_scene(scene), m_noise(noise)
{}

void FmcwSynthesizer::configure(const vrn_Device_Config_t& config)
{
    m_config = config;
    m_channels.clear();
    const ChipModel& chip = m_chip;
    uint32_t txOrder = 0;
    for (uint32_t tx = 0; tx < chip.numTx; ++tx) {
        if (!(config.tx_mask & (1u << tx)))
            continue;
        for (uint32_t rx = 0; rx < chip.numRx; ++rx) {
            if (!(config.rx_mask & (1u << rx)))
                continue;
            m_channels.push_back({txOrder, chip.txPosition[tx][0] + chip.rxPosition[rx][0],
                                  chip.txPosition[tx][1] + chip.rxPosition[rx][1]});
        }
        ++txOrder;
    }
    const size_t size = m_scene.targets.size() * config.num_samples_per_chirp;
    m_baseRe.assign(size, 0.0f);
    m_baseIm.assign(size, 0.0f);
}

void FmcwSynthesizer::synthesize(double sceneTime, uint64_t frameIndex, double txPowerDbm, vrn_Frame_R_t& frame)
{
    constexpr double c = MetricsTranslator::kSpeedOfLight;
    const uint32_t samples = m_config.num_samples_per_chirp;
    const uint32_t chirps = m_config.num_chirps_per_frame;
    const double fs = m_config.sample_rate_Hz;
    const double f0 = double(m_config.lower_frequency_Hz);
    const double bandwidth = double(m_config.upper_frequency_Hz) - f0;
    const double lambda = c / (f0 + bandwidth / 2.0);
    const double slope = bandwidth / MetricsTranslator::chirpTime(m_config);
    const double tc = m_config.chirp_repetition_time_s;
    const uint32_t numTx = std::max(1u, AntennaMask::count(m_config.tx_mask));
    const double deg = M_PI / 180.0;

    struct Tone {
        double amplitude;
        double rangePhase;
        double dopplerStep;  // per chirp of one transmitter
        double u, v;         // direction cosines
    };
    const size_t numTargets = m_scene.targets.size();
    std::vector<Tone> tones(numTargets);
    for (size_t t = 0; t < numTargets; ++t) {
        const Target& target = m_scene.targets[t];
        const TargetState s = m_scene.stateAt(target, sceneTime);
        const double beat = 2.0 * s.rangeM * slope / c + 2.0 * s.speedMs / lambda;
        Tone& tone = tones[t];
        // The IF chain's anti-alias filter sits at 0.45 fs.
        tone.amplitude = Propagation::amplitude(target, s.rangeM, m_config.if_gain_dB, txPowerDbm) *
                         AnalogFilter::lowPass(beat, 0.45 * fs);
        tone.rangePhase = 4.0 * M_PI * f0 * s.rangeM / c;
        tone.dopplerStep = 4.0 * M_PI * s.speedMs * tc / lambda;
        tone.u = std::sin(target.angleDeg * deg) * std::cos(target.elevationDeg * deg);
        tone.v = std::sin(target.elevationDeg * deg);
        // The tone over one chirp, by recurrence in double precision.
        const std::complex<double> step = std::polar(1.0, 2.0 * M_PI * beat / fs);
        std::complex<double> z = 1.0;
        float* re = m_baseRe.data() + t * samples;
        float* im = m_baseIm.data() + t * samples;
        for (uint32_t n = 0; n < samples; ++n) {
            re[n] = float(z.real());
            im[n] = float(z.imag());
            z *= step;
        }
    }

    NoiseSource::Stream noise = m_noise.stream(frameIndex);
    std::vector<std::complex<double>> coefficient(numTargets), rotation(numTargets);
    for (size_t ch = 0; ch < m_channels.size(); ++ch) {
        const Channel& channel = m_channels[ch];
        for (size_t t = 0; t < numTargets; ++t) {
            const Tone& tone = tones[t];
            // A path shorter by d * sin(angle) arrives earlier, so the element
            // further along the target's direction lags in phase.
            const double angle = -2.0 * M_PI * (channel.x * tone.u + channel.y * tone.v);
            const double slot = tone.dopplerStep * channel.txOrder / numTx;
            coefficient[t] = std::polar(tone.amplitude, tone.rangePhase + angle + slot);
            rotation[t] = std::polar(1.0, tone.dopplerStep);
        }
        vrn_Matrix_R_s* matrix = frame.rx_data[ch];
        for (uint32_t chirp = 0; chirp < chirps; ++chirp) {
            float* __restrict row = matrix->data + size_t(chirp) * matrix->stride;
            std::fill(row, row + samples, 0.5f);
            for (size_t t = 0; t < numTargets; ++t) {
                const float cr = float(coefficient[t].real());
                const float ci = float(coefficient[t].imag());
                const float* __restrict re = m_baseRe.data() + t * samples;
                const float* __restrict im = m_baseIm.data() + t * samples;
                for (uint32_t n = 0; n < samples; ++n)
                    row[n] += cr * re[n] - ci * im[n];
                coefficient[t] *= rotation[t];
            }
            if (m_noise.level() > 0.0f)
                m_noise.addRow(noise, row, samples);
            Adc::quantise(row, samples);
        }
    }
}

}  // namespace vrnsim
