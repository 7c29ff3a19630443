#include "ReferenceData.h"
#include "SimulatorSdk.h"

#include <QtTest>

#include <atomic>
#include <cmath>
#include <memory>
#include <thread>
#include <vector>

namespace {

vrn_RS_Config_t rsConfig(int window, uint32_t size, float attenuation, uint32_t fft, bool mean, bool normalized,
                         float scale, int output, float threshold)
{
    vrn_RS_Config_t c{};
    c.spect_threshold = threshold;
    c.output_scale_type = vrn_Scale_Type_t(output);
    c.fft_config.fft_type = VRN_FFT_TYPE_R2C;
    c.fft_config.fft_size = fft;
    c.fft_config.mean_removal_enabled = mean;
    c.fft_config.is_normalized_window = normalized;
    c.fft_config.window_config = {vrn_Window_Type_t(window), size, scale, attenuation};
    c.num_of_chirps_per_frame = 1;
    return c;
}

vrn_PPFFT_Config_t ppfft(const QVector<double>& v, int at, uint32_t size, vrn_FFT_Type_t type)
{
    vrn_PPFFT_Config_t c{};
    c.fft_type = type;
    c.fft_size = uint32_t(v[at + 2]);
    c.mean_removal_enabled = uint8_t(v[at + 3]);
    c.is_normalized_window = uint8_t(v[at + 4]);
    c.window_config = {vrn_Window_Type_t(int(v[at])), size, 1.0f, float(v[at + 1])};
    return c;
}

vrn_RDM_Config_t defaultRdm()
{
    vrn_RDM_Config_t c{};
    c.spect_threshold = 1e-6f;
    c.output_scale_type = VRN_SCALE_TYPE_DECIBEL_20LOG;
    c.range_fft_config = {VRN_FFT_TYPE_R2C, 256, 1, 1, {VRN_WINDOW_BLACKMANHARRIS, 64, 1.0f, 0.0f}};
    c.doppler_fft_config = {VRN_FFT_TYPE_C2C, 256, 1, 1, {VRN_WINDOW_CHEBYSHEV, 64, 1.0f, 100.0f}};
    return c;
}

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


QString mover(double range, double speed, double angle)
{
    return QStringLiteral(R"({ "kind": "reflector", "range_m": %1, "speed_m_s": %2, "angle_deg": %3 })")
        .arg(range)
        .arg(speed)
        .arg(angle);
}

}  // namespace

// Windows, spectra and maps against numpy/scipy, the axes, and every refusal;
// presence and absence on scripted scenes, within the confirm counts; tracks,
// angles and segments on simulated Rx1 + Rx3 frames.
class SimulatorProcessingTest : public QObject
{
    Q_OBJECT

private:
    SimulatorSdk sdk;

    // A matrix of the SDK holding `values` row by row.
    std::shared_ptr<vrn_Matrix_R_s> matrix(uint32_t rows, uint32_t cols, const double* values = nullptr)
    {
        vrn_Matrix_R_s* m = nullptr;
        if (sdk.vrn->matrix_r_create(rows, cols, &m))
            return nullptr;
        for (uint32_t i = 0; values && i < rows * cols; ++i)
            m->data[size_t(i / cols) * m->stride + i % cols] = float(values[i]);
        const Vrn* vrn = sdk.vrn;
        return std::shared_ptr<vrn_Matrix_R_s>(m, [vrn](vrn_Matrix_R_s* p) { vrn->matrix_r_destroy(p); });
    }

    std::shared_ptr<vrn_Vector_R_s> vector(uint32_t len)
    {
        vrn_Vector_R_s* v = nullptr;
        if (sdk.vrn->vector_r_create(len, &v))
            return nullptr;
        const Vrn* vrn = sdk.vrn;
        return std::shared_ptr<vrn_Vector_R_s>(v, [vrn](vrn_Vector_R_s* p) { vrn->vector_r_destroy(p); });
    }

