// The processing without a board, on the scripted SDK: the range-Doppler
// chain (the user's settings, the map calculator and the chart data that
// draws the map) and the presence and segmentation calculators.

#include "FakeVrn.h"

#include "common/MathAxis.h"
#include "core/JSONConfigurationObject.h"
#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/PresenceSensingConfig.h"
#include "fmcw/common/RadarAntennas.h"
#include "fmcw/common/RadarConfigurationUtils.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/common/RadarDeviceParameters.h"
#include "fmcw/common/SegmentationConfiguration.h"
#include "fmcw/processing/RadarPresenceSensingCalculator.h"
#include "fmcw/processing/RadarRangeDopplerChartData.h"
#include "fmcw/processing/RadarRangeDopplerMapCalculator.h"
#include "fmcw/processing/RadarSegmentationCalculator.h"
#include "fmcw/processing/RangeDopplerUserSettings.h"

#include <QImage>
#include <QJsonDocument>
#include <QPixmap>
#include <QSignalSpy>
#include <QtTest>

#include <vector>

namespace {

// A map owned by the returned pointer, filled row by row from `values`.
SharedMatrix handMadeMap(uint32_t rows, uint32_t cols, const std::vector<float>& values)
{
    struct Storage {
        std::vector<float> values;
        vrn_Matrix_R_s matrix {};
    };
    auto storage = std::make_shared<Storage>();
    storage->values = values;
    storage->matrix = { rows, cols, cols, storage->values.data() };
    return SharedMatrix(storage, &storage->matrix);
}

QRgb tableColor(const RangeDopplerColorMap& map, int index)
{
    const quint8* rgb = map.color(index);
    return qRgb(rgb[0], rgb[1], rgb[2]);
}


// A presence scene: 64 samples, 32 chirps, Rx1 only, user gate 0.5-2.5 m.
void describeScene(RadarDeviceConfiguration& config)
{
    config.deviceInfo()->setDeviceType(VRN_DEVICE_TYPE_KMR7A);
    config.parameters()->setNumSamplesPerChirp(64);
    config.parameters()->setNumChirpsPerFrame(32);
    config.parameters()->setFrameRepetitionTimeS(0.1f);
    config.parameters()->setLowerFrequencyHz(58000000000ull);
    config.parameters()->setUpperFrequencyHz(63000000000ull);
    config.parameters()->setChirpRepetitionTimeS(0.0003f);
    config.metrics()->rx()->setMask(0b001);
    config.presenceSensing()->setMinDetectionRange(0.5f);
    config.presenceSensing()->setMaxDetectionRange(2.5f);
    config.presenceSensing()->setPresenceConfirmCount(2);
    config.presenceSensing()->setAbsenceConfirmCount(7);
}

}

class TestRadarProcessing : public QObject
{
    Q_OBJECT
private slots:
    // Each test starts from SDK defaults that differ from the user's and
    // the scene's, so a test can tell where each value came from.
    void init()
    {
        fake = std::make_unique<FakeVrn>();
        fake->psDefaults.min_detection_range_m = 0.2f;
        fake->psDefaults.max_detection_range_m = 5.0f;
        fake->psDefaults.sensitivity_threshold = 0.25f;
        fake->psDefaults.device_config.num_samples_per_chirp = 999;
        m_settings = std::make_unique<RangeDopplerUserSettings>();
        utils = std::make_unique<RadarConfigurationUtils>(&fake->table, false);
        config = std::make_unique<RadarDeviceConfiguration>();
        describeScene(*config);
        user = std::make_unique<SegmentationConfiguration>();
    }

    void deviceParameterUpdate_data()
    {
        QTest::addColumn<quint32>("rangeFft");
        QTest::addColumn<quint32>("dopplerFft");
        QTest::addColumn<quint32>("samples");
        QTest::addColumn<quint32>("chirps");
        QTest::addColumn<quint32>("expectedRangeFft");
        QTest::addColumn<quint32>("expectedDopplerFft");

        QTest::newRow("64 x 32 keeps the defaults") << 256u << 256u << 64u << 32u << 256u << 256u;
        QTest::newRow("300 chirps give 512") << 256u << 256u << 64u << 300u << 256u << 512u;
        QTest::newRow("300 chirps shrink 2048 to 512") << 256u << 2048u << 64u << 300u << 256u << 512u;
        QTest::newRow("512 samples raise 256") << 256u << 256u << 512u << 32u << 512u << 256u;
        QTest::newRow("long FFTs are kept") << 1024u << 1024u << 512u << 128u << 1024u << 1024u;
        QTest::newRow("200 samples give 256") << 1024u << 256u << 200u << 64u << 256u << 256u;
    }

