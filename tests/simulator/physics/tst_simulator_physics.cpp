#include "SimulatorSdk.h"

#include <QtTest>

#include <cmath>
#include <functional>

namespace {

constexpr double kC = 299792458.0;

// A target of `kind` at `range` metres, `more` keys appended.
QString target(double range, const QString& more = QString(), const QString& kind = QStringLiteral("reflector"))
{
    return QStringLiteral(R"({ "kind": "%1", "range_m": %2 %3 })").arg(kind).arg(range).arg(more);
}

// A moving target at `speed` that stays within the captured range.
QString moving(double speed, const QString& more = QString())
{
    return QStringLiteral(R"(, "speed_m_s": %1, "min_range_m": 0.5, "max_range_m": 9.0 %2)").arg(speed).arg(more);
}


// The scene every shipped default configuration file describes, with the
// values as the files store them.
vrn_Metrics_t shippedMetrics(float rangeResolution, float frameTime, uint32_t rxMask)
{
    vrn_Metrics_t m = sceneMetrics(rxMask, rangeResolution);
    m.max_range_m = 9.600960731506348f;
    m.max_speed_m_s = 2.450000047683716f;
    m.speed_resolution_m_s = 0.07657016068696976f;
    m.frame_repetition_time_s = frameTime;
    m.center_frequency_Hz = 60500000768.0f;
    return m;
}

// Both FMCW chips, for the metrics translation.
const char* const kChips = R"({ "boards": [
    { "uuid": "m-7a", "chip": "KMR7A", "pacing": "unpaced" },
    { "uuid": "m-7c", "chip": "KMR7C", "pacing": "unpaced" } ] })";

// A change a row makes to a record; `f` scales the limit it sets.
using MetricsChange = std::function<void(vrn_Metrics_t&)>;
using LimitChange = std::function<void(vrn_Metrics_t&, const vrn_Metrics_Limits_t&, float f)>;
using ConfigChange = std::function<void(vrn_Device_Config_t&)>;

}  // namespace

Q_DECLARE_METATYPE(MetricsChange)
Q_DECLARE_METATYPE(LimitChange)
Q_DECLARE_METATYPE(ConfigChange)

// Signals of simulated scenes, and the metrics that configure them.
class SimulatorPhysicsTest : public QObject
{
    Q_OBJECT

private:
    SimulatorSdk sdk;
    vrn_Device_Handle device = nullptr;
    vrn_Frame_R_t* frame = nullptr;
    vrn_CW_Handle cw = nullptr;
    vrn_Device_Config_t config{};

    bool load(const QString& chip, const QString& targets, double noise = 0.0, int seed = 1)
    {
        return !sdk.sim->load_bench_json(oneBoardBench("phys-1", chip, targets, noise, seed).constData()) &&
               (device = sdk.open("phys-1"));
    }

    // Loads a one-board bench, configures it with the masks and fetches one frame.
    bool capture(const QString& chip, const QString& targets, uint32_t rxMask, uint32_t txMask = 1, double noise = 0.0,
                 int seed = 1)
    {
        if (!load(chip, targets, noise, seed))
            return false;
        vrn_Metrics_t m = sceneMetrics(rxMask);
        m.tx_mask = txMask;
        if (sdk.vrn->device_translate_metrics(device, &m, &config) || sdk.vrn->device_set_config(device, &config))
            return false;
        const uint32_t channels = uint32_t(__builtin_popcount(rxMask) * __builtin_popcount(txMask));
        if (sdk.vrn->frame_r_create(channels, config.num_chirps_per_frame, config.num_samples_per_chirp, &frame))
            return false;
        return sdk.vrn->device_get_next_frame(device, frame, 100) == VRN_STATUS_OK;
    }

    // One CW capture of `samples` at 1 MHz from the receivers of `rxMask`.
    bool cwCapture(uint32_t samples, uint32_t rxMask)
    {
        if (frame)
            sdk.vrn->frame_r_destroy(frame);
        frame = nullptr;
        return (cw || !sdk.vrn->cw_create(device, &cw)) && !sdk.vrn->cw_set_num_samples(cw, samples) &&
               !sdk.vrn->cw_set_rx_antenna_mask(cw, rxMask) &&
               !sdk.vrn->frame_r_create(uint32_t(__builtin_popcount(rxMask)), 1, samples, &frame) &&
               sdk.vrn->cw_capture_frame(cw, frame) == VRN_STATUS_OK;
    }

