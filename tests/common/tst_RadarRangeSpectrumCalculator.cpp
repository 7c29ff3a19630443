#include "FakeVrn.h"

#include "common/RadarRangeSpectrumCalculator.h"
#include "common/RangeSpectrumUserSettings.h"

#include <QtTest>

class TestRadarRangeSpectrumCalculator : public QObject
{
    Q_OBJECT
private slots:
    // Each test scripts the SDK's answers and edits the settings before it
    // creates the calculator.
    void init()
    {
        fake = std::make_unique<FakeVrn>();
        settings = std::make_unique<RangeSpectrumUserSettings>();
    }
    void createHandsTheSettingsToTheSdk()
    {
        settings->updateDeviceParameters(300, 32);
        settings->fftConfig()->setMeanRemoval(false);
        settings->fftConfig()->window()->setType("Hanning");
        settings->fftConfig()->window()->setScale(2.0f);
        settings->fftConfig()->window()->setAttenuationDB(-60.0f);

        auto calculator = create();
        QVERIFY(calculator);
        // What the user chose and the FFT size derived from the chirp reach the
        // SDK; the rest of the record is the settings' own copy.
        const vrn_RS_Config_t& sent = fake->rsConfig;
        QCOMPARE(sent.fft_config.fft_size, 512u);
        QCOMPARE(sent.fft_config.mean_removal_enabled, uint8_t(0));
        QCOMPARE(sent.fft_config.window_config.type, VRN_WINDOW_HANN);
        QCOMPARE(sent.fft_config.window_config.size, 300u);
        QCOMPARE(sent.fft_config.window_config.scale, 2.0f);
        QCOMPARE(sent.fft_config.window_config.attenuation_dB, -60.0f);
        QCOMPARE(sent.fft_config.is_normalized_window, uint8_t(1));
        QCOMPARE(sent.output_scale_type, VRN_SCALE_TYPE_DECIBEL_20LOG);
        QCOMPARE(sent.num_of_chirps_per_frame, 32u);
        QCOMPARE(calculator->configuration().fft_config.fft_size, 512u);
    }

    void refusedCreationGivesNoCalculator()
    {
        fake->rsCreateError = "window too long";
        QTest::ignoreMessage(QtCriticalMsg, "Cannot create Range Spectrum handle: window too long");
        QVERIFY(!create());
        QCOMPARE(fake->rsDestroyCalls, 0);
    }

    void spectraPerAntenna_data()
    {
        QTest::addColumn<quint32>("antennas");
        QTest::addColumn<int>("failingRun"); // -1: none
        QTest::addColumn<QVector<float>>("firstValues");

        QTest::newRow("three antennas") << 3u << -1 << QVector<float> { 10, 20, 30 };
        QTest::newRow("one antenna") << 1u << -1 << QVector<float> { 10 };
        QTest::newRow("second antenna fails") << 3u << 1 << QVector<float> { 10 };
        QTest::newRow("first antenna fails") << 2u << 0 << QVector<float>();
        QTest::newRow("last antenna fails") << 3u << 2 << QVector<float> { 10, 20 };
    }

    void spectraPerAntenna()
    {
        QFETCH(quint32, antennas);
        QFETCH(int, failingRun);
        QFETCH(QVector<float>, firstValues);

        settings->updateDeviceParameters(64, 16);
        auto calculator = create();
        QVERIFY(calculator);
        if (failingRun >= 0) {
            fake->rsRunErrors.resize(failingRun + 1);
            fake->rsRunErrors[failingRun] = "input too short";
            QTest::ignoreMessage(QtCriticalMsg,
                                 qPrintable(QString("Failed to calculate Range Spectrum data for antenna %1: input too short")
                                                .arg(failingRun)));
        }
        {
            const QVector<SharedVector> spectra = calculator->processData(fake->newFrame(antennas, 16, 64));
            QCOMPARE(spectra.size(), firstValues.size());
            for (int i = 0; i < spectra.size(); ++i) {
                QCOMPARE(spectra[i]->len, 128u); // FFT size 256 / 2
                QCOMPARE(spectra[i]->data[0], firstValues[i]);
            }
            // Only the spectra handed out are alive; a failed run's vector is gone.
            QCOMPARE(fake->vectorsAlive, spectra.size());
        }
        QCOMPARE(fake->vectorsAlive, 0);
        QCOMPARE(fake->framesAlive.load(), 0);
    }

