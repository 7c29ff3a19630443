#include "SimulatorSdk.h"

#include <QtTest>

#include <cmath>

namespace {

QString mover(double range, double speed, double angle)
{
    return QStringLiteral(R"({ "kind": "reflector", "range_m": %1, "speed_m_s": %2, "angle_deg": %3 })")
        .arg(range)
        .arg(speed)
        .arg(angle);
}

}  // namespace

// Tracks, angles and segments on simulated Rx1 + Rx3 frames.
class SimulatorSegmentationTest : public QObject
{
    Q_OBJECT

private:
    SimulatorSdk sdk;
    vrn_Device_Handle device = nullptr;
    vrn_Frame_R_t* frame = nullptr;
    vrn_Device_Config_t deviceConfig{};
    vrn_Segmentation_Config_t config{};

    bool open(const QString& targets)
    {
        const QByteArray bench = oneBoardBench("seg-1", QStringLiteral("KMR7A"), targets, 0.002, 9);
        if (sdk.sim->load_bench_json(bench.constData()))
            return false;
        device = sdk.open("seg-1");
        // Rx1 and Rx3, 15 cm.
        const vrn_Metrics_t m = sceneMetrics(0x5, 0.15f);
        return device && !sdk.vrn->device_translate_metrics(device, &m, &deviceConfig) &&
               !sdk.vrn->device_set_config(device, &deviceConfig) &&
               !sdk.vrn->frame_r_create(2, deviceConfig.num_chirps_per_frame, deviceConfig.num_samples_per_chirp,
                                        &frame) &&
               !sdk.vrn->seg_default_config(VRN_DEVICE_TYPE_KMR7A, &deviceConfig, &config);
    }

    bool step(vrn_Segmentation_Handle seg, vrn_Segmentation_Result_t& result)
    {
        return sdk.vrn->device_get_next_frame(device, frame, 100) == VRN_STATUS_OK &&
               !sdk.vrn->seg_run(seg, frame, &result);
    }

private slots:
    void initTestCase() { QVERIFY2(sdk.vrn && sdk.sim, qPrintable(sdk.loadError())); }

    void cleanup() { sdk.close(device, frame); }

    void angleAndSegmentOfOneTarget_data()
    {
        QTest::addColumn<double>("angle");
        QTest::addColumn<int>("segment");  // of the default 3 x 40 degrees
        QTest::newRow("-30 deg") << -30.0 << 0;
        QTest::newRow("-12 deg") << -12.0 << 1;
        QTest::newRow("boresight") << 0.0 << 1;
        QTest::newRow("30 deg") << 30.0 << 2;
        QTest::newRow("45 deg") << 45.0 << 2;
    }

    void angleAndSegmentOfOneTarget()
    {
        QFETCH(double, angle);
        QFETCH(int, segment);
        QVERIFY(open(mover(2.5, 0.5, angle)));
        vrn_Segmentation_Handle seg = nullptr;
        QCOMPARE(sdk.vrn->seg_create(&config, &seg), nullptr);
        vrn_Segmentation_Result_t result{};
        uint32_t id = 0;
        for (int i = 0; i < 6; ++i) {
            QVERIFY(step(seg, result));
            if (i == 0) {
                QCOMPARE(result.num_tracks, 0u);  // hysteresis: shown from the second hit
                continue;
            }
            QCOMPARE(result.num_tracks, 1u);
            if (id == 0)
                id = result.tracks[0].id;
            QCOMPARE(result.tracks[0].id, id);
        }
        const vrn_Segmentation_Track_t& track = result.tracks[0];
        QVERIFY2(std::abs(track.angle_deg - angle) < 5.0, qPrintable(QString::number(track.angle_deg)));
        QVERIFY2(std::abs(track.range_m - 2.75) < 0.4, qPrintable(QString::number(track.range_m)));
        QVERIFY2(std::abs(track.speed_m_s - 0.5) < 0.15, qPrintable(QString::number(track.speed_m_s)));
        QCOMPARE(result.num_segments, 3u);
        for (int s = 0; s < 3; ++s)
            QCOMPARE(int(result.segment_occupied[s]), s == segment ? 1 : 0);
        sdk.vrn->seg_destroy(seg);
    }

