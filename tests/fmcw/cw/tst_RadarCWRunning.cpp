// CW mode's running side against the scripted SDK: the controller's calls
// and messages, the coordinator's emission rules, the protector's switching
// and refused logging, where a failure must be forced or a call counted.

#include "FakeCw.h"
#include "FakeVrn.h"
#include "FmcwTestSupport.h"

#include "core/LoggingConfiguration.h"
#include "fmcw/common/RadarAntennas.h"
#include "fmcw/common/RadarDevice.h"
#include "fmcw/cw/IRadarCWEmission.h"
#include "fmcw/cw/RadarCWController.h"
#include "fmcw/cw/RadarCWCoordinator.h"
#include "fmcw/cw/RadarCWDataProcessing.h"
#include "fmcw/cw/RadarCWOverheatingProtector.h"
#include "fmcw/cw/config/RadarCWConfig.h"
#include "fmcw/cw/config/RadarCWParams.h"
#include "fmcw/cw/config/RadarCWUserSettings.h"
#include "fmcw/cw/config/RadarDeviceCWConfig.h"

#include <QElapsedTimer>
#include <QMutex>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

// Switches nothing, but notes when it was asked to.
class RecordingEmission : public IRadarCWEmission
{
public:
    bool startEmission() override { return note(m_starts, true); }
    bool stopEmission() override { return note(m_stops, stopResult); }

    int starts() const { QMutexLocker l(&m_mutex); return m_starts; }
    int stops() const { QMutexLocker l(&m_mutex); return m_stops; }

    bool stopResult = true;

private:
    bool note(int& count, bool result)
    {
        QMutexLocker locker(&m_mutex);
        ++count;
        return result;
    }

    mutable QMutex m_mutex;
    int m_starts = 0;
    int m_stops = 0;
};

}

class RadarCWRunningTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<FakeVrn> m_vrn;
    std::unique_ptr<FakeCw> m_cw;
    std::unique_ptr<RadarDevice> m_device;
    std::unique_ptr<RadarCWController> m_controller;
    std::unique_ptr<RadarCWConfig> m_config;
    std::unique_ptr<RadarCWDataProcessing> m_processing;
    std::unique_ptr<RadarCWCoordinator> m_coordinator;

    bool connectBoard()
    {
        return m_coordinator->connectDevice(QStringLiteral("fake-1"), VRN_SHIELD_FMCW_512);
    }

    // Applies the edited copy with `dutyCycle` and `txMask`.
    bool applyDutyCycle(quint32 dutyCycle, quint32 txMask = 1)
    {
        m_config->guiConfig()->params()->setDutyCycle(dutyCycle);
        m_config->guiConfig()->txAntennas()->setMask(txMask);
        return m_coordinator->applyGuiConfig();
    }

