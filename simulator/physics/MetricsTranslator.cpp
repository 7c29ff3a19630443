#include "MetricsTranslator.h"

#include "AntennaMask.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace vrnsim {

namespace {

std::string format(const char* fmt, double a = 0, double b = 0, double c = 0, double d = 0)
{
    char buffer[256];
    std::snprintf(buffer, sizeof buffer, fmt, a, b, c, d);
    return buffer;
}

bool checkCommon(const ChipModel& chip, uint32_t sampleRate, uint32_t rxMask, uint32_t txMask, uint32_t txPower,
                 uint32_t ifGain, std::string& error)
{
    if (!AntennaMask::fits(rxMask, chip.numRx)) {
        error = format("Rx antenna mask %.0f does not select any of the %.0f receivers of the chip", rxMask,
                       chip.numRx);
        return false;
    }
    if (!AntennaMask::fits(txMask, chip.numTx)) {
        error = format("Tx antenna mask %.0f does not select any of the %.0f transmitters of the chip", txMask,
                       chip.numTx);
        return false;
    }
    if (sampleRate < chip.minSampleRateHz || sampleRate > chip.maxSampleRateHz) {
        error = format("Sample rate of %.0f Hz is outside the ADC range of %.0f to %.0f Hz", sampleRate,
                       chip.minSampleRateHz, chip.maxSampleRateHz);
        return false;
    }
    if (txPower > chip.maxTxPowerLevel) {
        error = format("Tx power level %.0f is above the highest level %.0f", txPower, chip.maxTxPowerLevel);
        return false;
    }
    if (ifGain < chip.minIfGainDb || ifGain > chip.maxIfGainDb) {
        error = format("IF gain of %.0f dB is outside %.0f to %.0f dB", ifGain, chip.minIfGainDb, chip.maxIfGainDb);
        return false;
    }
    return true;
}

// Checks shared by translate and validate once the chirp sequence is known.
bool checkSequence(const ChipModel& chip, double lower, double upper, uint32_t samples, uint32_t chirps,
                   double sampleRate, double chirpRepetition, double frameRepetition, uint32_t numTx,
                   std::string& error)
{
    if (!(upper > lower) || lower < double(chip.minRfHz) || upper > double(chip.maxRfHz)) {
        error = format("Chirp from %.3f to %.3f GHz leaves the RF range of %.2f to %.2f GHz", lower / 1e9,
                       upper / 1e9, double(chip.minRfHz) / 1e9, double(chip.maxRfHz) / 1e9);
        return false;
    }
    if (samples < chip.minSamplesPerChirp || samples > chip.maxSamplesPerChirp) {
        error = format("%.0f samples per chirp are outside the chip's %.0f to %.0f", samples, chip.minSamplesPerChirp,
                       chip.maxSamplesPerChirp);
        return false;
    }
    if (chirps < chip.minChirpsPerFrame || chirps > chip.maxChirpsPerFrame) {
        error = format("%.0f chirps per frame are outside the chip's %.0f to %.0f", chirps, chip.minChirpsPerFrame,
                       chip.maxChirpsPerFrame);
        return false;
    }
    const double ramp = samples / sampleRate + chip.rampOverheadS;
    if (!(chirpRepetition * (1.0 + 1e-6) >= ramp * numTx)) {
        error = format("A chirp repetition time of %.1f us is shorter than %.0f ramps of %.1f us each",
                       chirpRepetition * 1e6, numTx, ramp * 1e6);
        return false;
    }
    if (chirpRepetition > chip.maxChirpRepetitionS * (1.0 + 1e-6)) {
        error = format("A chirp repetition time of %.1f us is longer than the chip's %.1f us", chirpRepetition * 1e6,
                       chip.maxChirpRepetitionS * 1e6);
        return false;
    }
    if (!(frameRepetition * (1.0 + 1e-6) >= chirps * chirpRepetition)) {
        error = format("%.0f chirps of %.1f us do not fit in a frame repetition time of %.2f ms", chirps,
                       chirpRepetition * 1e6, frameRepetition * 1e3);
        return false;
    }
    if (frameRepetition > chip.maxFrameRepetitionS) {
        error = format("A frame repetition time of %.3f s is longer than the chip's %.1f s", frameRepetition,
                       chip.maxFrameRepetitionS);
        return false;
    }
    return true;
}

bool positive(float v)
{
    return std::isfinite(v) && v > 0.0f;
}

}  // namespace

