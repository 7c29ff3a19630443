#include "SimulatorSdk.h"

#include <QtTest>

#include <cmath>
#include <functional>

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
    { "uuid": "m-7c", "chip": "KMR7C", "pacing": "unpaced" } ] })";

// A change a row makes to a record; `f` scales the limit it sets.
using MetricsChange = std::function<void(vrn_Metrics_t&)>;
using LimitChange = std::function<void(vrn_Metrics_t&, const vrn_Metrics_Limits_t&, float f)>;
using ConfigChange = std::function<void(vrn_Device_Config_t&)>;

}  // namespace

Q_DECLARE_METATYPE(MetricsChange)
Q_DECLARE_METATYPE(LimitChange)
Q_DECLARE_METATYPE(ConfigChange)

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
        QVERIFY(device = sdk.open(uuid.toUtf8().constData()));
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
        QVERIFY(device = sdk.open("m-7a"));
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
        QVERIFY(device = sdk.open("m-7a"));
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
        QVERIFY(device = sdk.open("m-7a"));
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

QTEST_GUILESS_MAIN(SimulatorMetricsTest)
#include "tst_simulator_metrics.moc"
