#include "SimulatorSdk.h"

#include <QtTest>

#include <memory>

namespace {

// Two boards: the scene under test and an empty room with the same wall.
QByteArray benchWith(const QString& targets)
{
    return QStringLiteral(R"({ "boards": [
        { "uuid": "ps-scene", "chip": "KMR7A", "pacing": "unpaced", "noise": 0.002, "seed": 5,
          "scene": { "targets": [ { "kind": "reflector", "range_m": 3.0, "rcs_m2": 5.0 } %1 ] } },
        { "uuid": "ps-empty", "chip": "KMR7A", "pacing": "unpaced", "noise": 0.002, "seed": 6,
          "scene": { "targets": [ { "kind": "reflector", "range_m": 3.0, "rcs_m2": 5.0 } ] } } ] })")
        .arg(targets)
        .toUtf8();
}

const char* const kWalking =
    R"(, { "kind": "person", "range_m": 2.0, "speed_m_s": 0.8, "min_range_m": 1.0, "max_range_m": 4.0 })";
const char* const kBreathing = R"(, { "kind": "person", "range_m": 2.5, "speed_m_s": 0.0, "breathing_mm": 5 })";
const char* const kBeyond =
    R"(, { "kind": "person", "range_m": 7.0, "speed_m_s": 0.8, "min_range_m": 6.5, "max_range_m": 8.5 })";

}  // namespace

// Presence and absence on scripted scenes, within the confirm counts.
class SimulatorPresenceTest : public QObject
{
    Q_OBJECT

private:
    SimulatorSdk sdk;
    vrn_PresenceSensing_Config_t config{};

    struct Board {
        vrn_Device_Handle device = nullptr;
        vrn_Frame_R_t* frame = nullptr;
    };
    Board scene, empty;

    bool open(Board& board, const char* uuid)
    {
        board.device = sdk.open(uuid);
        return board.device && !sdk.vrn->device_set_config(board.device, &config.device_config) &&
               !sdk.vrn->frame_r_create(1, config.device_config.num_chirps_per_frame,
                                        config.device_config.num_samples_per_chirp, &board.frame);
    }

    void close(Board& board) { sdk.close(board.device, board.frame); }

    // Fetches the board's next frame and runs it through presence sensing.
    bool step(vrn_PresenceSensing_Handle ps, Board& board, vrn_PresenceSensing_Result_t& result)
    {
        const vrn_Matrix_R_s* channel = nullptr;
        const vrn_Matrix_R_s* input = nullptr;
        return sdk.vrn->device_get_next_frame(board.device, board.frame, 100) == VRN_STATUS_OK &&
               !sdk.vrn->frame_r_channel(board.frame, 0, &channel) && !sdk.vrn->ps_input_matrix(channel, &input) &&
               !sdk.vrn->ps_run(ps, input, &result);
    }

private slots:
    void initTestCase() { QVERIFY2(sdk.vrn && sdk.sim, qPrintable(sdk.loadError())); }

    void init()
    {
        QCOMPARE(sdk.vrn->ps_default_config(VRN_DEVICE_TYPE_KMR7A, &config), nullptr);
    }

    void cleanup()
    {
        close(scene);
        close(empty);
    }

    void defaultsDescribeTheFrames()
    {
        QCOMPARE(config.device_config.rx_mask, 0x4u);
        QCOMPARE(config.device_config.num_samples_per_chirp, 128u);
        QVERIFY(config.min_detection_range_m < config.max_detection_range_m);
        float resolution = 0.0f;
        QCOMPARE(sdk.vrn->ps_range_resolution(&config.device_config, &resolution), nullptr);
        QVERIFY(std::abs(resolution - 0.15f) < 1e-3f);
        QCOMPARE(config.range_resolution_m, resolution);
    }

    void presenceWithinConfirmCount_data()
    {
        QTest::addColumn<QString>("targets");
        QTest::addColumn<double>("low");
        QTest::addColumn<double>("high");
        QTest::newRow("walking person") << QString::fromLatin1(kWalking) << 1.0 << 4.0;
        QTest::newRow("person only breathing") << QString::fromLatin1(kBreathing) << 2.2 << 2.8;
    }

