#include "FirmwareImageBytes.h"
#include "SimulatorSdk.h"

#include "flashing/RadarFirmwareSource.h"
#include "flashing/RadarFlasherMonitor.h"
#include "flashing/SdkRadarFlasher.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace std::chrono_literals;

// The module's flashing on the simulated bench through the flashing
// library's stand-in: the same boards the simulated SDK lists.
class TestRadarFlashingOnSimulator : public QObject
{
    Q_OBJECT

private:
    SimulatorSdk m_sdk;
    QTemporaryDir m_app;
    std::unique_ptr<RadarFirmwareSource> m_source;
    std::unique_ptr<RadarFlasherMonitor> m_monitor;
    QStringList m_listed;

    static QByteArray bench(const QString& extra)
    {
        return QStringLiteral(R"({ "boards": [ { "uuid": "F2-A", "shield": 512, "chip": "KMR7A", "pacing": "unpaced",
            "port": "ttyVRN0", "flash_step_ms": 1, "usb_switch_ms": 20 %1 } ] })")
            .arg(extra)
            .toUtf8();
    }

    void startMonitor(RadarFlasherTiming timing)
    {
        m_monitor = std::make_unique<RadarFlasherMonitor>(m_source.get(), std::make_unique<SdkRadarFlasher>(),
                                                          RadarFlasher::LibraryFactory {}, timing);
        m_monitor->setDetectionPeriod(0ms);
        connect(m_monitor.get(), &RadarFlasherMonitor::flasherAdded, this,
                [this](std::shared_ptr<IFlasher> f) { m_listed << QString::fromStdString(f->name()); });
        connect(m_monitor.get(), &RadarFlasherMonitor::flasherRemoved, this,
                [this](std::string name) { m_listed.removeAll(QString::fromStdString(name)); });
        detect();
    }

    void detect()
    {
        QSignalSpy finished(m_monitor.get(), &RadarFlasherMonitor::detectionFinished);
        m_monitor->detectDevices();
        QVERIFY(finished.wait(5000));
    }

    QString firmwareOf(const char* uuid)
    {
        vrn_Device_Handle device = m_sdk.open(uuid);
        if (!device)
            return QStringLiteral("<not listed>");
        vrn_Firmware_Info_t info {};
        m_sdk.vrn->device_get_firmware_info(device, &info);
        m_sdk.vrn->device_destroy(device);
        return QStringLiteral("%1.%2.%3").arg(info.version_major).arg(info.version_minor).arg(info.version_build);
    }

    QString writeImage(const QString& name, const QByteArray& bytes)
    {
        QFile file(m_app.filePath(name));
        file.open(QIODevice::WriteOnly);
        file.write(bytes);
        return file.fileName();
    }

    // Runs one job and gathers what the user would see of it.
    struct Job
    {
        QStringList messages;
        QList<int> statuses;
        QList<int> progress;
    };
    Job run(RadarFlasher& flasher, const QString& image)
    {
        Job job;
        QSignalSpy finished(&flasher, &IFlasher::finished);
        auto m = connect(&flasher, &IFlasher::messageChanged, this, [&] { job.messages << flasher.message(); });
        auto s = connect(&flasher, &IFlasher::statusChanged, this, [&] { job.statuses << flasher.status(); });
        auto p = connect(&flasher, &IFlasher::progressChanged, this, [&] { job.progress << flasher.progress(); });
        flasher.flash(image);
        finished.wait(30000);
        disconnect(m);
        disconnect(s);
        disconnect(p);
        return job;
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(m_sdk.sim, qPrintable(m_sdk.loadError()));
        m_source = std::make_unique<RadarFirmwareSource>(m_app.path());
    }

    void cleanup()
    {
        m_monitor.reset();
        m_listed.clear();
    }

    void wholeJobLeavesTheBoardOnTheNewFirmware()
    {
        QCOMPARE(m_sdk.sim->load_bench_json(bench({}).constData()), nullptr);
        QCOMPARE(firmwareOf("F2-A"), QStringLiteral("2.5.1"));
        startMonitor({ 20s, 0ms, 5s });
        QCOMPARE(m_listed, QStringList { "ttyVRN0 (Radar)" });

        auto flasher = m_monitor->flasherOnPort("ttyVRN0");
        const Job job = run(*flasher, writeImage("RadarBaseboardKT4_v2.6.0.bin", firmwareImageBytes(2, 6, 0)));
        QCOMPARE(flasher->status(), FlasherStatus::FINISHED_SUCCESS);
        QCOMPARE(job.statuses,
                 (QList<int> { FlasherStatus::STARTED, FlasherStatus::BOOTLOADER, FlasherStatus::FLASHING,
                               FlasherStatus::FINISHED_SUCCESS }));
        QCOMPARE(job.messages.first(), QStringLiteral("BOOTLOADER: 0 Activating the bootloader"));
        QVERIFY(job.messages.contains("BOOTLOADER: 100 ttyVRN0"));
        QVERIFY(job.messages.contains("WRITE: 100"));
        QVERIFY(job.messages.contains("VERIFY: 50"));
        QCOMPARE(job.messages.last(), QStringLiteral("EXIT: successful"));
        // Writing fills the bar's first half, verifying the second.
        QVERIFY(std::is_sorted(job.progress.begin(), job.progress.end()));
        QVERIFY(job.progress.contains(50));
        QCOMPARE(job.progress.last(), 100);

        QCOMPARE(firmwareOf("F2-A"), QStringLiteral("2.6.0"));
        detect();
        QCOMPARE(m_listed, QStringList { "ttyVRN0 (Radar)" });
    }

    void eachFaultEndsInItsStatus_data()
    {
        QTest::addColumn<QString>("extra");
        QTest::addColumn<QString>("image");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("firmware");
        QTest::newRow("bootloader activation fails")
            << R"(, "flash_faults": [ { "kind": "activation_fails" } ])" << "good"
            << int(FlasherStatus::BOOTLOADER_FAILURE) << "EXIT: failure" << "2.5.1";
        QTest::newRow("bootloader never shows")
            << R"(, "flash_faults": [ { "kind": "no_bootloader" } ])" << "good" << int(FlasherStatus::NO_DEVICE)
            << "ERROR: DEVICE NOT FOUND" << "2.5.1";
        QTest::newRow("writing fails at 40 %")
            << R"(, "flash_faults": [ { "kind": "write_fails", "at_percent": 40 } ])" << "good"
            << int(FlasherStatus::FLASHING_FAILURE) << "EXIT: failure" << "<not listed>";
        QTest::newRow("damaged image fails verification")
            << "" << "damaged" << int(FlasherStatus::FLASHING_FAILURE) << "EXIT: failure" << "<not listed>";
        QTest::newRow("missing image leaves the board alone")
            << "" << "missing" << int(FlasherStatus::FINISHED_FAILURE) << "EXIT: failure" << "2.5.1";
        QTest::newRow("board never comes back")
            << R"(, "flash_faults": [ { "kind": "no_return" } ])" << "good" << int(FlasherStatus::FINISHED_FAILURE)
            << "EXIT: failure" << "<not listed>";
        QTest::newRow("board starting in its bootloader is written at once")
            << R"(, "mode": "bootloader")" << "good" << int(FlasherStatus::FINISHED_SUCCESS) << "EXIT: successful"
            << "2.6.0";
    }

    void eachFaultEndsInItsStatus()
    {
        QFETCH(QString, extra);
        QFETCH(QString, image);
        QFETCH(int, status);
        QFETCH(QString, message);
        QFETCH(QString, firmware);
        QCOMPARE(m_sdk.sim->load_bench_json(bench(extra).constData()), nullptr);
        startMonitor({ 20s, 0ms, 1s });
        QByteArray bytes = firmwareImageBytes(2, 6, 0);
        if (image == "damaged")
            bytes[30] = char(bytes[30] ^ 0x55);
        auto flasher = m_monitor->flasherOnPort("ttyVRN0");
        QVERIFY(flasher);
        const Job job = run(*flasher, image == "missing" ? m_app.filePath("none.bin") : writeImage("image.bin", bytes));
        QCOMPARE(int(flasher->status()), status);
        QCOMPARE(job.messages.last(), message);
        QCOMPARE(job.messages.contains("BOOTLOADER: 0 Activating the bootloader"),
                 !extra.contains("\"mode\"") && image != "missing");
        QCOMPARE(firmwareOf("F2-A"), firmware);
        // Wherever the board ended, it stays offered for another attempt.
        detect();
        QCOMPARE(m_listed, QStringList { "ttyVRN0 (Radar)" });
    }

    void jobPastItsTimeLimitTimesOut()
    {
        QCOMPARE(m_sdk.sim->load_bench_json(bench({}).constData()), nullptr);
        startMonitor({ 300ms, 0ms, 5s });
        m_sdk.sim->set_flash_pace(nullptr, 10, 20);
        auto flasher = m_monitor->flasherOnPort("ttyVRN0");
        const Job job = run(*flasher, writeImage("RadarBaseboardKT4_v2.6.0.bin", firmwareImageBytes(2, 6, 0)));
        QCOMPARE(flasher->status(), FlasherStatus::TIMEOUT);
        QCOMPARE(job.messages.last(), QStringLiteral("ERROR: Time exceeded during flash. Aborting..."));
        // The library call given up on ends by itself; nothing overwrites the outcome.
        QTRY_COMPARE_WITH_TIMEOUT(firmwareOf("F2-A"), QStringLiteral("2.6.0"), 10000);
        QTest::qWait(100);
        QCOMPARE(flasher->status(), FlasherStatus::TIMEOUT);
    }

    void secondRequestWhileFlashingIsIgnored()
    {
        QCOMPARE(m_sdk.sim->load_bench_json(bench({}).constData()), nullptr);
        m_sdk.sim->set_flash_pace(nullptr, 5, 20);
        startMonitor({ 20s, 0ms, 5s });
        auto flasher = m_monitor->flasherOnPort("ttyVRN0");
        QSignalSpy finished(flasher.get(), &IFlasher::finished);
        QSignalSpy started(flasher.get(), &IFlasher::statusChanged);
        flasher->flash(writeImage("RadarBaseboardKT4_v2.6.0.bin", firmwareImageBytes(2, 6, 0)));
        QTRY_COMPARE_WITH_TIMEOUT(flasher->status(), FlasherStatus::FLASHING, 5000);
        const int changes = started.count();
        flasher->flash(m_app.filePath("none.bin"));
        QCOMPARE(flasher->status(), FlasherStatus::FLASHING);
        QCOMPARE(started.count(), changes);
        QVERIFY(finished.wait(20000));
        QCOMPARE(flasher->status(), FlasherStatus::FINISHED_SUCCESS);
        QCOMPARE(firmwareOf("F2-A"), QStringLiteral("2.6.0"));
    }

    void boardUnpluggedWhileWrittenFailsAndLeavesTheList()
    {
        QCOMPARE(m_sdk.sim->load_bench_json(bench({}).constData()), nullptr);
        m_sdk.sim->set_flash_pace(nullptr, 5, 20);
        startMonitor({ 20s, 0ms, 5s });
        auto flasher = m_monitor->flasherOnPort("ttyVRN0");
        QSignalSpy finished(flasher.get(), &IFlasher::finished);
        flasher->flash(writeImage("RadarBaseboardKT4_v2.6.0.bin", firmwareImageBytes(2, 6, 0)));
        QTRY_VERIFY_WITH_TIMEOUT(flasher->message().startsWith("WRITE"), 5000);
        QCOMPARE(m_sdk.sim->unplug_board("F2-A"), nullptr);
        QVERIFY(finished.wait(10000));
        QCOMPARE(flasher->status(), FlasherStatus::FLASHING_FAILURE);
        QCOMPARE(flasher->message(), QStringLiteral("EXIT: failure"));
        // The job's end brings a look of its own.
        QTRY_COMPARE(m_listed, QStringList {});
    }

    void listFollowsHotPlug()
    {
        QCOMPARE(m_sdk.sim->load_bench_json(bench({}).constData()), nullptr);
        startMonitor({});
        QCOMPARE(m_sdk.sim->plug_board(R"({ "uuid": "F2-B", "shield": 768, "chip": "ZP7", "port": "ttyVRN7" })"),
                 nullptr);
        detect();
        QCOMPARE(m_listed, (QStringList { "ttyVRN0 (Radar)", "ttyVRN7 (Radar)" }));
        QCOMPARE(m_monitor->flasherOnPort("ttyVRN7")->productId(), QStringLiteral("0253"));
        QCOMPARE(m_sdk.sim->unplug_board("F2-A"), nullptr);
        detect();
        QCOMPARE(m_listed, QStringList { "ttyVRN7 (Radar)" });

        // A board plugged in while in its bootloader is offered, and the user told.
        QSignalSpy notices(m_monitor.get(), &RadarFlasherMonitor::triggerEvent);
        QCOMPARE(m_sdk.sim->plug_board(R"({ "uuid": "F2-C", "shield": 512, "port": "ttyVRN9", "mode": "bootloader" })"),
                 nullptr);
        detect();
        QCOMPARE(m_listed, (QStringList { "ttyVRN7 (Radar)", "ttyVRN9 (Radar)" }));
        QCOMPARE(notices.count(), 1);
        QCOMPARE(notices.first().at(1).toString(),
                 QStringLiteral("The radar baseboard on ttyVRN9 is waiting in its bootloader"));
    }
};

QTEST_GUILESS_MAIN(TestRadarFlashingOnSimulator)
#include "tst_RadarFlashingOnSimulator.moc"