    void deviceParameterUpdate()
    {
        QFETCH(quint32, rangeFft);
        QFETCH(quint32, dopplerFft);
        QFETCH(quint32, samples);
        QFETCH(quint32, chirps);
        QFETCH(quint32, expectedRangeFft);
        QFETCH(quint32, expectedDopplerFft);

        RangeDopplerUserSettings settings;
        settings.setRangeFftSize(rangeFft);
        settings.setDopplerFftSize(dopplerFft);
        QSignalSpy dopplerSpy(&settings, &RangeDopplerUserSettings::dopplerFftSizeChanged);
        settings.updateDeviceParameters(samples, chirps);

        QCOMPARE(std::make_pair(settings.rangeFftSize(), settings.dopplerFftSize()),
                 std::make_pair(expectedRangeFft, expectedDopplerFft));
        QCOMPARE(dopplerSpy.count(), dopplerFft == expectedDopplerFft ? 0 : 1);
        QCOMPARE(std::make_tuple(settings.rangeFft()->window()->size(), settings.dopplerFft()->window()->size(),
                                 settings.samplesPerChirp(), settings.chirpsPerFrame()),
                 std::make_tuple(samples, chirps, samples, chirps));
    }

    void resetFollowsTheDevice()
    {
        RangeDopplerUserSettings settings;
        settings.updateDeviceParameters(512, 64);
        settings.setDopplerFftSize(2048);
        settings.setColorThreshold(-60);
        settings.rangeFft()->window()->setType("Hamming");
        settings.dopplerFft()->setMeanRemoval(false);
        QSignalSpy thresholdSpy(&settings, &RangeDopplerUserSettings::colorThresholdChanged);
        settings.resetToDefault();
        QCOMPARE(std::make_tuple(settings.rangeFftSize(), settings.dopplerFftSize(), settings.rangeFft()->window()->size(),
                                 settings.dopplerFft()->window()->size(), settings.colorThreshold()),
                 std::make_tuple(512u, 256u, 512u, 64u, -90));
        QCOMPARE(thresholdSpy.count(), 1);
        // Everything else is back to what new settings hold (which the
        // calculator's test checks as the SDK receives it).
        RangeDopplerUserSettings fresh;
        fresh.updateDeviceParameters(512, 64);
        QJsonObject reset, expected;
        settings.configurationNode()->writeToJson(reset);
        fresh.configurationNode()->writeToJson(expected);
        QCOMPARE(reset, expected);
    }

    void checkOptimalSettings_data()
    {
        QTest::addColumn<quint32>("rangeFft");
        QTest::addColumn<quint32>("dopplerFft");
        QTest::addColumn<bool>("optimal");

        QTest::newRow("both cover without excess") << 128u << 64u << true;
        QTest::newRow("four times is still fine") << 512u << 256u << true;
        QTest::newRow("range too short") << 64u << 64u << false;
        QTest::newRow("doppler padded too much") << 128u << 512u << false;
    }

    void checkOptimalSettings()
    {
        QFETCH(quint32, rangeFft);
        QFETCH(quint32, dopplerFft);
        QFETCH(bool, optimal);
        RangeDopplerUserSettings settings;
        settings.updateDeviceParameters(128, 64);
        QCOMPARE(settings.checkOptimalSettings(rangeFft, dopplerFft), optimal);
    }

    void antennaSwitching_data()
    {
        QTest::addColumn<QVector<int>>("rx");
        QTest::addColumn<QVector<int>>("tx");
        QTest::addColumn<QVector<int>>("expectedRxTx"); // pairs after each switch

        QTest::newRow("three receivers, one transmitter")
            << QVector<int> { 0, 1, 2 } << QVector<int> { 0 } << QVector<int> { 1, 0, 2, 0, 0, 0 };
        QTest::newRow("two receivers, two transmitters")
            << QVector<int> { 0, 2 } << QVector<int> { 0, 1 } << QVector<int> { 2, 0, 0, 1, 2, 1, 0, 0 };
        QTest::newRow("one virtual antenna stays") << QVector<int> { 1 } << QVector<int> { 0 } << QVector<int> { 1, 0 };
    }