    // The spectrum value at `bin` of one chirp of one channel.
    std::complex<double> at(uint32_t channel, uint32_t chirp, size_t bin) const
    {
        const vrn_Matrix_R_s* m = frame->rx_data[channel];
        return dft(m->data + size_t(chirp) * m->stride, config.num_samples_per_chirp)[bin];
    }

    size_t binOf(double range) const
    {
        return size_t(std::lround(range * 2.0 * double(config.upper_frequency_Hz - config.lower_frequency_Hz) / kC));
    }

    // Opens `uuid` of the bench of both FMCW chips.
    bool openChip(const QString& uuid)
    {
        return !sdk.sim->load_bench_json(kChips) && (device = sdk.open(uuid.toUtf8().constData()));
    }

    QString translate(const vrn_Metrics_t& m, vrn_Device_Config_t& config)
    {
        const char* error = sdk.vrn->device_translate_metrics(device, &m, &config);
        return error ? QString::fromUtf8(error) : QString();
    }

    double wavelength() const
    {
        return kC / ((double(config.upper_frequency_Hz) + double(config.lower_frequency_Hz)) / 2.0);
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(sdk.vrn && sdk.sim, qPrintable(sdk.loadError()));
    }

    void cleanup()
    {
        if (cw)
            QVERIFY(!sdk.vrn->cw_destroy(cw));
        cw = nullptr;
        sdk.close(device, frame);
    }

    void targetAppearsAtItsBeatFrequencyBin_data()
    {
        QTest::addColumn<double>("range");
        QTest::newRow("1.5 m") << 1.5;
        QTest::newRow("6 m") << 6.0;
        QTest::newRow("8.1 m") << 8.1;
    }

    void targetAppearsAtItsBeatFrequencyBin()
    {
        QFETCH(double, range);
        QVERIFY(capture("KMR7A", target(range, R"(, "rcs_m2": 1.0)"), 0x4));
        // Beat frequency 2 R S / c with the slope S = B / (N / fs), then the
        // DFT bin of that frequency for N samples at fs.
        const double n = config.num_samples_per_chirp;
        const double fs = config.sample_rate_Hz;
        const double slope = double(config.upper_frequency_Hz - config.lower_frequency_Hz) / (n / fs);
        const size_t expected = size_t(std::lround(2.0 * range * slope / kC * n / fs));
        const auto spectrum = dft(frame->rx_data[0]->data, config.num_samples_per_chirp);
        QCOMPARE(peakBin(spectrum, 1, config.num_samples_per_chirp / 2), expected);
    }

    void dopplerPhaseAdvancesPerChirp_data()
    {
        QTest::addColumn<double>("speed");
        QTest::newRow("receding 1 m/s") << 1.0;
        QTest::newRow("approaching 0.5 m/s") << -0.5;
        QTest::newRow("approaching 1.7 m/s") << -1.7;
    }

    void dopplerPhaseAdvancesPerChirp()
    {
        QFETCH(double, speed);
        // Put the target on a bin so that the spectrum's image does not leak
        // into the phase.
        const double range = 15 * 0.3;
        QVERIFY(capture("KMR7A", target(range, moving(speed)), 0x4));
        const double expected = wrapPhase(4.0 * M_PI * speed * double(config.chirp_repetition_time_s) / wavelength());
        for (uint32_t chirp = 0; chirp + 1 < 8; ++chirp) {
            const double measured = std::arg(at(0, chirp + 1, binOf(range)) * std::conj(at(0, chirp, binOf(range))));
            QVERIFY2(std::abs(wrapPhase(measured - expected)) < 0.03,
                     qPrintable(QStringLiteral("chirp %1: %2 rad, expected %3").arg(chirp).arg(measured).arg(expected)));
        }
    }

