#include "FakeVrn.h"

#include "common/MathAxis.h"
#include "fmcw/processing/RadarRangeDopplerMapCalculator.h"
#include "fmcw/processing/RangeDopplerUserSettings.h"

#include <QtTest>

class TestRadarRangeDopplerMapCalculator : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        fake = std::make_unique<FakeVrn>();
        settings = std::make_unique<RangeDopplerUserSettings>();
    }
    void createHandsTheSettingsToTheSdk()
    {
        settings->updateDeviceParameters(64, 300);
        auto calculator = RadarRangeDopplerMapCalculator::create(fake->broker, *settings, nullptr, nullptr, 0, 0.1f, 0.0003f,
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

        auto calculator = RadarRangeDopplerMapCalculator::create(fake->broker, *settings, withAxes ? &range : nullptr,
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
        QTest::addColumn<quint32>("channels");
        QTest::addColumn<quint32>("antenna");
        QTest::addColumn<bool>("hasMap");
        QTest::addColumn<float>("marker");

        QTest::newRow("first antenna") << 3u << 0u << true << 10.0f;
        QTest::newRow("index equal to the count") << 3u << 3u << false << 0.0f;
        QTest::newRow("far beyond") << 1u << 7u << false << 0.0f;
    }

    void mapOfTheChosenAntenna()
    {
        QFETCH(quint32, channels);
        QFETCH(quint32, antenna);
        QFETCH(bool, hasMap);
        QFETCH(float, marker);

        settings->setRangeFftSize(128);
        auto calculator = RadarRangeDopplerMapCalculator::create(fake->broker, *settings, nullptr, nullptr, 0, 0, 0, 0);
        if (!hasMap)
            QTest::ignoreMessage(QtCriticalMsg, "Cannot calculate Range Doppler Map. Cannot get input data. Data is NULL");
        {
            SharedMatrix map = calculator->processData(fake->newFrame(channels, 32, 64), antenna);
            QCOMPARE(bool(map), hasMap);
            if (map) {
                QCOMPARE(map->rows, 64u);  // range FFT 128 / 2
                QCOMPARE(map->cols, 256u); // Doppler FFT
                QCOMPARE(map->data[0], marker);
            }
        }
        QCOMPARE(fake->matricesAlive, 0);
        QCOMPARE(fake->framesAlive.load(), 0);
    }

    void failedRunGivesNoMap()
    {
        auto calculator = RadarRangeDopplerMapCalculator::create(fake->broker, *settings, nullptr, nullptr, 0, 0, 0, 0);
        fake->rdmRunError = "matrix too small";
        QTest::ignoreMessage(QtCriticalMsg, "Failed to calculate Range Doppler Map data matrix too small");
        QVERIFY(!calculator->processData(fake->newFrame(1, 32, 64), 0));
        QCOMPARE(fake->matricesAlive, 0);
        QTest::ignoreMessage(QtCriticalMsg, "Cannot calculate Range Doppler Map. Cannot get input data. Data is NULL");
        QVERIFY(!calculator->processData(SharedFrame(), 0));
    }

    void refusedHandleIsLogged()
    {
        fake->rdmCreateError = "FFT size not supported";
        QTest::ignoreMessage(QtCriticalMsg, "Cannot create Range Doppler Map handle: FFT size not supported");
        QVERIFY(!RadarRangeDopplerMapCalculator::create(fake->broker, *settings, nullptr, nullptr, 0, 0, 0, 0));

        fake->rdmCreateError = nullptr;
        fake->rdmDestroyError = "in use";
        auto calculator = RadarRangeDopplerMapCalculator::create(fake->broker, *settings, nullptr, nullptr, 0, 0, 0, 0);
        QTest::ignoreMessage(QtCriticalMsg, "Cannot destroy Range Doppler Map handle: in use");
        calculator.reset();
    }

private:
    std::unique_ptr<FakeVrn> fake;
    std::unique_ptr<RangeDopplerUserSettings> settings;
};

QTEST_GUILESS_MAIN(TestRadarRangeDopplerMapCalculator)
#include "tst_RadarRangeDopplerMapCalculator.moc"