    void antennaSwitching()
    {
        QFETCH(QVector<int>, rx);
        QFETCH(QVector<int>, tx);
        QFETCH(QVector<int>, expectedRxTx);

        RangeDopplerUserSettings settings;
        settings.updateRxActiveIndexes(rx);
        settings.updateTxActiveIndexes(tx);
        QVector<int> shown;
        while (shown.size() < expectedRxTx.size()) {
            settings.switchToAnotherAntenna();
            shown << settings.currentRxIndex() << settings.currentTxIndex();
        }
        QCOMPARE(shown, expectedRxTx);
    }

    void jsonRoundTrip()
    {
        RangeDopplerUserSettings source;
        source.setColorThreshold(-70);
        source.setDopplerFftSize(512);
        source.rangeFft()->window()->setType("Hamming");
        QJsonObject saved;
        source.configurationNode()->writeToJson(saved);

        const QJsonObject node = saved.value("range_doppler").toObject();
        QCOMPARE(node.value("color_threshold").toInt(), -70);
        QCOMPARE(node.value("doppler_fft_config").toObject().value("size").toInt(), 512);
        QCOMPARE(node.value("range_fft_config").toObject().value("window_config").toObject().value("type").toString(),
                 QString("Hamming"));
        QVERIFY(!node.contains("fft_config"));

        RangeDopplerUserSettings target;
        auto tree = target.configurationNode();
        QString error;
        tree->validate(error, saved, {});
        QVERIFY2(error.isEmpty(), qPrintable(error));
        tree->readFromJson(saved);
        QCOMPARE(std::make_tuple(target.colorThreshold(), target.dopplerFftSize(), target.rangeFft()->window()->type()),
                 std::make_tuple(-70, 512u, QString("Hamming")));
    }

    void createHandsTheSettingsToTheSdk()
    {
        m_settings->updateDeviceParameters(64, 300);
        auto calculator = RadarRangeDopplerMapCalculator::create(fake->broker, *m_settings, nullptr, nullptr, 0, 0.1f, 0.0003f,
                                                                 60.5e9f);
        QVERIFY(calculator);
        // The defaults of the settings, with the FFT sizes the chirp asks for.
        const vrn_RDM_Config_t& sent = fake->rdmConfig;
        QCOMPARE(sent.output_scale_type, VRN_SCALE_TYPE_DECIBEL_20LOG);
        QCOMPARE(sent.spect_threshold, 1.0e-6f);
        const vrn_PPFFT_Config_t& range = sent.range_fft_config;
        const vrn_PPFFT_Config_t& doppler = sent.doppler_fft_config;
        QCOMPARE(std::make_tuple(range.fft_type, range.fft_size, range.mean_removal_enabled, range.is_normalized_window),
                 std::make_tuple(VRN_FFT_TYPE_R2C, 256u, uint8_t(1), uint8_t(1)));
        QCOMPARE(std::make_tuple(range.window_config.type, range.window_config.size, range.window_config.scale,
                                 range.window_config.attenuation_dB),
                 std::make_tuple(VRN_WINDOW_BLACKMANHARRIS, 64u, 1.0f, 0.0f));
        QCOMPARE(std::make_tuple(doppler.fft_type, doppler.fft_size, doppler.mean_removal_enabled,
                                 doppler.is_normalized_window),
                 std::make_tuple(VRN_FFT_TYPE_C2C, 512u, uint8_t(1), uint8_t(1)));
        QCOMPARE(std::make_tuple(doppler.window_config.type, doppler.window_config.size, doppler.window_config.scale,
                                 doppler.window_config.attenuation_dB),
                 std::make_tuple(VRN_WINDOW_CHEBYSHEV, 300u, 1.0f, 100.0f));
        QCOMPARE(calculator->configuration().doppler_fft_config.fft_size, 512u);
    }

