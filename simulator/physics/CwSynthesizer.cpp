#include "CwSynthesizer.h"

#include "Adc.h"
#include "AnalogFilter.h"
#include "CwModel.h"
#include "MetricsTranslator.h"
#include "Propagation.h"

#include <algorithm>
#include <cmath>
#include <complex>

namespace vrnsim {

namespace {

void addTone(float* row, uint32_t samples, double amplitude, double phase, double frequency, double fs)
{
    std::complex<double> z = std::polar(amplitude, phase);
    const std::complex<double> step = std::polar(1.0, 2.0 * M_PI * frequency / fs);
    for (uint32_t n = 0; n < samples; ++n) {
        row[n] += float(z.real());
        z *= step;
    }
}

// The receiver's own noise enters ahead of the baseband chain, so it is
// amplified and filtered like the signal: `level` is given at the default
// gain (amplifier 20 dB plus high pass 18 dB).
constexpr double kNoiseReferenceGainDb = 38.0;

void addReceiverNoise(const NoiseSource& source, NoiseSource::Stream& stream, float* row, uint32_t samples,
                      double gainDb, double hpCutoff, double aafCutoff, double fs)
{
    float noise[NoiseSource::kMaxRow] = {};
    source.addRow(stream, noise, samples);
    const double scale = std::pow(10.0, (gainDb - kNoiseReferenceGainDb) / 20.0);
    // First-order sections: the high pass's DC block, and the anti-alias
    // filter's roll-off within the sampled band approximated by one pole.
    const double dt = 1.0 / fs;
    const double hpRc = 1.0 / (2.0 * M_PI * hpCutoff);
    const double lpRc = 1.0 / (2.0 * M_PI * aafCutoff);
    const double a = hpRc / (hpRc + dt);
    // A cut-off above the Nyquist frequency leaves the sampled band flat.
    const double b = aafCutoff < fs / 2.0 ? dt / (lpRc + dt) : 1.0;
    double previousIn = 0.0, highPassed = 0.0, lowPassed = 0.0;
    for (uint32_t n = 0; n < samples; ++n) {
        const double x = double(noise[n]) * scale;
        highPassed = a * (highPassed + x - previousIn);
        previousIn = x;
        lowPassed += b * (highPassed - lowPassed);
        row[n] += float(lowPassed);
    }
}

}  // namespace

CwSynthesizer::CwSynthesizer(const ChipModel& chip, const Scene& scene, const NoiseSource& noise)
    : m_chip(chip), m_scene(scene), m_noise(noise)
{}

void CwSynthesizer::capture(const vrn_CW_Config_t& config, bool emitting, double sceneTime, uint64_t index,
                            double temperatureC, vrn_Frame_R_t& frame) const
{
    const ChipModel& chip = m_chip;
    const double fs = config.adc.sample_rate_Hz;
    const double lambda = MetricsTranslator::kSpeedOfLight / double(config.rf_center_frequency_Hz);
    const double gainDb = CwModel::amplifierGainDb(config.baseband.gain_amplifier_index) +
                          CwModel::highPassGainDb(config.baseband.gain_high_pass_index);
    const double hpCutoff = CwModel::highPassCutoffHz(config.baseband.hp_cutoff_index);
    // The smaller chips have a fixed anti-alias filter.
    const double aafCutoff = chip.cwHighPassCutoffs > 4 ? CwModel::antiAliasCutoffHz(config.baseband.aaf_cutoff_index)
                                                        : 1000e3;
    const double txDbm = CwModel::txPowerDbm(config.dac_value, temperatureC);
    const uint32_t samples = config.num_samples;
    const double deg = M_PI / 180.0;
    // Test tones of the generator modes: off, baseband test, Tx toggling,
    // DAC toggling, Rx self test; after the amplifier gain.
    static const double kTestAmplitude[] = {0.0, 0.05, 0.02, 0.02, 0.03};
    const uint32_t mode = std::min<uint32_t>(config.test_signal.mode_index, 4);
    const double testAmplitude =
        kTestAmplitude[mode] * std::pow(10.0, (CwModel::amplifierGainDb(config.baseband.gain_amplifier_index) - 20.0) / 20.0) *
        AnalogFilter::lowPass(config.test_signal.frequency_Hz, aafCutoff);

    NoiseSource::Stream noise = m_noise.stream(index);
    uint32_t channel = 0;
    for (uint32_t rx = 0; rx < chip.numRx && channel < frame.num_rx; ++rx) {
        if (!(config.rx_mask & (1u << rx)))
            continue;
        float* row = frame.rx_data[channel]->data;
        std::fill(row, row + samples, 0.5f);
        if (emitting) {
            for (uint32_t tx = 0; tx < chip.numTx; ++tx) {
                if (!(config.tx_mask & (1u << tx)))
                    continue;
                const double x = chip.txPosition[tx][0] + chip.rxPosition[rx][0];
                const double y = chip.txPosition[tx][1] + chip.rxPosition[rx][1];
                for (const Target& target : m_scene.targets) {
                    const TargetState s = m_scene.stateAt(target, sceneTime);
                    const double doppler = 2.0 * s.speedMs / lambda;
                    const double f = std::abs(doppler);
                    const double amplitude = Propagation::amplitude(target, s.rangeM, gainDb, txDbm) *
                                             AnalogFilter::highPass(f, hpCutoff) * AnalogFilter::lowPass(f, aafCutoff);
                    const double phase = 4.0 * M_PI * s.rangeM / lambda -
                                         2.0 * M_PI * (x * std::sin(target.angleDeg * deg) +
                                                       y * std::sin(target.elevationDeg * deg));
                    addTone(row, samples, amplitude, phase, doppler, fs);
                }
            }
        }
        if (testAmplitude > 0)
            addTone(row, samples, testAmplitude, 0.0, config.test_signal.frequency_Hz, fs);
        if (m_noise.level() > 0.0f)
            addReceiverNoise(m_noise, noise, row, samples, gainDb, hpCutoff, aafCutoff, fs);
        Adc::quantise(row, samples);
        ++channel;
    }
}

}  // namespace vrnsim