    vrn_PresenceSensing_Config_t psConfig{};

    struct Board {
        vrn_Device_Handle device = nullptr;
        vrn_Frame_R_t* frame = nullptr;
    };
    Board scene, empty;

    bool open(Board& board, const char* uuid)
    {
        board.device = sdk.open(uuid);
        return board.device && !sdk.vrn->device_set_config(board.device, &psConfig.device_config) &&
               !sdk.vrn->frame_r_create(1, psConfig.device_config.num_chirps_per_frame,
                                        psConfig.device_config.num_samples_per_chirp, &board.frame);
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

    vrn_Device_Handle device = nullptr;
    vrn_Frame_R_t* frame = nullptr;
    vrn_Device_Config_t deviceConfig{};
    vrn_Segmentation_Config_t segConfig{};

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
               !sdk.vrn->seg_default_config(VRN_DEVICE_TYPE_KMR7A, &deviceConfig, &segConfig);
    }

    bool step(vrn_Segmentation_Handle seg, vrn_Segmentation_Result_t& result)
    {
        return sdk.vrn->device_get_next_frame(device, frame, 100) == VRN_STATUS_OK &&
               !sdk.vrn->seg_run(seg, frame, &result);
    }

private slots:
    void initTestCase() { QVERIFY2(sdk.vrn && sdk.sim, qPrintable(sdk.loadError())); }

    void init() { QCOMPARE(sdk.vrn->ps_default_config(VRN_DEVICE_TYPE_KMR7A, &psConfig), nullptr); }

    void cleanup()
    {
        close(scene);
        close(empty);
        sdk.close(device, frame);
    }


    void windowMatchesScipy_data()
    {
        QTest::addColumn<QVector<double>>("row");
        const QVector<ReferenceLine> lines = readReference(QStringLiteral("windows.txt"));
        QVERIFY(!lines.isEmpty());
        for (const ReferenceLine& line : lines)
            QTest::addRow("type %d, %d points, %g dB", int(line.values[0]), int(line.values[1]), line.values[2])
                << line.values;
    }

    // An impulse at sample n has the flat spectrum |w[n]|: with no mean
    // removal, no normalisation and a linear scale every bin shows the
    // window's n-th coefficient.
    void windowMatchesScipy()
    {
        QFETCH(QVector<double>, row);
        const uint32_t size = uint32_t(row[1]);
        uint32_t fft = 2;
        while (fft < size)
            fft *= 2;
        const vrn_RS_Config_t config = rsConfig(int(row[0]), size, float(row[2]), fft, false, false, 1.0f, 0, 1e-6f);
        vrn_RS_Handle rs = nullptr;
        QCOMPARE(sdk.vrn->rs_create(&config, &rs), nullptr);
        auto input = matrix(1, size);
        auto output = vector(fft / 2);
        for (uint32_t n = 0; n < size; ++n) {
            std::fill(input->data, input->data + size, 0.0f);
            input->data[n] = 1.0f;
            QCOMPARE(sdk.vrn->rs_run(rs, input.get(), output.get()), nullptr);
            for (uint32_t k = 0; k < fft / 2; ++k)
                QVERIFY2(std::abs(output->data[k] - std::abs(row[3 + n])) < 2e-6,
                         qPrintable(QStringLiteral("w[%1] = %2, scipy %3").arg(n).arg(output->data[k]).arg(row[3 + n])));
        }
        QCOMPARE(sdk.vrn->rs_destroy(rs), nullptr);
    }

    void rangeSpectrumMatchesNumpy_data()
    {
        QTest::addColumn<QVector<double>>("setup");
        QTest::addColumn<QVector<double>>("input");
        QTest::addColumn<QVector<double>>("expected");
        const QVector<ReferenceLine> lines = readReference(QStringLiteral("spectra.txt"));
        QCOMPARE(lines.size() % 3, 0);
        for (int i = 0; i + 2 < lines.size(); i += 3) {
            const QVector<double>& s = lines[i].values;
            QTest::addRow("window %d, %d of %d, mean %d, norm %d, scale %d", int(s[0]), int(s[1]), int(s[3]),
                          int(s[4]), int(s[5]), int(s[7]))
                << s << lines[i + 1].values << lines[i + 2].values;
        }
    }