    void axes_data()
    {
        QTest::addColumn<quint64>("bandwidth");
        QTest::addColumn<bool>("withAxes");
        QTest::addColumn<QByteArray>("rangeError");
        QTest::addColumn<QByteArray>("speedError");
        QTest::addColumn<double>("rangeMax");
        QTest::addColumn<double>("speedMin");

        QTest::newRow("both computed") << quint64(1000000000) << true << QByteArray() << QByteArray() << 12.0 << -2.5;
        QTest::newRow("no bandwidth, no axes") << quint64(0) << true << QByteArray() << QByteArray() << 0.0 << 0.0;
        QTest::newRow("axes not given") << quint64(1000000000) << false << QByteArray() << QByteArray() << 0.0 << 0.0;
        QTest::newRow("range refused") << quint64(1000000000) << true << QByteArray("bad bandwidth") << QByteArray() << 0.0
                                       << -2.5;
        QTest::newRow("speed refused") << quint64(1000000000) << true << QByteArray() << QByteArray("bad chirp time")
                                       << 12.0 << 0.0;
    }

    void axes()
    {
        QFETCH(quint64, bandwidth);
        QFETCH(bool, withAxes);
        QFETCH(QByteArray, rangeError);
        QFETCH(QByteArray, speedError);
        QFETCH(double, rangeMax);
        QFETCH(double, speedMin);

        fake->rangeAxisError = rangeError.isEmpty() ? nullptr : rangeError.constData();
        fake->speedAxisError = speedError.isEmpty() ? nullptr : speedError.constData();
        MathAxis range;
        MathAxis speed;
        if (!rangeError.isEmpty())
            QTest::ignoreMessage(QtCriticalMsg, "Cannot calculate Range Axis for Doppler Map: " + rangeError);
        if (!speedError.isEmpty())
            QTest::ignoreMessage(QtCriticalMsg, "Cannot calculate Speed Axis for Doppler Map: " + speedError);

        auto calculator = RadarRangeDopplerMapCalculator::create(fake->broker, *m_settings, withAxes ? &range : nullptr,
                                                                 withAxes ? &speed : nullptr, bandwidth, 0.1f, 0.0003f,
                                                                 60.5e9f);
        // An axis failure does not cost the map.
        QVERIFY(calculator);
        QCOMPARE(range.max(), rangeMax);
        QCOMPARE(speed.min(), speedMin);
        if (withAxes && bandwidth != 0) {
            QCOMPARE(fake->lastBandwidth, bandwidth);
            QCOMPARE(fake->lastCenterFrequency, 60.5e9f);
            QCOMPARE(fake->lastChirpTime, 0.0003f);
        }
    }

    void mapOfTheChosenAntenna_data()
    {
        QTest::addColumn<quint32>("channels"); // 0: no frame at all
        QTest::addColumn<quint32>("antenna");
        QTest::addColumn<QByteArray>("runError");
        QTest::addColumn<float>("marker"); // 0: no map

        QTest::newRow("first antenna") << 3u << 0u << QByteArray() << 10.0f;
        QTest::newRow("index equal to the count") << 3u << 3u << QByteArray() << 0.0f;
        QTest::newRow("far beyond") << 1u << 7u << QByteArray() << 0.0f;
        QTest::newRow("no frame") << 0u << 0u << QByteArray() << 0.0f;
        QTest::newRow("run refused") << 1u << 0u << QByteArray("matrix too small") << 0.0f;
    }

    void mapOfTheChosenAntenna()
    {
        QFETCH(quint32, channels);
        QFETCH(quint32, antenna);
        QFETCH(QByteArray, runError);
        QFETCH(float, marker);

        m_settings->setRangeFftSize(128);
        auto calculator = RadarRangeDopplerMapCalculator::create(fake->broker, *m_settings, nullptr, nullptr, 0, 0, 0, 0);
        fake->rdmRunError = runError.isEmpty() ? nullptr : runError.constData();
        if (!runError.isEmpty())
            QTest::ignoreMessage(QtCriticalMsg, "Failed to calculate Range Doppler Map data " + runError);
        else if (marker == 0.0f)
            QTest::ignoreMessage(QtCriticalMsg, "Cannot calculate Range Doppler Map. Cannot get input data. Data is NULL");
        {
            SharedMatrix map = calculator->processData(channels ? fake->newFrame(channels, 32, 64) : SharedFrame(), antenna);
            QCOMPARE(bool(map), marker != 0.0f);
            if (map) {
                QCOMPARE(map->rows, 64u);  // range FFT 128 / 2
                QCOMPARE(map->cols, 256u); // Doppler FFT
                QCOMPARE(map->data[0], marker);
            }
        }
        QCOMPARE(fake->matricesAlive, 0);
        QCOMPARE(fake->framesAlive.load(), 0);
    }

