#include "TestFrames.h"

#include "recording/RadarBinFile.h"
#include "recording/RadarTxtFile.h"
#include "recording/WordSwap.h"

#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>

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

// The binary and the text recording files, and the word swap of the binary one.
class TestRecordingFiles : public QObject
{
    Q_OBJECT
private slots:
    void roundTripIsBitIdentical_data()
    {
        QTest::addColumn<quint32>("txMask");
        QTest::addColumn<quint32>("rxMask");
        QTest::addColumn<int>("chirps");
        QTest::addColumn<int>("samples");
        QTest::addColumn<int>("frames");

        QTest::newRow("one antenna, one sample") << 1u << 1u << 1 << 1 << 3;
        QTest::newRow("three receivers") << 1u << 7u << 16 << 64 << 10;
        QTest::newRow("two transmitters, two receivers") << 3u << 5u << 32 << 128 << 4;
        QTest::newRow("no frames") << 1u << 1u << 8 << 8 << 0;
    }

    void roundTripIsBitIdentical()
    {
        QFETCH(quint32, txMask);
        QFETCH(quint32, rxMask);
        QFETCH(int, chirps);
        QFETCH(int, samples);
        QFETCH(int, frames);

        const RadarRecordingHeader header = TestFrames::header(txMask, rxMask, quint32(chirps), quint32(samples));
        const int antennas = qPopulationCount(txMask) * qPopulationCount(rxMask);
        std::vector<RadarFrameRecord> rows;
        for (int f = 0; f < frames; ++f)
            rows.push_back({ f * 3 - 1, TestFrames::expectedSamples(antennas, chirps, samples, f) });
        const QString path = writeFile(header, rows);
        QVERIFY(!path.isEmpty());
        QCOMPARE(QFileInfo(path).size(), 88 + frames * RadarBinFile::recordSize(header.samplesPerFrame));

        RadarBinFile reader;
        QVERIFY(reader.checkFile(path));
        QVERIFY(reader.open(path, QIODevice::ReadOnly));
        RadarRecordingHeader read;
        QVERIFY(reader.readHeader(read));
        QCOMPARE(read.samplesPerFrame, header.samplesPerFrame);
        QCOMPARE(read.maskRxAntennas, rxMask);
        QCOMPARE(read.framePeriodSec, header.framePeriodSec);
        std::vector<RadarFrameRecord> back;
        QVERIFY(reader.readFrames(quint32(frames), read.samplesPerFrame, back));
        for (int f = 0; f < frames; ++f) {
            QCOMPARE(back[size_t(f)].frameNumber, f * 3 - 1);
            QVERIFY(TestFrames::bitIdentical(back[size_t(f)].samples,
                                             TestFrames::expectedSamples(antennas, chirps, samples, f)));
        }
        // Nothing after the last frame.
        std::vector<RadarFrameRecord> more;
        QVERIFY(!reader.readFrames(1, read.samplesPerFrame, more));
    }

    void headerBytesAreBigEndianInTableOrder()
    {
        const QString path = writeFile(TestFrames::header(1, 7, 64, 128), {});
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray expected = QByteArray::fromHex(
            "564E5242" // "VNRB"
            "3F800000" // version 1.0
            "00000058" // header size 88
            "00000001" "00000003" // Tx, Rx antennas
            "00000001" "00000007" // Tx, Rx masks
            "00000001" // interleaved
            "00000001" // FMCW
            "00000000" // up-chirp
            "4C5D40A0" // 58 000 000 kHz
            "4C723BB8" // 63 500 000 kHz
            "44FA0000" // 2 000 kHz
            "0000000C" // 12 bits
            "00000001" // normalised
            "00000000" // real
            "00000040" "00000080" // 64 chirps of 128 samples
            "00006000" // 3 x 64 x 128 samples per frame
            "388637BD" // 64 us
            "399D4952" // 300 us
            "3DCCCCCD" // 0.1 s
        );
        QCOMPARE(file.readAll(), expected);
    }

    void checkFileRejectsForeignFiles_data()
    {
        QTest::addColumn<QByteArray>("start");
        QTest::addColumn<bool>("accepted");

        QTest::newRow("recording") << QByteArray::fromHex("564E52423F800000") << true;
        QTest::newRow("little-endian magic") << QByteArray::fromHex("424E52563F800000") << false;
        QTest::newRow("text magic") << QByteArray::fromHex("564E52543F800000") << false;
        QTest::newRow("version 2.0") << QByteArray::fromHex("564E524240000000") << false;
        QTest::newRow("version a bit above 1.0") << QByteArray::fromHex("564E52423F800001") << false;
        QTest::newRow("no version") << QByteArray::fromHex("564E5242") << false;
        QTest::newRow("empty") << QByteArray() << false;
    }

