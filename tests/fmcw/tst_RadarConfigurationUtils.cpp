#include "FakeVrn.h"
#include "FmcwTestSupport.h"

#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/MetricsLimits.h"
#include "fmcw/common/PresenceSensingConfig.h"
#include "fmcw/common/RadarConfigurationUtils.h"
#include "fmcw/common/RadarDeviceBase.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/common/RadarDeviceParameters.h"
#include "fmcw/common/SegmentationConfiguration.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

struct FakeDevice : RadarDeviceBase {
    vrn_Device_Handle sdkHandle() const override { return reinterpret_cast<vrn_Device_Handle>(0x1); }
};

}

// Each test starts with the utilities on a scripted SDK table, an empty
// configuration and a device to hand them.
class TestRadarConfigurationUtils : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        fake = std::make_unique<FakeVrn>();
        utils = std::make_unique<RadarConfigurationUtils>(&fake->table, true);
        config = std::make_unique<RadarDeviceConfiguration>();
        events = std::make_unique<QSignalSpy>(utils.get(), &IRadarConfigurationUtils::triggerEvent);
    }

    void cleanup()
    {
        events.reset();
        config.reset();
        utils.reset();
        fake.reset();
    }

    void frameHasOneChannelPerAntennaPair_data()
    {
        QTest::addColumn<quint32>("rx");
        QTest::addColumn<quint32>("tx");
        QTest::addColumn<quint32>("channels");
        QTest::newRow("2 rx, 1 tx") << 0b0011u << 0b0001u << 2u;
        QTest::newRow("2 rx, 2 tx") << 0b0011u << 0b0011u << 4u;
        QTest::newRow("3 rx, 1 tx") << 0b0111u << 0b0100u << 3u;
    }

    void frameHasOneChannelPerAntennaPair()
    {
        QFETCH(quint32, rx);
        QFETCH(quint32, tx);
        QFETCH(quint32, channels);
        config->metrics()->rx()->setMask(rx);
        config->metrics()->tx()->setMask(tx); // a fresh selection takes several transmitters as given
        config->parameters()->setNumChirpsPerFrame(16);
        config->parameters()->setNumSamplesPerChirp(64);
        vrn_Frame_R_t* frame = nullptr;
        QVERIFY(utils->createFrame(*config, frame));
        QCOMPARE(std::make_tuple(frame->num_rx, frame->rx_data[0]->rows, frame->rx_data[0]->cols),
                 std::make_tuple(channels, 16u, 64u));
        utils->destroyFrame(frame);
        QCOMPARE(frame, nullptr);
        QCOMPARE(fake->framesAlive.load(), 0);
        // Nothing to destroy or clear is no call.
        utils->destroyFrame(frame);
        utils->clearFrame(frame);
        QCOMPARE(std::make_pair(fake->frameDestroyCalls, fake->clearCalls), std::make_pair(1, 0));
    }

    void frameCreationFailureIsReported()
    {
        fake->frameCreateError = "out of memory";
        vrn_Frame_R_t* frame = nullptr;
        QVERIFY(!utils->createFrame(*config, frame));
        QCOMPARE(frame, nullptr);
        QCOMPARE(eventsOf(*events), QVector<RadarEvent>({ { RadarEventCode::Error, "Failed to create frame", "out of memory" } }));
    }

    void clearFrameGoesOnAfterAFailedChannel()
    {
        fake->clearErrors = { nullptr, "matrix locked", nullptr };
        vrn_Frame_R_t* frame = nullptr;
        QVERIFY(!fake->table.frame_r_create(3, 2, 2, &frame));
        QTest::ignoreMessage(QtCriticalMsg, "Failed to clear frame matrix locked");
        utils->clearFrame(frame);
        QCOMPARE(std::make_pair(fake->clearCalls, frame->num_rx), std::make_pair(3, 0u));
        utils->destroyFrame(frame);
        QCOMPARE(fake->framesAlive.load(), 0);
    }

    void maximumRangeIsRaisedToSdkMinimum_data()
    {
        QTest::addColumn<float>("metric");
        QTest::addColumn<float>("exactMinimum");
        QTest::addColumn<float>("sent");
        QTest::newRow("below minimum") << 0.8f << 0.84f << 0.84f;
        QTest::newRow("above minimum") << 9.6f << 0.84f << 9.6f;
        QTest::newRow("at minimum") << 1.0f << 1.0f << 1.0f;
    }

    void maximumRangeIsRaisedToSdkMinimum()
    {
        QFETCH(float, metric);
        QFETCH(float, exactMinimum);
        QFETCH(float, sent);
        fake->translated.num_chirps_per_frame = 32;
        vrn_Metrics_Limits_t limits {};
        limits.max_range_m_min = exactMinimum;
        config->limits()->setFromSdk(limits);
        config->metrics()->setMaxRangeM(metric);
        config->metrics()->setSampleRateHz(1000000);
        vrn_Device_Config_t out {};
        QVERIFY(utils->convertConfiguration(&device, *config, out));
        QCOMPARE(std::make_tuple(fake->lastMetrics.max_range_m, fake->lastMetrics.sample_rate_Hz, out.num_chirps_per_frame),
                 std::make_tuple(sent, 1000000u, 32u));
        // The scene itself keeps the user's value.
        QCOMPARE(config->metrics()->maxRangeM(), metric);
    }

    void mimoModeToSdk_data()
    {
        QTest::addColumn<QString>("mode");
        QTest::addColumn<int>("sdk");
        QTest::addColumn<bool>("warns");
        QTest::newRow("off") << "off" << int(VRN_MIMO_OFF) << false;
        QTest::newRow("tdm") << "tdm" << int(VRN_MIMO_TDM) << false;
        QTest::newRow("unknown") << "TDM" << int(VRN_MIMO_OFF) << true;
    }

    void mimoModeToSdk()
    {
        QFETCH(QString, mode);
        QFETCH(int, sdk);
        QFETCH(bool, warns);
        config->parameters()->setMimoMode(mode);
        config->parameters()->setNumSamplesPerChirp(128);
        config->parameters()->setLowerFrequencyHz(60000000000ull);
        config->metrics()->rx()->setMask(0b0101);
        config->metrics()->tx()->setMask(0b0001);
        config->metrics()->setIfGainDB(33);
        if (warns)
            QTest::ignoreMessage(QtWarningMsg,
                                 "Current mimo mode from configuration does not fit into any defined type by SDK");
        vrn_Device_Config_t out {};
        utils->setupSdkDeviceConfiguration(*config, out);
        QCOMPARE(int(out.mimo_mode), sdk);
        QCOMPARE(std::make_tuple(out.num_samples_per_chirp, out.lower_frequency_Hz, out.rx_mask, out.tx_mask, out.if_gain_dB),
                 std::make_tuple(128u, 60000000000ull, 0b0101u, 0u, 33u));
    }

    void deviceRecordToParameters_data()
    {
        QTest::addColumn<int>("sdk");
        QTest::addColumn<QString>("mode");
        QTest::newRow("off") << int(VRN_MIMO_OFF) << "off";
        QTest::newRow("tdm") << int(VRN_MIMO_TDM) << "tdm";
        QTest::newRow("7") << 7 << "off";
    }

    void deviceRecordToParameters()
    {
        QFETCH(int, sdk);
        QFETCH(QString, mode);
        fake->prt = 0.0005f;
        RadarDeviceParameters parameters;
        parameters.setMimoMode("tdm");
        vrn_Device_Config_t record {};
        record.num_samples_per_chirp = 64;
        record.num_chirps_per_frame = 32;
        record.frame_repetition_time_s = 0.1f;
        record.upper_frequency_Hz = 61000000000ull;
        record.chirp_repetition_time_s = 0.0004f;
        record.mimo_mode = static_cast<vrn_Mimo_Mode_t>(sdk);
        if (sdk == 7)
            QTest::ignoreMessage(QtWarningMsg, "Current mimo mode from SDK configuration does not fit into any defined "
                                               "type by configuration");
        utils->parseDeviceConfig(&parameters, record);
        QCOMPARE(parameters.mimoMode(), mode);
        QCOMPARE(std::make_tuple(parameters.numSamplesPerChirp(), parameters.numChirpsPerFrame(),
                                 parameters.frameRepetitionTimeS(), parameters.upperFrequencyHz(),
                                 parameters.chirpRepetitionTimeS(), parameters.pulseRepetitionTimeS()),
                 std::make_tuple(64u, 32u, 0.1f, 61000000000ull, 0.0004f, 0.0005f));
        utils->parseDeviceConfig(nullptr, record);
    }

    void pulseRepetitionFailureIsReported()
    {
        fake->prtError = "no chirps";
        RadarDeviceParameters parameters;
        parameters.setPulseRepetitionTimeS(1.0f);
        vrn_Device_Config_t record {};
        utils->parseDeviceConfig(&parameters, record);
        QCOMPARE(eventsOf(*events),
                 QVector<RadarEvent>({ { RadarEventCode::Error, "Failed to get Pulse Repetition Time", "no chirps" } }));
        // The value the SDK left behind is stored all the same.
        QCOMPARE(parameters.pulseRepetitionTimeS(), 0.0f);
    }

    void segmentationDefaults()
    {
        fake->segDefaults.num_samples_per_chirp = 128;
        fake->segDefaults.max_detection_range_m = 6.0f;
        fake->segDefaults.max_num_tracks = 5;
        fake->segDefaults.num_segments = 2;
        fake->segDefaults.segments_degrees[0] = 30.0f;
        fake->segDefaults.segments_degrees[1] = 60.0f;
        fake->segDefaults.detection_sensitivity = VRN_LEVEL_LOW;
        QVERIFY(utils->getDefaultSegmentationConfig(&device, *config, *config->segmentation()));
        const SegmentationConfiguration& segmentation = *config->segmentation();
        QCOMPARE(std::make_tuple(segmentation.numSamplesPerChirp(), segmentation.maxDetectionRangeM(),
                                 segmentation.segmentsDegrees(), segmentation.detectionSensitivity()),
                 std::make_tuple(128u, 6.0f, QVector<float>({ 30.0f, 60.0f }), RadarConstants::Low));
    }

    void presenceSensingDefaults()
    {
        fake->psDefaults.min_detection_range_m = 0.3f;
        fake->psDefaults.max_detection_range_m = 5.0f;
        fake->psDefaults.range_hysteresis_percentage = 10.0f;
        fake->psDefaults.absence_confirm_count = 7;
        fake->psDefaults.presence_confirm_count = 2;
        fake->psDefaults.sensitivity_threshold = 0.5f;
        utils->fillDefaultPresenceSensing(*config);
        const PresenceSensingConfig& presence = *config->presenceSensing();
        QCOMPARE(std::make_tuple(presence.minDetectionRange(), presence.maxDetectionRange(),
                                 presence.rangeHysteresisPercentage(), presence.absenceConfirmCount(),
                                 presence.presenceConfirmCount()),
                 std::make_tuple(0.3f, 5.0f, 10.0f, 7u, 2u));
    }

private:
    std::unique_ptr<FakeVrn> fake;
    std::unique_ptr<RadarConfigurationUtils> utils;
    std::unique_ptr<RadarDeviceConfiguration> config;
    std::unique_ptr<QSignalSpy> events;
    FakeDevice device;
};

QTEST_GUILESS_MAIN(TestRadarConfigurationUtils)
#include "tst_RadarConfigurationUtils.moc"