    void refusedHandleIsLogged()
    {
        fake->rdmCreateError = "FFT size not supported";
        QTest::ignoreMessage(QtCriticalMsg, "Cannot create Range Doppler Map handle: FFT size not supported");
        QVERIFY(!RadarRangeDopplerMapCalculator::create(fake->broker, *m_settings, nullptr, nullptr, 0, 0, 0, 0));

        fake->rdmCreateError = nullptr;
        fake->rdmDestroyError = "in use";
        auto calculator = RadarRangeDopplerMapCalculator::create(fake->broker, *m_settings, nullptr, nullptr, 0, 0, 0, 0);
        QTest::ignoreMessage(QtCriticalMsg, "Cannot destroy Range Doppler Map handle: in use");
        calculator.reset();
    }

    void colorIndex_data()
    {
        QTest::addColumn<quint32>("threshold");
        QTest::addColumn<float>("value");
        QTest::addColumn<int>("index");

        QTest::newRow("0 dB is the top entry") << 90u << 0.0f << 255;
        QTest::newRow("-45 dB") << 90u << -45.0f << 128;
        QTest::newRow("-1 dB") << 90u << -1.0f << 253; // 255 - floor(2.83)
        QTest::newRow("-89 dB") << 90u << -89.0f << 3; // 255 - floor(252.17)
        QTest::newRow("-91 dB is below the scale") << 90u << -91.0f << 0;
        QTest::newRow("-30 dB on a 60 dB scale") << 60u << -30.0f << 128;
        QTest::newRow("not a number") << 90u << std::numeric_limits<float>::quiet_NaN() << 0;
    }

    void colorIndex()
    {
        QFETCH(quint32, threshold);
        QFETCH(float, value);
        QFETCH(int, index);
        RangeDopplerColorMap map;
        map.setThreshold(threshold);
        QCOMPARE(map.index(value), index);
    }

    void imageHasRangeZeroAtTheBottom()
    {
        // Two range bins (rows) × three speeds (columns): range bin 0 strong in
        // the middle column, range bin 1 at -45 dB on the left. The colours
        // follow the 90 dB scale the dimensions set, not the map's default.
        RadarRangeDopplerChartData data;
        data.setDimensions(3, 2, 90);
        data.setMap(handMadeMap(2, 3, { -100.0f, 0.0f, -100.0f, -45.0f, -100.0f, -100.0f }));

        QPixmap pixmap;
        QVERIFY(data.render(pixmap));
        const QImage image = pixmap.toImage();
        QCOMPARE(image.size(), QSize(3, 2));
        const RangeDopplerColorMap& map = data.colorMap();
        // The strongest return must not look like the noise floor.
        QVERIFY(tableColor(map, 255) != tableColor(map, 0) && tableColor(map, 128) != tableColor(map, 0));
        // Image row 1 (bottom) is range bin 0, row 0 (top) range bin 1.
        QCOMPARE(QVector<QRgb>({ image.pixel(0, 1), image.pixel(1, 1), image.pixel(2, 1), image.pixel(0, 0), image.pixel(1, 0) }),
                 QVector<QRgb>({ tableColor(map, 0), tableColor(map, 255), tableColor(map, 0), tableColor(map, 128),
                                 tableColor(map, 0) }));
    }

    void mapOfOtherSizeIsNotDrawn_data()
    {
        QTest::addColumn<quint32>("rows");
        QTest::addColumn<quint32>("cols");
        QTest::newRow("more rows") << 3u << 3u;
        QTest::newRow("fewer columns") << 2u << 2u;
        QTest::newRow("transposed") << 3u << 2u;
    }

    void mapOfOtherSizeIsNotDrawn()
    {
        QFETCH(quint32, rows);
        QFETCH(quint32, cols);
        RadarRangeDopplerChartData data;
        data.setDimensions(3, 2, 90);

        QPixmap pixmap;
        QVERIFY(!data.render(pixmap)); // no map yet
        data.setMap(handMadeMap(2, 3, std::vector<float>(6, 0.0f)));
        QVERIFY(data.render(pixmap));
        const qint64 shown = pixmap.cacheKey();

        data.setMap(handMadeMap(rows, cols, std::vector<float>(rows * cols, -10.0f)));
        QVERIFY(!data.render(pixmap));
        QCOMPARE(pixmap.cacheKey(), shown);
    }

