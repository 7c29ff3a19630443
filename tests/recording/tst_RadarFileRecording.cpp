#include "FileSizeLimit.h"
#include "SignalLog.h"
#include "TestFrames.h"

#include "recording/IRadarRecordingSource.h"
#include "recording/RadarBinFile.h"
#include "recording/RadarFileRecording.h"
#include "recording/RadarRecorder.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <thread>

namespace {

class FakeSource : public IRadarRecordingSource
{
public:
    RadarRecordingHeader header = TestFrames::header(1, 7, 4, 8);
    QByteArray json = "{ \"device_config\": {} }";
    RadarRecordingHeader recordingHeader() const override { return header; }
    QByteArray configurationJson() const override { return json; }
};

// A binary writer that stops writing after a number of frames, as a disk
// that has just filled up does.
class FillingWriter : public RadarBinFile
{
public:
    explicit FillingWriter(int framesBeforeFull) : m_left(framesBeforeFull) {}
    bool writeFrame(quint32 samplesPerRow, const RadarFrameRecord& row) override
    {
        return m_left-- > 0 && RadarBinFile::writeFrame(samplesPerRow, row);
    }

private:
    int m_left;
};

class FillingDiskRecording : public RadarFileRecording
{
public:
    using RadarFileRecording::RadarFileRecording;
    int framesBeforeFull = 0;

protected:
    std::unique_ptr<IRadarFileWriter> createWriter() const override
    {
        return std::make_unique<FillingWriter>(framesBeforeFull);
    }
};

struct ReadBack
{
    bool ok = false;
    RadarRecordingHeader header;
    std::vector<RadarFrameRecord> rows;
};

ReadBack readRecording(const QString& path)
{
    ReadBack back;
    RadarBinFile reader;
    if (!reader.checkFile(path) || !reader.open(path, QIODevice::ReadOnly) || !reader.readHeader(back.header))
        return back;
    const qint64 frames = (QFileInfo(path).size() - 88) / RadarBinFile::recordSize(back.header.samplesPerFrame);
    back.ok = reader.readFrames(quint32(frames), back.header.samplesPerFrame, back.rows);
    back.rows.resize(size_t(frames));
    return back;
}

}

class TestRadarFileRecording : public QObject
{
    Q_OBJECT
private slots:
    void chainWritesEveryFrame_data()
    {
        QTest::addColumn<quint32>("txMask");
        QTest::addColumn<quint32>("rxMask");
        QTest::addColumn<int>("chirps");
        QTest::addColumn<int>("samples");
        QTest::addColumn<int>("padding");
        QTest::addColumn<int>("frames");
        QTest::addColumn<quint32>("limit"); // above `frames`: the owner stops the recorder
        QTest::addColumn<int>("dataFormat");
        QTest::addColumn<int>("floatsPerSample");

        const int real = RadarRecordingHeader::kDataReal;
        QTest::newRow("one antenna") << 1u << 1u << 1 << 16 << 0 << 40 << 40u << real << 1;
        QTest::newRow("three receivers") << 1u << 7u << 32 << 64 << 0 << 70 << 70u << real << 1;
        QTest::newRow("two by two, padded rows") << 3u << 3u << 8 << 10 << 6 << 33 << 33u << real << 1;
        // A pulsed-Doppler frame reaches the chain as one real row of
        // 2 x samples floats (I, Q, I, Q, ...) per channel.
        QTest::newRow("Doppler I/Q of the second channel")
            << 2u << 2u << 1 << 64 << 0 << 40 << 40u << int(RadarRecordingHeader::kDataComplexInterleaved) << 2;
        // Stopped with five frames buffered: they are written all the same.
        QTest::newRow("stopped") << 1u << 7u << 4 << 8 << 0 << 5 << 1000u << real << 1;
    }

