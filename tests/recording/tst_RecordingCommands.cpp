#include "TestFrames.h"

#include "RecordingCommands.h"
#include "recording/RadarBinFile.h"

#include <QTemporaryDir>
#include <QtTest>

class TestRecordingCommands : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        m_base = m_dir.filePath(QStringLiteral("small"));
        QVERIFY(TestFrames::writeSmallRecording(m_base + ".raw.bin"));
        QVERIFY(QFile::copy(m_base + ".raw.bin", m_dir.filePath(QStringLiteral("cut.raw.bin"))));
        QFile cut(m_dir.filePath(QStringLiteral("cut.raw.bin")));
        QVERIFY(cut.resize(cut.size() - 6));
        QFile foreign(m_dir.filePath(QStringLiteral("foreign.raw.bin")));
        QVERIFY(foreign.open(QIODevice::WriteOnly));
        foreign.write(QByteArray(100, 'x'));
        QVERIFY(TestFrames::writeRecording(m_dir.filePath(QStringLiteral("doppler.raw.bin")), TestFrames::dopplerHeader(4),
                                           TestFrames::numberedRows(2, 1, 1, 8)));
    }

    void inspect_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QStringList>("outLines");
        QTest::addColumn<QString>("errText");

        QTest::newRow("whole recording") << "small.raw.bin" << 0
                                         << QStringList { "Magic = VNRB", "Version = 1.000000", "Header_Size = 88",
                                                          "Mask_Rx_Antennas = 1", "Samples_per_Frame = 4",
                                                          "Frame_Period_sec = 0.100000", "Frames = 3",
                                                          "Layout = FMCW, real samples, 2 chirps per frame" }
                                         << QString();
        QTest::newRow("pulsed Doppler") << "doppler" << 0
                                        << QStringList { "Modulation_Type_Enum = 0", "Data_Format_Enum = 2",
                                                         "Chirps_per_Frame = 1", "Samples_per_Frame = 8",
                                                         "Layout = Doppler, complex interleaved I/Q, one chirp per frame",
                                                         "IQ_Samples_per_Channel = 4", "Channels = 1", "Frames = 2" }
                                        << QString();
        QTest::newRow("truncated") << "cut.raw.bin" << 0
                                   << QStringList { "Frames = 2", "Last frame truncated: 14 of 20 bytes present" }
                                   << QString();
        QTest::newRow("foreign") << "foreign.raw.bin" << 1 << QStringList() << "not a binary recording";
        QTest::newRow("absent") << "absent.raw.bin" << 1 << QStringList() << "absent.raw.bin is missing (no such file)";
        QTest::newRow("by its base") << "small" << 0 << QStringList { "Frames = 3" } << QString();
        QTest::newRow("by its configuration") << "small.json" << 0 << QStringList { "Frames = 3" } << QString();
    }

    void inspect()
    {
        QFETCH(QString, file);
        QFETCH(int, exitCode);
        QFETCH(QStringList, outLines);
        QFETCH(QString, errText);

        QString outText, errorText;
        QTextStream out(&outText), err(&errorText);
        QCOMPARE(inspectRecording(m_dir.filePath(file), out, err), exitCode);
        const QStringList lines = outText.split('\n');
        for (const QString& line : outLines)
            QVERIFY2(lines.contains(line), qPrintable(line));
        QCOMPARE(outText.contains(QStringLiteral("Last frame truncated")), file == QStringLiteral("cut.raw.bin"));
        QVERIFY(errorText.contains(errText));
        // Only a pulsed-Doppler recording is described as I/Q channels.
        QCOMPARE(outText.contains(QStringLiteral("Channels = ")), file == QStringLiteral("doppler"));
    }

    void convertWritesTheTextBesideTheRecording()
    {
        QString outText, errorText;
        QTextStream out(&outText), err(&errorText);
        // Named by its binary file, as --inspect takes it.
        QCOMPARE(convertRecording(m_base + ".raw.bin", out, err), 0);
        QVERIFY(outText.contains(QStringLiteral("] 100%")));
        QCOMPARE(errorText, QString());
        QFile written(m_base + ".raw.txt"), expected(QStringLiteral(RECORDING_TEST_DATA "/small.raw.txt"));
        QVERIFY(written.open(QIODevice::ReadOnly) && expected.open(QIODevice::ReadOnly));
        QCOMPARE(written.readAll(), expected.readAll());

        QCOMPARE(convertRecording(m_dir.filePath(QStringLiteral("foreign")), out, err), 1);
        QVERIFY(errorText.contains(QStringLiteral("Cannot parse from source file!")));
    }

private:
    QString m_base;
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(TestRecordingCommands)
#include "tst_RecordingCommands.moc"
