// The standard mode end to end: the plug-in loaded by the reference host on
// the simulated SDK, driven through the "radarView" object the pages use.

#include "ModuleHost.h"
#include "SimulatedHost.h"

#include "host/Constants.h"
#include "host/CoreUserSettings.h"
#include "host/IPlayback.h"
#include "recording/RadarBinFile.h"

#include <vrn_sim.h>

#include <algorithm>

#include <QElapsedTimer>
#include <QFile>
#include <QQmlContext>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <limits>

namespace {

const char* const kBoard = "1f3c-0001";

struct Recording {
    RadarRecordingHeader header;
    std::vector<RadarFrameRecord> frames;
};

bool readRecording(const QString& base, Recording& out)
{
    const QString path = base + QStringLiteral(".raw.bin");
    RadarBinFile file;
    if (!file.open(path, QIODevice::ReadOnly) || !file.readHeader(out.header))
        return false;
    const qint64 count = (QFileInfo(path).size() - RadarRecordingHeader::kHeaderSize)
        / RadarBinFile::recordSize(out.header.samplesPerFrame);
    out.frames.resize(size_t(count));
    const bool ok = count == 0 || file.readFrames(quint32(count), out.header.samplesPerFrame, out.frames);
    file.close();
    return ok;
}

bool consecutive(const Recording& recording)
{
    for (size_t i = 1; i < recording.frames.size(); ++i) {
        if (recording.frames[i].frameNumber != recording.frames[i - 1].frameNumber + 1)
            return false;
    }
    return true;
}

} // namespace

