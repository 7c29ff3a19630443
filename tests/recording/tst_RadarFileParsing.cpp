#include "FileSizeLimit.h"
#include "SignalLog.h"
#include "TestFrames.h"

#include "recording/RadarBinFile.h"
#include "recording/RadarFileParsing.h"

#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

Q_DECLARE_METATYPE(RadarRecordingHeader)

class TestRadarFileParsing : public QObject
{
    Q_OBJECT
private slots:
    void progressRunsFromZeroToHundred()
    {
        // Enough frames for several batches.
        const QString bin = m_dir.filePath(QStringLiteral("long.raw.bin"));
        const QString txt = m_dir.filePath(QStringLiteral("long.raw.txt"));
        QVERIFY(TestFrames::writeRecording(bin, TestFrames::header(1, 1, 64, 256), TestFrames::numberedRows(100, 1, 64, 256)));

        RadarFileParsing parsing;
        // A conversion stopped at once ends there and allows another.
        QVERIFY(parsing.start(bin, txt));
        parsing.stop();
        QVERIFY(!parsing.isRunning());

        SignalLog progress(&parsing, &RadarFileParsing::convertingToTxt);
        SignalLog finished(&parsing, &RadarFileParsing::finished);
        SignalLog errors(&parsing, &RadarFileParsing::errorDetected);
        QVERIFY(parsing.start(bin, txt));
        QVERIFY(!parsing.start(bin, txt)); // one conversion at a time
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 30000);
        QCOMPARE(errors.count(), 0);
        QVERIFY(progress.count() >= 3);
        QCOMPARE(progress.first().at(0).toInt(), 0);
        QCOMPARE(progress.last().at(0).toInt(), 100);
        for (int i = 1; i < progress.count(); ++i)
            QVERIFY(progress.at(i).at(0).toInt() > progress.at(i - 1).at(0).toInt());
        const QByteArray text = TestFrames::readAll(txt);
        QCOMPARE(text.count("# Frame_Number = "), 100);
        QVERIFY(text.contains("\r\n# Frame_Number = 99\r\n"));
    }

    void textCopyKeepsTheLayoutAndEveryValue_data()
    {
        QTest::addColumn<RadarRecordingHeader>("header");
        QTest::addColumn<int>("floatsPerFrame");
        QTest::addColumn<QByteArray>("layoutLines");

        QTest::newRow("FMCW, real chirps") << TestFrames::header(1, 3, 4, 8) << 64
                                           << QByteArray("# Modulation_Type_Enum = 1\r\n# Chirp_Shape_Enum = 0");
        QTest::newRow("Doppler, interleaved I/Q") << TestFrames::dopplerHeader(32) << 64
                                                  << QByteArray("# Modulation_Type_Enum = 0\r\n# Chirp_Shape_Enum = 0");
    }

    void textCopyKeepsTheLayoutAndEveryValue()
    {
        QFETCH(RadarRecordingHeader, header);
        QFETCH(int, floatsPerFrame);
        QFETCH(QByteArray, layoutLines);
        const QString bin = m_dir.filePath(QStringLiteral("layout%1.raw.bin").arg(QTest::currentDataTag()[0]));
        const QString txt = m_dir.filePath(QStringLiteral("layout%1.raw.txt").arg(QTest::currentDataTag()[0]));
        const std::vector<RadarFrameRecord> rows = TestFrames::numberedRows(3, 1, 1, floatsPerFrame);
        QVERIFY(TestFrames::writeRecording(bin, header, rows));

        RadarFileParsing parsing;
        SignalLog finished(&parsing, &RadarFileParsing::finished);
        SignalLog errors(&parsing, &RadarFileParsing::errorDetected);
        QVERIFY(parsing.start(bin, txt));
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 10000);
        QCOMPARE(errors.count(), 0);

        // Back from the text: the header's layout and each frame's values.
        const QByteArray text = TestFrames::readAll(txt);
        const QList<QByteArray> lines = text.split('\n');
        QVERIFY(text.contains(layoutLines));
        QVERIFY(text.contains(QByteArray("# Data_Format_Enum = ") + QByteArray::number(header.dataFormatEnum) + "\r\n"));
        QVERIFY(text.contains(QByteArray("# Samples_per_Frame = ") + QByteArray::number(floatsPerFrame) + "\r\n"));
        int line = 0;
        for (const RadarFrameRecord& row : rows) {
            while (line < lines.size() && !lines.at(line).startsWith("# Frame_Number = "))
                ++line;
            QCOMPARE(lines.value(line).trimmed(), QByteArray("# Frame_Number = ") + QByteArray::number(row.frameNumber));
            for (float value : row.samples) {
                const double back = lines.value(++line).trimmed().toDouble();
                QVERIFY2(std::abs(back - double(value)) <= 5e-7 + std::abs(double(value)) * 1e-7,
                         qPrintable(QStringLiteral("%1 came back as %2").arg(double(value)).arg(back)));
            }
        }
    }

    void failures_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("destination");
        QTest::addColumn<QString>("message");

        QTest::newRow("no source") << "absent.raw.bin" << "out.raw.txt" << "Cannot parse from source file!";
        QTest::newRow("source is not a recording") << "foreign.raw.bin" << "out.raw.txt" << "Cannot parse from source file!";
        QTest::newRow("destination below a file") << "good.raw.bin" << "foreign.raw.bin/out.raw.txt"
                                                  << "Cannot parse to destination file!";
    }

    void failures()
    {
        QFETCH(QString, source);
        QFETCH(QString, destination);
        QFETCH(QString, message);
        QVERIFY(TestFrames::writeSmallRecording(m_dir.filePath(QStringLiteral("good.raw.bin"))));
        QFile foreign(m_dir.filePath(QStringLiteral("foreign.raw.bin")));
        QVERIFY(foreign.open(QIODevice::WriteOnly | QIODevice::Truncate));
        foreign.write(QByteArray(200, 'x'));
        foreign.close();

        RadarFileParsing parsing;
        SignalLog finished(&parsing, &RadarFileParsing::finished);
        SignalLog errors(&parsing, &RadarFileParsing::errorDetected);
        QVERIFY(parsing.start(m_dir.filePath(source), m_dir.filePath(destination)));
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 10000);
        QCOMPARE(errors.count(), 1);
        QCOMPARE(errors.at(0).at(0).toString(), message);
    }

    void truncatedRecordingConvertsWholeFramesAndSaysSo()
    {
        const QString bin = m_dir.filePath(QStringLiteral("cut.raw.bin"));
        const QString txt = m_dir.filePath(QStringLiteral("cut.raw.txt"));
        QVERIFY(TestFrames::writeSmallRecording(bin));
        QFile file(bin);
        QVERIFY(file.resize(file.size() - 3));

        RadarFileParsing parsing;
        SignalLog finished(&parsing, &RadarFileParsing::finished);
        SignalLog errors(&parsing, &RadarFileParsing::errorDetected);
        QVERIFY(parsing.start(bin, txt));
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 10000);
        QCOMPARE(errors.count(), 1);
        QCOMPARE(errors.at(0).at(0).toString(), QStringLiteral("Cannot parse file!"));
        const QByteArray text = TestFrames::readAll(txt);
        QCOMPARE(text.count("# Frame_Number = "), 2);
        QVERIFY(text.endsWith("# Frame_Number = 7\r\n0.125000\r\n0.000001\r\n100.500000\r\n3.141593\r\n"));
    }

    void incompleteConversionReportsAndKeepsNoCopy_data()
    {
        QTest::addColumn<bool>("stopped");
        QTest::newRow("stopped by its owner") << true;
        QTest::newRow("text file cannot grow") << false;
    }

    void incompleteConversionReportsAndKeepsNoCopy()
    {
        QFETCH(bool, stopped);
        // Far more text than one batch makes, so the owner's stop() on the
        // first progress report always lands in the middle.
        constexpr int kFrames = 400;
        const QString bin = m_dir.filePath(QStringLiteral("part%1.raw.bin").arg(stopped));
        const QString txt = m_dir.filePath(QStringLiteral("part%1.raw.txt").arg(stopped));
        QVERIFY(TestFrames::writeRecording(bin, TestFrames::header(1, 1, 16, 256),
                                           TestFrames::numberedRows(kFrames, 1, 16, 256)));

        RadarFileParsing parsing;
        SignalLog finished(&parsing, &RadarFileParsing::finished);
        SignalLog errors(&parsing, &RadarFileParsing::errorDetected);
        // The owner stops as soon as it hears of the first batch.
        if (stopped)
            connect(&parsing, &RadarFileParsing::convertingToTxt, this, [&parsing] { parsing.stop(); });
        {
            // About a quarter of the text fits.
            FileSizeLimit limit(stopped ? RLIM_INFINITY : rlim_t(kFrames * 4096 * 3));
            QVERIFY(limit.isValid());
            QVERIFY(parsing.start(bin, txt));
            QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 30000);
        }
        QVERIFY(!parsing.isRunning());
        QCOMPARE(errors.count(), 1);
        QCOMPARE(errors.at(0).at(0).toString(), QStringLiteral("Cannot parse file!"));
        const QString details = errors.at(0).at(1).toString();
        QVERIFY2(details.contains(QStringLiteral(" of %1 frames").arg(kFrames)), qPrintable(details));
        // No text that a reader could take for the whole recording.
        QVERIFY(!QFileInfo::exists(txt));
        QCOMPARE(QDir(m_dir.path()).entryList({ QStringLiteral("part%1*").arg(stopped) }),
                 QStringList { QFileInfo(bin).fileName() });
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(TestRadarFileParsing)
#include "tst_RadarFileParsing.moc"
