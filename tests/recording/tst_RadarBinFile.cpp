#include "TestFrames.h"

#include "recording/RadarBinFile.h"
#include "recording/WordSwap.h"

#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>

class TestRadarBinFile : public QObject
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

QTEST_GUILESS_MAIN(TestRadarBinFile)
#include "tst_RadarBinFile.moc"