    void phaseDifferencesGiveTheAngle_data()
    {
        QTest::addColumn<QString>("chip");
        QTest::addColumn<double>("angle");
        QTest::addColumn<double>("speed");
        QTest::newRow("one Tx, -40 deg") << "KMR7A" << -40.0 << 0.0;
        QTest::newRow("one Tx, -10 deg") << "KMR7A" << -10.0 << 0.0;
        QTest::newRow("one Tx, boresight") << "KMR7A" << 0.0 << 0.0;
        QTest::newRow("one Tx, 25 deg") << "KMR7A" << 25.0 << 0.0;
        QTest::newRow("one Tx, 50 deg") << "KMR7A" << 50.0 << 0.0;
        QTest::newRow("time division, still, -20 deg") << "KMR7C" << -20.0 << 0.0;
        QTest::newRow("time division, still, 15 deg") << "KMR7C" << 15.0 << 0.0;
        QTest::newRow("time division, receding, 10 deg") << "KMR7C" << 10.0 << 1.2;
    }

    // Rx1 and Rx3 sit half a wavelength apart: phase difference pi sin(angle).
    // With two transmitters the channels are Tx1Rx1, Tx1Rx3, Tx2Rx1, Tx2Rx3:
    // Tx2 stands one wavelength beside Tx1 and sends half a chirp repetition
    // time later.
    void phaseDifferencesGiveTheAngle()
    {
        QFETCH(QString, chip);
        QFETCH(double, angle);
        QFETCH(double, speed);
        const bool tdm = chip == QLatin1String("KMR7C");
        const double range = (tdm ? 10 : 12) * 0.3;
        QVERIFY(capture(chip, target(range, moving(speed, QStringLiteral(R"(, "angle_deg": %1)").arg(angle))), 0x5,
                        tdm ? 0x3 : 0x1));
        QCOMPARE(int(config.mimo_mode), int(tdm ? VRN_MIMO_TDM : VRN_MIMO_OFF));
        std::complex<double> phasor[4];
        for (uint32_t ch = 0; ch < (tdm ? 4u : 2u); ++ch)
            phasor[ch] = at(ch, 0, binOf(range));
        const double measured = std::asin(std::arg(phasor[0] * std::conj(phasor[1])) / M_PI) * 180.0 / M_PI;
        QVERIFY2(std::abs(measured - angle) < 1.0, qPrintable(QString::number(measured)));
        if (!tdm)
            return;
        const double s = std::sin(angle * M_PI / 180.0);
        const double halfChirp = 2.0 * M_PI * speed * double(config.chirp_repetition_time_s) / wavelength();
        QVERIFY(std::abs(wrapPhase(std::arg(phasor[0] * std::conj(phasor[1])) - M_PI * s)) < 0.03);
        QVERIFY(std::abs(wrapPhase(std::arg(phasor[2] * std::conj(phasor[0])) - (-2.0 * M_PI * s + halfChirp))) < 0.03);
        QVERIFY(std::abs(wrapPhase(std::arg(phasor[2] * std::conj(phasor[3])) - M_PI * s)) < 0.03);
    }

