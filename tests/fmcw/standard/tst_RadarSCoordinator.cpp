// The standard-mode coordinator against a hand-written pipeline: the event
// table with the FIFO-overflow counter, and configuration changes around a
// running acquisition.

#include "FakeVrn.h"
#include "FmcwTestSupport.h"

#include "common/ISeriesChartData.h"
#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/IRadarDataProvider.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/RadarDevice.h"
#include "fmcw/common/RadarTemperatureMonitor.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/standard/IRadarDataProcessing.h"
#include "fmcw/standard/RadarConfiguration.h"
#include "fmcw/standard/RadarDataProcessing.h"
#include "fmcw/standard/RadarSCoordinator.h"
#include "fmcw/standard/RadarUserSettings.h"
#include "fmcw/standard/RadarView.h"
#include "host/CoreUserSettings.h"
#include "recording/RadarFileParsing.h"
#include "recording/RadarFileRecording.h"
#include "recording/RadarPresenceSensingRecorder.h"
#include "recording/RadarRecorder.h"

#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

namespace {

class NoFrames : public IRadarDataProvider
{
public:
    RadarFrameResult getNextFrame(const RadarDeviceConfiguration&) override { return {}; }
    void stopAcquisition() override {}
};

// Records what the coordinator asks of the pipeline, and whether
// acquisition ran when a configuration arrived.
class FakeProcessing : public IRadarDataProcessing
{
public:
    QStringList calls;
    QList<bool> runningAtUpdate;
    bool running = false;
    IRadarDataProvider* provider = nullptr;

    bool isAcquisitionRunning() const override { return running; }
    bool isRecordingActive() const override { return false; }
    void startAcquisition() override { running = true; calls << QStringLiteral("start"); }
    void stopAcquisition() override
    {
        if (running)
            calls << QStringLiteral("stop");
        running = false;
    }
    quint32 frameNumber() const override { return 0; }
    void resetFrameCounter() override {}
    void resetCalculators() override { calls << QStringLiteral("reset"); }
    void attachChartItem(Constants::Chart, PolarChart*) override {}
    IRangeDopplerChartData* rangeDopplerChartData() override { return nullptr; }
    ISeriesChartData* chartData(Constants::Chart) override { return nullptr; }
    void resetPresenceChart() override {}
    void startRecording() override {}
    void stopRecording() override {}
    bool convertRecordingToText(const QString&, const QString&) override { return false; }
    void stopConvertingToText() override {}
    void setDataProvider(IRadarDataProvider* p) override { provider = p; }
    IRadarDataProvider* dataProvider() const override { return provider; }
    std::shared_ptr<RadarRecorder> createRecorder(quint32, int) override { return nullptr; }
    std::unique_ptr<RadarFileRecording> createFileRecording(const IRadarRecordingSource*, const QString&,
                                                            const QString&) override
    {
        return nullptr;
    }
    std::unique_ptr<RadarFileParsing> createFileConverter() override { return nullptr; }
    std::shared_ptr<RadarPresenceSensingRecorder> createPresenceRecorder(const QString&) override { return nullptr; }
    void onRadarConfigurationUpdated(RadarDeviceConfiguration*) override { runningAtUpdate << running; }
    void onRadarConfigurationRuntimeUpdated(RadarDeviceConfiguration*) override {}
};

} // namespace

