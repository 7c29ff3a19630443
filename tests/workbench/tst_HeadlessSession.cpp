// The workbench's headless session as a user runs it: a separate process on
// a simulated bench, judged by its exit code, its output and its files.
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

struct Run {
    int exitCode = -1;
    QString out;
    QString err;
};

Run runWorkbench(const QStringList& arguments)
{
    QProcess workbench;
    workbench.start(WORKBENCH, arguments);
    Run run;
    if (!workbench.waitForFinished(120000))
        return run;
    run.exitCode = workbench.exitCode();
    run.out = QString::fromUtf8(workbench.readAllStandardOutput());
    run.err = QString::fromUtf8(workbench.readAllStandardError());
    return run;
}

bool writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(content) == content.size();
}

// Range of the strongest point of series 0 in a snapshot CSV (series,x,y).
double peakRange(const QString& csvPath)
{
    QFile file(csvPath);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return -1;
    file.readLine();
    double bestX = -1;
    double bestY = -1e30;
    while (!file.atEnd()) {
        const QList<QByteArray> fields = file.readLine().trimmed().split(',');
        if (fields.size() != 3 || fields[0] != "0")
            continue;
        const double y = fields[2].toDouble();
        if (y > bestY) {
            bestY = y;
            bestX = fields[1].toDouble();
        }
    }
    return bestX;
}

} // namespace

class TestHeadlessSession : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString m_bench;

    QStringList common(const QString& settings) const
    {
        return { "--headless", "--bench", m_bench, "--settings", m_dir.filePath(settings) };
    }

private slots:
    void initTestCase()
    {
        // One strong still reflector at 4.2 m on a board that answers at once.
        m_bench = m_dir.filePath("bench.json");
        QVERIFY(writeFile(m_bench, R"({ "boards": [ { "uuid": "hs-01", "shield": 512, "chip": "KMR7A",
            "pacing": "unpaced", "noise": 0.001, "seed": 7,
            "scene": { "targets": [ { "kind": "reflector", "range_m": 4.2, "speed_m_s": 0.0, "rcs_m2": 5.0 } ] } } ] })"));
    }

    void recordsExactlyTheFramesAskedForAndSnapshotsTheCharts()
    {
        const QString base = m_dir.filePath("session/rec");
        const QString snapshot = m_dir.filePath("session/snap");
        const Run run = runWorkbench(common("rec.json") << "--frames" << "12" << "--record" << base
                                                        << "--snapshot" << snapshot);
        QVERIFY2(run.exitCode == 0, qPrintable(run.err + run.out));
        QVERIFY(run.out.contains("Connecting Radar (hs-01)"));
        QVERIFY(run.out.contains("Summary: "));

        // Default configuration: one receive antenna, 64 chirps of 64 samples.
        const qint64 record = 4 + 4 * 64 * 64;
        QCOMPARE(QFileInfo(base + ".raw.bin").size(), 88 + 12 * record);
        QVERIFY(QFileInfo::exists(base + ".json"));

        const double range = peakRange(snapshot + "/range_spectrum.csv");
        QVERIFY2(qAbs(range - 4.2) <= 0.15, qPrintable(QString::number(range)));
        QVERIFY(QFileInfo(snapshot + "/range_doppler.png").size() > 0);

        const Run inspect = runWorkbench({ "--inspect", base + ".raw.bin" });
        QCOMPARE(inspect.exitCode, 0);
        QVERIFY(inspect.out.contains("Frames = 12"));
    }

    void playsARecordingBack()
    {
        const QString base = m_dir.filePath("play/rec");
        QCOMPARE(runWorkbench(common("play.json") << "--frames" << "7" << "--record" << base).exitCode, 0);

        const Run run = runWorkbench(common("play.json") << "--play" << base << "--snapshot" << m_dir.filePath("play/snap"));
        QVERIFY2(run.exitCode == 0, qPrintable(run.err + run.out));
        QVERIFY2(run.out.contains("Playing " + base) && run.out.contains("(7 frames)"), qPrintable(run.out));
        QVERIFY2(run.out.contains("Summary: 7 frames"), qPrintable(run.out));
        const double range = peakRange(m_dir.filePath("play/snap/range_spectrum.csv"));
        QVERIFY2(qAbs(range - 4.2) <= 0.15, qPrintable(QString::number(range)));
    }

    void failedSessionsSayWhy_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("reason");
        QTest::newRow("unknown board") << QStringList { "--device", "Radar #9" } << "no board is named \"Radar #9\"";
        QTest::newRow("missing recording") << QStringList { "--play", "/nonexistent/rec" } << "Session failed: ";
        QTest::newRow("unknown application") << QStringList { "--application", "Juggling" } << "unknown application";
    }

    void failedSessionsSayWhy()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, reason);
        const Run run = runWorkbench(common("fail.json") << "--frames" << "3" << arguments);
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
        const Run run = runWorkbench(common("config.json") << "--frames" << "3" << "--config" << config);
        QCOMPARE(run.exitCode, 4);
        QVERIFY2((run.out + run.err).contains("Value 0 not in expected range: [1 - 2000000000]"), qPrintable(run.out + run.err));
    }
};

QTEST_GUILESS_MAIN(TestHeadlessSession)
#include "tst_HeadlessSession.moc"
