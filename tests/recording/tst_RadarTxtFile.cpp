#include "TestFrames.h"

#include "recording/RadarTxtFile.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

// A header the reader accepts: one item per line.
QList<QByteArray> conventionalHeader()
{
    return {
        "VNRT",
        "### Header must not be changed. Following Enum definitions used for parameters.",
        "## Modulation_Type_Enum_Def = {DOPPLER = 0, FMCW = 1}",
        "## Data_Format_Enum_Def = {DATA_REAL = 0, DATA_COMPLEX = 1, DATA_COMPLEX_INTERLEAVED = 2}",
        "## Chirp_Shape_Enum_Def = {UP_CHIRP = 0, DOWN_CHIRP = 1, UP_DOWN_CHIRP = 2, DOWN_UP_CHIRP = 3}",
        "## ADC_Samples_Normalized = [0 , 1.0]",
        "## ADC_Samples_NonNormalized = [0, 2^ADC_Res_Bits - 1]",
        "# Version = 1.000000",
        "# Num_Tx_Antennas = 1",
        "# Num_Rx_Antennas = 3",
        "# Mask_Tx_Antennas = 1",
        "# Mask_Rx_Antennas = 5",
        "# Are_Rx_Antennas_Interleaved = 1",
        "# Modulation_Type_Enum = 1",
        "# Chirp_Shape_Enum = -2",
        "# Lower_RF_Frequency_kHz = 58000000.000000",
        "# Upper_RF_Frequency_kHz = 63500000.000000",
        "# Sampling_Frequency_kHz = 2000.000000",
        "# ADC_Resolution_Bits = 12",
        "# Are_ADC_Samples_Normalized = 1",
        "# Data_Format_Enum = 0",
        "# Chirps_per_Frame = 2",
        "# Samples_per_Chirp = 1",
        "# Samples_per_Frame = 4",
        "# Chirp_Time_sec = 0.000064",
        "# Pulse_Repetition_Time_sec = 0.000300",
        "# Frame_Period_sec = 0.250000",
    };
}

}

class TestRadarTxtFile : public QObject
{
    Q_OBJECT
private slots:
    void readerRules_data()
    {
        QTest::addColumn<int>("line");
        QTest::addColumn<QByteArray>("replacement");
        QTest::addColumn<bool>("accepted");

        const QByteArray longTail(128 - int(qstrlen("# Num_Rx_Antennas = ")), '0');
        QTest::newRow("as written") << -1 << QByteArray() << true;
        QTest::newRow("more after the magic") << 0 << QByteArray("VNRT and more") << true;
        QTest::newRow("other magic") << 0 << QByteArray("VNRB") << false;
        QTest::newRow("altered comment") << 5 << QByteArray("## ADC_Samples_Normalized = [0, 1.0]") << false;
        QTest::newRow("key line of 128 characters") << 9 << QByteArray("# Num_Rx_Antennas = ") + longTail << true;
        QTest::newRow("key line of 129 characters") << 9 << QByteArray("# Num_Rx_Antennas = ") + longTail + "0" << false;
        QTest::newRow("value starts with a blank") << 9 << QByteArray("# Num_Rx_Antennas =  3") << false;
        QTest::newRow("float starts with a blank") << 7 << QByteArray("# Version =  1.000000") << false;
        QTest::newRow("empty value") << 12 << QByteArray("# Are_Rx_Antennas_Interleaved = ") << false;
        QTest::newRow("not a number") << 21 << QByteArray("# Chirps_per_Frame = two") << false;
        QTest::newRow("wrong key") << 8 << QByteArray("# Num_RX_Antennas = 1") << false;
        QTest::newRow("missing last key") << 26 << QByteArray() << false;
    }

    void readerRules()
    {
        QFETCH(int, line);
        QFETCH(QByteArray, replacement);
        QFETCH(bool, accepted);

        QList<QByteArray> lines = conventionalHeader();
        if (line == lines.size() - 1 && replacement.isEmpty())
            lines.removeLast();
        else if (line >= 0)
            lines[line] = replacement;
        const QString path = m_dir.filePath(QStringLiteral("rules.raw.txt"));
        QFile out(path);
        QVERIFY(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write(lines.join("\r\n") + "\r\n");
        out.close();

        RadarTxtFile file;
        QVERIFY(file.open(path, QIODevice::ReadOnly));
        RadarRecordingHeader header;
        QCOMPARE(file.readHeader(header), accepted);
        QCOMPARE(file.checkFile(path), accepted);
        if (accepted && line < 0) {
            QCOMPARE(header.maskRxAntennas, 5u);
            QCOMPARE(header.chirpShapeEnum, -2);
            QCOMPARE(header.framePeriodSec, 0.25f);
            QCOMPARE(header.samplesPerFrame, 4u);
        }
    }

    void readerReadsFramesAfterHeader()
    {
        const QString path = m_dir.filePath(QStringLiteral("frames.raw.txt"));
        QFile out(path);
        QVERIFY(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write(conventionalHeader().join("\n") + "\n\n# Frame_Number = 3\n0.5\n-1.25\n# Frame_Number = 4\n2\n0.000001\n");
        out.close();

        RadarTxtFile file;
        QVERIFY(file.open(path, QIODevice::ReadOnly));
        RadarRecordingHeader header;
        QVERIFY(file.readHeader(header));
        std::vector<RadarFrameRecord> rows;
        QVERIFY(file.readFrames(2, 2, rows));
        QCOMPARE(rows[0].frameNumber, 3);
        QVERIFY(TestFrames::bitIdentical(rows[0].samples, { 0.5f, -1.25f }));
        QCOMPARE(rows[1].frameNumber, 4);
        QVERIFY(TestFrames::bitIdentical(rows[1].samples, { 2.0f, 0.000001f }));
        QVERIFY(!file.readFrames(1, 2, rows));
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(TestRadarTxtFile)
#include "tst_RadarTxtFile.moc"