    void presenceJoinsDefaultsUserAndSceneAndReadsTheFirstAntenna()
    {
        auto calculator = presence();
        QVERIFY(calculator);
        const vrn_PresenceSensing_Config_t& sent = fake->psConfig;
        QCOMPARE(std::make_tuple(sent.min_detection_range_m, sent.max_detection_range_m, sent.presence_confirm_count,
                                 sent.absence_confirm_count),
                 std::make_tuple(0.5f, 2.5f, 2u, 7u));
        // The SDK's default threshold stays; the resolution is as the SDK
        // computes it for the scene.
        QCOMPARE(std::make_pair(sent.sensitivity_threshold, sent.range_resolution_m), std::make_pair(0.25f, 0.25f));
        // The scene replaces the device record the defaults brought.
        const vrn_Device_Config_t& device = sent.device_config;
        QCOMPARE(std::make_tuple(device.num_samples_per_chirp, device.num_chirps_per_frame, device.rx_mask,
                                 device.upper_frequency_Hz),
                 std::make_tuple(64u, 32u, 0b001u, 63000000000ull));

        SharedPresenceResult result = calculator->process(fake->newFrame(3, 32, 64));
        QVERIFY(result);
        // The first channel's samples, of three.
        QCOMPARE(std::make_pair(result->state, result->motion_energy), std::make_pair(VRN_PRESENCE_STATE_PRESENCE, 10.0f));
    }

    void presenceFailedRunDoesNotStopTheNextFrame()
    {
        auto calculator = presence();
        fake->psRunErrors = { "matrix shape changed" };
        QTest::ignoreMessage(QtCriticalMsg, "Cannot calculate Presence Sensing result matrix shape changed");
        QVERIFY(!calculator->process(fake->newFrame(1, 32, 64)));
        SharedPresenceResult next = calculator->process(fake->newFrame(1, 32, 64));
        QVERIFY(next);
        QCOMPARE(next->frame_count, 2u);

        QTest::ignoreMessage(QtCriticalMsg, "Cannot calculate Presence Sensing. Cannot get input data. Data is NULL");
        QVERIFY(!calculator->process(SharedFrame()));
        QTest::ignoreMessage(QtCriticalMsg, "Cannot calculate Presence Sensing. Cannot get input data. Data is NULL");
        QVERIFY(!calculator->process(fake->newFrame(0, 32, 64)));
        QCOMPARE(fake->framesAlive.load(), 0);
    }