private slots:
    void initTestCase()
    {
        qRegisterMetaType<RadarEventCode>("RadarEventCode");
        qRegisterMetaType<Constants::UserMessageType>("Constants::UserMessageType");
    }

    void init()
    {
        m_vrn = std::make_unique<FakeVrn>();
        m_cw = std::make_unique<FakeCw>(*m_vrn);
        describeFakeBoard(*m_vrn);
        m_device = std::make_unique<RadarDevice>(&m_vrn->table);
        m_controller = std::make_unique<RadarCWController>(&m_vrn->table);
        m_config = std::make_unique<RadarCWConfig>(m_controller.get(),
                                                   std::make_unique<RadarCWUserSettings>(nullptr, nullptr));
        m_processing = std::make_unique<RadarCWDataProcessing>(&m_vrn->broker, m_controller.get(), m_config.get());
        m_coordinator = std::make_unique<RadarCWCoordinator>(m_device.get(), m_controller.get(), m_config.get(),
                                                             m_processing.get(), nullptr);
        connect(m_controller.get(), &RadarCWController::triggerEvent, m_coordinator.get(),
                &RadarCWCoordinator::onRadarEvent);
    }

    void cleanup()
    {
        m_coordinator.reset();
        m_processing.reset();
        m_config.reset();
        m_controller.reset();
        m_device.reset();
        m_cw.reset();
        m_vrn.reset();
    }

    void controllerHandleFailures_data()
    {
        QTest::addColumn<QByteArray>("error");
        QTest::addColumn<bool>("nullHandle");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("details");
        QTest::newRow("SDK error") << QByteArray("no CW here") << false << "Failed to init to the cw controller"
                                   << "no CW here";
        QTest::newRow("null handle") << QByteArray() << true << "Failed to init the cw controller"
                                     << "SDK reports no error but returned handle is invalid";
    }

    void controllerHandleFailures()
    {
        QFETCH(QByteArray, error);
        QFETCH(bool, nullHandle);
        QFETCH(QString, message);
        QFETCH(QString, details);
        m_cw->createError = error.isEmpty() ? nullptr : error.constData();
        m_cw->nullHandle = nullHandle;
        QSignalSpy events(m_controller.get(), &RadarCWController::triggerEvent);
        QVERIFY(!connectBoard());
        QCOMPARE(eventsOf(events), QVector<RadarEvent>({ { RadarEventCode::Error, message, details } }));
        // The device opened for it is closed again.
        QCOMPARE(m_vrn->destroyCalls, 1);
        QVERIFY(!m_coordinator->isConnected());
    }

    void setConfigurationStopsAtTheFailingStep_data()
    {
        QTest::addColumn<QByteArray>("entry");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("calls");
        int step = 0;
        const auto row = [&step](const char* entry, const char* what) {
            QTest::newRow(entry) << QByteArray(entry) << QString("Cannot set %1 into cw controller").arg(what) << ++step;
        };
        row("cw_set_rf_frequency", "RF frequency");
        row("cw_set_dac_value", "DAC value");
        row("cw_set_tx_antenna_mask", "Tx antenna state");
        row("cw_set_test_signal_generator", "Test signal generator config");
        row("cw_set_rx_antenna_mask", "Rx antenna state");
        row("cw_set_num_samples", "Rx number of samples");
        row("cw_set_adc_config", "ADC config");
        row("cw_set_baseband_config", "Baseband config");
    }

    void setConfigurationStopsAtTheFailingStep()
    {
        QFETCH(QByteArray, entry);
        QFETCH(QString, message);
        QFETCH(int, calls);
        QVERIFY(connectBoard());
        m_cw->calls.clear();
        m_cw->errors.insert(entry, "refused by the board");
        QSignalSpy events(m_controller.get(), &RadarCWController::triggerEvent);
        QVERIFY(!m_controller->setConfiguration(*m_config->guiConfig()));
        // The steps run in order and none follows the failing one.
        QCOMPARE(m_cw->calls.size(), calls);
        QCOMPARE(m_cw->calls.last(), entry);
        QCOMPARE(eventsOf(events), QVector<RadarEvent>({ { RadarEventCode::Error, message, "refused by the board" } }));
    }

    void emissionWithoutTxAntennaCallsNothing()
    {
        QVERIFY(connectBoard());
        QVERIFY(applyDutyCycle(100, 0));
        QCOMPARE(m_config->deviceConfig()->txAntennas()->mask(), 0u);
        m_cw->calls.clear();
        QSignalSpy changes(m_coordinator.get(), &IRadarCWCoordinator::isEmissionActiveChanged);
        QVERIFY(!m_coordinator->startEmission());
        QVERIFY(m_cw->calls.isEmpty());
        QCOMPARE(changes.count(), 0);
        QVERIFY(!m_coordinator->isEmissionActive());
    }

    void emissionTwiceAndStopTwiceCallTheSdkOnce()
    {
        QVERIFY(connectBoard());
        QVERIFY(m_controller->startEmission());
        QVERIFY(m_controller->startEmission());
        QCOMPARE(m_cw->count("cw_start_emission"), 1);
        QVERIFY(m_controller->stopEmission());
        QVERIFY(m_controller->stopEmission());
        QCOMPARE(m_cw->count("cw_stop_emission"), 1);
    }

    void emissionFailureIsReported()
    {
        QVERIFY(connectBoard());
        m_cw->errors.insert("cw_start_emission", "amplifier fault");
        QSignalSpy messages(m_coordinator.get(), &IRadarCWCoordinator::enqueueUserMessage);
        QVERIFY(!m_coordinator->startEmission());
        QVERIFY(!m_coordinator->isEmissionActive());
        QCOMPARE(textsOf(messages) + textsOf(messages, 2),
                 QStringList({ "Failed to start CW emission from cw controller", "SDK reports error" }));
    }

    void protectorRunsOnlyBelowFullDutyCycle_data()
    {
        QTest::addColumn<quint32>("dutyCycle");
        QTest::addColumn<bool>("isProtected");
        QTest::newRow("100 %") << 100u << false;
        QTest::newRow("30 %") << 30u << true;
    }

    void protectorRunsOnlyBelowFullDutyCycle()
    {
        QFETCH(quint32, dutyCycle);
        QFETCH(bool, isProtected);
        QVERIFY(connectBoard());
        QVERIFY(applyDutyCycle(dutyCycle));
        QVERIFY(m_coordinator->startEmission());
        QCOMPARE(m_coordinator->isProtectorRunning(), isProtected);
        QVERIFY(m_coordinator->hasTxPowerMonitor());
        QVERIFY(m_coordinator->stopEmission());
        QVERIFY(!m_coordinator->isProtectorRunning());
        QVERIFY(!m_coordinator->hasTxPowerMonitor());
        QVERIFY(!m_cw->emitting);
    }

    // A lost board is checked end to end in tst_RadarCWSession.
    void fetchFailureKeepsTheLastFrame()
    {
        QVERIFY(connectBoard());
        QVERIFY(m_processing->captureFrame());
        const quint64 sequence = m_processing->frameSequence();
        m_cw->captureStatus = int(VRN_STATUS_FRAME_FETCH_FAILED);
        QSignalSpy events(m_controller.get(), &RadarCWController::triggerEvent);
        QSignalSpy messages(m_coordinator.get(), &IRadarCWCoordinator::enqueueUserMessage);
        QVERIFY(!m_processing->captureFrame());
        const QString message = QStringLiteral("Failed to get frame for CW mode");
        QCOMPARE(eventsOf(events), QVector<RadarEvent>({ { RadarEventCode::Error, message, "status 0x1100e" } }));
        QCOMPARE(textsOf(messages), QStringList { message });
        QVERIFY(m_coordinator->isConnected());
        QCOMPARE(m_processing->frameSequence(), sequence);
    }

    // What a logged frame holds, and its file's name, is checked end to end
    // by the workbench's CW session and CW pages.
    void loggingIsRefusedWithItsReason_data()
    {
        QTest::addColumn<bool>("captured");
        QTest::addColumn<QString>("folder"); // below an empty temporary one
        QTest::addColumn<QString>("message");
        QTest::newRow("folder two levels missing") << true << "no/such" << "Path is not valid";
        QTest::newRow("nothing captured yet") << false << "" << "No frame has been captured yet";
    }

    void loggingIsRefusedWithItsReason()
    {
        QFETCH(bool, captured);
        QFETCH(QString, folder);
        QFETCH(QString, message);
        QTemporaryDir dir;
        QVERIFY(connectBoard());
        QVERIFY(!captured || m_processing->captureFrame());
        m_config->userSettings()->loggingConfiguration()->setLoggingPath(dir.filePath(folder));
        QSignalSpy events(m_processing.get(), &RadarCWDataProcessing::triggerEvent);
        QVERIFY(!m_processing->logOneFrame());
        QCOMPARE(textsOf(events), QStringList { message });
        QVERIFY(QDir(dir.path()).isEmpty());
    }

    void protectorEndsOnAFailingSwitch()
    {
        RecordingEmission emission;
        emission.stopResult = false;
        RadarCWOverheatingProtector protector(&emission, 10, 100);
        QTRY_COMPARE_WITH_TIMEOUT(emission.stops(), 1, 2000);
        QTest::qWait(300);
        QCOMPARE(emission.stops(), 1);
        QCOMPARE(emission.starts(), 0);
    }

    void destroyingTheProtectorCutsItsWaitShort()
    {
        RecordingEmission emission;
        QElapsedTimer clock;
        clock.start();
        {
            RadarCWOverheatingProtector protector(&emission, 50, 20000);
            QTest::qWait(50);
        }
        QVERIFY2(clock.elapsed() < 2000, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(emission.stops(), 0);
    }
};

QTEST_MAIN(RadarCWRunningTest)
#include "tst_RadarCWRunning.moc"
