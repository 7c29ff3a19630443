#include "FakeVrn.h"

#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/PresenceSensingConfig.h"
#include "fmcw/common/RadarAntennas.h"
#include "fmcw/common/RadarConfigurationUtils.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/common/RadarDeviceParameters.h"
#include "fmcw/common/SegmentationConfiguration.h"
#include "fmcw/processing/RadarPresenceSensingCalculator.h"
#include "fmcw/processing/RadarSegmentationCalculator.h"

#include <QtTest>

namespace {

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

class TestRadarApplicationCalculators : public QObject
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
        utils = std::make_unique<RadarConfigurationUtils>(&fake->table, false);
        config = std::make_unique<RadarDeviceConfiguration>();
        describeScene(*config);
        user = std::make_unique<SegmentationConfiguration>();
    }
    void presenceRecordJoinsDefaultsUserAndScene()
    {
        QVERIFY(presence());
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
    }

    void presenceLooksAtTheFirstAntennaOnly_data()
    {
        QTest::addColumn<quint32>("channels");
        QTest::newRow("one antenna") << 1u;
        QTest::newRow("three antennas") << 3u;
    }

    void presenceLooksAtTheFirstAntennaOnly()
    {
        QFETCH(quint32, channels);
        auto calculator = presence();
        SharedPresenceResult result = calculator->process(fake->newFrame(channels, 32, 64));
        QVERIFY(result);
        QCOMPARE(result->state, VRN_PRESENCE_STATE_PRESENCE);
        QCOMPARE(result->motion_energy, 10.0f); // the first channel's samples
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

    void segmentationReadsRx1AndRx3_data()
    {
        QTest::addColumn<quint32>("channels");
        QTest::addColumn<QVector<float>>("markers"); // empty: refused

        QTest::newRow("Rx1 and Rx3 only") << 2u << QVector<float> { 10, 20 };
        QTest::newRow("all three receivers") << 3u << QVector<float> { 10, 30 };
        QTest::newRow("one channel is not enough") << 1u << QVector<float>();
    }

    void segmentationReadsRx1AndRx3()
    {
        QFETCH(quint32, channels);
        QFETCH(QVector<float>, markers);

        auto calculator = segmentation();
        if (markers.isEmpty())
            QTest::ignoreMessage(QtCriticalMsg, "Cannot calculate Segmentation. Cannot get input data. Data is NULL");
        const RadarSegmentationResult result = calculator->process(fake->newFrame(channels, 32, 64));
        QCOMPARE(bool(result.trackedObjects), !markers.isEmpty());
        QCOMPARE(bool(result.segments), !markers.isEmpty());
        QCOMPARE(fake->segInputMarkers, markers);
    }

    void segmentationResultsAreCopied()
    {
        fake->segResult.num_tracks = 2;
        fake->segResult.tracks[0] = { 3, 1.5f, -20.0f, 0.4f };
        fake->segResult.tracks[1] = { 8, 2.25f, 10.0f, -1.0f };
        fake->segResult.num_segments = 3;
        fake->segResult.segment_occupied[0] = 1;
        fake->segResult.segment_occupied[2] = 7;
        auto calculator = segmentation();

        const RadarSegmentationResult result = calculator->process(fake->newFrame(2, 32, 64));
        QCOMPARE(result.trackedObjects->size(), 2);
        const RadarTrackedObject& second = result.trackedObjects->at(1);
        QCOMPARE(std::make_tuple(second.id, second.distance, second.angle, second.speed), std::make_tuple(8u, 2.25f, 10.0f, -1.0f));
        QCOMPARE(*result.segments, (QVector<int> { 1, 0, 1 }));
    }

    void segmentationFailedRunGivesNothing()
    {
        fake->segRunError = "channels differ in length";
        auto calculator = segmentation();
        QTest::ignoreMessage(QtCriticalMsg, "Cannot calculate Segmentation result channels differ in length");
        const RadarSegmentationResult result = calculator->process(fake->newFrame(2, 32, 64));
        QVERIFY(!result.trackedObjects);
        QVERIFY(!result.segments);
        QCOMPARE(fake->framesAlive.load(), 0);
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
    std::unique_ptr<RadarConfigurationUtils> utils;
    std::unique_ptr<RadarDeviceConfiguration> config;
    std::unique_ptr<SegmentationConfiguration> user;
};

QTEST_GUILESS_MAIN(TestRadarApplicationCalculators)
#include "tst_RadarApplicationCalculators.moc"