    void presenceWithoutInputMatrixIsQuiet()
    {
        auto calculator = presence();
        fake->psInputMissing = true;
        static int messages = 0;
        messages = 0;
        const QtMessageHandler previous
            = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) { ++messages; });
        const bool processed = bool(calculator->process(fake->newFrame(1, 32, 64)));
        qInstallMessageHandler(previous);
        QVERIFY(!processed);
        QCOMPARE(messages, 0);
        QCOMPARE(fake->psRuns, 0);
    }

    void presenceRefusedHandleIsLogged()
    {
        fake->psCreateError = "range gate empty";
        QTest::ignoreMessage(QtCriticalMsg, "Cannot create Presence Sensing handle range gate empty");
        QVERIFY(!presence());
        QCOMPARE(fake->psDestroyCalls, 0);

        fake->psCreateError = nullptr;
        fake->psDestroyError = "still running";
        auto calculator = presence();
        QVERIFY(calculator);
        QTest::ignoreMessage(QtCriticalMsg, "Cannot destroy Presence Sensing handle: still running");
        calculator.reset();
        QCOMPARE(fake->psDestroyCalls, 1);
    }

    void segmentationRecordJoinsUserAndChirp()
    {
        user->setMaxDetectionRangeM(4.0f);
        user->setMaxNumTracks(5);
        user->setEnableHysteresis(true);
        user->setSegmentsDegrees({ 30.0f, 20.0f });
        user->setDetectionSensitivity(RadarConstants::Low);
        user->setStaticTargetRemoval(RadarConstants::Med);

        QVERIFY(RadarSegmentationCalculator::create(fake->broker, *user, 128, 64, 4.0e9f, 0.0005f, 60.0e9f));
        const vrn_Segmentation_Config_t& sent = fake->segConfig;
        QCOMPARE(std::make_tuple(sent.num_samples_per_chirp, sent.num_chirps_per_frame, sent.bandwidth_Hz,
                                 sent.chirp_repetition_time_s, sent.center_frequency_Hz),
                 std::make_tuple(128u, 64u, 4.0e9f, 0.0005f, 60.0e9f));
        QCOMPARE(std::make_tuple(sent.max_detection_range_m, sent.max_num_tracks, sent.enable_hysteresis, sent.num_segments,
                                 sent.segments_degrees[1], sent.detection_sensitivity, sent.static_target_removal),
                 std::make_tuple(4.0f, 5u, uint8_t(1), 2u, 20.0f, VRN_LEVEL_LOW, VRN_LEVEL_MED));
    }

    void segmentationRefusedCreationGivesNoCalculator()
    {
        fake->segCreateError = "too many segments";
        QTest::ignoreMessage(QtCriticalMsg, "Cannot create Segmentation handle: too many segments");
        QVERIFY(!RadarSegmentationCalculator::create(fake->broker, *user, 128, 64, 4.0e9f, 0.0005f, 60.0e9f));
    }

    void segmentationReadsRx1AndRx3AndCopiesTheResult_data()
    {
        QTest::addColumn<quint32>("channels");
        QTest::addColumn<QByteArray>("runError");
        QTest::addColumn<QVector<float>>("markers"); // empty: refused before the run

        QTest::newRow("Rx1 and Rx3 only") << 2u << QByteArray() << QVector<float> { 10, 20 };
        QTest::newRow("all three receivers") << 3u << QByteArray() << QVector<float> { 10, 30 };
        QTest::newRow("one channel is not enough") << 1u << QByteArray() << QVector<float>();
        QTest::newRow("run refused") << 2u << QByteArray("channels differ in length") << QVector<float> { 10, 20 };
    }

    void segmentationReadsRx1AndRx3AndCopiesTheResult()
    {
        QFETCH(quint32, channels);
        QFETCH(QByteArray, runError);
        QFETCH(QVector<float>, markers);

        fake->segResult.num_tracks = 2;
        fake->segResult.tracks[1] = { 8, 2.25f, 10.0f, -1.0f };
        fake->segResult.num_segments = 3;
        fake->segResult.segment_occupied[0] = 1;
        fake->segResult.segment_occupied[2] = 7;
        fake->segRunError = runError.isEmpty() ? nullptr : runError.constData();
        auto calculator = segmentation();
        if (markers.isEmpty())
            QTest::ignoreMessage(QtCriticalMsg, "Cannot calculate Segmentation. Cannot get input data. Data is NULL");
        if (!runError.isEmpty())
            QTest::ignoreMessage(QtCriticalMsg, "Cannot calculate Segmentation result " + runError);
        const bool copied = !markers.isEmpty() && runError.isEmpty();
        const RadarSegmentationResult result = calculator->process(fake->newFrame(channels, 32, 64));
        QCOMPARE(fake->framesAlive.load(), 0);
        QCOMPARE(fake->segInputMarkers, markers);
        QCOMPARE(bool(result.trackedObjects), copied);
        QCOMPARE(bool(result.segments), copied);
        if (!copied)
            return;
        QCOMPARE(result.trackedObjects->size(), 2);
        const RadarTrackedObject& second = result.trackedObjects->at(1);
        QCOMPARE(std::make_tuple(second.id, second.distance, second.angle, second.speed), std::make_tuple(8u, 2.25f, 10.0f, -1.0f));
        QCOMPARE(*result.segments, (QVector<int> { 1, 0, 1 }));
    }

private:
    std::unique_ptr<RadarPresenceSensingCalculator> presence()
    {
        return RadarPresenceSensingCalculator::create(fake->broker, *utils, *config);
    }
    // A segmentation calculator for chirps of 64 samples, 32 to a frame.
    std::unique_ptr<RadarSegmentationCalculator> segmentation()
    {
        return RadarSegmentationCalculator::create(fake->broker, *user, 64, 32, 4.0e9f, 0.0005f, 60.0e9f);
    }

    std::unique_ptr<FakeVrn> fake;
    // The calculator's settings.
    std::unique_ptr<RangeDopplerUserSettings> m_settings;
    std::unique_ptr<RadarConfigurationUtils> utils;
    std::unique_ptr<RadarDeviceConfiguration> config;
    std::unique_ptr<SegmentationConfiguration> user;
};

QTEST_MAIN(TestRadarProcessing)
#include "tst_RadarProcessing.moc"
