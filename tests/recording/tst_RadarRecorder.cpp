#include "TestFrames.h"

#include "recording/RadarPresenceSensingRecorder.h"
#include "recording/RadarRecorder.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <future>
#include <mutex>
#include <thread>

// The frame recorder that feeds the file recording, and the presence
// results recorder.
class TestRadarRecorder : public QObject
{
    Q_OBJECT
private slots:
    void buffersAndFinish_data()
    {
        QTest::addColumn<quint32>("limit");
        QTest::addColumn<int>("capacity");
        QTest::addColumn<int>("frames");
        QTest::addColumn<bool>("stopAfterwards");
        QTest::addColumn<QList<int>>("bufferSizes");

        QTest::newRow("limit 70, capacity 32") << 70u << 32 << 70 << false << QList<int> { 32, 32, 6 };
        QTest::newRow("frames beyond the limit are dropped") << 70u << 32 << 100 << false << QList<int> { 32, 32, 6 };
        QTest::newRow("limit on a buffer boundary") << 64u << 32 << 64 << false << QList<int> { 32, 32 };
        QTest::newRow("stop with 5 buffered") << 100u << 32 << 5 << true << QList<int> { 5 };
        QTest::newRow("stop after a full buffer") << 100u << 4 << 9 << true << QList<int> { 4, 4, 1 };
        QTest::newRow("stop on a limit reached") << 3u << 4 << 3 << true << QList<int> { 3 };
        QTest::newRow("limit 0 runs until stopped") << 0u << 32 << 70 << true << QList<int> { 32, 32, 6 };
        QTest::newRow("stop with nothing recorded") << 10u << 32 << 0 << true << QList<int> {};
    }

    void buffersAndFinish()
    {
        QFETCH(quint32, limit);
        QFETCH(int, capacity);
        QFETCH(int, frames);
        QFETCH(bool, stopAfterwards);
        QFETCH(QList<int>, bufferSizes);

        RadarRecorder recorder(limit, capacity);
        QList<int> sizes;
        QList<int> numbers;
        connect(&recorder, &RadarRecorder::bufferReady, this, [&](RadarBufferPtr buffer) {
            sizes.append(int(buffer->size()));
            for (const auto& entry : *buffer)
                numbers.append(entry.first);
        });
        QSignalSpy finished(&recorder, &RadarRecorder::finished);

        recorder.start();
        const SharedFrame frame = TestFrames::make(1, 1, 4, 0);
        for (int i = 0; i < frames; ++i)
            recorder.record(frame, i);
        if (stopAfterwards)
            recorder.stop();

        QCOMPARE(sizes, bufferSizes);
        QCOMPARE(finished.count(), 1);
        QVERIFY(!recorder.isActive());
        // Every frame handed over once, in order.
        for (int i = 0; i < numbers.size(); ++i)
            QCOMPARE(numbers[i], i);
        // The buffers share the frame, they do not copy it.
        QCOMPARE(frame.use_count(), 1L);
    }

    void destructionWhileActiveHandsOverBufferedFrames()
    {
        int handedOver = 0;
        int finishedCount = 0;
        {
            RadarRecorder recorder(100, 32);
            connect(&recorder, &RadarRecorder::bufferReady, this,
                    [&](RadarBufferPtr buffer) { handedOver += int(buffer->size()); });
            connect(&recorder, &RadarRecorder::finished, this, [&] { ++finishedCount; });
            recorder.start();
            for (int i = 0; i < 7; ++i)
                recorder.record(TestFrames::make(1, 1, 1, i), i);
        }
        QCOMPARE(handedOver, 7);
        QCOMPARE(finishedCount, 1);
    }

    void framesOutsideARecordingAreDropped()
    {
        RadarRecorder recorder(10, 2);
        QSignalSpy buffers(&recorder, &RadarRecorder::bufferReady);
        QSignalSpy finished(&recorder, &RadarRecorder::finished);
        recorder.record(TestFrames::make(1, 1, 1, 0), 0);
        recorder.record(TestFrames::make(1, 1, 1, 1), 1);
        recorder.record(TestFrames::make(1, 1, 1, 2), 2);
        recorder.stop();
        QCOMPARE(buffers.count(), 0);
        QCOMPARE(finished.count(), 0);
    }

    void stopRacingTheAcquisitionLosesNoFrame_data()
    {
        QTest::addColumn<int>("capacity");
        QTest::newRow("a hand-over per frame") << 1;
        QTest::newRow("buffers of 4") << 4;
    }

