// The headless session on a pulsed-Doppler board as a user runs it: a
// separate process on a simulated bench, judged by its exit code, its output,
// the chart files of its snapshot and the recording it leaves.
#include "WorkbenchRun.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

namespace {

constexpr double kWavelengthM = 299792458.0 / 24.125e9;

} // namespace

class TestZP7Session : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    QStringList session(const QString& board) const
    {
        return { "--headless", "--bench", m_dir.filePath("bench.json"), "--settings", m_dir.filePath("settings.json"),
                 "--device", board };
    }

private slots:
    void initTestCase()
    {
        // One target per board, far enough from its turning points that it
        // keeps its direction for the whole session. The boards run in real
        // time: an unpaced board would stream on while the snapshot waits
        // for its chart refresh, and the target would turn round meanwhile.
        QVERIFY(writeFile(m_dir.filePath("bench.json"), R"({ "boards": [
            { "uuid": "zp7-closing", "shield": 768, "chip": "ZP7", "noise": 0.0005, "seed": 5,
              "scene": { "targets": [ { "range_m": 8.0, "speed_m_s": -1.5, "rcs_m2": 5.0 } ] } },
            { "uuid": "zp7-leaving", "shield": 768, "chip": "ZP7", "noise": 0.0005, "seed": 6,
              "scene": { "targets": [ { "range_m": 3.0, "speed_m_s": 1.0, "rcs_m2": 5.0 } ] } },
            { "uuid": "zp7-failing", "shield": 768, "chip": "ZP7", "pacing": "unpaced",
              "faults": [ { "at_frame": 2, "status": "0x1100e", "count": 1 } ] } ] })"));
        QVERIFY(writeFile(m_dir.filePath("broken.json"), "{ \"device_config\": "));
    }

    void snapshotShowsTheTargetsRangeRate_data()
    {
        QTest::addColumn<QString>("board");
        QTest::addColumn<double>("speed");
        QTest::addColumn<QString>("direction");
        QTest::newRow("approaching") << "zp7-closing" << -1.5 << "approaching";
        QTest::newRow("receding") << "zp7-leaving" << 1.0 << "receding";
    }

    // The strongest moving echo sits at 2|v|/lambda on the side of its
    // direction, and the spectrum file names each bin's range rate.
    void snapshotShowsTheTargetsRangeRate()
    {
        QFETCH(QString, board);
        QFETCH(double, speed);
        QFETCH(QString, direction);
        const QString snap = m_dir.filePath(board + "-snap");
        const WorkbenchRun run = runWorkbench(session(board) << "--frames" << "6" << "--snapshot" << snap);
        QVERIFY2(run.exitCode == 0, qPrintable(run.err + run.out));

        const QRegularExpression peakLine(
            R"(Doppler peak: (-?[0-9.]+) Hz, range rate (-?[0-9.]+) m/s \((\w+)\))");
        const QRegularExpressionMatch peak = peakLine.match(run.out);
        QVERIFY2(peak.hasMatch(), qPrintable(run.out));
        const double frequency = peak.captured(1).toDouble();
        const double expected = -2.0 * speed / kWavelengthM;
        // One bin of the default frame (128 pulses at 2 kHz) is 15.6 Hz.
        QVERIFY2(std::abs(frequency - expected) < 16.0, qPrintable(run.out));
        QVERIFY2(std::abs(peak.captured(2).toDouble() - speed) < 0.1, qPrintable(run.out));
        QCOMPARE(peak.captured(3), direction);

        const QStringList spectrum = readLines(snap + "/doppler_spectrum.csv");
        QVERIFY(spectrum.size() > 64);
        QCOMPARE(spectrum.first(), QStringLiteral("series,frequency_hz,range_rate_mps,magnitude_db"));
        for (const QString& row : spectrum.mid(1)) {
            const QStringList cells = row.split(',');
            QCOMPARE(cells.size(), 4);
            const double rate = -cells.at(1).toDouble() * kWavelengthM / 2.0;
            QVERIFY2(std::abs(cells.at(2).toDouble() - rate) < 1e-3, qPrintable(row));
        }
        // I and Q of the selected channel.
        QSet<QString> series;
        for (const QString& row : readLines(snap + "/time_domain.csv").mid(1))
            series.insert(row.section(',', 0, 0));
        QCOMPARE(series.size(), 2);
    }

    // What the session records is what it plays back, frame for frame.
    void recordingPlaysBackEveryFrame()
    {
        const QString base = m_dir.filePath("closing");
        const WorkbenchRun record = runWorkbench(session("zp7-closing") << "--frames" << "7" << "--record" << base
                                                                        << "--txt");
        QVERIFY2(record.exitCode == 0, qPrintable(record.err + record.out));
        QVERIFY2(record.out.contains("recorded 7 (in the file)"), qPrintable(record.out));
        QVERIFY(QFileInfo(base + ".raw.txt").size() > 0);

        const WorkbenchRun play = runWorkbench({ "--headless", "--settings", m_dir.filePath("settings.json"), "--play",
                                                 base, "--snapshot", m_dir.filePath("played") });
        QVERIFY2(play.exitCode == 0, qPrintable(play.err + play.out));
        QVERIFY2(play.out.contains("(7 frames)"), qPrintable(play.out));
        QVERIFY2(play.out.contains("Summary: frames acquired 7"), qPrintable(play.out));
        QVERIFY2(play.out.contains("(approaching)"), qPrintable(play.out));
    }

    void failuresSayWhy_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("message");
        QTest::newRow("malformed configuration")
            << (session("zp7-leaving") << "--config" << m_dir.filePath("broken.json")) << "broken.json";
        QTest::newRow("FMCW application") << (session("zp7-leaving") << "--application" << "PresenceSensing")
                                          << "--application applies to FMCW boards";
        QTest::newRow("frame fetch fails") << (session("zp7-failing") << "--frames" << "10")
                                           << "Fetching next frame failed";
    }

    void failuresSayWhy()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);
        const WorkbenchRun run = runWorkbench(arguments);
        QVERIFY2(run.exitCode != 0 && run.exitCode != -1, qPrintable(run.err + run.out));
        QVERIFY2((run.out + run.err).contains(message), qPrintable(run.err + run.out));
    }
};

QTEST_GUILESS_MAIN(TestZP7Session)
#include "tst_ZP7Session.moc"