    void rangeSpectrumMatchesNumpy()
    {
        QFETCH(QVector<double>, setup);
        QFETCH(QVector<double>, input);
        QFETCH(QVector<double>, expected);
        const int scale = int(setup[7]);
        const vrn_RS_Config_t config = rsConfig(int(setup[0]), uint32_t(setup[1]), float(setup[2]), uint32_t(setup[3]),
                                                setup[4] != 0, setup[5] != 0, float(setup[6]), scale, float(setup[8]));
        vrn_RS_Handle rs = nullptr;
        QCOMPARE(sdk.vrn->rs_create(&config, &rs), nullptr);
        // Two chirps go in; only the first one counts.
        auto in = matrix(uint32_t(input[0]), uint32_t(input[1]), input.constData() + 2);
        auto out = vector(uint32_t(setup[3]) / 2);
        QCOMPARE(sdk.vrn->rs_run(rs, in.get(), out.get()), nullptr);
        QCOMPARE(int(out->len), expected.size());
        const double error = worstRelativeError(out->data, expected, scale);
        QVERIFY2(error < 1e-4, qPrintable(QString::number(error)));
        QCOMPARE(sdk.vrn->rs_destroy(rs), nullptr);
    }

    void rangeDopplerMapMatchesNumpy_data()
    {
        QTest::addColumn<QVector<double>>("setup");
        QTest::addColumn<QVector<double>>("input");
        QTest::addColumn<QVector<double>>("expected");
        const QVector<ReferenceLine> lines = readReference(QStringLiteral("rdm.txt"));
        QVERIFY(!lines.isEmpty());
        for (int i = 0; i + 2 < lines.size(); i += 3)
            QTest::addRow("%d chirps, range FFT %d, Doppler FFT %d, scale %d", int(lines[i + 1].values[0]),
                          int(lines[i].values[2]), int(lines[i].values[7]), int(lines[i].values[10]))
                << lines[i].values << lines[i + 1].values << lines[i + 2].values;
    }

    void rangeDopplerMapMatchesNumpy()
    {
        QFETCH(QVector<double>, setup);
        QFETCH(QVector<double>, input);
        QFETCH(QVector<double>, expected);
        const uint32_t chirps = uint32_t(input[0]);
        const uint32_t samples = uint32_t(input[1]);
        vrn_RDM_Config_t config{};
        config.range_fft_config = ppfft(setup, 0, samples, VRN_FFT_TYPE_R2C);
        config.doppler_fft_config = ppfft(setup, 5, chirps, VRN_FFT_TYPE_C2C);
        const int scale = int(setup[10]);
        config.output_scale_type = vrn_Scale_Type_t(scale);
        config.spect_threshold = float(setup[11]);
        vrn_RDM_Handle rdm = nullptr;
        QCOMPARE(sdk.vrn->rdm_create(&config, &rdm), nullptr);
        auto in = matrix(chirps, samples, input.constData() + 2);
        const uint32_t rows = config.range_fft_config.fft_size / 2;
        const uint32_t cols = config.doppler_fft_config.fft_size;
        auto out = matrix(rows, cols);
        QCOMPARE(sdk.vrn->rdm_run(rdm, in.get(), out.get()), nullptr);
        // Large maps are kept for every step-th range bin only.
        const uint32_t step = uint32_t(setup[12]);
        QVector<float> kept;
        for (uint32_t r = 0; r < rows; r += step)
            kept.append(QVector<float>(out->data + r * out->stride, out->data + r * out->stride + cols));
        QCOMPARE(kept.size(), expected.size());
        const double error = worstRelativeError(kept.constData(), expected, scale);
        QVERIFY2(error < 1e-4, qPrintable(QString::number(error)));
        QCOMPARE(sdk.vrn->rdm_destroy(rdm), nullptr);
    }

