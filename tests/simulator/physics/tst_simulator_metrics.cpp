#include "SimulatorSdk.h"

#include <QtTest>

#include <cmath>

namespace {

constexpr double kC = 299792458.0;

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

const char* const kBench = R"({ "boards": [
    { "uuid": "m-7a", "chip": "KMR7A", "pacing": "unpaced" },
    { "uuid": "m-7b", "chip": "KMR7B", "pacing": "unpaced" },
    { "uuid": "m-7c", "chip": "KMR7C", "pacing": "unpaced" } ] })";

}  // namespace

class SimulatorMetricsTest : public QObject
{
    Q_OBJECT

private:
    SimulatorSdk sdk;
    vrn_Device_Handle device = nullptr;

    QString translate(const vrn_Metrics_t& m, vrn_Device_Config_t& config)
    {
        const char* error = sdk.vrn->device_translate_metrics(device, &m, &config);
        return error ? QString::fromUtf8(error) : QString();
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(sdk.vrn && sdk.sim, qPrintable(sdk.loadError()));
        QVERIFY(!sdk.sim->load_bench_json(kBench));
    }

    void cleanup()
    {
        if (device)
            QVERIFY(!sdk.vrn->device_destroy(device));
        device = nullptr;
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
        device = sdk.open(uuid.toUtf8().constData());
        QVERIFY(device);
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
        QTest::addColumn<QString>("field");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("reason");
        QTest::newRow("bandwidth beyond RF range") << "range_resolution" << 0.02 << "RF range";
        QTest::newRow("too many samples") << "max_range" << 600.0 << "samples per chirp";
        QTest::newRow("too many chirps") << "speed_resolution" << 0.001 << "chirps per frame";
        QTest::newRow("chirps longer than frame") << "frame_time" << 0.02 << "do not fit in a frame";
        QTest::newRow("chirp too short for its ramp") << "max_speed" << 30.0 << "shorter than";
        QTest::newRow("ADC too fast") << "sample_rate" << 3e6 << "Sample rate";
        QTest::newRow("missing receiver") << "rx_mask" << 8.0 << "Rx antenna mask";
        QTest::newRow("no transmitter") << "tx_mask" << 0.0 << "Tx antenna mask";
        QTest::newRow("negative resolution") << "range_resolution" << -0.3 << "positive";
    }

    void impossibleMetricsAreRefused()
    {
        QFETCH(QString, field);
        QFETCH(double, value);
        QFETCH(QString, reason);
        device = sdk.open("m-7a");
        QVERIFY(device);
        vrn_Metrics_t m = shippedMetrics(0.3f, 0.1f, 4);
        if (field == "range_resolution") m.range_resolution_m = float(value);
        if (field == "max_range") m.max_range_m = float(value);
        if (field == "speed_resolution") m.speed_resolution_m_s = float(value);
        if (field == "frame_time") m.frame_repetition_time_s = float(value);
        if (field == "max_speed") {
            m.max_speed_m_s = float(value);
            m.speed_resolution_m_s = float(value / 32.0);
        }
        if (field == "sample_rate") m.sample_rate_Hz = uint32_t(value);
        if (field == "rx_mask") m.rx_mask = uint32_t(value);
        if (field == "tx_mask") m.tx_mask = uint32_t(value);
        vrn_Device_Config_t config{};
        config.num_samples_per_chirp = 12345;
        const QString error = translate(m, config);
        QVERIFY2(error.contains(reason), qPrintable(error));
        QCOMPARE(config.num_samples_per_chirp, 12345u);  // untouched on failure
    }

    void limitsAreTheEdgesOfWhatTranslates_data()
    {
        QTest::addColumn<QString>("metric");
        QTest::newRow("max range min") << "max_range_min";
        QTest::newRow("max range max") << "max_range_max";
        QTest::newRow("speed resolution min") << "speed_resolution_min";
        QTest::newRow("max speed max") << "max_speed_max";
        QTest::newRow("frame time min") << "frame_time_min";
    }

    void limitsAreTheEdgesOfWhatTranslates()
    {
        QFETCH(QString, metric);
        device = sdk.open("m-7a");
        QVERIFY(device);
        vrn_Metrics_Limits_t limits{};
        QVERIFY(!sdk.vrn->device_get_metrics_limits(device, &limits));
        QCOMPARE(limits.sample_rate_Hz_max, 2000000u);
        QCOMPARE(limits.rx_mask_max, 7u);
        QCOMPARE(limits.tx_mask_max, 1u);

        // At the limit the metrics translate; 10 % beyond it they do not.
        vrn_Metrics_t at = shippedMetrics(0.3f, 0.1f, 4);
        vrn_Metrics_t beyond = at;
        if (metric == "max_range_min") {
            at.max_range_m = limits.max_range_m_min;
            beyond.max_range_m = limits.max_range_m_min * 0.8f;
        } else if (metric == "max_range_max") {
            at.max_range_m = limits.max_range_m_max;
            beyond.max_range_m = limits.max_range_m_max * 1.1f;
        } else if (metric == "speed_resolution_min") {
            at.speed_resolution_m_s = limits.speed_resolution_m_s_min;
            beyond.speed_resolution_m_s = limits.speed_resolution_m_s_min * 0.9f;
        } else if (metric == "max_speed_max") {
            at.max_speed_m_s = limits.max_speed_m_s_max * 0.9999f;
            beyond.max_speed_m_s = limits.max_speed_m_s_max * 1.1f;
            // Keep the chirp count as it is while the speed changes.
            at.speed_resolution_m_s = 2.0f * at.max_speed_m_s / 64.0f;
            beyond.speed_resolution_m_s = 2.0f * beyond.max_speed_m_s / 64.0f;
        } else if (metric == "frame_time_min") {
            at.frame_repetition_time_s = limits.frame_repetition_time_s_min * 1.00001f;
            beyond.frame_repetition_time_s = limits.frame_repetition_time_s_min * 0.9f;
        }
        vrn_Device_Config_t config{};
        QCOMPARE(translate(at, config), QString());
        QVERIFY(!translate(beyond, config).isEmpty());
    }

    void invalidConfigRecordIsRefused_data()
    {
        QTest::addColumn<QString>("change");
        QTest::newRow("too few samples") << "samples";
        QTest::newRow("upper below lower") << "band";
        QTest::newRow("tdm with one transmitter") << "mimo";
    }

    void invalidConfigRecordIsRefused()
    {
        QFETCH(QString, change);
        device = sdk.open("m-7a");
        QVERIFY(device);
        vrn_Device_Config_t good{};
        QVERIFY(!sdk.vrn->device_get_config(device, &good));
        vrn_Device_Config_t bad = good;
        if (change == "samples") bad.num_samples_per_chirp = 4;
        if (change == "band") bad.upper_frequency_Hz = bad.lower_frequency_Hz - 1;
        if (change == "mimo") bad.mimo_mode = VRN_MIMO_TDM;
        QVERIFY(sdk.vrn->device_set_config(device, &bad) != nullptr);
        vrn_Device_Config_t kept{};
        QVERIFY(!sdk.vrn->device_get_config(device, &kept));
        QCOMPARE(kept.num_samples_per_chirp, good.num_samples_per_chirp);
        QCOMPARE(kept.upper_frequency_Hz, good.upper_frequency_Hz);
        QCOMPARE(int(kept.mimo_mode), int(good.mimo_mode));
    }
};

QTEST_GUILESS_MAIN(SimulatorMetricsTest)
#include "tst_simulator_metrics.moc"
