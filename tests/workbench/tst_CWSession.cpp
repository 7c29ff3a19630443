// The workbench's headless CW session as a test engineer runs it: a
// separate process on a simulated bench, judged by its exit code, its output
// and the CSV files it logs against the configuration it saved.
#include "WorkbenchRun.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>
#include <csignal>

namespace {

// A saved configuration with some of its "cw_scene" values replaced.
QByteArray edited(QJsonObject document, const QJsonObject& scene, const QJsonObject& antennas)
{
    QJsonObject outer = document.value("cw_scene").toObject();
    QJsonObject inner = outer.value("cw_scene").toObject();
    for (auto it = scene.begin(); it != scene.end(); ++it)
        inner.insert(it.key(), it.value());
    outer.insert("cw_scene", inner);
    for (auto it = antennas.begin(); it != antennas.end(); ++it)
        outer.insert(it.key(), it.value());
    document.insert("cw_scene", outer);
    return QJsonDocument(document).toJson();
}

} // namespace

class TestCWSession : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    QStringList common() const
    {
        // A later --device picks another board.
        return { "--headless", "--mode", "CW", "--bench", m_dir.filePath("bench.json"), "--settings",
                 m_dir.filePath("settings.json"), "--device", "cw-a" };
    }

private slots:
    void initTestCase()
    {
        QVERIFY(writeFile(m_dir.filePath("bench.json"), R"({ "boards": [
            { "uuid": "cw-a", "shield": 512, "chip": "KMR7A", "pacing": "unpaced", "noise": 0.001, "seed": 3 },
            { "uuid": "cw-c", "shield": 514, "chip": "KMR7C", "pacing": "unpaced", "noise": 0.001, "seed": 4 },
            { "uuid": "cw-f", "shield": 512, "chip": "KMR7A", "pacing": "unpaced",
              "faults": [ { "at_frame": 0, "status": "0x1100e", "count": 1 } ] } ] })"));
        QVERIFY(writeFile(m_dir.filePath("plain-file"), "not a directory"));
        // The board's own configuration, as the session saves it, is the
        // base of the files below.
        const QString defaults = m_dir.filePath("defaults.json");
        const WorkbenchRun run = runWorkbench(common() << "--device" << "cw-a" << "--emit" << "0.1" << "--capture" << "0" << "--save-config" << defaults);
        QVERIFY2(run.exitCode == 0, qPrintable(run.err + run.out));
        const QJsonObject document = readJson(defaults);
        QCOMPARE(document.value("json_version").toObject().value("type").toString(), QStringLiteral("KMR7A_CW"));
        QVERIFY(writeFile(m_dir.filePath("edited.json"),
                          edited(document, { { "dac", 150 }, { "rx_num_samples", 128 } },
                                 { { "rx_antennas", QJsonArray { 1, 3 } } })));
        QVERIFY(writeFile(m_dir.filePath("dac-300.json"), edited(document, { { "dac", 300 } }, {})));
        QVERIFY(writeFile(m_dir.filePath("no-tx.json"), edited(document, {}, { { "tx_antennas", QJsonArray() } })));
    }

    void loggedFramesMatchTheAppliedConfiguration_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("dutyCycle");
        QTest::addColumn<int>("samples");
        QTest::addColumn<QString>("columns");
        QTest::newRow("defaults at 30 %") << QStringList { "--duty-cycle", "30" } << 30 << 256
                                          << "Tx1Rx1,Tx1Rx2,Tx1Rx3";
        QTest::newRow("edited file") << QStringList { "--config", m_dir.filePath("edited.json") } << 100 << 128
                                     << "Tx1Rx1,Tx1Rx3";
    }

    // Three captures spread over half a second (at least two of them within
    // one clock second) keep a file each; every file describes the
    // configuration the session saved and holds one row per sample.
    void loggedFramesMatchTheAppliedConfiguration()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, dutyCycle);
        QFETCH(int, samples);
        QFETCH(QString, columns);
        const QString base = m_dir.filePath(QString::fromLatin1(QTest::currentDataTag()));
        const QString saved = base + "/applied.json";
        QVERIFY(QDir().mkpath(base));
        const WorkbenchRun run = runWorkbench(common() << "--device" << "cw-a" << arguments << "--emit" << "1" << "--capture"
                                              << "3" << "--log" << base + "/logs" << "--snapshot" << base + "/snap"
                                              << "--save-config" << saved);
        QVERIFY2(run.exitCode == 0, qPrintable(run.err + run.out));
        QVERIFY2(run.out.contains("frames captured 3 of 3, files written 6"), qPrintable(run.out));

        const QJsonObject scene = readJson(saved).value("cw_scene").toObject();
        const QJsonObject params = scene.value("cw_scene").toObject();
        QCOMPARE(params.value("duty_cycle").toInt(), dutyCycle);
        QCOMPARE(params.value("rx_num_samples").toInt(), samples);
        const int receivers = scene.value("rx_antennas").toArray().size();

        const QStringList logs = QDir(base + "/logs").entryList({ "*.csv" }, QDir::Files);
        QCOMPARE(logs.size(), 3);
        for (const QString& name : logs) {
            const QStringList lines = readLines(base + "/logs/" + name);
            QVERIFY2(lines.size() > 32, qPrintable(name));
            QCOMPARE(lines.at(11), QString("# DAC: %1").arg(params.value("dac").toInt()));
            QCOMPARE(lines.at(13), QString("# Duty Cycle [%]: %1").arg(dutyCycle));
            QCOMPARE(lines.at(15), QString("# Mode: %1").arg(params.value("test_signal").toObject().value("mode").toString()));
            QCOMPARE(lines.at(19), QString("# Num Samples: %1").arg(samples));
            QCOMPARE(lines.at(20), QString("# Sampling Rate [Hz]: %1").arg(params.value("sampling_rate").toInt()));
            QCOMPARE(lines.at(31), columns);
            const QStringList rows = lines.mid(32);
            QCOMPARE(rows.size(), samples);
            for (const QString& row : rows)
                QCOMPARE(row.split(',').size(), receivers);
        }
        QVERIFY(QFileInfo(base + "/snap/spectrum.csv").size() > 0);
    }

    void failuresSayWhy_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("emits");
        QTest::newRow("duty cycle 101") << QStringList { "--emit", "1", "--duty-cycle", "101" } << 1
                                        << "--duty-cycle \"101\" is not a whole percentage from 0 to 100." << false;
        QTest::newRow("no --emit") << QStringList { "--capture", "2" } << 1 << "A CW session needs --emit S" << false;
        QTest::newRow("standard option") << QStringList { "--emit", "1", "--frames", "3" } << 1
                                         << "--frames: not an option of a CW session" << false;
        QTest::newRow("unknown mode") << QStringList { "--mode", "Pulsed" } << 1
                                      << "--mode \"Pulsed\" is not a mode of the module; the modes are: CW, Standard" << false;
        QTest::newRow("file out of limits") << QStringList { "--emit", "1", "--config", m_dir.filePath("dac-300.json") }
                                            << 4 << "Value 300 not in expected range: [0 - 255]" << false;
        QTest::newRow("no Tx antenna") << QStringList { "--emit", "1", "--config", m_dir.filePath("no-tx.json") } << 4
                                       << "the applied configuration enables no Tx antenna" << false;
        QTest::newRow("log folder under a file")
            << QStringList { "--emit", "1", "--log", m_dir.filePath("plain-file/logs") } << 4
            << "Cannot create the log directory" << false;
        QTest::newRow("capture fails") << QStringList { "--device", "cw-f", "--emit", "1" } << 4
                                       << "capture 1 of 1 failed: Failed to get frame for CW mode" << true;
    }

    // Refused input never reaches the transmitter; a failure while emitting
    // ends the session with the module's message and no file.
    void failuresSayWhy()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, message);
        QFETCH(bool, emits);
        // Another mode takes no CW option.
        const QString log = m_dir.filePath(QString("failed/%1").arg(QTest::currentDataTag()));
        if (!arguments.contains("--mode") && !arguments.contains("--log"))
            arguments << "--log" << log;
        const WorkbenchRun run = runWorkbench(common() << arguments);
        QCOMPARE(run.exitCode, exitCode);
        QVERIFY2(run.err.contains(message), qPrintable(run.err));
        QCOMPARE(run.out.contains("Emitting"), emits);
        QVERIFY(QDir(log).entryList(QDir::Files).isEmpty());
    }

    // The board leaves the bus at its second capture: the frame logged
    // before stays, the session names the loss and writes no snapshot of
    // charts the board took along.
    void boardUnpluggedDuringEmissionFailsTheSession()
    {
        const QString bench = m_dir.filePath("unplug.json");
        QVERIFY(writeFile(bench, R"({ "boards": [ { "uuid": "cw-u", "shield": 512, "chip": "KMR7A",
            "pacing": "unpaced", "faults": [ { "at_capture": 1, "kind": "unplug" } ] } ] })"));
        const QString base = m_dir.filePath("unplugged");
        const WorkbenchRun run = runWorkbench({ "--headless", "--mode", "CW", "--bench", bench, "--settings",
                                       m_dir.filePath("settings.json"), "--emit", "2", "--capture", "3", "--log",
                                       base + "/logs", "--snapshot", base + "/snap" });
        QCOMPARE(run.exitCode, 4);
        QVERIFY2(run.err.contains("Session failed: the board was lost during emission: Device communication error "
                                  "while fetching frame"),
                 qPrintable(run.err));
        QVERIFY2(run.out.contains("frames captured 1 of 3, files written 1"), qPrintable(run.out));
        QCOMPARE(QDir(base + "/logs").entryList(QDir::Files).size(), 1);
        QVERIFY(QDir(base + "/snap").entryList(QDir::Files).isEmpty());
    }

    // A signal switches the transmitter off at once, long before its time.
    void interruptStopsEmissionFirst()
    {
        QProcess workbench;
        workbench.start(WORKBENCH, common() << "--emit" << "60");
        QByteArray out;
        QTRY_VERIFY_WITH_TIMEOUT((out += workbench.readAllStandardOutput()).contains("\nemitting "), 20000);
        QCOMPARE(::kill(pid_t(workbench.processId()), SIGINT), 0);
        QVERIFY(workbench.waitForFinished(20000));
        out += workbench.readAllStandardOutput();
        QCOMPARE(workbench.exitCode(), 128 + SIGINT);
        QVERIFY2(out.contains("Interrupted by SIGINT: stopping emission"), out.constData());
        QVERIFY2(QRegularExpression("Emission stopped after \\d\\.\\d s").match(QString::fromUtf8(out)).hasMatch(),
                 out.constData());
    }

    void readingsFollowTheChip_data()
    {
        QTest::addColumn<QString>("board");
        QTest::addColumn<QString>("reading");
        QTest::newRow("KMR7A") << "cw-a" << "temperature \\d+\\.\\d C  Tx power Tx1 -?\\d+\\.\\d dBm";
        QTest::newRow("KMR7C has neither") << "cw-c" << "temperature n/a  Tx power n/a";
    }

    void readingsFollowTheChip()
    {
        QFETCH(QString, board);
        QFETCH(QString, reading);
        const WorkbenchRun run = runWorkbench(common() << "--device" << board << "--emit" << "1.5" << "--capture" << "0");
        QVERIFY2(run.exitCode == 0, qPrintable(run.err + run.out));
        QVERIFY2(run.out.contains(QRegularExpression("emitting 1\\.\\d s  " + reading)), qPrintable(run.out));
    }
};

QTEST_GUILESS_MAIN(TestCWSession)
#include "tst_CWSession.moc"
