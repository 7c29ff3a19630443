#include "SimulatorSdk.h"

#include <QtTest>

#include <cmath>

// Simulated targets at known range and speed land in the right range bin and
// Doppler column, receding ones right of zero speed.
class SimulatorTargetsTest : public QObject
{
    Q_OBJECT

private:
    SimulatorSdk sdk;
    vrn_Device_Handle device = nullptr;
    vrn_Frame_R_t* frame = nullptr;
    vrn_Device_Config_t config{};

    bool capture(const QString& targets)
    {
        const QByteArray bench = oneBoardBench("dsp-1", QStringLiteral("KMR7A"), targets, 0.002, 3);
        if (sdk.sim->load_bench_json(bench.constData()))
            return false;
        device = sdk.open("dsp-1");
        const vrn_Metrics_t m = sceneMetrics(0x1);
        return device && !sdk.vrn->device_translate_metrics(device, &m, &config) &&
               !sdk.vrn->device_set_config(device, &config) &&
               !sdk.vrn->frame_r_create(1, config.num_chirps_per_frame, config.num_samples_per_chirp, &frame) &&
               sdk.vrn->device_get_next_frame(device, frame, 100) == VRN_STATUS_OK;
    }

private slots:
    void initTestCase() { QVERIFY2(sdk.vrn && sdk.sim, qPrintable(sdk.loadError())); }

    void cleanup() { sdk.close(device, frame); }

    void targetPeaksAtItsRangeAndSpeed_data()
    {
        QTest::addColumn<double>("range");
        QTest::addColumn<double>("speed");
        QTest::addColumn<bool>("clutter");
        QTest::newRow("2 m receding 1 m/s") << 2.0 << 1.0 << false;
        QTest::newRow("4.5 m approaching 1.5 m/s") << 4.5 << -1.5 << false;
        QTest::newRow("3.3 m receding 0.4 m/s") << 3.3 << 0.4 << false;
        QTest::newRow("7.2 m receding 2 m/s") << 7.2 << 2.0 << false;
        QTest::newRow("2.5 m approaching 0.3 m/s beside a wall") << 2.5 << -0.3 << true;
        QTest::newRow("5 m receding 0.8 m/s beside a wall") << 5.0 << 0.8 << true;
    }

    void targetPeaksAtItsRangeAndSpeed()
    {
        QFETCH(double, range);
        QFETCH(double, speed);
        QFETCH(bool, clutter);
        QString targets = QStringLiteral(R"({ "kind": "reflector", "range_m": %1, "speed_m_s": %2 })")
                              .arg(range)
                              .arg(speed);
        // A strong still reflector: mean removal across chirps must take it out.
        if (clutter)
            targets += QStringLiteral(R"(, { "kind": "reflector", "range_m": 6.3, "rcs_m2": 10.0 })");
        QVERIFY(capture(targets));

        vrn_RDM_Config_t c{};
        c.spect_threshold = 1e-6f;
        c.output_scale_type = VRN_SCALE_TYPE_DECIBEL_20LOG;
        c.range_fft_config = {VRN_FFT_TYPE_R2C, 256, 1, 1, {VRN_WINDOW_BLACKMANHARRIS, 64, 1.0f, 0.0f}};
        c.doppler_fft_config = {VRN_FFT_TYPE_C2C, 256, 1, 1, {VRN_WINDOW_CHEBYSHEV, 64, 1.0f, 100.0f}};
        vrn_RDM_Handle rdm = nullptr;
        QCOMPARE(sdk.vrn->rdm_create(&c, &rdm), nullptr);
        vrn_Math_Axis_Spec_s rangeAxis{}, speedAxis{};
        QCOMPARE(sdk.vrn->rdm_range_axis(rdm, config.upper_frequency_Hz - config.lower_frequency_Hz, &rangeAxis),
                 nullptr);
        const float fc = float((config.upper_frequency_Hz + config.lower_frequency_Hz) / 2);
        QCOMPARE(sdk.vrn->rdm_speed_axis(rdm, fc, config.chirp_repetition_time_s, &speedAxis), nullptr);
        vrn_Matrix_R_s* map = nullptr;
        QCOMPARE(sdk.vrn->matrix_r_create(128, 256, &map), nullptr);
        QCOMPARE(sdk.vrn->rdm_run(rdm, frame->rx_data[0], map), nullptr);

        uint32_t bestRow = 0, bestCol = 0;
        for (uint32_t r = 0; r < 128; ++r)
            for (uint32_t col = 0; col < 256; ++col)
                if (map->data[r * map->stride + col] > map->data[bestRow * map->stride + bestCol]) {
                    bestRow = r;
                    bestCol = col;
                }
        const int expectedRow = int(std::lround(range / rangeAxis.step));
        const int expectedCol = 128 + int(std::lround(speed / speedAxis.step));
        const QString where = QStringLiteral("peak at row %1 column %2, expected %3 / %4")
                                  .arg(bestRow)
                                  .arg(bestCol)
                                  .arg(expectedRow)
                                  .arg(expectedCol);
        QVERIFY2(std::abs(int(bestRow) - expectedRow) <= 1, qPrintable(where));
        QVERIFY2(std::abs(int(bestCol) - expectedCol) <= 1, qPrintable(where));
        QVERIFY2(speed > 0 ? bestCol > 128 : bestCol < 128, qPrintable(where));
        sdk.vrn->matrix_r_destroy(map);
        sdk.vrn->rdm_destroy(rdm);

        // The range spectrum of the first chirp peaks at the same range; the
        // wall, when there, is stronger, so look only near the target.
        vrn_RS_Config_t rc{};
        rc.spect_threshold = 1e-6f;
        rc.output_scale_type = VRN_SCALE_TYPE_LINEAR;
        rc.fft_config = c.range_fft_config;
        rc.num_of_chirps_per_frame = 64;
        vrn_RS_Handle rs = nullptr;
        QCOMPARE(sdk.vrn->rs_create(&rc, &rs), nullptr);
        vrn_Vector_R_s* spectrum = nullptr;
        QCOMPARE(sdk.vrn->vector_r_create(128, &spectrum), nullptr);
        QCOMPARE(sdk.vrn->rs_run(rs, frame->rx_data[0], spectrum), nullptr);
        vrn_Math_Axis_Spec_s distance{};
        QCOMPARE(sdk.vrn->rs_distance_axis(256, 64, 9.6f, &distance), nullptr);
        const int near = int(std::lround(range / distance.step));
        int best = near - 6;
        for (int k = near - 6; k <= near + 6; ++k)
            if (spectrum->data[k] > spectrum->data[best])
                best = k;
        QVERIFY2(std::abs(best - near) <= 1, qPrintable(QStringLiteral("bin %1, expected %2").arg(best).arg(near)));
        sdk.vrn->vector_r_destroy(spectrum);
        sdk.vrn->rs_destroy(rs);
    }
};

QTEST_GUILESS_MAIN(SimulatorTargetsTest)
#include "tst_simulator_targets.moc"