    // A tone's peak height stays A/2 whatever the window and its length.
    void normalisedWindowKeepsTonePeak_data()
    {
        QTest::addColumn<int>("window");
        QTest::addColumn<uint32_t>("size");
        QTest::newRow("Hamming 64") << int(VRN_WINDOW_HAMMING) << 64u;
        QTest::newRow("Blackman-Harris 256") << int(VRN_WINDOW_BLACKMANHARRIS) << 256u;
        QTest::newRow("Chebyshev 64") << int(VRN_WINDOW_CHEBYSHEV) << 64u;
    }

    void normalisedWindowKeepsTonePeak()
    {
        QFETCH(int, window);
        QFETCH(uint32_t, size);
        const vrn_RS_Config_t config = rsConfig(window, size, 80.0f, size, true, true, 1.0f, 0, 1e-6f);
        vrn_RS_Handle rs = nullptr;
        QCOMPARE(sdk.vrn->rs_create(&config, &rs), nullptr);
        auto in = matrix(1, size);
        const uint32_t bin = size / 8;
        for (uint32_t n = 0; n < size; ++n)
            in->data[n] = 0.5f + 0.2f * float(std::cos(2.0 * M_PI * bin * n / size));
        auto out = vector(size / 2);
        QCOMPARE(sdk.vrn->rs_run(rs, in.get(), out.get()), nullptr);
        QVERIFY2(std::abs(out->data[bin] - 0.1f) < 1e-3f, qPrintable(QString::number(out->data[bin])));
        QVERIFY(out->data[0] < 1e-4f);  // the offset is gone
        sdk.vrn->rs_destroy(rs);
    }

    // I/Q input: a tone at a positive frequency shows in the spectrum, its
    // mirror at the negative frequency does not.
    void complexInputKeepsPositiveFrequencies_data()
    {
        QTest::addColumn<int>("bin");
        QTest::newRow("+12") << 12;
        QTest::newRow("-12") << -12;
    }

    void complexInputKeepsPositiveFrequencies()
    {
        QFETCH(int, bin);
        const vrn_RS_Config_t config = rsConfig(VRN_WINDOW_HANN, 128, 0.0f, 128, true, true, 1.0f, 0, 1e-6f);
        vrn_RS_Handle rs = nullptr;
        QCOMPARE(sdk.vrn->rs_create(&config, &rs), nullptr);
        std::vector<vrn_Complex_t> samples(128);
        for (int n = 0; n < 128; ++n) {
            const double phase = 2.0 * M_PI * bin * n / 128.0;
            samples[n] = {float(0.5 + 0.1 * std::cos(phase)), float(0.5 + 0.1 * std::sin(phase))};
        }
        vrn_Matrix_C_s input{1, 128, 128, samples.data()};
        auto out = vector(64);
        QCOMPARE(sdk.vrn->rs_run_c(rs, &input, out.get()), nullptr);
        const float peak = *std::max_element(out->data, out->data + 64);
        if (bin > 0) {
            QVERIFY(std::abs(out->data[bin] - 0.1f) < 1e-3f);  // amplitude 0.1, normalised window
            QCOMPARE(peak, out->data[bin]);
        } else {
            QVERIFY2(peak < 1e-4f, qPrintable(QString::number(peak)));
        }
        sdk.vrn->rs_destroy(rs);
    }

