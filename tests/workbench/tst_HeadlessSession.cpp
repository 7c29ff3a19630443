// The workbench's headless session as a user runs it: a separate process on
// a simulated bench, judged by its exit code, its output and its files.
#include "WorkbenchRun.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>
#include <csignal>

namespace {

// The default configuration: one receive antenna, 64 chirps of 64 samples.
constexpr qint64 kHeaderBytes = 88;
constexpr qint64 kRecordBytes = 4 + 4 * 64 * 64;

// Frame records of a binary recording, cut by hand from the bytes.
QList<QByteArray> records(const QByteArray& bin)
{
    QList<QByteArray> result;
    for (qint64 at = kHeaderBytes; at + kRecordBytes <= bin.size(); at += kRecordBytes)
        result << bin.mid(at, kRecordBytes);
    return result;
}

qint32 frameNumber(const QByteArray& record)
{
    return qint32(qFromBigEndian<quint32>(record.constData()));
}

qint64 textFrames(const QString& path)
{
    return readFile(path).count("\n# Frame_Number = ");
}

// The count the summary gives for the file, or -1.
qint64 summaryRecorded(const QString& out)
{
    const auto match = QRegularExpression("recorded (\\d+) \\(in the file\\)").match(out);
    return match.hasMatch() ? match.captured(1).toLongLong() : -1;
}

// Range of the strongest point of series 0 in a snapshot CSV (series,x,y).
double peakRange(const QString& csvPath)
{
    QPointF peak(-1, -1e30);
    for (const QString& line : readLines(csvPath).mid(1)) {
        const QStringList fields = line.trimmed().split(',');
        if (fields.size() == 3 && fields[0] == "0" && fields[2].toDouble() > peak.y())
            peak = QPointF(fields[1].toDouble(), fields[2].toDouble());
    }
    return peak.x();
}

} // namespace

class TestHeadlessSession : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString m_bench;
    QString m_realtimeBench;

    QStringList common(const QString& settings) const
    {
        return { "--headless", "--bench", m_bench, "--settings", m_dir.filePath(settings) };
    }

