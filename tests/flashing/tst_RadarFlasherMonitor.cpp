#include "FakeFlashLibrary.h"

#include "flashing/RadarFlasherMonitor.h"

#include <QSignalSpy>
#include <QTemporaryFile>
#include <QtTest>

using namespace std::chrono_literals;

class TestRadarFlasherMonitor : public QObject
{
    Q_OBJECT

private:
    FakeBoards m_boards;
    std::unique_ptr<RadarFlasherMonitor> m_monitor;
    QStringList m_listed;
    QStringList m_notices;

    void detect()
    {
        QSignalSpy finished(m_monitor.get(), &RadarFlasherMonitor::detectionFinished);
        m_monitor->detectDevices();
        QVERIFY(finished.wait(5000));
    }

private slots:
    void init()
    {
        {
            QMutexLocker lock(&m_boards.mutex);
            m_boards.normal.clear();
            m_boards.bootloader.clear();
        }
        m_listed.clear();
        m_notices.clear();
        m_monitor = std::make_unique<RadarFlasherMonitor>(
            nullptr, std::make_unique<FakeFlashLibrary>(m_boards),
            [this] { return std::make_unique<FakeFlashLibrary>(m_boards); }, RadarFlasherTiming { 10s, 0ms, 50ms });
        m_monitor->setDetectionPeriod(0ms);
        // The host's register, as far as the list goes.
        connect(m_monitor.get(), &RadarFlasherMonitor::flasherAdded, this,
                [this](std::shared_ptr<IFlasher> f) { m_listed << QString::fromStdString(f->name()); });
        connect(m_monitor.get(), &RadarFlasherMonitor::flasherRemoved, this,
                [this](std::string name) { m_listed.removeAll(QString::fromStdString(name)); });
        connect(m_monitor.get(), &RadarFlasherMonitor::triggerEvent, this,
                [this](RadarEventCode, QString message) { m_notices << message; });
    }

    void cleanup() { m_monitor.reset(); }

    void listFollowsHotPlug()
    {
        detect();
        QVERIFY(m_listed.isEmpty());

        m_boards.attach("ttyVRN0", "0251");
        m_boards.attach("ttyVRN1", "0253");
        detect();
        QCOMPARE(m_listed, (QStringList { "ttyVRN0 (Radar)", "ttyVRN1 (Radar)" }));
        QCOMPARE(m_monitor->flasherOnPort("ttyVRN1")->productId(), QStringLiteral("0253"));

        { QMutexLocker lock(&m_boards.mutex); m_boards.normal.erase("ttyVRN0"); }
        detect();
        QCOMPARE(m_listed, QStringList { "ttyVRN1 (Radar)" });

        // A board stuck in its bootloader is offered too, and the user told once.
        { QMutexLocker lock(&m_boards.mutex); m_boards.bootloader.insert("ttyVRN2"); }
        detect();
        detect();
        QCOMPARE(m_listed, (QStringList { "ttyVRN1 (Radar)", "ttyVRN2 (Radar)" }));
        QCOMPARE(m_notices, QStringList { "The radar baseboard on ttyVRN2 is waiting in its bootloader" });

        // Closing the module takes its flashers off the host's list.
        m_monitor.reset();
        QVERIFY(m_listed.isEmpty());
    }

    void boardInItsJobStaysListedUntilTheJobEnds()
    {
        QTemporaryFile image;
        QVERIFY(image.open());
        QSemaphore gate;
        m_boards.flashGate = &gate;
        m_boards.neverReturns = true;
        m_boards.attach("ttyVRN0");
        detect();
        auto flasher = m_monitor->flasherOnPort("ttyVRN0");
        QVERIFY(flasher);
        flasher->flash(image.fileName());
        QTRY_COMPARE(flasher->status(), FlasherStatus::FLASHING);

        // Restarting, the board is on neither list.
        { QMutexLocker lock(&m_boards.mutex); m_boards.bootloader.clear(); }
        detect();
        QCOMPARE(m_listed, QStringList { "ttyVRN0 (Radar)" });

        // The job's end brings a look of its own, which finds the board gone.
        gate.release();
        QTRY_COMPARE_WITH_TIMEOUT(m_listed, QStringList {}, 5000);
        QCOMPARE(flasher->status(), FlasherStatus::FINISHED_FAILURE);
        m_boards.flashGate = nullptr;
        m_boards.neverReturns = false;
    }
};

QTEST_GUILESS_MAIN(TestRadarFlasherMonitor)
#include "tst_RadarFlasherMonitor.moc"
