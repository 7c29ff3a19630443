#include "recording/RadarPresenceSensingRecorder.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

class TestRadarPresenceSensingRecorder : public QObject
{
    Q_OBJECT
private slots:
    void writesOneLinePerResult()
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

    void unwritableFileReportsCorruptedStreamOnce()
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

    void resultsOutsideStartAndStopAreIgnored()
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

QTEST_GUILESS_MAIN(TestRadarPresenceSensingRecorder)
#include "tst_RadarPresenceSensingRecorder.moc"