    void chainWritesEveryFrame()
    {
        QFETCH(quint32, txMask);
        QFETCH(quint32, rxMask);
        QFETCH(int, chirps);
        QFETCH(int, samples);
        QFETCH(int, padding);
        QFETCH(int, frames);
        QFETCH(quint32, limit);
        QFETCH(int, dataFormat);
        QFETCH(int, floatsPerSample);

        FakeSource source;
        source.header = TestFrames::header(txMask, rxMask, quint32(chirps), quint32(samples));
        source.header.dataFormatEnum = dataFormat;
        source.header.samplesPerFrame = 0; // recomputed from the masks and the format
        const QString path = base(QStringLiteral("chain%1").arg(QTest::currentDataTag()).remove(' ').remove(',').remove('/'));
        const int antennas = qPopulationCount(txMask) * qPopulationCount(rxMask);
        samples *= floatsPerSample;

        RadarRecorder recorder(limit, 32);
        RadarFileRecording recording(&source, path + ".json", path + ".raw.bin");
        connect(&recorder, &RadarRecorder::bufferReady, &recording, &RadarFileRecording::collectRadarBuffer);
        connect(&recorder, &RadarRecorder::finished, &recording, &RadarFileRecording::stop);
        QSignalSpy collectingStopped(&recording, &RadarFileRecording::collectingStopped);
        QSignalSpy finished(&recording, &RadarFileRecording::finished);
        SignalLog errors(&recording, &RadarFileRecording::errorDetected);
        QVERIFY(recording.start());
        recorder.start();
        for (int i = 0; i < frames; ++i)
            recorder.record(TestFrames::make(antennas, chirps, samples, i, padding), i);
        if (quint32(frames) < limit) {
            QCOMPARE(finished.count(), 0);
            recorder.stop();
        }
        QCOMPARE(collectingStopped.count(), 1);
        QCOMPARE(finished.count(), 1);
        QVERIFY(!recording.isRunning());
        SignalLog::settle();
        QCOMPARE(errors.count(), 0);

        const ReadBack back = readRecording(path + ".raw.bin");
        QVERIFY(back.ok);
        QCOMPARE(back.header.samplesPerFrame, quint32(antennas * chirps * samples));
        QCOMPARE(int(back.rows.size()), frames);
        for (int i = 0; i < frames; ++i) {
            QCOMPARE(back.rows[size_t(i)].frameNumber, i);
            QVERIFY(TestFrames::bitIdentical(back.rows[size_t(i)].samples,
                                             TestFrames::expectedSamples(antennas, chirps, samples, i)));
        }
        QCOMPARE(TestFrames::readAll(path + ".json"), source.json);
    }

    void frameWithMissingAntennaIsSkipped()
    {
        FakeSource source;
        const QString path = base(QStringLiteral("missing"));
        RadarFileRecording recording(&source, path + ".json", path + ".raw.bin");
        SignalLog errors(&recording, &RadarFileRecording::errorDetected);
        QVERIFY(recording.start());
        auto buffer = std::make_shared<RadarBuffer>();
        buffer->emplace_back(0, TestFrames::make(3, 4, 8, 0));
        buffer->emplace_back(1, TestFrames::make(3, 4, 8, 1, 0, 2));
        buffer->emplace_back(2, SharedFrame());
        buffer->emplace_back(3, TestFrames::make(2, 4, 8, 3)); // one antenna short
        buffer->emplace_back(4, TestFrames::make(3, 4, 8, 4));
        recording.collectRadarBuffer(buffer);
        recording.stop();

        SignalLog::settle();
        QCOMPARE(errors.count(), 3);
        for (const QVariantList& error : errors.calls()) {
            QCOMPARE(error.at(0).toString(), QStringLiteral("Data status: Antenna data is empty"));
            QCOMPARE(error.at(1).toString(), QStringLiteral("Cannot write data to recording file!"));
        }
        const ReadBack back = readRecording(path + ".raw.bin");
        QVERIFY(back.ok);
        QCOMPARE(int(back.rows.size()), 2);
        QCOMPARE(back.rows[0].frameNumber, 0);
        QCOMPARE(back.rows[1].frameNumber, 4);
        QVERIFY(TestFrames::bitIdentical(back.rows[1].samples, TestFrames::expectedSamples(3, 4, 8, 4)));
    }