class TestRadarSCoordinator : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        Q_INIT_RESOURCE(radar_configurations);
        qRegisterMetaType<RadarEventCode>();
        qRegisterMetaType<Constants::UserMessageType>();
    }

    void init()
    {
        m_fake = std::make_unique<FakeVrn>();
        m_core = std::make_unique<CoreUserSettings>();
        m_settings = std::make_unique<RadarUserSettings>(nullptr, nullptr);
        m_configuration = std::make_unique<RadarConfiguration>(&m_fake->table, m_settings.get());
        describeBoard(*m_configuration->editedConfiguration());
        describeBoard(*m_configuration->appliedConfiguration());
        QVERIFY(m_configuration->applyDefaultConfiguration(RadarConstants::None));
        m_processing = std::make_unique<FakeProcessing>();
        connect(m_configuration.get(), &IRadarConfiguration::deviceConfigurationUpdated, m_processing.get(),
                &FakeProcessing::onRadarConfigurationUpdated);
        m_processing->setDataProvider(&m_provider);
        m_coordinator = std::make_unique<RadarSCoordinator>(m_processing.get(), m_core.get(), m_configuration.get(),
                                                            nullptr);
    }

    void cleanup()
    {
        m_coordinator.reset();
        m_processing.reset();
        m_configuration.reset();
        m_settings.reset();
        m_core.reset();
        m_fake.reset();
    }

    void eventTable_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<bool>("acquiring");
        QTest::addColumn<int>("messageType"); // -1: no message
        QTest::addColumn<quint32>("counter");
        QTest::addColumn<bool>("acquiringAfter");

        QTest::newRow("0 error") << 0 << true << int(Constants::Error) << 0u << true;
        QTest::newRow("1 notice") << 1 << true << int(Constants::Warning) << 0u << true;
        QTest::newRow("2 while acquiring") << 2 << true << -1 << 1u << true;
        QTest::newRow("2 while idle") << 2 << false << -1 << 0u << false;
        QTest::newRow("3 communication failure") << 3 << false << int(Constants::Error) << 0u << false;
        QTest::newRow("4 no data") << 4 << true << int(Constants::Error) << 0u << false;
        QTest::newRow("5 no temperature") << 5 << true << -1 << 0u << true;
        QTest::newRow("6 ignored") << 6 << true << -1 << 0u << true;
    }

    void eventTable()
    {
        QFETCH(int, code);
        QFETCH(bool, acquiring);
        QFETCH(int, messageType);
        QFETCH(quint32, counter);
        QFETCH(bool, acquiringAfter);

        if (acquiring)
            m_coordinator->startAcquisition();
        QSignalSpy messages(m_coordinator.get(), &IRadarSCoordinator::enqueueUserMessage);
        m_coordinator->onRadarEvent(static_cast<RadarEventCode>(code), QStringLiteral("what"), QStringLiteral("why"));

        QCOMPARE(textsOf(messages) + textsOf(messages, 2), messageType < 0 ? QStringList() : QStringList({ "what", "why" }));
        if (messageType >= 0)
            QCOMPARE(int(messages.at(0).at(0).value<Constants::UserMessageType>()), messageType);
        QCOMPARE(m_coordinator->fifoOverflowCounter(), counter);
        QCOMPARE(m_coordinator->isAcquisitionActive(), acquiringAfter);
        QCOMPARE(m_processing->running, acquiringAfter);
    }

    void startingAcquisitionResetsTheOverflowCounter()
    {
        m_coordinator->startAcquisition();
        for (int i = 0; i < 3; ++i)
            m_coordinator->onRadarEvent(RadarEventCode::FrameFetchFailed, QString(), QString());
        QCOMPARE(m_coordinator->fifoOverflowCounter(), 3u);
        m_coordinator->stopAcquisition();
        m_coordinator->onRadarEvent(RadarEventCode::FrameFetchFailed, QString(), QString());
        QCOMPARE(m_coordinator->fifoOverflowCounter(), 3u);
        QSignalSpy changes(m_coordinator.get(), &IRadarSCoordinator::fifoOverflowCounterChanged);
        m_coordinator->startAcquisition();
        QCOMPARE(m_coordinator->fifoOverflowCounter(), 0u);
        QCOMPARE(changes.count(), 1);
    }

    void applyDuringAcquisitionRestartsIt_data()
    {
        QTest::addColumn<bool>("acquiring");
        QTest::addColumn<QStringList>("calls");
        QTest::newRow("acquiring") << true << QStringList { "start", "stop", "start" };
        QTest::newRow("idle") << false << QStringList {};
    }

    void applyDuringAcquisitionRestartsIt()
    {
        QFETCH(bool, acquiring);
        QFETCH(QStringList, calls);
        if (acquiring)
            m_coordinator->startAcquisition();
        m_configuration->editedConfiguration()->metrics()->setFrameRepetitionTimeS(0.25f);
        QVERIFY(m_coordinator->applyGuiConfiguration());
        QCOMPARE(m_configuration->appliedConfiguration()->metrics()->frameRepetitionTimeS(), 0.25f);
        QCOMPARE(m_processing->calls, calls);
        QCOMPARE(m_processing->runningAtUpdate, QList<bool> { false });
        QCOMPARE(m_coordinator->isAcquisitionActive(), acquiring);
    }

    void revertApplyFollowsEdits_data()
    {
        QTest::addColumn<float>("frameTime");
        QTest::addColumn<float>("maxRange");
        QTest::addColumn<quint32>("sampleRate");
        QTest::addColumn<bool>("available");
        QTest::newRow("frame time") << 0.01f << 0.0f << 0u << true;
        QTest::newRow("frame time within tolerance") << 0.0005f << 0.0f << 0u << false;
        QTest::newRow("maximum range") << 0.0f << 1.0f << 0u << true;
        QTest::newRow("derived sample rate") << 0.0f << 0.0f << 1000u << true;
    }

    void revertApplyFollowsEdits()
    {
        QFETCH(float, frameTime);
        QFETCH(float, maxRange);
        QFETCH(quint32, sampleRate);
        QFETCH(bool, available);
        QVERIFY(m_coordinator->applyGuiConfiguration());
        RadarView view(m_coordinator.get(), m_configuration.get(), m_processing.get(), nullptr, m_settings.get());
        QSignalSpy changes(&view, &RadarView::revertApplyAvailableChanged);
        Metrics& metrics = *m_configuration->editedConfiguration()->metrics();
        const float frameTime0 = metrics.frameRepetitionTimeS();
        const float maxRange0 = metrics.maxRangeM();
        const quint32 sampleRate0 = metrics.sampleRateHz();
        const auto change = [&](bool undo) {
            metrics.setFrameRepetitionTimeS(frameTime0 + (undo ? 0.0f : frameTime));
            metrics.setMaxRangeM(maxRange0 + (undo ? 0.0f : maxRange));
            metrics.setSampleRateHz(sampleRate0 + (undo ? 0u : sampleRate));
        };

        change(false);
        QCOMPARE(view.revertApplyAvailable(), available);
        QCOMPARE(changes.count(), available ? 1 : 0);
        change(true);
        QVERIFY(!view.revertApplyAvailable());
        QCOMPARE(changes.count(), available ? 2 : 0);
    }

    void failedTemperatureReadingDropsTheMonitorAfterIt_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<bool>("connectedAfter");
        QTest::newRow("not supported") << int(VRN_STATUS_NOT_SUPPORTED) << true;
        QTest::newRow("communication error") << int(VRN_STATUS_COMMUNICATION_ERROR) << false;
    }

    void failedTemperatureReadingDropsTheMonitorAfterIt()
    {
        // The board answers the monitor's reading with a failure: the event
        // reaches the coordinator while the monitor is still inside that
        // reading, so the monitor must outlive the call and go afterwards.
        QFETCH(int, status);
        QFETCH(bool, connectedAfter);
        m_fake->temperatureStatus = vrn_Status_t(status);
        m_fake->temperature = 41.5f;
        describeFakeBoard(*m_fake);
        RadarDevice device(&m_fake->table);
        RadarSCoordinator coordinator(m_processing.get(), m_core.get(), m_configuration.get(), &device);
        connect(&device, &RadarDevice::triggerEvent, &coordinator, &RadarSCoordinator::onRadarEvent);
        DeviceInfo* info = m_configuration->appliedConfiguration()->deviceInfo();
        QPointer<IRadarTemperatureMonitor> monitor;
        coordinator.setMonitorFactory([&](RadarDevice& board) -> std::unique_ptr<IRadarTemperatureMonitor> {
            auto made = std::make_unique<RadarTemperatureMonitor>(&board, info);
            monitor = made.get();
            return made;
        });
        QVERIFY(coordinator.connectDevice(QStringLiteral("board"), VRN_SHIELD_FMCW_512));
        QVERIFY(monitor);
        info->setDeviceTemperature(QVariant::fromValue(40.0f));

        monitor->update();
        QVERIFY(monitor);
        QCOMPARE(coordinator.isConnected(), connectedAfter);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!monitor);
        QVERIFY(!info->deviceTemperature().isValid());
        coordinator.disconnectDevice();
    }

    void onlyAnAcquiringBoardIsStopped_data()
    {
        QTest::addColumn<bool>("framesAsked");
        QTest::addColumn<int>("stops");
        QTest::addColumn<bool>("connectedAfter");
        // The board refuses every stop: asked of an idle board, that would
        // report a lost board for nothing.
        QTest::newRow("idle board") << false << 0 << true;
        QTest::newRow("board delivering frames") << true << 1 << false;
    }

    void onlyAnAcquiringBoardIsStopped()
    {
        QFETCH(bool, framesAsked);
        QFETCH(int, stops);
        QFETCH(bool, connectedAfter);
        describeFakeBoard(*m_fake);
        m_fake->stopError = "stop refused";
        RadarDevice device(&m_fake->table);
        RadarSCoordinator coordinator(m_processing.get(), m_core.get(), m_configuration.get(), &device);
        connect(&device, &RadarDevice::triggerEvent, &coordinator, &RadarSCoordinator::onRadarEvent);
        QSignalSpy messages(&coordinator, &IRadarSCoordinator::enqueueUserMessage);
        QVERIFY(coordinator.connectDevice(QStringLiteral("board"), VRN_SHIELD_FMCW_512));
        QVERIFY(coordinator.isAcquisitionActive());
        if (framesAsked)
            QVERIFY(device.getNextFrame(*m_configuration->appliedConfiguration()).success);

        coordinator.stopAcquisition();

        QVERIFY(!coordinator.isAcquisitionActive());
        QCOMPARE(m_fake->stopCalls, stops);
        QCOMPARE(messages.count(), stops);
        QCOMPARE(coordinator.isConnected(), connectedAfter);
        coordinator.disconnectDevice();
    }

    void pipelineEndingByItselfReturnsToIdle()
    {
        // The board cannot make frames: the first cycle ends the worker.
        describeFakeBoard(*m_fake);
        m_fake->frameCreateError = "no frame memory";
        RadarDevice device(&m_fake->table);
        RadarDataProcessing processing(nullptr, m_core.get(), m_configuration.get(), m_settings.get());
        RadarSCoordinator coordinator(&processing, m_core.get(), m_configuration.get(), &device);
        RadarView view(&coordinator, m_configuration.get(), &processing, nullptr, m_settings.get());
        QSignalSpy activity(&view, &RadarView::isActiveChanged);
        QVERIFY(coordinator.connectDevice(QStringLiteral("board"), VRN_SHIELD_FMCW_512));
        QVERIFY(view.isActive());

        QTRY_VERIFY(!view.isActive());
        QCOMPARE(activity.count(), 2);
        QVERIFY(!processing.isAcquisitionRunning());
        QVERIFY(coordinator.isConnected());
        // The board never acquired, so it was not stopped either.
        QCOMPARE(m_fake->stopCalls, 0);

        // Once the board can make frames again, a start runs.
        m_fake->frameCreateError = nullptr;
        coordinator.startAcquisition();
        QVERIFY(view.isActive());
        QTRY_VERIFY(processing.frameNumber() > 0);
        coordinator.disconnectDevice();
        QVERIFY(!view.isActive());
    }

private:
    std::unique_ptr<FakeVrn> m_fake;
    std::unique_ptr<CoreUserSettings> m_core;
    std::unique_ptr<RadarUserSettings> m_settings;
    std::unique_ptr<RadarConfiguration> m_configuration;
    std::unique_ptr<FakeProcessing> m_processing;
    std::unique_ptr<RadarSCoordinator> m_coordinator;
    NoFrames m_provider;
};

QTEST_MAIN(TestRadarSCoordinator)
#include "tst_RadarSCoordinator.moc"