private slots:
    void initTestCase()
    {
        // One strong still reflector at 4.2 m on a board that answers at once,
        // and the same board at its real frame rate (10 frames per second).
        const QByteArray board = R"({ "boards": [ { "uuid": "hs-01", "shield": 512, "chip": "KMR7A",
            "pacing": "PACING", "noise": 0.001, "seed": 7,
            "scene": { "targets": [ { "kind": "reflector", "range_m": 4.2, "speed_m_s": 0.0, "rcs_m2": 5.0 } ] } } ] })";
        m_bench = m_dir.filePath("bench.json");
        QVERIFY(writeFile(m_bench, QByteArray(board).replace("PACING", "unpaced")));
        m_realtimeBench = m_dir.filePath("realtime.json");
        QVERIFY(writeFile(m_realtimeBench, QByteArray(board).replace("PACING", "realtime")));
        QVERIFY(writeFile(m_dir.filePath("plain-file"), "not a directory"));
    }

    void recordsExactlyTheFramesAskedForAndSnapshotsTheCharts()
    {
        const QString base = m_dir.filePath("session/rec");
        const QString snapshot = m_dir.filePath("session/snap");
        const WorkbenchRun run = runWorkbench(common("rec.json") << "--frames" << "12" << "--record" << base
                                                        << "--snapshot" << snapshot);
        QVERIFY2(run.exitCode == 0, qPrintable(run.err + run.out));
        QVERIFY(run.out.contains("Connecting Radar (hs-01)"));
        QCOMPARE(summaryRecorded(run.out), 12);

        QCOMPARE(QFileInfo(base + ".raw.bin").size(), kHeaderBytes + 12 * kRecordBytes);
        QVERIFY(QFileInfo::exists(base + ".json"));

        const double range = peakRange(snapshot + "/range_spectrum.csv");
        QVERIFY2(qAbs(range - 4.2) <= 0.15, qPrintable(QString::number(range)));
        QVERIFY(QFileInfo(snapshot + "/range_doppler.png").size() > 0);

        const WorkbenchRun inspect = runWorkbench({ "--inspect", base });
        QCOMPARE(inspect.exitCode, 0);
        QVERIFY(inspect.out.contains("Frames = 12"));
    }

    void recordingLimitsAgreeWithTheFile_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<qint64>("frames");
        QTest::addColumn<QString>("output");
        QTest::newRow("seconds round up to whole frames") << QStringList { "--seconds", "0.25" } << qint64(3)
                                                          << "Recording to ";
        QTest::newRow("less than a frame period") << QStringList { "--seconds", "1e-9" } << qint64(1) << "Recording to ";
        QTest::newRow("board by uuid") << QStringList { "--frames", "2", "--device", "hs-01" } << qint64(2)
                                       << "Connecting Radar (hs-01)";
    }

    // The summary's recorded count is the file's, whatever the limit.
    void recordingLimitsAgreeWithTheFile()
    {
        QFETCH(QStringList, arguments);
        QFETCH(qint64, frames);
        QFETCH(QString, output);
        const QString base = m_dir.filePath(QString("limits/%1").arg(QTest::currentDataTag()));
        const WorkbenchRun run = runWorkbench(common("limits.json") << arguments << "--record" << base);
        QVERIFY2(run.exitCode == 0, qPrintable(run.err + run.out));
        QVERIFY2(run.out.contains(output), qPrintable(run.out));
        QCOMPARE(QFileInfo(base + ".raw.bin").size(), kHeaderBytes + frames * kRecordBytes);
        QCOMPARE(summaryRecorded(run.out), frames);
    }

    void sessionShorterThanAFramePeriodStillAcquiresOne()
    {
        const WorkbenchRun run = runWorkbench({ "--headless", "--bench", m_realtimeBench, "--settings",
                                       m_dir.filePath("short.json"), "--seconds", "1e-9" });
        QVERIFY2(run.exitCode == 0, qPrintable(run.err + run.out));
        QVERIFY2(run.out.contains(QRegularExpression("Summary: frames acquired [1-9]")), qPrintable(run.out));
    }

    void textCopyIsCompleteWhenTheSessionEnds()
    {
        // Enough frames that the conversion outlasts the recording.
        const QString base = m_dir.filePath("text/rec");
        const WorkbenchRun run = runWorkbench(common("text.json") << "--frames" << "200" << "--record" << base << "--txt");
        QVERIFY2(run.exitCode == 0, qPrintable(run.err + run.out));
        QVERIFY2(run.out.contains("] 100%"), qPrintable(run.out));
        QCOMPARE(textFrames(base + ".raw.txt"), 200);
    }

    void replayingARecordingCopiesItsFrames()
    {
        const QString base = m_dir.filePath("play/rec");
        QCOMPARE(runWorkbench(common("play.json") << "--frames" << "7" << "--record" << base).exitCode, 0);

        // Named by its file; without a limit the whole recording plays.
        const QString copy = m_dir.filePath("play/copy");
        const WorkbenchRun run = runWorkbench(common("play.json") << "--play" << base + ".raw.bin" << "--record" << copy
                                                         << "--snapshot" << m_dir.filePath("play/snap"));
        QVERIFY2(run.exitCode == 0, qPrintable(run.err + run.out));
        QVERIFY2(run.out.contains("Playing " + base + " (7 frames)"), qPrintable(run.out));
        QCOMPARE(summaryRecorded(run.out), 7);
        const double range = peakRange(m_dir.filePath("play/snap/range_spectrum.csv"));
        QVERIFY2(qAbs(range - 4.2) <= 0.15, qPrintable(QString::number(range)));

        // The copy describes and holds the same frames; only their numbers
        // are the copy's own.
        const QByteArray original = readFile(base + ".raw.bin");
        const QByteArray copied = readFile(copy + ".raw.bin");
        QCOMPARE(copied.size(), original.size());
        QCOMPARE(copied.left(kHeaderBytes), original.left(kHeaderBytes));
        const QList<QByteArray> originalRecords = records(original);
        const QList<QByteArray> copiedRecords = records(copied);
        for (int i = 0; i < copiedRecords.size(); ++i) {
            QCOMPARE(copiedRecords[i].mid(4), originalRecords[i].mid(4));
            QCOMPARE(frameNumber(copiedRecords[i]), frameNumber(copiedRecords[0]) + i);
        }
    }

    void earlierRecordingIsKeptUnlessOverwriteIsGiven()
    {
        const QString base = m_dir.filePath("again/rec");
        QCOMPARE(runWorkbench(common("again.json") << "--frames" << "3" << "--record" << base).exitCode, 0);
        const QByteArray first = readFile(base + ".raw.bin");

        const WorkbenchRun refused = runWorkbench(common("again.json") << "--frames" << "2" << "--record" << base);
        QCOMPARE(refused.exitCode, 4);
        QVERIFY2(refused.err.contains(base + ".raw.bin") && refused.err.contains("--overwrite"), qPrintable(refused.err));
        QCOMPARE(readFile(base + ".raw.bin"), first);

        const WorkbenchRun replaced = runWorkbench(common("again.json") << "--frames" << "2" << "--record" << base << "--overwrite");
        QVERIFY2(replaced.exitCode == 0, qPrintable(replaced.err + replaced.out));
        QVERIFY2(replaced.out.contains("Overwriting: removed " + base + ".json"), qPrintable(replaced.out));
        QCOMPARE(QFileInfo(base + ".raw.bin").size(), kHeaderBytes + 2 * kRecordBytes);
    }

    void interruptedRecordingKeepsEveryAcquiredFrame_data()
    {
        QTest::addColumn<int>("signalNumber");
        QTest::addColumn<bool>("txt");
        QTest::newRow("SIGINT") << int(SIGINT) << false;
        QTest::newRow("SIGTERM, text copy") << int(SIGTERM) << true;
    }

    void interruptedRecordingKeepsEveryAcquiredFrame()
    {
        QFETCH(int, signalNumber);
        QFETCH(bool, txt);
        const QString base = m_dir.filePath(QString("signal/%1").arg(signalNumber));
        QStringList arguments { "--headless", "--bench", m_realtimeBench, "--settings", m_dir.filePath("signal.json"),
                                "--seconds", "60", "--record", base };
        if (txt)
            arguments << "--txt";
        QProcess workbench;
        workbench.start(WORKBENCH, arguments);
        // The first progress line comes after a second: about ten frames,
        // fewer than one recorder buffer, are acquired and none written yet.
        QByteArray out;
        QTRY_VERIFY_WITH_TIMEOUT((out += workbench.readAllStandardOutput()).contains("\nframes "), 20000);
        QCOMPARE(::kill(pid_t(workbench.processId()), signalNumber), 0);
        QVERIFY(workbench.waitForFinished(20000));
        out += workbench.readAllStandardOutput();
        QCOMPARE(workbench.exitStatus(), QProcess::NormalExit);
        QVERIFY2(workbench.exitCode() == 128 + signalNumber, workbench.readAllStandardError().constData());

        const qint64 recorded = summaryRecorded(QString::fromUtf8(out));
        QVERIFY2(recorded > 0, out.constData());
        const QByteArray bin = readFile(base + ".raw.bin");
        QCOMPARE(qint64(bin.size()), kHeaderBytes + recorded * kRecordBytes);
        const QList<QByteArray> written = records(bin);
        for (int i = 1; i < written.size(); ++i)
            QCOMPARE(frameNumber(written[i]), frameNumber(written[0]) + i);
        if (txt)
            QCOMPARE(textFrames(base + ".raw.txt"), recorded);
    }

    void badLimitsAreRefusedWithTheRange_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("message");
        const QString seconds = "is not a number of seconds above 0 and up to 86400";
        const QString frames = "is not a whole number from 1 to 10000000";
        QTest::newRow("infinite") << QStringList { "--seconds", "inf" } << seconds;
        QTest::newRow("1e12 s") << QStringList { "--seconds", "1e12" } << seconds;
        QTest::newRow("3000000 s") << QStringList { "--seconds", "3000000" } << seconds;
        QTest::newRow("not a number") << QStringList { "--seconds", "nan" } << seconds;
        QTest::newRow("0 s") << QStringList { "--seconds", "0" } << seconds;
        QTest::newRow("negative") << QStringList { "--seconds", "-2" } << seconds;
        QTest::newRow("0 frames") << QStringList { "--frames", "0" } << frames;
        QTest::newRow("too many frames") << QStringList { "--frames", "10000001" } << frames;
        QTest::newRow("frames not a number") << QStringList { "--frames", "ten" } << frames;
        QTest::newRow("both") << QStringList { "--frames", "3", "--seconds", "1" } << "either --frames or --seconds";
    }

    void badLimitsAreRefusedWithTheRange()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);
        const WorkbenchRun run = runWorkbench(common("limits.json") << arguments << "--record" << m_dir.filePath("never/rec"));
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.err.contains(message), qPrintable(run.err));
        QVERIFY(!QFileInfo::exists(m_dir.filePath("never")));
    }

    void failedSessionsSayWhy_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("reason");
        QTest::newRow("unknown board") << QStringList { "--device", "Radar #9" }
                                       << "no board is named \"Radar #9\" or has that uuid; the boards are: \"Radar\" (hs-01)";
        QTest::newRow("missing recording") << QStringList { "--play", "/nonexistent/rec.raw.bin" }
                                           << "the recording /nonexistent/rec.raw.bin is missing: no such file";
        QTest::newRow("unknown application") << QStringList { "--application", "Juggling" } << "unknown application";
        QTest::newRow("unwritable snapshot") << QStringList { "--snapshot", m_dir.filePath("plain-file/snap") }
                                             << "Cannot create the snapshot directory";
    }

    void failedSessionsSayWhy()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, reason);
        const WorkbenchRun run = runWorkbench(common("fail.json") << "--frames" << "3" << arguments);
        QCOMPARE(run.exitCode, 4);
        QVERIFY2(run.err.contains(reason), qPrintable(run.err));
    }

    void invalidConfigurationIsRefusedWithItsMessage()
    {
        const QString config = m_dir.filePath("bad-config.json");
        QVERIFY(writeFile(config, R"({ "device_config": { "fmcw_scene": { "center_frequency_Hz": 60500000768,
            "frame_repetition_time_s": 0.1, "if_gain_dB": 33, "max_range_m": 9.6, "max_speed_m_s": 2.45,
            "range_resolution_m": 0.3, "rx_antennas": [3], "sample_rate_Hz": 0, "speed_resolution_m_s": 0.0766,
            "tx_antennas": [1], "tx_power_level": 31 } }, "json_version": { "type": "KMR7A", "version": "1.0" } })"));
        const WorkbenchRun run = runWorkbench(common("config.json") << "--frames" << "3" << "--config" << config);
        QCOMPARE(run.exitCode, 4);
        QVERIFY2((run.out + run.err).contains("Value 0 not in expected range: [1 - 2000000000]"), qPrintable(run.out + run.err));
    }
};

QTEST_GUILESS_MAIN(TestHeadlessSession)
#include "tst_HeadlessSession.moc"
