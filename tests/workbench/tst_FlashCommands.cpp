// The firmware commands as a user runs them: the workbench executable on a
// simulated bench of baseboards, judged by its exit code and what it says.
#include "WorkbenchRun.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

class TestFlashCommands : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    QStringList firmware(const QStringList& command) const
    {
        return QStringList { "--bench", m_dir.filePath("bench.json"), "--settings", m_dir.filePath("settings.json") }
            + command;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(writeFile(m_dir.filePath("bench.json"), R"({ "boards": [
            { "uuid": "a", "port": "ttyVRN0", "flash_step_ms": 0, "usb_switch_ms": 0 },
            { "uuid": "b", "port": "ttyVRN1", "flash_step_ms": 0, "usb_switch_ms": 0,
              "flash_faults": [ { "kind": "activation_fails", "count": 0 } ] },
            { "uuid": "c", "port": "ttyVRN2", "flash_step_ms": 0, "usb_switch_ms": 0, "mode": "bootloader" },
            { "uuid": "d", "port": "ttyVRN3", "flash_step_ms": 0, "usb_switch_ms": 0,
              "flash_faults": [ { "kind": "write_fails", "at_percent": 30, "count": 0 } ] } ] })"));
        QVERIFY(writeFile(m_dir.filePath("damaged.bin"), QByteArray("RBK4") + QByteArray(60, '\x07')));
    }

    // Boards in normal and in bootloader mode alike get a flasher, each
    // offering the image shipped beside the workbench.
    void listsEveryBaseboard()
    {
        const WorkbenchRun run = runWorkbench(firmware({ "--list-flashers" }));
        QCOMPARE(run.exitCode, 0);
        const QStringList lines = run.out.split('\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 4);
        for (int port = 0; port < 4; ++port) {
            QVERIFY2(lines.at(port).startsWith(QString("ttyVRN%1 (Radar)\tNOT_STARTED\t").arg(port)),
                     qPrintable(run.out));
            QVERIFY2(lines.at(port).endsWith("firmware/radar/RadarBaseboardKT4_v2.6.0.bin"), qPrintable(run.out));
        }
    }

    void jobsEndInTheirStatus_data()
    {
        QTest::addColumn<QStringList>("command");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QStringList>("said");
        QTest::newRow("flashed") << QStringList { "--flash", "ttyVRN0" } << 0
                                 << QStringList { "BOOTLOADER: 0 Activating the bootloader", "100%  VERIFY",
                                                  "EXIT: successful", "Status: FINISHED_SUCCESS" };
        QTest::newRow("already in bootloader") << QStringList { "--flash", "ttyVRN2 (Radar)" } << 0
                                               << QStringList { "BOOTLOADER: 100 ttyVRN2", "EXIT: successful" };
        QTest::newRow("bootloader refused")
            << QStringList { "--flash", "ttyVRN1" } << 4
            << QStringList { "EXIT: failure", "Flashing failed: BOOTLOADER_FAILURE: The baseboard on ttyVRN1 did not "
                                               "acknowledge the bootloader command" };
        QTest::newRow("writing fails") << QStringList { "--flash", "ttyVRN3" } << 4
                                       << QStringList { "Flashing failed: FLASHING_FAILURE: Write failed at 30 %" };
        QTest::newRow("damaged image") << QStringList { "--flash", "ttyVRN0", "--image", m_dir.filePath("damaged.bin") }
                                       << 4 << QStringList { "Flashing failed: FLASHING_FAILURE: Image check failed" };
        QTest::newRow("unknown flasher") << QStringList { "--flash", "ttyUSB9" } << 1
                                         << QStringList { "No flasher is named \"ttyUSB9\"", "\"ttyVRN0 (Radar)\"" };
        QTest::newRow("image without flash") << QStringList { "--image", "x.bin", "--list-flashers" } << 1
                                             << QStringList { "--image FILE goes with --flash NAME." };
    }

    void jobsEndInTheirStatus()
    {
        QFETCH(QStringList, command);
        QFETCH(int, exitCode);
        QFETCH(QStringList, said);
        const WorkbenchRun run = runWorkbench(firmware(command));
        const QString all = run.out + run.err;
        QVERIFY2(run.exitCode == exitCode, qPrintable(all));
        for (const QString& text : said)
            QVERIFY2(all.contains(text), qPrintable(text + " not in:\n" + all));
    }
};

QTEST_GUILESS_MAIN(TestFlashCommands)
#include "tst_FlashCommands.moc"