class TestRadarStandardSession : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        qRegisterMetaType<Constants::UserMessageType>();
    }

    void cleanup()
    {
        m_device.reset();
        m_sim.reset();
    }

    void framesAreCountedAndChartsRefreshedAtTheInterval()
    {
        QElapsedTimer clock;
        clock.start();
        connectBoard(QStringLiteral("unpaced"));
        core().setMinimumRefreshInterval(250);
        QSignalSpy refreshes(view(), SIGNAL(chartsDataUpdated()));
        QSignalSpy numbers(view(), SIGNAL(frameNumberChanged(int)));
        QTRY_VERIFY_WITH_TIMEOUT(numbers.count() >= 3000 && refreshes.count() >= 3, 20000);
        m_device->stopAcquisition();
        const qint64 elapsed = clock.elapsed();

        // Numbers count up by one from where the spy came in.
        for (int i = 1; i < 100; ++i)
            QCOMPARE(numbers.at(i).at(0).toInt(), numbers.at(i - 1).at(0).toInt() + 1);
        QVERIFY(refreshes.count() >= 1);
        QVERIFY2(refreshes.count() <= elapsed / 250 + 2,
                 qPrintable(QStringLiteral("%1 refreshes in %2 ms").arg(refreshes.count()).arg(elapsed)));
        QVERIFY(numbers.count() > 10 * refreshes.count());
    }

    // That it plays the recorded frames, in order, is checked by
    // tst_HeadlessSession's copy of a replayed recording.
    void playbackTakesTheBoardsPlaceAndRunsToTheEnd()
    {
        connectBoard(QStringLiteral("unpaced"));
        record(QStringLiteral("original"), 12);
        // Every mode registers a playback; only the standard mode's takes an
        // FMCW recording.
        const QString path = m_dir.filePath(QStringLiteral("original"));
        const auto& playbacks = m_sim->host().playbackRegister().playbacks();
        QCOMPARE(std::count_if(playbacks.begin(), playbacks.end(), [&](const auto& p) { return p->accepts(path); }), 1);
        IPlayback& playback = standardPlayback();
        QVERIFY(playback.accepts(path) && playback.open(path));
        // The board lets go of the pipeline.
        QVERIFY(!view()->property("isConnected").toBool());
        QCOMPARE(view()->property("totalFramesNumber").toUInt(), 12u);

        QSignalSpy playbackActive(view(), SIGNAL(playbackActiveChanged(bool)));
        playback.play();
        QVERIFY(view()->property("isPlaybackActive").toBool());
        QTRY_VERIFY_WITH_TIMEOUT(!view()->property("isPlaybackActive").toBool(), 10000);
        QCOMPARE(playbackActive.last().at(0).toBool(), false);
    }

    void playbackOfAFramePeriodTheClockCannotHold_data()
    {
        QTest::addColumn<float>("framePeriodS");
        QTest::addColumn<bool>("playable");
        QTest::newRow("an hour") << 3600.0f << true;
        QTest::newRow("more than an hour") << 1.0e30f << false;
        QTest::newRow("infinite") << std::numeric_limits<float>::infinity() << false;
        QTest::newRow("not a number") << std::numeric_limits<float>::quiet_NaN() << false;
    }

    void playbackOfAFramePeriodTheClockCannotHold()
    {
        QFETCH(float, framePeriodS);
        QFETCH(bool, playable);
        connectBoard(QStringLiteral("unpaced"));
        const QString name = QStringLiteral("period-%1").arg(QTest::currentDataTag()).replace(' ', '-');
        record(name, 3);
        // The same frames behind a damaged frame period.
        Recording recording;
        const QString base = m_dir.filePath(name);
        QVERIFY(readRecording(base, recording));
        recording.header.framePeriodSec = framePeriodS;
        RadarBinFile file;
        QVERIFY(file.open(base + QStringLiteral(".raw.bin"), QIODevice::WriteOnly | QIODevice::Truncate));
        QVERIFY(file.writeHeader(recording.header));
        QVERIFY(file.writeFrames(quint32(recording.frames.size()), recording.header.samplesPerFrame, recording.frames));
        file.close();

        IPlayback& playback = standardPlayback();
        QSignalSpy messages(&playback, SIGNAL(enqueueUserMessage(QString, QString)));
        QCOMPARE(playback.open(base), playable);
        QCOMPARE(messages.count(), playable ? 0 : 1);
        if (playable)
            QCOMPARE(playback.totalFramesNumber(), 3u);
        else
            QCOMPARE(messages.first().at(0).toString(), QStringLiteral("This file for playback is not supported"));
    }

    void unplugWhileRecordingKeepsEveryFrameBefore()
    {
        connectBoard(QStringLiteral("realtime"));
        recordingSettings(QStringLiteral("unplugged"), 1000);
        QSignalSpy numbers(view(), SIGNAL(frameNumberChanged(int)));
        QSignalSpy messages(view(), SIGNAL(enqueueUserMessage(Constants::UserMessageType, QString, QString)));
        QVERIFY(QMetaObject::invokeMethod(view(), "startRecording"));
        // Counts of frames from before the recording may still be queued on a
        // slow machine: deliver them and start counting afresh. The two frames
        // around the start may have been counted without reaching the
        // recorder, so seven counts mean at least five recorded frames.
        QCoreApplication::sendPostedEvents();
        numbers.clear();
        QTRY_VERIFY_WITH_TIMEOUT(numbers.count() >= 7, 10000);

        const VrnSimControl* control = m_sim->host().sdkLibrary().control();
        QVERIFY(control);
        QCOMPARE(control->unplug_board(kBoard), nullptr);
        QTRY_VERIFY_WITH_TIMEOUT(!view()->property("isConnected").toBool(), 10000);
        QVERIFY(!view()->property("isRecordingActive").toBool());
        // The first message that is not the newer-firmware notice of the
        // connection tells of the loss.
        const auto told = std::find_if(messages.cbegin(), messages.cend(), [](const QList<QVariant>& message) {
            return message.at(1).toString() != QLatin1String("A newer firmware image is available");
        });
        QVERIFY(told != messages.cend());
        QCOMPARE(told->at(0).value<Constants::UserMessageType>(), Constants::Error);

        Recording recording;
        QVERIFY(readRecording(m_dir.filePath(QStringLiteral("unplugged")), recording));
        QVERIFY(recording.frames.size() >= 5);
        QVERIFY(consecutive(recording));
        // Every counted frame is in the file: the last record is the last frame
        // (the counter goes back to 0 when acquisition stops).
        int counted = 0;
        for (const QList<QVariant>& arguments : qAsConst(numbers))
            counted = std::max(counted, arguments.at(0).toInt());
        QCOMPARE(recording.frames.back().frameNumber + 1, counted);
    }

    void applyDuringAcquisitionRestartsFrameNumbering()
    {
        connectBoard(QStringLiteral("realtime"));
        QSignalSpy numbers(view(), SIGNAL(frameNumberChanged(int)));
        QTRY_VERIFY_WITH_TIMEOUT(numbers.count() >= 3, 10000);
        QObject* metrics = metricsOf("guiConfiguration");
        QVERIFY(metrics && metrics->setProperty("frameRepetitionTimeS", 0.05f));

        numbers.clear();
        bool applied = false;
        QVERIFY(QMetaObject::invokeMethod(view(), "applyGuiConfiguration", Q_RETURN_ARG(bool, applied)));
        QVERIFY(applied);
        QVERIFY(view()->property("isActive").toBool());
        QVERIFY(!numbers.isEmpty());
        QCOMPARE(numbers.first().at(0).toInt(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(numbers.last().at(0).toInt() >= 3, 10000);
        QCOMPARE(metricsOf("deviceConfiguration")->property("frameRepetitionTimeS").toFloat(), 0.05f);
        QVERIFY(!view()->property("revertApplyAvailable").toBool());
    }

    void refusedConfigurationFileLeavesTheRunningOne()
    {
        connectBoard(QStringLiteral("realtime"));
        const QString path = m_dir.filePath(QStringLiteral("bad.json"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(
            R"({"device_config": {"fmcw_scene": {"rx_antennas": [3]}}, "json_version": {"type": "KMR7A", "version": "1.0"}})");
        file.close();
        QSignalSpy messages(view(), SIGNAL(enqueueUserMessage(Constants::UserMessageType, QString, QString)));
        QSignalSpy numbers(view(), SIGNAL(frameNumberChanged(int)));
        bool applied = true;
        QVERIFY(
            QMetaObject::invokeMethod(view(), "applyConfiguration", Q_RETURN_ARG(bool, applied), Q_ARG(QString, path)));
        QVERIFY(!applied);
        QTRY_COMPARE(messages.count(), 1);
        QCOMPARE(messages.at(0).at(1).toString(), QStringLiteral("Cannot load configuration"));
        QVERIFY(messages.at(0).at(2).toString().startsWith(QStringLiteral("Mandatory field")));
        QCOMPARE(metricsOf("deviceConfiguration")->property("frameRepetitionTimeS").toFloat(), 0.1f);
        QTRY_VERIFY_WITH_TIMEOUT(numbers.count() >= 2, 10000);
        QVERIFY(view()->property("isActive").toBool());
    }

private:
    // The standard mode's among the playbacks every mode registers.
    IPlayback& standardPlayback()
    {
        for (const std::shared_ptr<IPlayback>& playback : m_sim->host().playbackRegister().playbacks()) {
            if (playback->name() == QStringLiteral("Radar"))
                return *playback;
        }
        qFatal("The standard mode registered no playback");
    }

    // Starts the host on a one-board bench and connects the board.
    void connectBoard(const QString& pacing)
    {
        // Each pacing gets its own directory: a test may start the host twice.
        const QString directory = m_dir.filePath(pacing);
        QVERIFY(QDir().mkpath(directory));
        m_sim = std::make_unique<SimulatedHost>();
        const QString error
            = m_sim->start(SimulatedHost::oneBoardBench(QLatin1String(kBoard), QStringLiteral("KMR7A"), pacing), directory);
        QVERIFY2(error.isEmpty(), qPrintable(error));
        const QString connected = m_sim->connectFirstBoard();
        QVERIFY2(connected.isEmpty(), qPrintable(connected));
        m_device = m_sim->device();
        QVERIFY(view()->property("isConnected").toBool());
    }

    QObject* view() const { return m_sim->view(); }

    CoreUserSettings& core() { return m_sim->core(); }

    // Recording settings for `frames` frames into `name` below the test's directory.
    void recordingSettings(const QString& name, quint32 frames)
    {
        RecordingUserSettings& settings = *core().recordingUserSettings();
        settings.setRecordingPath(m_dir.path());
        settings.setFileName(name);
        settings.setTimeLimitOnRecording(false);
        settings.setNumOfFrames(frames);
    }

    // The metrics of the view's "guiConfiguration" or "deviceConfiguration".
    QObject* metricsOf(const char* configuration)
    {
        QObject* owner = view()->property(configuration).value<QObject*>();
        return owner ? owner->property("metrics").value<QObject*>() : nullptr;
    }

    void record(const QString& name, quint32 frames)
    {
        recordingSettings(name, frames);
        QSignalSpy active(view(), SIGNAL(isRecordingActiveChanged(bool)));
        QVERIFY(QMetaObject::invokeMethod(view(), "startRecording"));
        QCOMPARE(active.count(), 1);
        QTRY_COMPARE_WITH_TIMEOUT(active.count(), 2, 20000);
        QCOMPARE(active.at(1).at(0).toBool(), false);
    }

    QTemporaryDir m_dir;
    std::unique_ptr<SimulatedHost> m_sim;
    std::shared_ptr<IDevice> m_device;
};

QTEST_MAIN(TestRadarStandardSession)
#include "tst_RadarStandardSession.moc"