    void twoTargetsKeepTheirIdentifiers()
    {
        QVERIFY(open(mover(1.5, 0.6, -30.0) + QLatin1Char(',') + mover(3.5, -0.7, 25.0)));
        config.enable_hysteresis = 0;
        vrn_Segmentation_Handle seg = nullptr;
        QCOMPARE(sdk.vrn->seg_create(&config, &seg), nullptr);
        vrn_Segmentation_Result_t result{};
        QVERIFY(step(seg, result));
        QCOMPARE(result.num_tracks, 2u);  // no hysteresis: shown at once
        auto idNear = [&](double angle) {
            for (uint32_t i = 0; i < result.num_tracks; ++i)
                if (std::abs(result.tracks[i].angle_deg - angle) < 5.0)
                    return result.tracks[i].id;
            return 0u;
        };
        const uint32_t left = idNear(-30.0), right = idNear(25.0);
        QVERIFY(left != 0 && right != 0 && left != right);
        for (int i = 0; i < 5; ++i) {
            QVERIFY(step(seg, result));
            QCOMPARE(result.num_tracks, 2u);
            QCOMPARE(idNear(-30.0), left);
            QCOMPARE(idNear(25.0), right);
        }
        QCOMPARE(int(result.segment_occupied[0]), 1);
        QCOMPARE(int(result.segment_occupied[1]), 0);
        QCOMPARE(int(result.segment_occupied[2]), 1);
        sdk.vrn->seg_destroy(seg);
    }

    void staticTargetsFollowTheRemovalLevel_data()
    {
        QTest::addColumn<int>("level");
        QTest::addColumn<uint32_t>("tracks");
        QTest::newRow("medium removal hides a still target") << int(VRN_LEVEL_MED) << 0u;
        QTest::newRow("low removal keeps it") << int(VRN_LEVEL_LOW) << 1u;
    }

    void staticTargetsFollowTheRemovalLevel()
    {
        QFETCH(int, level);
        QFETCH(uint32_t, tracks);
        QVERIFY(open(mover(3.0, 0.0, 10.0)));
        config.static_target_removal = vrn_Level_t(level);
        vrn_Segmentation_Handle seg = nullptr;
        QCOMPARE(sdk.vrn->seg_create(&config, &seg), nullptr);
        vrn_Segmentation_Result_t result{};
        for (int i = 0; i < 4; ++i)
            QVERIFY(step(seg, result));
        QCOMPARE(result.num_tracks, tracks);
        if (tracks)
            QVERIFY(std::abs(result.tracks[0].speed_m_s) < 0.05f);
        sdk.vrn->seg_destroy(seg);
    }

    void refusals()
    {
        QVERIFY(open(mover(2.0, 0.5, 0.0)));
        vrn_Segmentation_Handle seg = nullptr;
        vrn_Segmentation_Config_t bad = config;
        bad.max_num_tracks = 0;
        QVERIFY(QString::fromUtf8(sdk.vrn->seg_create(&bad, &seg)).contains("tracks"));
        bad = config;
        bad.num_segments = 4;
        QVERIFY(QString::fromUtf8(sdk.vrn->seg_create(&bad, &seg)).contains("segments"));
        QCOMPARE(seg, nullptr);
        QVERIFY(QString::fromUtf8(sdk.vrn->seg_default_config(VRN_DEVICE_TYPE_ZP7, &deviceConfig, &bad))
                    .contains("FMCW chip"));

        QCOMPARE(sdk.vrn->seg_create(&config, &seg), nullptr);
        vrn_Frame_R_t* three = nullptr;
        QCOMPARE(sdk.vrn->frame_r_create(3, deviceConfig.num_chirps_per_frame, deviceConfig.num_samples_per_chirp,
                                         &three),
                 nullptr);
        vrn_Segmentation_Result_t result{};
        QVERIFY(QString::fromUtf8(sdk.vrn->seg_run(seg, three, &result)).contains("this one has 3"));
        sdk.vrn->frame_r_destroy(three);
        QCOMPARE(sdk.vrn->seg_destroy(seg), nullptr);
        QVERIFY(sdk.vrn->seg_destroy(nullptr));
    }
};

QTEST_GUILESS_MAIN(SimulatorSegmentationTest)
#include "tst_simulator_segmentation.moc"