    void stopRacingTheAcquisitionLosesNoFrame()
    {
        QFETCH(int, capacity);
        // The file recording takes buffers until the recorder's finished() and
        // closes the file then; a buffer handed over after it is lost. So every
        // frame whose record() had returned when stop() was called must arrive
        // before finished(), in order and without a gap.
        const SharedFrame frame = TestFrames::make(1, 1, 1, 0);
        for (int round = 0; round < 300; ++round) {
            RadarRecorder recorder(0, capacity);
            std::mutex mutex;
            bool closed = false;
            QList<int> numbers;
            connect(
                &recorder, &RadarRecorder::bufferReady, this,
                [&](RadarBufferPtr buffer) {
                    std::lock_guard<std::mutex> lock(mutex);
                    for (const auto& entry : *buffer) {
                        if (!closed)
                            numbers.append(entry.first);
                    }
                },
                Qt::DirectConnection);
            connect(
                &recorder, &RadarRecorder::finished, this,
                [&] {
                    std::lock_guard<std::mutex> lock(mutex);
                    closed = true;
                },
                Qt::DirectConnection);
            recorder.start();
            std::atomic<int> returned { 0 };
            std::atomic<bool> done { false };
            // stop() comes a few frames into the recording, at a point that
            // varies from round to round.
            const int warmUp = 1 + round % 7;
            std::promise<void> warm;
            std::thread acquisition([&] {
                for (int i = 0; !done.load(); ++i) {
                    recorder.record(frame, i);
                    returned = i + 1;
                    if (i + 1 == warmUp)
                        warm.set_value();
                }
            });
            warm.get_future().wait();
            const int beforeStop = returned.load();
            recorder.stop();
            done = true;
            acquisition.join();

            QVERIFY2(numbers.size() >= beforeStop,
                     qPrintable(QStringLiteral("round %1: %2 frames arrived, %3 were recorded before stop()")
                                    .arg(round)
                                    .arg(numbers.size())
                                    .arg(beforeStop)));
            for (int i = 0; i < numbers.size(); ++i)
                QCOMPARE(numbers[i], i);
        }
    }

    void presenceResultsAreWrittenOneLineEach()
    {
        const QString path = RadarPresenceSensingRecorder::filePathFor(m_dir.filePath(QStringLiteral("rec")));
        QCOMPARE(path, m_dir.filePath(QStringLiteral("rec.presence.txt")));
        RadarPresenceSensingRecorder recorder(path);
        QSignalSpy errors(&recorder, &RadarPresenceSensingRecorder::errorDetected);
        QVERIFY(recorder.start());
        recorder.record(0, { VRN_PRESENCE_STATE_ABSENCE, 0.0f, 0.0f, 1 });
        recorder.record(1, { VRN_PRESENCE_STATE_PRESENCE, 1.25f, 0.03125f, 2 });
        recorder.record(2, { VRN_PRESENCE_STATE_PRESENCE, 2.5f, 1234.5f, 3 });
        recorder.stop();
        QCOMPARE(errors.count(), 0);

        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("# presence sensing results; state 0 = presence, 1 = absence\n"
                                            "frame_number\tstate\ttarget_range_m\tmotion_energy\tframe_count\n"
                                            "0\t1\t0.000000\t0.000000\t1\n"
                                            "1\t0\t1.250000\t0.031250\t2\n"
                                            "2\t0\t2.500000\t1234.500000\t3\n"));
    }

    void unwritablePresenceFileReportsCorruptedStreamOnce()
    {
        const QString blocker = m_dir.filePath(QStringLiteral("plain"));
        QFile file(blocker);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();

        RadarPresenceSensingRecorder recorder(blocker + "/rec.presence.txt");
        QSignalSpy errors(&recorder, &RadarPresenceSensingRecorder::errorDetected);
        QVERIFY(!recorder.start());
        recorder.record(0, { VRN_PRESENCE_STATE_PRESENCE, 1.0f, 1.0f, 1 });
        recorder.stop();
        QCOMPARE(errors.count(), 1);
        QCOMPARE(errors.at(0).at(0).toString(),
                 QStringLiteral("Stream to presence sensing text file for recording is corrupted!"));
    }

    void presenceResultsOutsideStartAndStopAreIgnored()
    {
        const QString path = m_dir.filePath(QStringLiteral("outside.presence.txt"));
        RadarPresenceSensingRecorder recorder(path);
        recorder.record(0, { VRN_PRESENCE_STATE_PRESENCE, 1.0f, 1.0f, 1 });
        QVERIFY(!QFile::exists(path));
        QVERIFY(recorder.start());
        QVERIFY(recorder.isActive());
        recorder.stop();
        QVERIFY(!recorder.isActive());
        recorder.record(1, { VRN_PRESENCE_STATE_PRESENCE, 1.0f, 1.0f, 2 });
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll().count('\n'), 2); // the two header lines only
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(TestRadarRecorder)
#include "tst_RadarRecorder.moc"