    void missingFrameGivesNothing()
    {
        auto calculator = create();
        QTest::ignoreMessage(QtCriticalMsg, "Cannot calculate Range Spectrum. Cannot get input frame. Data is NULL");
        QVERIFY(calculator->processData(SharedFrame()).isEmpty());
        QCOMPARE(fake->rsRuns, 0);
    }

    void refusedDestroyIsLoggedOnce()
    {
        fake->rsDestroyError = "handle busy";
        auto calculator = create();
        QVERIFY(calculator);
        QTest::ignoreMessage(QtCriticalMsg, "Cannot destroy Range Spectrum handle: handle busy");
        calculator.reset();
        QCOMPARE(fake->rsDestroyCalls, 1);
    }

    void axes_data()
    {
        QTest::addColumn<bool>("distance");
        QTest::addColumn<QByteArray>("error");
        QTest::addColumn<QString>("message");
        QTest::newRow("distance") << true << QByteArray() << QString();
        QTest::newRow("distance refused") << true << QByteArray("no chirp")
                                          << "Failed to calculate range axis for range spectrum : no chirp";
        QTest::newRow("frequency") << false << QByteArray() << QString();
        QTest::newRow("frequency refused")
            << false << QByteArray("rate out of range")
            << "Error, could not calculate frequency axis for frequency domain: rate out of range";
    }

    void axes()
    {
        QFETCH(bool, distance);
        QFETCH(QByteArray, error);
        QFETCH(QString, message);
        fake->axisError = error.isEmpty() ? nullptr : error.constData();
        auto calculator = create();
        if (!message.isEmpty())
            QTest::ignoreMessage(QtCriticalMsg, qPrintable(message));
        const auto axis = distance ? calculator->calculateDistanceAxis(256, 64, 9.6f)
                                   : calculator->calculateFrequencyAxis(256, 1.0e6f);
        QCOMPARE(axis.first, error.isEmpty());
        if (!distance) {
            QCOMPARE(axis.second.step, error.isEmpty() ? 1.0e6 / 256 : 0.0);
            return;
        }
        // The distance axis is kept for the charts, or none on failure.
        QCOMPARE(axis.second.max, error.isEmpty() ? 9.6 : 0.0);
        QCOMPARE(calculator->hasDistanceAxis(), error.isEmpty());
        QCOMPARE(calculator->distanceAxis().max, axis.second.max);
    }

    void pulsedDopplerFrameGivesOneSpectrum()
    {
        auto calculator = create();

        vrn_Complex_t samples[4] = { { 7.0f, 1.0f }, {}, {}, {} };
        vrn_Matrix_C_s channel { 1, 4, 4, samples };
        vrn_Matrix_C_s* channels[] = { &channel };
        vrn_Corvix_Frame_C_t frame { 1, channels };
        QVector<SharedVector> spectra = calculator->processData(&frame);
        QCOMPARE(spectra.size(), 1);
        QCOMPARE(spectra[0]->data[0], 7.0f);

        fake->rsRunErrors = { nullptr, "saturated" };
        QTest::ignoreMessage(QtCriticalMsg, "Failed to calculate Range Spectrum data for Corvix: saturated");
        QVERIFY(calculator->processData(&frame).isEmpty());
    }

private:
    std::unique_ptr<RadarRangeSpectrumCalculator> create()
    {
        return RadarRangeSpectrumCalculator::create(fake->broker, *settings);
    }

    std::unique_ptr<FakeVrn> fake;
    std::unique_ptr<RangeSpectrumUserSettings> settings;
};

QTEST_GUILESS_MAIN(TestRadarRangeSpectrumCalculator)
#include "tst_RadarRangeSpectrumCalculator.moc"
