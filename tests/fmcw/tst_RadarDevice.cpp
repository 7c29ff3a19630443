#include "FakeVrn.h"
#include "FmcwTestSupport.h"

#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/MetricsLimits.h"
#include "fmcw/common/PresenceSensingConfig.h"
#include "fmcw/common/RadarConfigurationUtils.h"
#include "fmcw/common/RadarDevice.h"
#include "fmcw/common/RadarDeviceBase.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/common/RadarDeviceParameters.h"
#include "fmcw/common/SegmentationConfiguration.h"

#include <QSignalSpy>
#include <QtTest>

#include <cmath>

namespace {

void smallScene(RadarDeviceConfiguration& config, float frameTime)
{
    config.metrics()->rx()->setMask(0b0100);
    config.metrics()->tx()->setMask(0b0001);
    config.metrics()->setFrameRepetitionTimeS(frameTime);
    config.parameters()->setNumChirpsPerFrame(4);
    config.parameters()->setNumSamplesPerChirp(8);
}

// A device that is nothing but its handle, for the utilities.
struct HandleOnly : RadarDeviceBase {
    vrn_Device_Handle sdkHandle() const override { return reinterpret_cast<vrn_Device_Handle>(0x1); }
};

}

// Each test starts with a device connected to a scripted board, a small
// scene and a spy on its events, and the configuration utilities the device
// works with on an empty configuration; the board's answers are scripted
// through `fake` at any time before the call that asks for them.
class TestRadarDevice : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { qRegisterMetaType<RadarEventCode>(); }

    void init()
    {
        fake = std::make_unique<FakeVrn>();
        device = std::make_unique<RadarDevice>(&fake->table);
        QVERIFY(device->connectDevice("a", VRN_SHIELD_FMCW_512));
        config = std::make_unique<RadarDeviceConfiguration>();
        smallScene(*config, 0.1f);
        events = std::make_unique<QSignalSpy>(device.get(), &RadarDevice::triggerEvent);
        utils = std::make_unique<RadarConfigurationUtils>(&fake->table, true);
        fresh = std::make_unique<RadarDeviceConfiguration>();
        utilEvents = std::make_unique<QSignalSpy>(utils.get(), &IRadarConfigurationUtils::triggerEvent);
    }

    void cleanup()
    {
        utilEvents.reset();
        fresh.reset();
        utils.reset();
        events.reset();
        config.reset();
        device.reset();
        fake.reset();
    }

    void fetchByStatus_data()
    {
        // A fetch failure (2) is no failure of the acquisition: it goes on.
        QTest::addColumn<QVector<int>>("statuses");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("message");
        QTest::newRow("frame") << QVector<int> { 0 } << -1 << "";
        QTest::newRow("two time-outs, then a frame") << QVector<int> { 0x1100d, 0x1100d, 0 } << -1 << "";
        QTest::newRow("fetch failed") << QVector<int> { 0x1100e } << 2 << "Fetching next frame failed";
        QTest::newRow("communication lost") << QVector<int> { 0x11002 } << 3 << "Communication with device failed";
        QTest::newRow("other") << QVector<int> { 0x10001 } << 4
                               << "Cannot fetch data from Radar. Please restart acquisition and try again";
    }

    void fetchByStatus()
    {
        QFETCH(QVector<int>, statuses);
        QFETCH(int, code);
        QFETCH(QString, message);
        fake->frameStatuses.clear();
        for (int status : statuses)
            fake->frameStatuses.append(status);
        {
            const RadarFrameResult result = device->getNextFrame(*config);
            const bool hasFrame = code < 0;
            QCOMPARE(result.success, hasFrame || code == 2);
            QCOMPARE(result.frame != nullptr, hasFrame);
            QCOMPARE(result.owner.get(), result.frame);
            if (hasFrame)
                QCOMPARE(result.frame->num_rx, 1u);
            QCOMPARE(fake->nextFrameCalls.load(), statuses.size());
            QVERIFY(!device->isFetchInProgress());
        }
        // Whatever the outcome, the frame went back to the SDK.
        QCOMPARE(fake->framesAlive.load(), 0);
        QVector<RadarEvent> expected;
        if (code >= 0)
            expected.append({ RadarEventCode(code), message, QString("status 0x%1").arg(statuses.last(), 0, 16) });
        QCOMPARE(eventsOf(*events), expected);
    }

    void deviceWithoutHandleAnswersQuietly()
    {
        RadarDevice unconnected(&fake->table);
        QSignalSpy quiet(&unconnected, &RadarDevice::triggerEvent);
        const RadarFrameResult result = unconnected.getNextFrame(*config);
        QVERIFY(!result.success);
        QCOMPARE(result.frame, nullptr);
        QCOMPARE(fake->nextFrameCalls.load(), 0);
        QVERIFY(std::isnan(unconnected.getTemperature()));
        QCOMPARE(quiet.count(), 0);
    }

    // Three frame times and a quarter, never under 300 ms; the simulated
    // board's test waits a fetch out at its limit.
    void frameTimeLimitHasAFloor()
    {
        QCOMPARE(RadarDevice::frameTimeLimitMs(0.05f), 300.0);
        QVERIFY(std::fabs(RadarDevice::frameTimeLimitMs(0.1f) - 375.0) < 1e-3);
    }

    void temperatureByStatus_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("message");
        QTest::newRow("reading") << 0 << -1 << "";
        QTest::newRow("not supported") << 0x1000c << 5 << "Temperature monitoring is not supported";
        QTest::newRow("communication") << 0x11000 << 3 << "Communication with device failed";
        QTest::newRow("other") << 0x10001 << -1 << "";
    }

    void temperatureByStatus()
    {
        QFETCH(int, status);
        QFETCH(int, code);
        QFETCH(QString, message);
        fake->temperatureStatus = status;
        fake->temperature = 41.5f;
        if (status == 0x10001)
            QTest::ignoreMessage(QtCriticalMsg, "Failed to get device temperature: \"status 0x10001\"");
        const float temperature = device->getTemperature();
        if (status == 0)
            QCOMPARE(temperature, 41.5f);
        else
            QVERIFY(std::isnan(temperature));
        QVector<RadarEvent> expected;
        if (code >= 0)
            expected.append({ RadarEventCode(code), message, QString("status 0x%1").arg(status, 0, 16) });
        QCOMPARE(eventsOf(*events), expected);
    }

    void stopAcquisitionFailures()
    {
        fake->stopped = 0;
        QTest::ignoreMessage(QtWarningMsg, "Cannot stop acquisition - returned result is FALSE");
        device->stopAcquisition();
        QCOMPARE(events->count(), 0);
        fake->stopError = "board gone";
        device->stopAcquisition();
        QCOMPARE(eventsOf(*events), QVector<RadarEvent>({ { RadarEventCode::DeviceCommunicationFailure,
                                                          "Failed to stop acquisition", "board gone" } }));
    }

    void setConfigurationSteps_data()
    {
        QTest::addColumn<QString>("failing");
        QTest::addColumn<bool>("result");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("setCalls");
        QTest::addColumn<QString>("details");
        QTest::newRow("all well") << "" << true << "" << 1 << "";
        QTest::newRow("limits") << "limits" << true << "Failed to get metric limits" << 1 << "limits unavailable";
        QTest::newRow("translate") << "translate" << false << "Cannot translate metrics to config" << 0
                                   << "speed resolution too fine";
        QTest::newRow("set") << "set" << false << "Cannot set device config" << 1 << "board refused";
        QTest::newRow("chirp time") << "chirp" << true << "Cannot get chirp time" << 1 << "no chirp time";
    }

    void setConfigurationSteps()
    {
        QFETCH(QString, failing);
        QFETCH(bool, result);
        QFETCH(QString, message);
        QFETCH(int, setCalls);
        QFETCH(QString, details);
        fake->limits.max_range_m_min = 0.84f;
        fake->limits.max_range_m_max = 19.27f;
        fake->translated.num_samples_per_chirp = 128;
        fake->translated.num_chirps_per_frame = 32;
        fake->translated.mimo_mode = VRN_MIMO_TDM;
        if (failing == "limits")
            fake->limitsError = "limits unavailable";
        if (failing == "translate")
            fake->translateError = "speed resolution too fine";
        if (failing == "set")
            fake->setConfigError = "board refused";
        if (failing == "chirp")
            fake->chirpTimeError = "no chirp time";
        config->metrics()->setMaxRangeM(0.8f);
        if (failing == "translate")
            QTest::ignoreMessage(QtCriticalMsg, "Cannot translate metrics to config speed resolution too fine");
        // A receiver of the event that asks the device for more must find it unlocked.
        float temperatureSeen = -1.0f;
        connect(device.get(), &RadarDevice::triggerEvent, this, [&] { temperatureSeen = device->getTemperature(); });

        QCOMPARE(device->setConfiguration(*config), result);
        QCOMPARE(fake->setConfigCalls, setCalls);
        QVector<RadarEvent> expected;
        if (!message.isEmpty())
            expected.append({ RadarEventCode::Error, message, details });
        QCOMPARE(eventsOf(*events), expected);
        QCOMPARE(temperatureSeen, message.isEmpty() ? -1.0f : 0.0f);
        if (failing.isEmpty()) {
            QCOMPARE(std::make_tuple(config->limits()->maxRangeMMin(), config->limits()->maxRangeMMax(),
                                     fake->lastMetrics.max_range_m, fake->lastSetConfig.num_samples_per_chirp),
                     std::make_tuple(0.8f, 19.2f, 0.84f, 128u));
        }
        if (result) {
            QCOMPARE(config->parameters()->numChirpsPerFrame(), 32u);
            QCOMPARE(config->parameters()->mimoMode(), QString("tdm"));
            if (failing != "chirp")
                QCOMPARE(config->parameters()->chirpTime(), fake->chirpTime);
        } else {
            QCOMPARE(config->parameters()->numChirpsPerFrame(), 4u);
        }
    }

    void recalculationDoesNotTouchTheDevice()
    {
        fake->translated.num_chirps_per_frame = 64;
        QVERIFY(device->recalculateConfiguration(*config));
        QCOMPARE(fake->setConfigCalls, 0);
        QCOMPARE(config->parameters()->numChirpsPerFrame(), 64u);
        config->setRecalcHandler(device.get());
        fake->translated.num_chirps_per_frame = 16;
        QVERIFY(config->recalcConfig());
        QCOMPARE(config->parameters()->numChirpsPerFrame(), 16u);
    }

    void deviceInformation()
    {
        qstrcpy(fake->info.name, "KMR7C");
        fake->info.num_rx_antennas = 3;
        fake->info.num_tx_antennas = 2;
        fake->info.min_rf_frequency_Hz = 58000000000ull;
        fake->info.max_rf_frequency_Hz = 63500000000ull;
        qstrcpy(fake->firmware.description, "Radar baseboard firmware");
        fake->firmware.version_major = 2;
        fake->firmware.version_minor = 5;
        fake->firmware.version_build = 11;
        fake->txPower = { 4.0f, 5.5f };
        // A page that asks the device for more on a change must find it unlocked.
        int rxSeen = -1;
        connect(config->deviceInfo(), &DeviceInfo::deviceNameChanged, this, [&] { rxSeen = device->getNumRxAntennas(); });
        device->updateDeviceInfo(*config->deviceInfo());
        QCOMPARE(rxSeen, 3);
        const DeviceInfo& info = *config->deviceInfo();
        QCOMPARE(config->radarType(), RadarConstants::KMR7C);
        QCOMPARE(std::make_tuple(info.numTxAntennas(), info.maxRfFrequencyHz(), info.deviceType()),
                 std::make_tuple(quint8(2), 63500000000ull, int(VRN_DEVICE_TYPE_KMR7A)));
        QCOMPARE(QStringList({ info.deviceName(), info.deviceFirmwareNumber(), info.deviceFirmwareName(),
                               device->getFirmwareVersion() }),
                 QStringList({ "KMR7C", "v2.5.11", "Radar baseboard firmware", "2511" }));
        QCOMPARE(device->getNumTxAntennas(), 2);
        QCOMPARE(fake->lastUuid, QByteArray("a"));

        config->metrics()->tx()->setMask(0b0010);
        device->updateTxPower(*config);
        QCOMPARE(info.deviceTxPower(), QVector<float>({ 0.0f, 5.5f }));
    }

    void applicationDefaults()
    {
        fake->psDefaults.max_detection_range_m = 4.0f;
        fake->segError = "no segmentation on this chip";
        // A receiver that asks the device for more must find it unlocked.
        float temperatureSeen = -1.0f;
        connect(device.get(), &RadarDevice::triggerEvent, this, [&] { temperatureSeen = device->getTemperature(); });

        config->setApplication(RadarConstants::Segmentation);
        device->updateApplicationDefaults(*config);
        const QVector<RadarEvent> expected {
            { RadarEventCode::Error, "Cannot get default config for segmentation", "no segmentation on this chip" },
            { RadarEventCode::Error, "Failed to get default configuration for Segmentation calculations", "" },
        };
        QCOMPARE(eventsOf(*events), expected);
        QCOMPARE(temperatureSeen, 0.0f);

        config->setApplication(RadarConstants::PresenceSensing);
        device->updateApplicationDefaults(*config);
        QCOMPARE(config->presenceSensing()->maxDetectionRange(), 4.0f);
        QCOMPARE(events->count(), 2);
    }

    void segmentationDefaultsKeepUserSettingsOnRequest_data()
    {
        QTest::addColumn<bool>("chirpValuesOnly");
        QTest::addColumn<quint32>("tracks");
        QTest::addColumn<float>("range");
        QTest::newRow("everything") << false << 10u << 5.0f;
        QTest::newRow("chirp values only") << true << 7u << 2.5f;
    }

    void segmentationDefaultsKeepUserSettingsOnRequest()
    {
        QFETCH(bool, chirpValuesOnly);
        QFETCH(quint32, tracks);
        QFETCH(float, range);
        fake->segDefaults.max_num_tracks = 10;
        fake->segDefaults.max_detection_range_m = 5.0f;
        fake->segDefaults.num_chirps_per_frame = 64;
        config->setApplication(RadarConstants::Segmentation);
        config->segmentation()->setMaxNumTracks(7);
        config->segmentation()->setMaxDetectionRangeM(2.5f);
        // A page that asks the device for more on a change must find it unlocked.
        int changesSeen = 0;
        connect(config->segmentation(), &SegmentationConfiguration::numChirpsPerFrameChanged, this, [&] {
            device->getNumRxAntennas();
            ++changesSeen;
        });

        device->updateApplicationDefaults(*config, chirpValuesOnly ? RadarDevice::SegmentationDefaults::ChirpValuesOnly
                                                                 : RadarDevice::SegmentationDefaults::Everything);

        QCOMPARE(config->segmentation()->maxNumTracks(), tracks);
        QCOMPARE(config->segmentation()->maxDetectionRangeM(), range);
        QCOMPARE(config->segmentation()->numChirpsPerFrame(), 64u);
        QCOMPARE(changesSeen, 1);
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
        fresh->metrics()->rx()->setMask(rx);
        fresh->metrics()->tx()->setMask(tx); // a fresh selection takes several transmitters as given
        fresh->parameters()->setNumChirpsPerFrame(16);
        fresh->parameters()->setNumSamplesPerChirp(64);
        vrn_Frame_R_t* frame = nullptr;
        QVERIFY(utils->createFrame(*fresh, frame));
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
        QVERIFY(!utils->createFrame(*fresh, frame));
        QCOMPARE(frame, nullptr);
        QCOMPARE(eventsOf(*utilEvents), QVector<RadarEvent>({ { RadarEventCode::Error, "Failed to create frame", "out of memory" } }));
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
        fresh->limits()->setFromSdk(limits);
        fresh->metrics()->setMaxRangeM(metric);
        fresh->metrics()->setSampleRateHz(1000000);
        vrn_Device_Config_t out {};
        QVERIFY(utils->convertConfiguration(&handleOnly, *fresh, out));
        QCOMPARE(std::make_tuple(fake->lastMetrics.max_range_m, fake->lastMetrics.sample_rate_Hz, out.num_chirps_per_frame),
                 std::make_tuple(sent, 1000000u, 32u));
        // The scene itself keeps the user's value.
        QCOMPARE(fresh->metrics()->maxRangeM(), metric);
    }

    void deviceRecordBothWays_data()
    {
        // The MIMO mode as the configuration names it, what the SDK gets for
        // it; what the SDK answers, what the configuration reads from it.
        // An unknown one on either side is off, with a warning.
        QTest::addColumn<QString>("mode");
        QTest::addColumn<int>("sdk");
        QTest::addColumn<int>("sdkAnswer");
        QTest::addColumn<QString>("modeRead");
        QTest::newRow("off") << "off" << int(VRN_MIMO_OFF) << int(VRN_MIMO_OFF) << "off";
        QTest::newRow("tdm") << "tdm" << int(VRN_MIMO_TDM) << int(VRN_MIMO_TDM) << "tdm";
        QTest::newRow("unknown") << "TDM" << int(VRN_MIMO_OFF) << 7 << "off";
    }

    void deviceRecordBothWays()
    {
        QFETCH(QString, mode);
        QFETCH(int, sdk);
        QFETCH(int, sdkAnswer);
        QFETCH(QString, modeRead);
        if (sdkAnswer == 7) {
            QTest::ignoreMessage(QtWarningMsg,
                                 "Current mimo mode from configuration does not fit into any defined type by SDK");
            QTest::ignoreMessage(QtWarningMsg, "Current mimo mode from SDK configuration does not fit into any defined "
                                               "type by configuration");
        }
        fresh->parameters()->setMimoMode(mode);
        fresh->parameters()->setNumSamplesPerChirp(128);
        fresh->parameters()->setLowerFrequencyHz(60000000000ull);
        fresh->metrics()->rx()->setMask(0b0101);
        fresh->metrics()->tx()->setMask(0b0001);
        fresh->metrics()->setIfGainDB(33);
        vrn_Device_Config_t out {};
        utils->setupSdkDeviceConfiguration(*fresh, out);
        QCOMPARE(int(out.mimo_mode), sdk);
        QCOMPARE(std::make_tuple(out.num_samples_per_chirp, out.lower_frequency_Hz, out.rx_mask, out.tx_mask, out.if_gain_dB),
                 std::make_tuple(128u, 60000000000ull, 0b0101u, 0u, 33u));

        fake->prt = 0.0005f;
        RadarDeviceParameters parameters;
        parameters.setMimoMode("tdm");
        vrn_Device_Config_t record {};
        record.num_samples_per_chirp = 64;
        record.num_chirps_per_frame = 32;
        record.frame_repetition_time_s = 0.1f;
        record.upper_frequency_Hz = 61000000000ull;
        record.chirp_repetition_time_s = 0.0004f;
        record.mimo_mode = static_cast<vrn_Mimo_Mode_t>(sdkAnswer);
        utils->parseDeviceConfig(&parameters, record);
        QCOMPARE(parameters.mimoMode(), modeRead);
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
        QCOMPARE(eventsOf(*utilEvents),
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
        QVERIFY(utils->getDefaultSegmentationConfig(&handleOnly, *fresh, *fresh->segmentation()));
        const SegmentationConfiguration& segmentation = *fresh->segmentation();
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
        utils->fillDefaultPresenceSensing(*fresh);
        const PresenceSensingConfig& presence = *fresh->presenceSensing();
        QCOMPARE(std::make_tuple(presence.minDetectionRange(), presence.maxDetectionRange(),
                                 presence.rangeHysteresisPercentage(), presence.absenceConfirmCount(),
                                 presence.presenceConfirmCount()),
                 std::make_tuple(0.3f, 5.0f, 10.0f, 7u, 2u));
    }

private:
    std::unique_ptr<FakeVrn> fake;
    std::unique_ptr<RadarDevice> device;
    std::unique_ptr<RadarDeviceConfiguration> config;
    std::unique_ptr<QSignalSpy> events;
    std::unique_ptr<RadarConfigurationUtils> utils;
    std::unique_ptr<RadarDeviceConfiguration> fresh;
    std::unique_ptr<QSignalSpy> utilEvents;
    HandleOnly handleOnly;
};

QTEST_GUILESS_MAIN(TestRadarDevice)
#include "tst_RadarDevice.moc"
