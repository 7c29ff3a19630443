// The FMCW device against paced boards of the simulated SDK, loaded from the
// built library the way the workbench loads it.

#include "FmcwTestSupport.h"
#include "SimulatorSdk.h"

#include "core/JSONConfigurationFile.h"
#include "core/JSONConfigurationObject.h"
#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/RadarDevice.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/common/RadarDeviceParameters.h"
#include "fmcw/common/RadarTxPowerMonitor.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QThread>
#include <QtTest>

namespace {

const char* const kBoard = "1f3c-0001"; // the one board of the default bench

}

class TestRadarDeviceSimulator : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        Q_INIT_RESOURCE(radar_configurations);
        qRegisterMetaType<RadarEventCode>();
        QVERIFY2(m_sdk.vrn && m_sdk.sim, qPrintable(m_sdk.loadError()));
    }

    void init()
    {
        QCOMPARE(m_sdk.sim->reset(), nullptr);
        m_device = std::make_unique<RadarDevice>(m_sdk.vrn);
        m_config = std::make_unique<RadarDeviceConfiguration>();
    }

    void cleanup()
    {
        m_device.reset();
        m_config.reset();
        m_sdk.sim->clear_faults(nullptr);
    }

    void boardThatNeverAnswersTimesOutAtTheLimit()
    {
        QVERIFY(openConfigured(0.2f)); // 750 ms in all
        inject(VRNSIM_FAULT_FETCH, VRN_STATUS_FRAME_TIMEOUT);
        QSignalSpy events(m_device.get(), &RadarDevice::triggerEvent);
        QElapsedTimer clock;
        clock.start();
        const RadarFrameResult result = m_device->getNextFrame(*m_config);
        QVERIFY(!result.success);
        QVERIFY(clock.elapsed() >= 750);
        QCOMPARE(textsOf(events), QStringList { "Too many timeouts occurred. Please reconnect device again." });
        QCOMPARE(eventAt(events, 0).code, RadarEventCode::DeviceCommunicationFailure);
    }

    void unplugDuringAFetchEndsWithCommunicationFailure()
    {
        QVERIFY(openConfigured(0.1f));
        QVERIFY(m_device->getNextFrame(*m_config).success);
        // From now on the board answers nothing, so the fetch below is still
        // waiting when the board goes.
        inject(VRNSIM_FAULT_FETCH, VRN_STATUS_FRAME_TIMEOUT);
        QSignalSpy events(m_device.get(), &RadarDevice::triggerEvent);
        RadarFrameResult result;
        result.success = true;
        std::unique_ptr<QThread> worker(QThread::create([&] { result = m_device->getNextFrame(*m_config); }));
        worker->start();
        QTRY_VERIFY(m_device->isFetchInProgress() || worker->isFinished());
        QCOMPARE(m_sdk.sim->unplug_board(kBoard), nullptr);
        QVERIFY(worker->wait(int(RadarDevice::frameTimeLimitMs(0.1f)) + 1000));
        QVERIFY(!result.success);
        QCOMPARE(textsOf(events), QStringList { "Communication with device failed" });
        QCOMPARE(eventAt(events, 0).code, RadarEventCode::DeviceCommunicationFailure);
    }

    void interruptionStopsAWaitingFetch()
    {
        QVERIFY(openConfigured(0.1f));
        m_config->metrics()->setFrameRepetitionTimeS(5.0f); // a fetch limit of 18.75 s
        inject(VRNSIM_FAULT_FETCH, VRN_STATUS_FRAME_TIMEOUT);
        QSignalSpy events(m_device.get(), &RadarDevice::triggerEvent);
        RadarFrameResult result;
        result.success = true;
        std::unique_ptr<QThread> worker(QThread::create([&] { result = m_device->getNextFrame(*m_config); }));
        worker->start();
        QTRY_VERIFY(m_device->isFetchInProgress());
        worker->requestInterruption();
        QVERIFY(worker->wait(1000));
        QVERIFY(!result.success);
        QCOMPARE(events.count(), 0);
    }

    void refusedOpen_data()
    {
        QTest::addColumn<QString>("board");
        QTest::addColumn<int>("openFault");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("message");
        QTest::newRow("old firmware") << R"({ "uuid": "old-fw", "chip": "KMR7A", "firmware": "1.9.0" })" << -1 << 0
                                      << "No compatible device found - Firmware not supported";
        QTest::newRow("communication") << "" << int(VRN_STATUS_COMMUNICATION_ERROR) << 3
                                       << "Communication with device failed";
        QTest::newRow("no handle") << "" << 0 << 0 << "Failed to connect to the device";
        QTest::newRow("unknown board") << R"(missing)" << -1 << 0 << "Failed to connect to the device";
    }

    void refusedOpen()
    {
        QFETCH(QString, board);
        QFETCH(int, openFault);
        QFETCH(int, code);
        QFETCH(QString, message);
        QString uuid = QString::fromLatin1(kBoard);
        if (board.startsWith('{')) {
            QCOMPARE(m_sdk.sim->plug_board(board.toUtf8().constData()), nullptr);
            uuid = "old-fw";
        } else if (!board.isEmpty()) {
            uuid = board;
        }
        if (openFault >= 0)
            inject(VRNSIM_FAULT_OPEN, openFault, 1);
        QSignalSpy events(m_device.get(), &RadarDevice::triggerEvent);
        QVERIFY(!m_device->connectDevice(uuid, VRN_SHIELD_FMCW_512));
        QVERIFY(!m_device->isConnected());
        QCOMPARE(textsOf(events), QStringList { message });
        QCOMPARE(int(eventAt(events, 0).code), code);
        QVERIFY(!eventAt(events, 0).details.isEmpty());
    }

    // The readings themselves are checked on the device page of tst_RadarPages.
    void failedTxPowerReadingKeepsTheLastValue()
    {
        QVERIFY(openConfigured(0.1f));
        DeviceInfo& info = *m_config->deviceInfo();
        info.setDeviceTxPower({ 7.0f });
        inject(VRNSIM_FAULT_TX_POWER, VRN_STATUS_COMMUNICATION_ERROR, 1);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("^Failed to get TX_Power:"));
        RadarTxPowerMonitor(m_device.get(), &info).update();
        QCOMPARE(info.deviceTxPower(), QVector<float>({ 7.0f }));
    }