bool MetricsTranslator::translate(const ChipModel& chip, const vrn_Metrics_t& m, vrn_Device_Config_t& out,
                                  std::string& error)
{
    if (chip.pulsedDoppler) {
        error = "Metrics translation needs an FMCW chip";
        return false;
    }
    if (!checkCommon(chip, m.sample_rate_Hz, m.rx_mask, m.tx_mask, m.tx_power_level, m.if_gain_dB, error))
        return false;
    const struct { float value; const char* name; } values[] = {
        {m.range_resolution_m, "Range resolution"}, {m.max_range_m, "Maximum range"},
        {m.max_speed_m_s, "Maximum speed"}, {m.speed_resolution_m_s, "Speed resolution"},
        {m.frame_repetition_time_s, "Frame repetition time"}, {m.center_frequency_Hz, "Centre frequency"}};
    for (const auto& v : values) {
        if (!positive(v.value)) {
            error = std::string(v.name) + " must be a positive number";
            return false;
        }
    }

    const double fc = m.center_frequency_Hz;
    const double lambda = kSpeedOfLight / fc;
    const double bandwidth = kSpeedOfLight / (2.0 * double(m.range_resolution_m));
    const double lower = fc - bandwidth / 2.0;
    const double upper = fc + bandwidth / 2.0;
    // Real sampling: a beat tone must stay below half the sample rate, so the
    // samples span twice the number of range cells up to the maximum range.
    const double samples = std::round(2.0 * double(m.max_range_m) / double(m.range_resolution_m));
    const double chirpRepetition = lambda / (4.0 * double(m.max_speed_m_s));
    const double chirps = std::round(2.0 * double(m.max_speed_m_s) / double(m.speed_resolution_m_s));
    if (samples > 1e6 || chirps > 1e6) {
        error = "Maximum range or speed is far too large for its resolution";
        return false;
    }
    const uint32_t numTx = AntennaMask::count(m.tx_mask);
    if (!checkSequence(chip, lower, upper, uint32_t(samples), uint32_t(chirps), m.sample_rate_Hz, chirpRepetition,
                       m.frame_repetition_time_s, numTx, error))
        return false;

    out.sample_rate_Hz = m.sample_rate_Hz;
    out.tx_mask = m.tx_mask;
    out.rx_mask = m.rx_mask;
    out.tx_power_level = m.tx_power_level;
    out.if_gain_dB = m.if_gain_dB;
    out.lower_frequency_Hz = static_cast<uint64_t>(std::llround(lower));
    out.upper_frequency_Hz = static_cast<uint64_t>(std::llround(upper));
    out.num_samples_per_chirp = uint32_t(samples);
    out.num_chirps_per_frame = uint32_t(chirps);
    out.chirp_repetition_time_s = float(chirpRepetition);
    out.frame_repetition_time_s = m.frame_repetition_time_s;
    out.mimo_mode = numTx > 1 ? VRN_MIMO_TDM : VRN_MIMO_OFF;
    return true;
}

bool MetricsTranslator::validate(const ChipModel& chip, const vrn_Device_Config_t& c, std::string& error)
{
    if (!checkCommon(chip, c.sample_rate_Hz, c.rx_mask, c.tx_mask, c.tx_power_level, c.if_gain_dB, error))
        return false;
    if (!positive(c.chirp_repetition_time_s) || !positive(c.frame_repetition_time_s)) {
        error = "Chirp and frame repetition times must be positive numbers";
        return false;
    }
    const uint32_t numTx = AntennaMask::count(c.tx_mask);
    if (c.mimo_mode != (numTx > 1 ? VRN_MIMO_TDM : VRN_MIMO_OFF)) {
        error = "MIMO mode must be \"tdm\" with two active Tx antennas and \"off\" with one";
        return false;
    }
    return checkSequence(chip, double(c.lower_frequency_Hz), double(c.upper_frequency_Hz), c.num_samples_per_chirp,
                         c.num_chirps_per_frame, c.sample_rate_Hz, c.chirp_repetition_time_s,
                         c.frame_repetition_time_s, numTx, error);
}

vrn_Metrics_t MetricsTranslator::metricsOf(const vrn_Device_Config_t& c)
{
    vrn_Metrics_t m{};
    const double bandwidth = double(c.upper_frequency_Hz) - double(c.lower_frequency_Hz);
    const double fc = (double(c.upper_frequency_Hz) + double(c.lower_frequency_Hz)) / 2.0;
    const double lambda = kSpeedOfLight / fc;
    m.sample_rate_Hz = c.sample_rate_Hz;
    m.rx_mask = c.rx_mask;
    m.tx_mask = c.tx_mask;
    m.tx_power_level = c.tx_power_level;
    m.if_gain_dB = c.if_gain_dB;
    m.range_resolution_m = float(kSpeedOfLight / (2.0 * bandwidth));
    m.max_range_m = float(c.num_samples_per_chirp * double(m.range_resolution_m) / 2.0);
    m.max_speed_m_s = float(lambda / (4.0 * double(c.chirp_repetition_time_s)));
    m.speed_resolution_m_s = float(2.0 * double(m.max_speed_m_s) / c.num_chirps_per_frame);
    m.frame_repetition_time_s = c.frame_repetition_time_s;
    m.center_frequency_Hz = float(fc);
    return m;
}