    void standingPersonStillMovesThePhase_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("breathes");
        QTest::newRow("person") << QStringLiteral("person") << true;
        QTest::newRow("reflector") << QStringLiteral("reflector") << false;
    }

    void standingPersonStillMovesThePhase()
    {
        QFETCH(QString, kind);
        QFETCH(bool, breathes);
        const double range = 8 * 0.3;
        QVERIFY(capture("KMR7A", target(range, R"(, "speed_m_s": 0.0, "min_range_m": 1.0, "max_range_m": 4.0)", kind),
                        0x4));
        // Over a second (ten frames) the chest moves by millimetres: several
        // radians at 60 GHz, summed from frame to frame to stay clear of wrapping.
        auto previous = at(0, 0, binOf(range));
        double change = 0;
        for (int i = 0; i < 10; ++i) {
            QCOMPARE(sdk.vrn->device_get_next_frame(device, frame, 100), VRN_STATUS_OK);
            const auto current = at(0, 0, binOf(range));
            change += std::abs(std::arg(current * std::conj(previous)));
            previous = current;
        }
        QCOMPARE(change > 0.5, breathes);
    }

    void noiseFollowsSeedAndLevel_data()
    {
        QTest::addColumn<double>("noise");
        QTest::newRow("quiet") << 0.002;
        QTest::newRow("noisy") << 0.02;
    }

    void noiseFollowsSeedAndLevel()
    {
        QFETCH(double, noise);
        std::vector<float> runs[3];
        const int seeds[3] = {7, 7, 8};
        for (int r = 0; r < 3; ++r) {
            QVERIFY(capture("KMR7A", QString(), 0x4, 1, noise, seeds[r]));
            const vrn_Matrix_R_s* m = frame->rx_data[0];
            runs[r].assign(m->data, m->data + size_t(m->rows) * m->stride);
            cleanup();
        }
        QVERIFY(runs[0] == runs[1]);
        QVERIFY(runs[0] != runs[2]);
        double sum = 0, squares = 0;
        for (float v : runs[0]) {
            sum += v - 0.5;
            squares += (v - 0.5) * (v - 0.5);
        }
        const double mean = sum / runs[0].size();
        const double sigma = std::sqrt(squares / runs[0].size() - mean * mean);
        // 12-bit quantisation adds 1/4095/sqrt(12) of its own.
        const double expected = std::sqrt(noise * noise + std::pow(1.0 / 4095.0, 2) / 12.0);
        QVERIFY2(std::abs(sigma - expected) < 0.15 * expected, qPrintable(QString::number(sigma)));
    }

    void cwCaptureCarriesTheTestTone_data()
    {
        QTest::addColumn<double>("frequency");
        QTest::addColumn<int>("bin");
        QTest::newRow("50 kHz") << 50000.0 << 10;
        QTest::newRow("125 kHz") << 125000.0 << 25;
        QTest::newRow("250 kHz") << 250000.0 << 50;
    }

    void cwCaptureCarriesTheTestTone()
    {
        QFETCH(double, frequency);
        QFETCH(int, bin);
        QVERIFY(load("KMR7A", QString(), 0.002));
        QVERIFY(!sdk.vrn->cw_create(device, &cw));
        const vrn_Device_Test_Signal_Generator_t tone{1, float(frequency)};
        QVERIFY(!sdk.vrn->cw_set_test_signal_generator(cw, &tone));
        QVERIFY(cwCapture(200, 0x5));
        for (uint32_t ch = 0; ch < 2; ++ch)
            QCOMPARE(int(peakBin(dft(frame->rx_data[ch]->data, 200), 1, 100)), bin);
    }

    // The receiver's noise share below `edgeHz` and its spread, from one
    // capture of 1024 samples at 1 MHz.
    void cwNoise(uint32_t gainIndex, uint32_t hpIndex, double edgeHz, double& lowShare, double& spread)
    {
        const uint32_t samples = 1024;
        QVERIFY(cw || !sdk.vrn->cw_create(device, &cw));
        const vrn_Device_Baseband_Config_t baseband{gainIndex, 0, hpIndex, 1};
        QVERIFY(!sdk.vrn->cw_set_baseband_config(cw, &baseband));
        QVERIFY(cwCapture(samples, 0x1));
        const float* x = frame->rx_data[0]->data;
        double mean = 0.0, power = 0.0;
        for (uint32_t n = 0; n < samples; ++n)
            mean += x[n] / samples;
        for (uint32_t n = 0; n < samples; ++n)
            power += (x[n] - mean) * (x[n] - mean) / samples;
        spread = std::sqrt(power);
        const std::vector<std::complex<double>> spectrum = dft(x, samples);
        double low = 0.0, all = 0.0;
        for (size_t k = 1; k < samples / 2; ++k) {
            all += std::norm(spectrum[k]);
            if (k * 1e6 / samples < edgeHz)
                low += std::norm(spectrum[k]);
        }
        lowShare = low / all;
    }

    void cwNoiseFollowsTheBasebandGainAndHighPass()
    {
        QVERIFY(load("KMR7C", QString(), 0.002));
        double lowAt20k = 0, lowAt160k = 0, quiet = 0, loud = 0, spread = 0;
        cwNoise(2, 0, 40e3, lowAt20k, quiet);  // amplifier 10 dB, high pass at 20 kHz
        cwNoise(6, 0, 40e3, lowAt20k, loud);   // amplifier 30 dB
        // The noise enters ahead of the amplifier: 20 dB more gain, ten
        // times the spread.
        QVERIFY2(loud / quiet > 8.0 && loud / quiet < 12.0, qPrintable(QString::number(loud / quiet)));
        // The higher cut-off empties the band below it.
        cwNoise(6, 4, 40e3, lowAt160k, spread);
        QVERIFY2(lowAt160k < 0.5 * lowAt20k, qPrintable(QString("%1 %2").arg(lowAt160k).arg(lowAt20k)));
    }

    void pulsedDopplerToneSitsAtTheDopplerFrequency_data()
    {
        QTest::addColumn<double>("speed");
        QTest::newRow("approaching 1 m/s") << -1.0;
        QTest::newRow("receding 0.5 m/s") << 0.5;
        QTest::newRow("approaching 2.5 m/s") << -2.5;
    }

    void pulsedDopplerToneSitsAtTheDopplerFrequency()
    {
        QFETCH(double, speed);
        QVERIFY(!sdk.sim->load_bench_json(oneBoardBench("phys-1", "ZP7", target(3.0, moving(speed))).constData()));
        vrn_Corvix_Handle zp7 = nullptr;
        QCOMPARE(sdk.vrn->corvix_create_by_uuid("phys-1", &zp7), VRN_STATUS_OK);
        vrn_Corvix_Frame_Config_t frameConfig{};
        vrn_Corvix_Pulse_Config_t pulse{};
        QVERIFY(!sdk.vrn->corvix_get_default_config(zp7, &frameConfig, &pulse));
        const uint32_t n = frameConfig.num_samples;
        vrn_Corvix_Frame_C_t* iq = nullptr;
        QVERIFY(!sdk.vrn->corvix_frame_c_create(1, n, &iq));
        QCOMPARE(sdk.vrn->corvix_get_next_frame(zp7, iq, 100), VRN_STATUS_OK);

        // Complex DFT of I + jQ; an approaching target has a positive Doppler frequency 2 |v| / lambda.
        const double doppler = -2.0 * speed / (kC / 24.125e9);
        std::vector<std::complex<double>> spectrum(n);
        for (uint32_t k = 0; k < n; ++k)
            for (uint32_t i = 0; i < n; ++i) {
                const vrn_Complex_t s = iq->channel_data[0]->data[i];
                spectrum[k] += std::complex<double>(s.re - 0.5, s.im - 0.5) * std::polar(1.0, -2.0 * M_PI * k * i / n);
            }
        const long expected =
            (std::lround(doppler * n * frameConfig.pulse_repetition_time_s) % long(n) + long(n)) % long(n);
        QCOMPARE(long(peakBin(spectrum, 0, n)), expected);
        sdk.vrn->corvix_frame_c_destroy(iq);
        sdk.vrn->corvix_destroy(zp7);
    }

    void shippedFilesTranslate_data()
    {
        QTest::addColumn<QString>("uuid");
        QTest::addColumn<float>("rangeResolution");
        QTest::addColumn<float>("frameTime");
        QTest::addColumn<uint>("rxMask");
        QTest::addColumn<uint>("txMask");
        QTest::addColumn<uint>("samples");
        QTest::newRow("defaultConfigKMR7A") << "m-7a" << 0.3f << 0.1f << 4u << 1u << 64u;
        QTest::newRow("defaultConfigPS_KMR7A") << "m-7a" << 0.15f << 0.2f << 4u << 1u << 128u;
        QTest::newRow("defaultConfigSeg_KMR7A") << "m-7a" << 0.15f << 0.1f << 5u << 1u << 128u;
        QTest::newRow("defaultConfigKMR7C") << "m-7c" << 0.3f << 0.1f << 1u << 1u << 64u;
        QTest::newRow("defaultConfigPS_KMR7C") << "m-7c" << 0.15f << 0.2f << 1u << 1u << 128u;
        // Two transmitters take turns: each sends every second chirp.
        QTest::newRow("KMR7C, time division") << "m-7c" << 0.3f << 0.1f << 0xfu << 3u << 64u;
    }

    void shippedFilesTranslate()
    {
        QFETCH(QString, uuid);
        QFETCH(float, rangeResolution);
        QFETCH(float, frameTime);
        QFETCH(uint, rxMask);
        QFETCH(uint, txMask);
        QFETCH(uint, samples);
        QVERIFY(openChip(uuid));
        vrn_Metrics_t m = shippedMetrics(rangeResolution, frameTime, rxMask);
        m.tx_mask = txMask;
        vrn_Device_Config_t config{};
        QCOMPARE(translate(m, config), QString());

        QCOMPARE(config.num_samples_per_chirp, samples);
        QCOMPARE(config.num_chirps_per_frame, 64u);
        const double bandwidth = double(config.upper_frequency_Hz - config.lower_frequency_Hz);
        QVERIFY(std::abs(bandwidth - kC / (2.0 * rangeResolution)) < 1e3);
        const double centre = (double(config.upper_frequency_Hz) + double(config.lower_frequency_Hz)) / 2.0;
        QVERIFY(std::abs(centre - double(m.center_frequency_Hz)) < 1.0);
        const double tc = kC / double(m.center_frequency_Hz) / (4.0 * double(m.max_speed_m_s));
        QVERIFY(std::abs(config.chirp_repetition_time_s - tc) < 1e-5 * tc);
        QCOMPARE(config.frame_repetition_time_s, frameTime);
        QCOMPARE(config.rx_mask, rxMask);
        QCOMPARE(int(config.mimo_mode), int(txMask == 1 ? VRN_MIMO_OFF : VRN_MIMO_TDM));
        float prt = 0;
        QVERIFY(!sdk.vrn->config_get_pulse_repetition_time(&config, &prt));
        QCOMPARE(prt, config.chirp_repetition_time_s / float(__builtin_popcount(txMask)));
        QCOMPARE(sdk.vrn->device_set_config(device, &config), nullptr);
        float chirpTime = 0;
        QVERIFY(!sdk.vrn->device_get_chirp_time(device, &config, &chirpTime));
        QCOMPARE(chirpTime, float(samples) / 1e6f);
    }

    void impossibleMetricsAreRefused_data()
    {
        QTest::addColumn<MetricsChange>("change");
        QTest::addColumn<QString>("reason");
        using M = vrn_Metrics_t;
        QTest::newRow("bandwidth beyond RF range")
            << MetricsChange([](M& m) { m.range_resolution_m = 0.02f; }) << "RF range";
        QTest::newRow("too many samples") << MetricsChange([](M& m) { m.max_range_m = 600.0f; }) << "samples per chirp";
        QTest::newRow("too many chirps")
            << MetricsChange([](M& m) { m.speed_resolution_m_s = 0.001f; }) << "chirps per frame";
        QTest::newRow("chirps longer than frame")
            << MetricsChange([](M& m) { m.frame_repetition_time_s = 0.02f; }) << "do not fit in a frame";
        QTest::newRow("chirp too short for its ramp")
            << MetricsChange([](M& m) { m.max_speed_m_s = 30.0f, m.speed_resolution_m_s = 30.0f / 32.0f; })
            << "shorter than";
        QTest::newRow("ADC too fast") << MetricsChange([](M& m) { m.sample_rate_Hz = 3000000; }) << "Sample rate";
        QTest::newRow("missing receiver") << MetricsChange([](M& m) { m.rx_mask = 8; }) << "Rx antenna mask";
        QTest::newRow("no transmitter") << MetricsChange([](M& m) { m.tx_mask = 0; }) << "Tx antenna mask";
        QTest::newRow("negative resolution") << MetricsChange([](M& m) { m.range_resolution_m = -0.3f; }) << "positive";
    }

    void impossibleMetricsAreRefused()
    {
        QFETCH(MetricsChange, change);
        QFETCH(QString, reason);
        QVERIFY(openChip("m-7a"));
        vrn_Metrics_t m = shippedMetrics(0.3f, 0.1f, 4);
        change(m);
        vrn_Device_Config_t config{};
        config.num_samples_per_chirp = 12345;
        const QString error = translate(m, config);
        QVERIFY2(error.contains(reason), qPrintable(error));
        QCOMPARE(config.num_samples_per_chirp, 12345u);  // untouched on failure
    }

    void limitsAreTheEdgesOfWhatTranslates_data()
    {
        QTest::addColumn<LimitChange>("change");
        QTest::addColumn<float>("at");
        QTest::addColumn<float>("beyond");
        using M = vrn_Metrics_t;
        using L = vrn_Metrics_Limits_t;
        QTest::newRow("max range min")
            << LimitChange([](M& m, const L& l, float f) { m.max_range_m = l.max_range_m_min * f; }) << 1.0f << 0.8f;
        QTest::newRow("max range max")
            << LimitChange([](M& m, const L& l, float f) { m.max_range_m = l.max_range_m_max * f; }) << 1.0f << 1.1f;
        QTest::newRow("speed resolution min")
            << LimitChange([](M& m, const L& l, float f) { m.speed_resolution_m_s = l.speed_resolution_m_s_min * f; })
            << 1.0f << 0.9f;
        // The chirp count stays as it is while the speed changes.
        QTest::newRow("max speed max") << LimitChange([](M& m, const L& l, float f) {
            m.max_speed_m_s = l.max_speed_m_s_max * f;
            m.speed_resolution_m_s = 2.0f * m.max_speed_m_s / 64.0f;
        }) << 0.9999f << 1.1f;
        QTest::newRow("frame time min")
            << LimitChange([](M& m, const L& l, float f) {
                   m.frame_repetition_time_s = l.frame_repetition_time_s_min * f;
               })
            << 1.00001f << 0.9f;
    }

    // At the limit the metrics translate; 10 % beyond it they do not.
    void limitsAreTheEdgesOfWhatTranslates()
    {
        QFETCH(LimitChange, change);
        QFETCH(float, at);
        QFETCH(float, beyond);
        QVERIFY(openChip("m-7a"));
        vrn_Metrics_Limits_t limits{};
        QVERIFY(!sdk.vrn->device_get_metrics_limits(device, &limits));
        QCOMPARE(limits.sample_rate_Hz_max, 2000000u);
        QCOMPARE(limits.rx_mask_max, 7u);
        QCOMPARE(limits.tx_mask_max, 1u);
        vrn_Metrics_t m = shippedMetrics(0.3f, 0.1f, 4);
        vrn_Device_Config_t config{};
        change(m, limits, at);
        QCOMPARE(translate(m, config), QString());
        change(m, limits, beyond);
        QVERIFY(!translate(m, config).isEmpty());
    }

    void invalidConfigRecordIsRefused_data()
    {
        QTest::addColumn<ConfigChange>("change");
        using C = vrn_Device_Config_t;
        QTest::newRow("too few samples") << ConfigChange([](C& c) { c.num_samples_per_chirp = 4; });
        QTest::newRow("upper below lower")
            << ConfigChange([](C& c) { c.upper_frequency_Hz = c.lower_frequency_Hz - 1; });
        QTest::newRow("tdm with one transmitter") << ConfigChange([](C& c) { c.mimo_mode = VRN_MIMO_TDM; });
    }

    void invalidConfigRecordIsRefused()
    {
        QFETCH(ConfigChange, change);
        QVERIFY(openChip("m-7a"));
        vrn_Device_Config_t good{}, kept{};
        QVERIFY(!sdk.vrn->device_get_config(device, &good));
        vrn_Device_Config_t bad = good;
        change(bad);
        QVERIFY(sdk.vrn->device_set_config(device, &bad) != nullptr);
        QVERIFY(!sdk.vrn->device_get_config(device, &kept));
        QCOMPARE(kept.num_samples_per_chirp, good.num_samples_per_chirp);
        QCOMPARE(kept.upper_frequency_Hz, good.upper_frequency_Hz);
        QCOMPARE(int(kept.mimo_mode), int(good.mimo_mode));
    }
};

QTEST_GUILESS_MAIN(SimulatorPhysicsTest)
#include "tst_simulator_physics.moc"