private:
    // Opens the default board and pushes the shipped default configuration
    // with the given frame time; false on any failure.
    bool openConfigured(float frameTime)
    {
        if (!m_device->connectDevice(kBoard, VRN_SHIELD_FMCW_512))
            return false;
        m_device->updateDeviceInfo(*m_config->deviceInfo());
        auto tree = m_config->configurationTree();
        const QString resource = RadarDeviceConfiguration::defaultConfigurationResource(RadarConstants::None,
                                                                                        m_config->radarType());
        const QString error = loadFromFile(*tree, resource);
        if (!error.isEmpty()) {
            qWarning() << "Default configuration rejected:" << error;
            return false;
        }
        m_config->metrics()->setFrameRepetitionTimeS(frameTime);
        return m_device->setConfiguration(*m_config);
    }

    void inject(VrnSimFaultKind kind, int32_t status, uint32_t count = 0)
    {
        VrnSimFault fault {};
        fault.kind = kind;
        fault.status = status;
        fault.count = count;
        QCOMPARE(m_sdk.sim->inject_fault(kBoard, &fault), nullptr);
    }

    SimulatorSdk m_sdk;
    std::unique_ptr<RadarDevice> m_device;
    std::unique_ptr<RadarDeviceConfiguration> m_config;
};

QTEST_GUILESS_MAIN(TestRadarDeviceSimulator)
#include "tst_RadarDeviceSimulator.moc"