vrn_Metrics_t MetricsTranslator::defaultMetrics()
{
    vrn_Metrics_t m{};
    m.sample_rate_Hz = 1000000;
    m.rx_mask = 0x4;
    m.tx_mask = 0x1;
    m.tx_power_level = 31;
    m.if_gain_dB = 33;
    m.range_resolution_m = 0.3f;
    m.max_range_m = 9.6f;
    m.max_speed_m_s = 2.45f;
    m.speed_resolution_m_s = 0.0766f;
    m.frame_repetition_time_s = 0.1f;
    m.center_frequency_Hz = 60.5e9f;
    return m;
}

void MetricsTranslator::limits(const ChipModel& chip, const vrn_Device_Config_t& c, vrn_Metrics_Limits_t& l)
{
    const vrn_Metrics_t m = metricsOf(c);
    const double fc = m.center_frequency_Hz;
    const double lambda = kSpeedOfLight / fc;
    const double rangeRes = m.range_resolution_m;
    const double maxRange = m.max_range_m;
    const double maxSpeed = m.max_speed_m_s;
    const double tc = c.chirp_repetition_time_s;
    const double fs = c.sample_rate_Hz;
    const uint32_t numTx = std::max(1u, AntennaMask::count(c.tx_mask));

    l.sample_rate_Hz_min = chip.minSampleRateHz;
    l.sample_rate_Hz_max = chip.maxSampleRateHz;
    l.rx_mask_min = 1;
    l.rx_mask_max = (1u << chip.numRx) - 1;
    l.tx_mask_min = 1;
    l.tx_mask_max = (1u << chip.numTx) - 1;
    l.tx_power_level_min = 0;
    l.tx_power_level_max = chip.maxTxPowerLevel;
    l.if_gain_dB_min = chip.minIfGainDb;
    l.if_gain_dB_max = chip.maxIfGainDb;

    // Samples per chirp are bounded by the chip and by the ramp that must fit
    // in one chirp repetition time.
    const double samplesFit = std::floor((tc / numTx - chip.rampOverheadS) * fs);
    const double maxSamples = std::max<double>(chip.minSamplesPerChirp, std::min<double>(chip.maxSamplesPerChirp, samplesFit));
    l.max_range_m_min = float(chip.minSamplesPerChirp * rangeRes / 2.0);
    l.max_range_m_max = float(maxSamples * rangeRes / 2.0);

    const double halfBand = std::min(fc - double(chip.minRfHz), double(chip.maxRfHz) - fc);
    const double widest = std::max(2.0 * halfBand, 1.0);
    l.range_resolution_m_min = float(std::max(kSpeedOfLight / (2.0 * widest), 2.0 * maxRange / maxSamples));
    l.range_resolution_m_max = float(2.0 * maxRange / chip.minSamplesPerChirp);

    // Chirps per frame are bounded by the chip and by the frame time.
    const double chirpsFit = std::floor(double(c.frame_repetition_time_s) / tc);
    const double maxChirps = std::max<double>(chip.minChirpsPerFrame, std::min<double>(chip.maxChirpsPerFrame, chirpsFit));
    l.speed_resolution_m_s_min = float(2.0 * maxSpeed / maxChirps);
    l.speed_resolution_m_s_max = float(2.0 * maxSpeed / chip.minChirpsPerFrame);

    const double shortest = numTx * (c.num_samples_per_chirp / fs + chip.rampOverheadS);
    const double longest = std::min(chip.maxChirpRepetitionS, double(c.frame_repetition_time_s) / c.num_chirps_per_frame);
    l.max_speed_m_s_min = float(lambda / (4.0 * std::max(longest, shortest)));
    l.max_speed_m_s_max = float(lambda / (4.0 * shortest));

    l.frame_repetition_time_s_min = float(c.num_chirps_per_frame * tc);
    l.frame_repetition_time_s_max = float(chip.maxFrameRepetitionS);
}

double MetricsTranslator::chirpTime(const vrn_Device_Config_t& c)
{
    return c.sample_rate_Hz ? double(c.num_samples_per_chirp) / c.sample_rate_Hz : 0.0;
}

double MetricsTranslator::pulseRepetitionTime(const vrn_Device_Config_t& c)
{
    const uint32_t numTx = std::max(1u, AntennaMask::count(c.tx_mask));
    return double(c.chirp_repetition_time_s) / numTx;
}

double MetricsTranslator::rangeBinLength(double bandwidthHz, uint32_t samples, uint32_t fftSize)
{
    return kSpeedOfLight / (2.0 * bandwidthHz) * double(samples) / double(fftSize);
}

// Doppler bin m is the phase step 2 pi m / N per chirp, i.e. the speed
// m * lambda / (2 N T_c).
double MetricsTranslator::speedBinStep(double centerFrequencyHz, uint32_t fftSize, double chirpRepetitionS)
{
    const double lambda = kSpeedOfLight / centerFrequencyHz;
    return lambda / (2.0 * double(fftSize) * chirpRepetitionS);
}

}  // namespace vrnsim