    // Handles made and run on several threads at once give what one thread
    // alone gives.
    void handlesFromSeveralThreads()
    {
        auto input = matrix(64, 64);
        for (uint32_t i = 0; i < 64 * 64; ++i)
            input->data[i] = 0.5f + 0.1f * float(std::sin(0.37 * i) * std::cos(0.011 * i));
        const vrn_RDM_Config_t config = defaultRdm();
        auto reference = matrix(128, 256);
        vrn_RDM_Handle rdm = nullptr;
        QCOMPARE(sdk.vrn->rdm_create(&config, &rdm), nullptr);
        QCOMPARE(sdk.vrn->rdm_run(rdm, input.get(), reference.get()), nullptr);
        sdk.vrn->rdm_destroy(rdm);

        std::atomic<int> failures{0};
        std::vector<std::shared_ptr<vrn_Matrix_R_s>> outputs;
        for (int t = 0; t < 4; ++t)
            outputs.push_back(matrix(128, 256));
        std::vector<std::thread> threads;
        const Vrn* vrn = sdk.vrn;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([&, t] {
                for (int i = 0; i < 10; ++i) {
                    vrn_RDM_Handle handle = nullptr;
                    vrn_RS_Handle rs = nullptr;
                    const vrn_RS_Config_t rsConfig = {1e-6f, VRN_SCALE_TYPE_LINEAR, config.range_fft_config, 64};
                    if (vrn->rdm_create(&config, &handle) || vrn->rs_create(&rsConfig, &rs) ||
                        vrn->rdm_run(handle, input.get(), outputs[t].get()))
                        ++failures;
                    vrn->rs_destroy(rs);
                    vrn->rdm_destroy(handle);
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        QCOMPARE(failures.load(), 0);
        for (const auto& out : outputs)
            for (uint32_t i = 0; i < 128 * 256; ++i)
                QCOMPARE(out->data[i], reference->data[i]);
    }

    void axes()
    {
        vrn_Math_Axis_Spec_s axis{};
        QCOMPARE(sdk.vrn->rs_distance_axis(256, 64, 9.6f, &axis), nullptr);
        QCOMPARE(axis.min, 0.0);
        QVERIFY(qFuzzyCompare(axis.step, 2.0 * 9.6f / 256.0));
        QVERIFY(qFuzzyCompare(axis.max, 127 * axis.step));
        QCOMPARE(sdk.vrn->rs_frequency_axis(512, 1.0e6f, &axis), nullptr);
        QVERIFY(qFuzzyCompare(axis.step, 1.0e6 / 512.0));

        vrn_RDM_Config_t config = defaultRdm();
        vrn_RDM_Handle rdm = nullptr;
        QCOMPARE(sdk.vrn->rdm_create(&config, &rdm), nullptr);
        QCOMPARE(sdk.vrn->rdm_range_axis(rdm, 500000000ull, &axis), nullptr);
        QVERIFY(qFuzzyCompare(axis.step, 299792458.0 / 1.0e9 * 64.0 / 256.0));
        QCOMPARE(sdk.vrn->rdm_speed_axis(rdm, 60.5e9f, 505.6e-6f, &axis), nullptr);
        const double step = 299792458.0 / 60.5e9 / (2.0 * 256 * 505.6e-6);
        QVERIFY(std::abs(axis.step - step) < 1e-6 * step);
        QVERIFY(std::abs(axis.min + 128 * step) < 1e-6);
        QVERIFY(std::abs(axis.max - 127 * step) < 1e-6);
        sdk.vrn->rdm_destroy(rdm);
    }

    void refusesBadRangeDopplerConfig_data()
    {
        QTest::addColumn<int>("field");
        QTest::addColumn<QString>("words");
        QTest::newRow("range FFT not a power of two") << 0 << "power of two";
        QTest::newRow("Doppler FFT below its window") << 1 << "smaller than its window";
        QTest::newRow("unknown window") << 2 << "Unknown window type 7";
        QTest::newRow("unknown scale") << 3 << "Unknown output scale type 30";
        QTest::newRow("unknown FFT type") << 4 << "Unknown range FFT type";
        QTest::newRow("dB without threshold") << 5 << "positive spectrum threshold";
        QTest::newRow("zero window scale") << 6 << "window scale";
    }

    void refusesBadRangeDopplerConfig()
    {
        QFETCH(int, field);
        QFETCH(QString, words);
        vrn_RDM_Config_t config = defaultRdm();
        switch (field) {
        case 0: config.range_fft_config.fft_size = 200; break;
        case 1: config.doppler_fft_config.fft_size = 32; break;
        case 2: config.range_fft_config.window_config.type = vrn_Window_Type_t(7); break;
        case 3: config.output_scale_type = vrn_Scale_Type_t(30); break;
        case 4: config.range_fft_config.fft_type = vrn_FFT_Type_t(5); break;
        case 5: config.spect_threshold = 0.0f; break;
        case 6: config.doppler_fft_config.window_config.scale = 0.0f; break;
        }
        vrn_RDM_Handle rdm = nullptr;
        const char* error = sdk.vrn->rdm_create(&config, &rdm);
        QVERIFY(error);
        QVERIFY2(QString::fromUtf8(error).contains(words), error);
        QCOMPARE(rdm, nullptr);
    }

    void refusesMismatchedShapes()
    {
        vrn_RDM_Config_t config = defaultRdm();
        vrn_RDM_Handle rdm = nullptr;
        QCOMPARE(sdk.vrn->rdm_create(&config, &rdm), nullptr);
        auto good = matrix(64, 64);
        auto shortChirps = matrix(64, 32);
        auto map = matrix(128, 256);
        auto wrongMap = matrix(256, 256);
        QVERIFY(QString::fromUtf8(sdk.vrn->rdm_run(rdm, shortChirps.get(), map.get())).contains("64 chirps x 64"));
        QVERIFY(QString::fromUtf8(sdk.vrn->rdm_run(rdm, good.get(), wrongMap.get())).contains("128 range bins"));
        QVERIFY(sdk.vrn->rdm_run(rdm, nullptr, map.get()));
        QCOMPARE(sdk.vrn->rdm_run(rdm, good.get(), map.get()), nullptr);
        QCOMPARE(sdk.vrn->rdm_destroy(rdm), nullptr);
        QVERIFY(sdk.vrn->rdm_destroy(nullptr));

        const vrn_RS_Config_t rsc = rsConfig(VRN_WINDOW_HANN, 64, 0.0f, 128, true, true, 1.0f, 20, 1e-6f);
        vrn_RS_Handle rs = nullptr;
        QCOMPARE(sdk.vrn->rs_create(&rsc, &rs), nullptr);
        auto wrongLength = vector(128);
        auto spectrum = vector(64);
        QVERIFY(QString::fromUtf8(sdk.vrn->rs_run(rs, good.get(), wrongLength.get())).contains("64"));
        QVERIFY(QString::fromUtf8(sdk.vrn->rs_run(rs, shortChirps.get(), spectrum.get())).contains("window has 64"));
        QCOMPARE(sdk.vrn->rs_run(rs, good.get(), spectrum.get()), nullptr);
        sdk.vrn->rs_destroy(rs);
        QVERIFY(sdk.vrn->rs_distance_axis(100, 64, 9.6f, nullptr));
    }

    void presenceDefaultsDescribeTheFrames()
    {
        QCOMPARE(psConfig.device_config.rx_mask, 0x4u);
        QCOMPARE(psConfig.device_config.num_samples_per_chirp, 128u);
        QVERIFY(psConfig.min_detection_range_m < psConfig.max_detection_range_m);
        float resolution = 0.0f;
        QCOMPARE(sdk.vrn->ps_range_resolution(&psConfig.device_config, &resolution), nullptr);
        QVERIFY(std::abs(resolution - 0.15f) < 1e-3f);
        QCOMPARE(psConfig.range_resolution_m, resolution);
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
        QCOMPARE(sdk.vrn->ps_create(&psConfig, &ps), nullptr);
        vrn_PresenceSensing_Result_t result{};
        for (uint32_t i = 1; i <= psConfig.presence_confirm_count; ++i) {
            QVERIFY(step(ps, scene, result));
            QCOMPARE(result.frame_count, i);
            QCOMPARE(result.state, i < psConfig.presence_confirm_count ? VRN_PRESENCE_STATE_ABSENCE
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
        for (uint32_t i = 1; i <= psConfig.absence_confirm_count + 1; ++i) {
            QVERIFY(step(ps, empty, result));
            if (i < psConfig.absence_confirm_count)
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
        QCOMPARE(sdk.vrn->ps_create(&psConfig, &ps), nullptr);
        vrn_PresenceSensing_Result_t result{};
        for (uint32_t i = 0; i < 3 * psConfig.presence_confirm_count + 10; ++i) {
            QVERIFY(step(ps, scene, result));
            QCOMPARE(result.state, VRN_PRESENCE_STATE_ABSENCE);
            QVERIFY(result.motion_energy < psConfig.sensitivity_threshold);
        }
        sdk.vrn->ps_destroy(ps);
    }

    void presenceRefusals_data()
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

    void presenceRefusals()
    {
        QFETCH(int, field);
        QFETCH(QString, words);
        switch (field) {
        case 0: psConfig.min_detection_range_m = 4.0f; psConfig.max_detection_range_m = 2.0f; break;
        case 1: psConfig.presence_confirm_count = 0; break;
        case 2: psConfig.max_detection_range_m = 12.0f; break;
        case 3: psConfig.device_config.upper_frequency_Hz = psConfig.device_config.lower_frequency_Hz; break;
        }
        vrn_PresenceSensing_Handle ps = nullptr;
        const char* error = nullptr;
        if (field == 4) {
            QCOMPARE(sdk.vrn->ps_create(&psConfig, &ps), nullptr);
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
            error = sdk.vrn->ps_default_config(VRN_DEVICE_TYPE_ZP7, &psConfig);
        else
            error = sdk.vrn->ps_create(&psConfig, &ps);
        QVERIFY(error);
        QVERIFY2(QString::fromUtf8(error).contains(words), error);
        QCOMPARE(ps, nullptr);
    }

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
        QCOMPARE(sdk.vrn->seg_create(&segConfig, &seg), nullptr);
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
        segConfig.enable_hysteresis = 0;
        vrn_Segmentation_Handle seg = nullptr;
        QCOMPARE(sdk.vrn->seg_create(&segConfig, &seg), nullptr);
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
        segConfig.static_target_removal = vrn_Level_t(level);
        vrn_Segmentation_Handle seg = nullptr;
        QCOMPARE(sdk.vrn->seg_create(&segConfig, &seg), nullptr);
        vrn_Segmentation_Result_t result{};
        for (int i = 0; i < 4; ++i)
            QVERIFY(step(seg, result));
        QCOMPARE(result.num_tracks, tracks);
        if (tracks)
            QVERIFY(std::abs(result.tracks[0].speed_m_s) < 0.05f);
        sdk.vrn->seg_destroy(seg);
    }

    void segmentationRefusals()
    {
        QVERIFY(open(mover(2.0, 0.5, 0.0)));
        vrn_Segmentation_Handle seg = nullptr;
        vrn_Segmentation_Config_t bad = segConfig;
        bad.max_num_tracks = 0;
        QVERIFY(QString::fromUtf8(sdk.vrn->seg_create(&bad, &seg)).contains("tracks"));
        bad = segConfig;
        bad.num_segments = 4;
        QVERIFY(QString::fromUtf8(sdk.vrn->seg_create(&bad, &seg)).contains("segments"));
        QCOMPARE(seg, nullptr);
        QVERIFY(QString::fromUtf8(sdk.vrn->seg_default_config(VRN_DEVICE_TYPE_ZP7, &deviceConfig, &bad))
                    .contains("FMCW chip"));

        QCOMPARE(sdk.vrn->seg_create(&segConfig, &seg), nullptr);
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

QTEST_GUILESS_MAIN(SimulatorProcessingTest)
#include "tst_simulator_processing.moc"