    void checkFileRejectsForeignFiles()
    {
        QFETCH(QByteArray, start);
        QFETCH(bool, accepted);
        const QString path = m_dir.filePath(QStringLiteral("check.raw.bin"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        // A whole header's worth of bytes whenever the first two fields exist.
        file.write(start.size() >= 8 ? start + QByteArray(80, '\0') : start);
        file.close();

        RadarBinFile reader;
        QCOMPARE(reader.checkFile(path), accepted);
        // The check leaves nothing open behind it.
        RadarRecordingHeader header;
        QVERIFY(!reader.readHeader(header));
    }

    // Frames are read after the header without reading it; a record cut
    // short fails.
    void readFramesStartsAfterHeaderAndRefusesATruncatedRecord()
    {
        const std::vector<float> first { 1.5f, -2.0f, 0.25f, 8.0f, 0.0f, -0.0f };
        const QString path = writeFile(TestFrames::header(1, 1, 2, 3), { { 42, first }, { 43, { 5, 6, 7, 8, 9, 10 } } });
        QFile file(path);
        QVERIFY(file.resize(file.size() - 1));

        RadarBinFile reader;
        QVERIFY(reader.checkFile(path));
        QVERIFY(reader.open(path, QIODevice::ReadOnly));
        std::vector<RadarFrameRecord> rows;
        QVERIFY(reader.readFrames(1, 6, rows));
        QCOMPARE(rows[0].frameNumber, 42);
        QVERIFY(TestFrames::bitIdentical(rows[0].samples, first));
        QVERIFY(!reader.readFrames(1, 6, rows));
    }

    void shortHeaderFailsButCopiesWhatWasRead()
    {
        const QString path = writeFile(TestFrames::header(1, 7, 64, 128), {});
        QFile file(path);
        QVERIFY(file.resize(30)); // up to the middle of the interleave field
        RadarBinFile reader;
        QVERIFY(reader.open(path, QIODevice::ReadOnly));
        RadarRecordingHeader read;
        read.maskRxAntennas = 99;
        QVERIFY(!reader.readHeader(read));
        QCOMPARE(read.magic, RadarRecordingHeader::kBinaryMagic);
        QCOMPARE(read.maskRxAntennas, 7u);
        QCOMPARE(read.samplesPerFrame, 0u);
    }

    void writesFailWithoutOpenFile()
    {
        RadarBinFile file;
        QVERIFY(!file.writeHeader(RadarRecordingHeader()));
        QVERIFY(!file.writeFrame(1, RadarFrameRecord { 0, { 1.0f } }));
        const QString path = m_dir.filePath(QStringLiteral("readonly.raw.bin"));
        QVERIFY(file.open(path, QIODevice::WriteOnly));
        QVERIFY(file.writeFrames(0, 4, {}));
        QVERIFY(file.close());
        QVERIFY(file.open(path, QIODevice::ReadOnly));
        QVERIFY(!file.writeFrames(0, 4, {}));
    }

    void wordSwapReversesEveryWord_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("offset");
        // Counts around the four-word vector steps; odd byte offsets for
        // unaligned buffers.
        for (int count : { 0, 1, 3, 4, 5, 7, 8, 9, 67 }) {
            for (int offset : { 0, 1 })
                QTest::addRow("%d words at +%d", count, offset) << count << offset;
        }
    }

    void wordSwapReversesEveryWord()
    {
        QFETCH(int, count);
        QFETCH(int, offset);
        QByteArray source(offset + count * 4, Qt::Uninitialized);
        for (int i = 0; i < source.size(); ++i)
            source[i] = char(i * 37 + 11);
        QByteArray expected = source.mid(offset);
        for (int word = 0; word < count; ++word)
            std::reverse(expected.begin() + word * 4, expected.begin() + word * 4 + 4);

        QByteArray copied(offset + count * 4, '\0');
        WordSwap::copyToBigEndian(copied.data() + offset, source.constData() + offset, size_t(count));
        QCOMPARE(copied.mid(offset), expected);

        QByteArray inPlace = source;
        WordSwap::toFromBigEndian(inPlace.data() + offset, size_t(count));
        QCOMPARE(inPlace.mid(offset), expected);
        QCOMPARE(inPlace.left(offset), source.left(offset));
    }

    void textReaderRules_data()
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

    void textReaderRules()
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

    void textReaderReadsFramesAfterHeader()
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
    // `rows` (host byte order) behind `header` in a new file.
    QString writeFile(const RadarRecordingHeader& header, const std::vector<RadarFrameRecord>& rows)
    {
        static int serial = 0;
        const QString path = m_dir.filePath(QStringLiteral("file%1.raw.bin").arg(++serial));
        return TestFrames::writeRecording(path, header, rows) ? path : QString();
    }

    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(TestRecordingFiles)
#include "tst_RecordingFiles.moc"