    // Absent until confirm-count frames have moved, present from then on;
    // after the person leaves, present until absence-confirm-count quiet frames.
    void presenceWithinConfirmCount()
    {
        QFETCH(QString, targets);
        QFETCH(double, low);
        QFETCH(double, high);
        QCOMPARE(sdk.sim->load_bench_json(benchWith(targets).constData()), nullptr);
        QVERIFY(open(scene, "ps-scene"));
        QVERIFY(open(empty, "ps-empty"));
        vrn_PresenceSensing_Handle ps = nullptr;
        QCOMPARE(sdk.vrn->ps_create(&config, &ps), nullptr);
        vrn_PresenceSensing_Result_t result{};
        for (uint32_t i = 1; i <= config.presence_confirm_count; ++i) {
            QVERIFY(step(ps, scene, result));
            QCOMPARE(result.frame_count, i);
            QCOMPARE(result.state, i < config.presence_confirm_count ? VRN_PRESENCE_STATE_ABSENCE
                                                                     : VRN_PRESENCE_STATE_PRESENCE);
        }
        QVERIFY2(result.target_range_m >= low && result.target_range_m <= high,
                 qPrintable(QString::number(result.target_range_m)));
        for (int i = 0; i < 20; ++i) {
            QVERIFY(step(ps, scene, result));
            QCOMPARE(result.state, VRN_PRESENCE_STATE_PRESENCE);
        }
        // The person leaves: the first empty frame still differs from the
        // last one with the person in it, then the room is quiet.
        for (uint32_t i = 1; i <= config.absence_confirm_count + 1; ++i) {
            QVERIFY(step(ps, empty, result));
            if (i < config.absence_confirm_count)
                QCOMPARE(result.state, VRN_PRESENCE_STATE_PRESENCE);
        }
        QCOMPARE(result.state, VRN_PRESENCE_STATE_ABSENCE);
        QCOMPARE(result.target_range_m, 0.0f);
        QCOMPARE(sdk.vrn->ps_destroy(ps), nullptr);
    }

    void absenceWhenNothingMovesInRange_data()
    {
        QTest::addColumn<QString>("targets");
        QTest::newRow("empty room with a wall") << QString();
        QTest::newRow("person beyond the maximum range") << QString::fromLatin1(kBeyond);
    }

    void absenceWhenNothingMovesInRange()
    {
        QFETCH(QString, targets);
        QCOMPARE(sdk.sim->load_bench_json(benchWith(targets).constData()), nullptr);
        QVERIFY(open(scene, "ps-scene"));
        vrn_PresenceSensing_Handle ps = nullptr;
        QCOMPARE(sdk.vrn->ps_create(&config, &ps), nullptr);
        vrn_PresenceSensing_Result_t result{};
        for (uint32_t i = 0; i < 3 * config.presence_confirm_count + 10; ++i) {
            QVERIFY(step(ps, scene, result));
            QCOMPARE(result.state, VRN_PRESENCE_STATE_ABSENCE);
            QVERIFY(result.motion_energy < config.sensitivity_threshold);
        }
        sdk.vrn->ps_destroy(ps);
    }

    void refusals_data()
    {
        QTest::addColumn<int>("field");
        QTest::addColumn<QString>("words");
        QTest::newRow("minimum above maximum") << 0 << "minimum detection range";
        QTest::newRow("no presence confirm") << 1 << "confirm counts";
        QTest::newRow("beyond the frame") << 2 << "beyond the frame";
        QTest::newRow("no bandwidth") << 3 << "bandwidth";
        QTest::newRow("wrong input shape") << 4 << "64 chirps x 128 samples";
        QTest::newRow("pulsed Doppler chip") << 5 << "FMCW chip";
    }

    void refusals()
    {
        QFETCH(int, field);
        QFETCH(QString, words);
        switch (field) {
        case 0: config.min_detection_range_m = 4.0f; config.max_detection_range_m = 2.0f; break;
        case 1: config.presence_confirm_count = 0; break;
        case 2: config.max_detection_range_m = 12.0f; break;
        case 3: config.device_config.upper_frequency_Hz = config.device_config.lower_frequency_Hz; break;
        }
        vrn_PresenceSensing_Handle ps = nullptr;
        const char* error = nullptr;
        if (field == 4) {
            QCOMPARE(sdk.vrn->ps_create(&config, &ps), nullptr);
            vrn_Matrix_R_s* wrong = nullptr;
            QCOMPARE(sdk.vrn->matrix_r_create(64, 64, &wrong), nullptr);
            vrn_PresenceSensing_Result_t result{};
            error = sdk.vrn->ps_run(ps, wrong, &result);
            QVERIFY(error);
            const QString text = QString::fromUtf8(error);
            sdk.vrn->matrix_r_destroy(wrong);
            sdk.vrn->ps_destroy(ps);
            QVERIFY2(text.contains(words), qPrintable(text));
            return;
        }
        if (field == 5)
            error = sdk.vrn->ps_default_config(VRN_DEVICE_TYPE_ZP7, &config);
        else
            error = sdk.vrn->ps_create(&config, &ps);
        QVERIFY(error);
        QVERIFY2(QString::fromUtf8(error).contains(words), error);
        QCOMPARE(ps, nullptr);
    }
};

QTEST_GUILESS_MAIN(SimulatorPresenceTest)
#include "tst_simulator_presence.moc"
