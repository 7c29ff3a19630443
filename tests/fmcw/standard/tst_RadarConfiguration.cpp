// The standard mode's configuration object without a board: defaults per
// application and chip, the application checks with their messages, the
// optimal-settings notice, files, the difference test and the recording
// document.

#include "FakeVrn.h"
#include "FmcwTestSupport.h"

#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/PresenceSensingConfig.h"
#include "fmcw/common/SegmentationConfiguration.h"
#include "fmcw/common/RadarDevice.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/standard/RadarConfiguration.h"
#include "fmcw/standard/RadarUserSettings.h"

#include <QFile>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

Q_DECLARE_METATYPE(RadarConstants::Application)

namespace {

QString lastMessage(const QSignalSpy& spy)
{
    return spy.isEmpty() ? QString() : spy.last().at(1).toString();
}

} // namespace

class TestRadarConfiguration : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        Q_INIT_RESOURCE(radar_configurations);
        qRegisterMetaType<RadarEventCode>();
        qRegisterMetaType<RadarDeviceConfiguration*>();
        QVERIFY(m_dir.isValid());
    }

    void init()
    {
        m_fake = std::make_unique<FakeVrn>();
        m_fake->psDefaults.min_detection_range_m = 0.5f;
        m_fake->psDefaults.max_detection_range_m = 3.0f;
        m_settings = std::make_unique<RadarUserSettings>(nullptr, nullptr);
        m_configuration = std::make_unique<RadarConfiguration>(&m_fake->table, m_settings.get());
        m_events = std::make_unique<QSignalSpy>(m_configuration.get(), &IRadarConfiguration::triggerEvent);
    }

    void cleanup()
    {
        m_events.reset();
        m_configuration.reset();
        m_settings.reset();
        m_fake.reset();
    }

    void defaultsFollowApplicationAndChip_data()
    {
        QTest::addColumn<RadarConstants::Application>("application");
        QTest::addColumn<QString>("chip");
        QTest::addColumn<float>("frameTime");
        QTest::addColumn<QVector<int>>("rx");
        QTest::addColumn<float>("rangeResolution");

        QTest::newRow("None on KMR7A") << RadarConstants::None << "KMR7A" << 0.1f << QVector<int> { 3 } << 0.3f;
        QTest::newRow("None on KMR7C") << RadarConstants::None << "KMR7C" << 0.1f << QVector<int> { 1 } << 0.3f;
        QTest::newRow("presence on KMR7A") << RadarConstants::PresenceSensing << "KMR7A" << 0.2f << QVector<int> { 3 }
                                           << 0.15f;
        QTest::newRow("presence on KMR7C") << RadarConstants::PresenceSensing << "KMR7C" << 0.2f << QVector<int> { 1 }
                                           << 0.15f;
        QTest::newRow("segmentation on KMR7C") << RadarConstants::Segmentation << "KMR7C" << 0.1f
                                               << QVector<int> { 1, 3 } << 0.15f;
    }

    void defaultsFollowApplicationAndChip()
    {
        QFETCH(RadarConstants::Application, application);
        QFETCH(QString, chip);
        QFETCH(float, frameTime);
        QFETCH(QVector<int>, rx);
        QFETCH(float, rangeResolution);

        RadarDeviceConfiguration& edited = *m_configuration->editedConfiguration();
        describeBoard(edited, chip);
        QVERIFY(m_configuration->applyDefaultConfiguration(application));
        QCOMPARE(edited.application(), application);
        QCOMPARE(edited.metrics()->frameRepetitionTimeS(), frameTime);
        QCOMPARE(edited.metrics()->rx()->activeAntennas(), rx);
        QCOMPARE(edited.metrics()->rangeResolutionM(), rangeResolution);
        QVERIFY(edited.optimalAppConfig());
        if (application == RadarConstants::PresenceSensing)
            QCOMPARE(edited.presenceSensing()->maxDetectionRange(), 3.0f);
        QVERIFY(m_events->isEmpty());
    }

    void applicationChecksRefuseUnsuitableSettings_data()
    {
        QTest::addColumn<RadarConstants::Application>("application");
        QTest::addColumn<QVector<int>>("rx");
        QTest::addColumn<float>("frameTime");
        QTest::addColumn<float>("minDetection");
        QTest::addColumn<float>("maxDetection");
        QTest::addColumn<QString>("message");

        const QString segmentation = QStringLiteral("Segmentation app requires:\nOnly Rx1 and Rx3 antennas to be active\n"
                                                    "Frame Repetition time = 10Hz\nTheoretical Max Range >= 1m");
        QTest::newRow("segmentation Rx1+Rx3 at 0.1 s") << RadarConstants::Segmentation << QVector<int> { 1, 3 } << 0.1f
                                                       << 0.0f << 0.0f << QString();
        QTest::newRow("segmentation with Rx2") << RadarConstants::Segmentation << QVector<int> { 1, 2, 3 } << 0.1f << 0.0f
                                               << 0.0f << segmentation;
        QTest::newRow("segmentation at 0.1000001 s") << RadarConstants::Segmentation << QVector<int> { 1, 3 }
                                                     << 0.1000001f << 0.0f << 0.0f << segmentation;
        QTest::newRow("presence with one antenna") << RadarConstants::PresenceSensing << QVector<int> { 3 } << 0.2f << 0.5f
                                                   << 3.0f << QString();
        QTest::newRow("presence with two antennas")
            << RadarConstants::PresenceSensing << QVector<int> { 1, 3 } << 0.2f << 0.5f << 3.0f
            << QStringLiteral("Presence Sensing requires only one active Rx antenna");
        QTest::newRow("presence min beyond max range")
            << RadarConstants::PresenceSensing << QVector<int> { 3 } << 0.2f << 12.0f << 13.0f
            << QStringLiteral("Min Detection Range of Presence Sensing cannot be higher than Max Theoretical Range. "
                              "Check your Presence Sensing settings.");
        QTest::newRow("presence max beyond max range")
            << RadarConstants::PresenceSensing << QVector<int> { 3 } << 0.2f << 0.5f << 13.0f
            << QStringLiteral("Max Detection Range of Presence Sensing cannot be higher than Max Theoretical Range. "
                              "Check your Presence Sensing settings.");
    }

    void applicationChecksRefuseUnsuitableSettings()
    {
        QFETCH(RadarConstants::Application, application);
        QFETCH(QVector<int>, rx);
        QFETCH(float, frameTime);
        QFETCH(float, minDetection);
        QFETCH(float, maxDetection);
        QFETCH(QString, message);

        applyApplication(application);
        RadarDeviceConfiguration& edited = *m_configuration->editedConfiguration();
        edited.metrics()->rx()->setActiveAntennas(rx);
        edited.metrics()->setFrameRepetitionTimeS(frameTime);
        if (application == RadarConstants::PresenceSensing) {
            edited.presenceSensing()->setMinDetectionRange(minDetection);
            edited.presenceSensing()->setMaxDetectionRange(maxDetection);
        }
        const float appliedFrameTime = m_configuration->appliedConfiguration()->metrics()->frameRepetitionTimeS();

        const bool accepted = m_configuration->applyGuiConfiguration();
        QCOMPARE(accepted, message.isEmpty());
        if (!message.isEmpty()) {
            QCOMPARE(m_events->last().at(0).value<RadarEventCode>(), RadarEventCode::Error);
            QCOMPARE(std::make_pair(lastMessage(*m_events), m_configuration->appliedConfiguration()->metrics()->frameRepetitionTimeS()),
                     std::make_pair(message, appliedFrameTime));
        }
    }

    void loadedFileIsAppliedAsItStandsUnlessAnotherApplicationIsChosen_data()
    {
        // A presence file of 0.25 s frames, loaded; then an application
        // chosen, which starts from its own defaults.
        QTest::addColumn<QVector<int>>("fileRx");
        QTest::addColumn<bool>("fileRefused");
        QTest::addColumn<RadarConstants::Application>("chosen");
        QTest::addColumn<float>("frameTime");
        using V = QVector<int>;
        QTest::newRow("file as it stands") << V { 3 } << false << RadarConstants::PresenceSensing << 0.25f;
        QTest::newRow("file refused, then Segmentation") << V { 1, 3 } << true << RadarConstants::Segmentation << 0.1f;
        QTest::newRow("file loaded, then None") << V { 3 } << false << RadarConstants::None << 0.1f;
    }

    void loadedFileIsAppliedAsItStandsUnlessAnotherApplicationIsChosen()
    {
        QFETCH(QVector<int>, fileRx);
        QFETCH(bool, fileRefused);
        QFETCH(RadarConstants::Application, chosen);
        QFETCH(float, frameTime);
        applyApplication(RadarConstants::PresenceSensing);
        RadarDeviceConfiguration& edited = *m_configuration->editedConfiguration();
        edited.metrics()->setFrameRepetitionTimeS(0.25f);
        edited.metrics()->rx()->setActiveAntennas(fileRx);
        edited.presenceSensing()->setMaxDetectionRange(2.5f);
        const QString path = m_dir.filePath(QStringLiteral("presence.json"));
        QVERIFY(m_configuration->saveConfiguration(path));
        QVERIFY(m_configuration->revertConfiguration());

        QVERIFY(m_configuration->loadConfiguration(path, false));
        QCOMPARE(std::make_tuple(edited.application(), edited.metrics()->frameRepetitionTimeS(),
                                 edited.presenceSensing()->maxDetectionRange()),
                 std::make_tuple(RadarConstants::PresenceSensing, 0.25f, 2.5f));
        if (fileRefused)
            QVERIFY(!m_configuration->applyGuiConfiguration());
        edited.setApplication(chosen);

        QVERIFY(m_configuration->applyGuiConfiguration());
        const RadarDeviceConfiguration& applied = *m_configuration->appliedConfiguration();
        QCOMPARE(std::make_tuple(applied.application(), applied.metrics()->frameRepetitionTimeS(),
                                 applied.metrics()->rx()->activeAntennas()),
                 std::make_tuple(chosen, frameTime, fileRx));
    }

    void applyKeepsTheUsersSegmentationSettings()
    {
        describeFakeBoard(*m_fake);
        m_fake->segDefaults.max_num_tracks = 10;
        m_fake->segDefaults.max_detection_range_m = 5.0f;
        m_fake->segDefaults.num_segments = 1;
        m_fake->segDefaults.segments_degrees[0] = 60.0f;
        RadarDevice device(&m_fake->table);
        QVERIFY(device.connectDevice("a", VRN_SHIELD_FMCW_512));
        m_configuration->bindDevice(&device);
        QVERIFY(m_configuration->applyDefaultConfiguration(RadarConstants::Segmentation));
        QCOMPARE(m_configuration->editedConfiguration()->segmentation()->maxNumTracks(), 10u);
        QVERIFY(m_configuration->applyGuiConfiguration());

        SegmentationConfiguration& edited = *m_configuration->editedConfiguration()->segmentation();
        edited.setMaxNumTracks(7);
        edited.setSegmentsDegrees({ 30.0f, 90.0f });
        QVERIFY(m_configuration->applyGuiConfiguration());

        const SegmentationConfiguration& applied = *m_configuration->appliedConfiguration()->segmentation();
        QCOMPARE(std::make_tuple(applied.maxNumTracks(), applied.segmentsDegrees(), edited.maxNumTracks()),
                 std::make_tuple(7u, QVector<float>({ 30.0f, 90.0f }), 7u));
        m_configuration->bindDevice(nullptr);
    }

    void optimalCheckToleratesSmallDifferences_data()
    {
        QTest::addColumn<float>("offset");
        QTest::addColumn<bool>("optimal");
        QTest::newRow("0.0005 s off") << 0.0005f << true;
        QTest::newRow("0.01 s off") << 0.01f << false;
    }

    void optimalCheckToleratesSmallDifferences()
    {
        QFETCH(float, offset);
        QFETCH(bool, optimal);
        applyApplication(RadarConstants::PresenceSensing);
        RadarDeviceConfiguration& edited = *m_configuration->editedConfiguration();
        edited.metrics()->setFrameRepetitionTimeS(0.2f + offset);
        QCOMPARE(m_configuration->validateApplication(), true);
        QCOMPARE(edited.optimalAppConfig(), optimal);
        QVector<RadarEvent> expected;
        if (!optimal)
            expected.append({ RadarEventCode::Notice, "The modified settings are non-optimal for Presence Sensing application", "" });
        QCOMPARE(eventsOf(*m_events), expected);
    }

    void invalidFileIsRefusedAndNothingChanges_data()
    {
        // A saved document of 0.5 s frames, one item replaced.
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QByteArray>("to");
        QTest::addColumn<QString>("details");
        QTest::newRow("antenna the chip lacks") << QByteArray(R"("rx_antennas":[3])")
                                                << QByteArray(R"("rx_antennas":[7])") << QString();
        QTest::newRow("another chip's document") << QByteArray(R"("type":"KMR7A")") << QByteArray(R"("type":"KMR7C")")
                                                 << QStringLiteral("Invalid json type");
        QTest::newRow("unknown version") << QByteArray(R"("version":"1.0")") << QByteArray(R"("version":"2.0")")
                                         << QStringLiteral("Invalid json version");
    }

    void invalidFileIsRefusedAndNothingChanges()
    {
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, to);
        QFETCH(QString, details);
        applyApplication(RadarConstants::None);
        const QString path = m_dir.filePath(QStringLiteral("refused.json"));
        m_configuration->editedConfiguration()->metrics()->setFrameRepetitionTimeS(0.5f);
        QVERIFY(m_configuration->saveConfiguration(path));
        QVERIFY(m_configuration->revertConfiguration());
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QByteArray document = QJsonDocument::fromJson(file.readAll()).toJson(QJsonDocument::Compact);
        file.close();
        QVERIFY(document.contains(from));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(document.replace(from, to));
        file.close();

        QVERIFY(!m_configuration->loadConfiguration(path, false));
        QCOMPARE(lastMessage(*m_events), QStringLiteral("Cannot load configuration"));
        const QString reported = m_events->last().at(2).toString();
        QVERIFY2(!reported.isEmpty(), "the reason goes with the message");
        if (!details.isEmpty())
            QCOMPARE(reported, details);
        QCOMPARE(m_configuration->editedConfiguration()->metrics()->frameRepetitionTimeS(), 0.1f);
        QCOMPARE(m_configuration->appliedConfiguration()->metrics()->frameRepetitionTimeS(), 0.1f);
    }

    void unknownChipCannotLoadUserFiles()
    {
        QVERIFY(!m_configuration->loadConfiguration(m_dir.filePath(QStringLiteral("any.json")), false));
        QCOMPARE(lastMessage(*m_events), QStringLiteral("Unknown radar device"));
    }

    void differenceFollowsTheComparedFields_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<double>("change");
        QTest::addColumn<bool>("differs");
        QTest::newRow("nothing") << "" << 0.0 << false;
        QTest::newRow("frame time within tolerance") << "frame" << 0.0005 << false;
        QTest::newRow("frame time") << "frame" << 0.01 << true;
        QTest::newRow("speed resolution within tolerance") << "speed" << 0.0009 << false;
        QTest::newRow("speed resolution") << "speed" << 0.01 << true;
        QTest::newRow("sample rate") << "sampleRate" << 1.0 << true;
        QTest::newRow("receivers") << "receivers" << 0.0 << true;
        QTest::newRow("hysteresis") << "hysteresis" << 1.0 << true;
        QTest::newRow("hysteresis NaN") << "hysteresis" << qQNaN() << true;
        QTest::newRow("confirm count") << "count" << 1.0 << true;
        QTest::newRow("application") << "application" << 0.0 << true;
    }

    void differenceFollowsTheComparedFields()
    {
        QFETCH(QString, field);
        QFETCH(double, change);
        QFETCH(bool, differs);
        applyApplication(RadarConstants::PresenceSensing);
        QVERIFY(!m_configuration->differs());
        RadarDeviceConfiguration& edited = *m_configuration->editedConfiguration();
        Metrics& metrics = *edited.metrics();
        PresenceSensingConfig& presence = *edited.presenceSensing();
        if (field == QLatin1String("frame"))
            metrics.setFrameRepetitionTimeS(metrics.frameRepetitionTimeS() + float(change));
        else if (field == QLatin1String("speed"))
            metrics.setSpeedResolutionMs(metrics.speedResolutionMs() + float(change));
        else if (field == QLatin1String("sampleRate"))
            metrics.setSampleRateHz(metrics.sampleRateHz() + quint32(change));
        else if (field == QLatin1String("receivers"))
            metrics.rx()->setActiveAntennas({ 1, 2 });
        else if (field == QLatin1String("hysteresis"))
            presence.setRangeHysteresisPercentage(presence.rangeHysteresisPercentage() + float(change));
        else if (field == QLatin1String("count"))
            presence.setPresenceConfirmCount(presence.presenceConfirmCount() + 1);
        else if (field == QLatin1String("application"))
            edited.setApplication(RadarConstants::None);
        QCOMPARE(m_configuration->differs(), differs);
        // Reverting copies the applied configuration back.
        QVERIFY(m_configuration->revertConfiguration());
        QVERIFY(!m_configuration->differs());
        QCOMPARE(edited.metrics()->rx()->activeAntennas(), QVector<int> { 3 });
        QCOMPARE(edited.metrics()->frameRepetitionTimeS(), 0.2f);
    }

    void recordingDocumentRunsWithoutTheBoard()
    {
        applyApplication(RadarConstants::PresenceSensing, QStringLiteral("KMR7C"));
        // Settings of the user's, not the application's defaults: the player
        // must run what was recorded.
        m_configuration->editedConfiguration()->metrics()->setFrameRepetitionTimeS(0.25f);
        QVERIFY(m_configuration->applyGuiConfiguration());
        const QByteArray document = m_configuration->recordingDocument();

        RadarUserSettings settings(nullptr, nullptr);
        RadarConfiguration player(&m_fake->table, &settings);
        QSignalSpy updated(&player, &IRadarConfiguration::deviceConfigurationUpdated);
        QString error;
        QVERIFY2(player.loadRecordingDocument(document, error), qPrintable(error));
        QCOMPARE(updated.count(), 1);
        const RadarDeviceConfiguration& applied = *player.appliedConfiguration();
        // The presence algorithm's defaults are looked up by chip family.
        QCOMPARE(std::make_tuple(applied.deviceInfo()->deviceName(), applied.deviceInfo()->deviceType(), applied.application(),
                                 applied.metrics()->frameRepetitionTimeS()),
                 std::make_tuple(QString("KMR7C"), int(VRN_DEVICE_TYPE_KMR7C), RadarConstants::PresenceSensing, 0.25f));
        QVERIFY(!RadarConfiguration::configurationsDiffer(applied, *m_configuration->appliedConfiguration()));

        QByteArray broken = document;
        broken.replace("KMR7C_Extended", "KMR7X_Extended");
        QVERIFY(!player.loadRecordingDocument(broken, error));
        QCOMPARE(error, QStringLiteral("Invalid json type"));
    }

private:
    // Makes `application` the applied one on a described chip.
    void applyApplication(RadarConstants::Application application, const QString& chip = QStringLiteral("KMR7A"))
    {
        describeBoard(*m_configuration->editedConfiguration(), chip);
        describeBoard(*m_configuration->appliedConfiguration(), chip);
        QVERIFY(m_configuration->applyDefaultConfiguration(application));
        QVERIFY(m_configuration->applyGuiConfiguration());
        QCOMPARE(m_configuration->appliedConfiguration()->application(), application);
        m_events->clear();
    }

    std::unique_ptr<FakeVrn> m_fake;
    std::unique_ptr<RadarUserSettings> m_settings;
    std::unique_ptr<RadarConfiguration> m_configuration;
    std::unique_ptr<QSignalSpy> m_events;
    QTemporaryDir m_dir;
};

QTEST_MAIN(TestRadarConfiguration)
#include "tst_RadarConfiguration.moc"