    void refusedStartLeavesNothingBehind_data()
    {
        QTest::addColumn<QString>("json");
        QTest::addColumn<QString>("bin");
        QTest::addColumn<quint32>("chirps");
        QTest::addColumn<QString>("reason");

        // "blocker" is a file, "taken.json" a directory, "old.raw.bin" an
        // earlier recording: none of them is ours to remove or to overwrite.
        QTest::newRow("no samples per frame") << "zero.json" << "zero.raw.bin" << 0u << "samples per frame";
        QTest::newRow("binary file below a file") << "blocker/rec.json" << "blocker/rec.raw.bin" << 4u << "blocker";
        QTest::newRow("configuration below a missing folder") << "missing/rec.json" << "rec.raw.bin" << 4u << "missing";
        QTest::newRow("configuration path is a folder") << "taken.json" << "taken.raw.bin" << 4u << "taken.json";
        QTest::newRow("binary file exists") << "old.json" << "old.raw.bin" << 4u << "old.raw.bin";
    }

    void refusedStartLeavesNothingBehind()
    {
        QFETCH(QString, json);
        QFETCH(QString, bin);
        QFETCH(quint32, chirps);
        QFETCH(QString, reason);
        QTemporaryDir dir;
        QFile blocker(dir.filePath(QStringLiteral("blocker")));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("taken.json")));
        QFile old(dir.filePath(QStringLiteral("old.raw.bin")));
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("an earlier recording");
        old.close();
        const QStringList before = QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);

        FakeSource source;
        source.header = TestFrames::header(1, 7, chirps, 8);
        RadarFileRecording recording(&source, dir.filePath(json), dir.filePath(bin));
        SignalLog errors(&recording, &RadarFileRecording::errorDetected);
        QSignalSpy finished(&recording, &RadarFileRecording::finished);
        QVERIFY(!recording.start());
        QVERIFY(!recording.isRunning());

        SignalLog::settle();
        QCOMPARE(errors.count(), 1);
        QCOMPARE(errors.at(0).at(0).toString(), QStringLiteral("Cannot write to recording file!"));
        QVERIFY2(errors.at(0).at(1).toString().contains(reason), qPrintable(errors.at(0).at(1).toString()));
        // Nothing created stays, nothing found is touched.
        QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), before);
        QVERIFY(old.open(QIODevice::ReadOnly));
        QCOMPARE(old.readAll(), QByteArray("an earlier recording"));
        QVERIFY(QFileInfo(dir.filePath(QStringLiteral("taken.json"))).isDir());
        recording.collectRadarBuffer(std::make_shared<RadarBuffer>(1, std::make_pair(0, TestFrames::make(3, 4, 8, 0))));
        recording.stop();
        QCOMPARE(finished.count(), 0);
    }

    void fullDiskEndsTheRecordingWithEveryWholeFrame_data()
    {
        QTest::addColumn<bool>("sizeLimit");
        QTest::addColumn<bool>("whileStopping");
        // A writer that refuses whole frames, and a file that stops growing in
        // the middle of the fourth record, as a filling disk does.
        QTest::newRow("writer refuses") << false << false;
        QTest::newRow("file size limit") << true << false;
        QTest::newRow("writer refuses while stopping") << false << true;
    }

    void fullDiskEndsTheRecordingWithEveryWholeFrame()
    {
        QFETCH(bool, sizeLimit);
        QFETCH(bool, whileStopping);
        FakeSource source;
        const QString path = base(QStringLiteral("full%1%2").arg(sizeLimit).arg(whileStopping));
        const qint64 record = RadarBinFile::recordSize(3 * 4 * 8);
        FillingDiskRecording recording(&source, path + ".json", path + ".raw.bin");
        recording.framesBeforeFull = sizeLimit ? 1000 : 3;
        SignalLog errors(&recording, &RadarFileRecording::errorDetected);
        QSignalSpy finished(&recording, &RadarFileRecording::finished);
        // The owner ends the recording on finished(): the user must have the
        // message by then.
        QStringList order;
        connect(&recording, &RadarFileRecording::errorDetected, this, [&order] { order << QStringLiteral("error"); });
        connect(&recording, &RadarFileRecording::finished, this, [&order] { order << QStringLiteral("finished"); });
        QVERIFY(recording.start());
        const auto bufferOf = [](int first, int count) {
            auto buffer = std::make_shared<RadarBuffer>();
            for (int i = first; i < first + count; ++i)
                buffer->emplace_back(i, TestFrames::make(3, 4, 8, i));
            return buffer;
        };
        {
            FileSizeLimit limit(sizeLimit ? rlim_t(88 + 3 * record + record / 2) : RLIM_INFINITY);
            QVERIFY(limit.isValid());
            recording.collectRadarBuffer(bufferOf(0, 6));
            if (!whileStopping)
                QTRY_VERIFY(errors.count() >= 1);
            limit.lift();
            // Space is back: the recording has ended all the same, and says so once.
            recording.collectRadarBuffer(bufferOf(6, 4));
            recording.stop();
        }
        SignalLog::settle();
        QCOMPARE(order, QStringList({ QStringLiteral("error"), QStringLiteral("finished") }));
        QCOMPARE(finished.count(), 1);
        QCOMPARE(errors.count(), 1);
        QCOMPARE(errors.at(0).at(0).toString(), QStringLiteral("Cannot write to recording file!"));
        const QString details = errors.at(0).at(1).toString();
        QVERIFY2(details.contains(QStringLiteral("3 frames")) && details.contains(path + ".raw.bin"), qPrintable(details));
        if (sizeLimit)
            QVERIFY2(details.contains(QStringLiteral("too large")), qPrintable(details));

        QCOMPARE(QFileInfo(path + ".raw.bin").size(), 88 + 3 * record);
        qint64 frames = -1;
        const QString problem = TestFrames::layoutProblem(path + ".raw.bin", frames);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        QCOMPARE(frames, 3);
        const ReadBack back = readRecording(path + ".raw.bin");
        QVERIFY(back.ok);
        QCOMPARE(int(back.rows.size()), 3);
        for (int i = 0; i < 3; ++i)
            QVERIFY(TestFrames::bitIdentical(back.rows[size_t(i)].samples, TestFrames::expectedSamples(3, 4, 8, i)));
    }

    void buffersArrivingWhileStoppingAreWrittenInOrderOrRefused_data()
    {
        QTest::addColumn<int>("framesBeforeStop");
        QTest::newRow("stop early") << 1;
        QTest::newRow("stop after a backlog") << 40;
    }

    void buffersArrivingWhileStoppingAreWrittenInOrderOrRefused()
    {
        QFETCH(int, framesBeforeStop);
        // The acquisition thread keeps handing over one-frame buffers while the
        // owner stops: every buffer handed over before stop() began is in the
        // file, and what follows is either whole and in order or not there.
        FakeSource source;
        const QString path = base(QStringLiteral("racing%1").arg(framesBeforeStop));
        RadarFileRecording recording(&source, path + ".json", path + ".raw.bin");
        QVERIFY(recording.start());
        // Keeps going a little after the owner starts stopping, so that some
        // hand-overs meet stop() half-way.
        constexpr int kAfterStop = 20;
        std::atomic<int> handedOver { 0 };
        std::atomic<bool> stopping { false };
        std::thread acquisition([&] {
            for (int i = 0, late = 0; late < kAfterStop; ++i) {
                if (stopping.load())
                    ++late;
                recording.collectRadarBuffer(
                    std::make_shared<RadarBuffer>(1, std::make_pair(i, TestFrames::make(3, 4, 8, i))));
                handedOver = i + 1;
            }
        });
        QTRY_VERIFY(handedOver.load() >= framesBeforeStop);
        const int beforeStop = handedOver.load();
        stopping = true;
        recording.stop();
        acquisition.join();

        const ReadBack back = readRecording(path + ".raw.bin");
        QVERIFY(back.ok);
        QVERIFY(int(back.rows.size()) >= beforeStop);
        QVERIFY(int(back.rows.size()) <= handedOver.load());
        for (size_t i = 0; i < back.rows.size(); ++i) {
            QCOMPARE(back.rows[i].frameNumber, int(i));
            QVERIFY(TestFrames::bitIdentical(back.rows[i].samples, TestFrames::expectedSamples(3, 4, 8, int(i))));
        }
    }

private:
    QString base(const QString& name) const { return m_dir.filePath(name); }
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(TestRadarFileRecording)
#include "tst_RadarFileRecording.moc"
