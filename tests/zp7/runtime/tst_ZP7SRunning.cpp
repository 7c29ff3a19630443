// The ZP7 mode end to end: the plug-in loaded by the reference host on the
// simulated SDK, a pulsed-Doppler board connected in the "Standard" mode
// and driven through the "zp7sView" object the pages use.

#include "ModuleHost.h"
#include "SimulatedHost.h"

#include "common/ISeriesChartData.h"
#include "host/Constants.h"
#include "host/CoreUserSettings.h"
#include "recording/RadarBinFile.h"
#include "recording/RadarRecordingHeader.h"
#include "recording/RecordingFiles.h"
#include "zp7/ZP7SDoppler.h"

#include <QDir>
#include <QElapsedTimer>
#include <QQmlContext>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const char* const kBoard = "zp7-0001";

// One ZP7 board; `extra` adds members to the board object. Unpaced boards
// advance their scene by a frame time per frame, as fast as they are read.
QString bench(const QString& extra, const QString& pacing = QStringLiteral("unpaced"))
{
    return QStringLiteral(R"({ "boards": [ { "uuid": "%1", "chip": "ZP7", "shield": 768, "pacing": "%3",
        "noise": 0.001, "seed": 3%2 } ] })")
        .arg(QLatin1String(kBoard), extra, pacing);
}

QString target(double speed)
{
    return QStringLiteral(R"(, "scene": { "targets": [ { "kind": "reflector", "range_m": 8.0, "speed_m_s": %1,
        "rcs_m2": 1.0, "min_range_m": 0.2, "max_range_m": 30 } ] })")
        .arg(speed);
}

// What the user was told, but for the notice of a newer firmware image that
// follows every connection of a board running older firmware.
QStringList messages(const QSignalSpy& spy)
{
    QStringList texts;
    for (const QList<QVariant>& call : spy) {
        if (call.at(1).toString() != QLatin1String("A newer firmware image is available"))
            texts.append(call.at(1).toString());
    }
    return texts;
}

} // namespace

class TestZP7SRunning : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<SimulatedHost> m_sim;

    QObject* view() const
    {
        return m_sim->host().engine()->rootContext()->contextProperty(QStringLiteral("zp7sView")).value<QObject*>();
    }
    int frameNumber() const { return view()->property("frameNumber").toInt(); }
    bool isActive() const { return view()->property("isActive").toBool(); }

    void startOn(const QString& benchJson)
    {
        m_sim.reset();
        const QString directory = m_dir.filePath(QString::fromLatin1(QTest::currentTestFunction())
                                                 + QString::fromLatin1(QTest::currentDataTag()));
        QVERIFY(QDir().mkpath(directory));
        m_sim = std::make_unique<SimulatedHost>();
        const QString error = m_sim->start(benchJson, directory);
        QVERIFY2(error.isEmpty(), qPrintable(error));
        QVERIFY(view());
        const QString connected = m_sim->connectFirstBoard();
        QVERIFY2(connected.isEmpty(), qPrintable(connected));
        QTRY_VERIFY(view()->property("isConnected").toBool());
        QTRY_VERIFY(isActive());
    }

    // The Doppler spectrum's strongest bin, in Hz.
    double spectrumPeakHz() const
    {
        ISeriesChartData* data = nullptr;
        if (!QMetaObject::invokeMethod(view(), "getChartData", Q_RETURN_ARG(ISeriesChartData*, data),
                                       Q_ARG(int, int(Constants::Chart::FrequencyDomain)))
            || !data || data->seriesCount() == 0)
            return qQNaN();
        std::unique_ptr<ISeriesChartData::Iterator> points = data->iterator(0);
        QPointF peak(qQNaN(), -1e30);
        while (points && points->hasNext()) {
            const QPointF point = points->next();
            if (point.y() > peak.y())
                peak = point;
        }
        return peak.x();
    }

private slots:
    void initTestCase()
    {
        qRegisterMetaType<ISeriesChartData*>("ISeriesChartData*");
        qRegisterMetaType<Constants::UserMessageType>("Constants::UserMessageType");
    }

    void cleanup() { m_sim.reset(); }

    void failedFetchEndsAcquisitionAfterEveryFrameIsCounted()
    {
        startOn(bench(QStringLiteral(R"(, "faults": [ { "at_frame": 40, "status": "0x1100e", "count": 1 } ])")));
        QSignalSpy told(view(), SIGNAL(enqueueUserMessage(Constants::UserMessageType, QString, QString)));
        QTRY_VERIFY(!isActive());
        QCOMPARE(frameNumber(), 40);
        QTRY_COMPARE(messages(told), QStringList { QStringLiteral("Fetching next frame failed") });
        QVERIFY(view()->property("isConnected").toBool());

        // The failure was one fetch: the mode starts again and goes on.
        QVERIFY(QMetaObject::invokeMethod(view(), "startAcquisition"));
        QVERIFY(isActive());
        QTRY_VERIFY(frameNumber() > 40);
    }

    void chartsAreRefreshedAtMostOncePerInterval()
    {
        startOn(bench(target(-1.0)));
        m_sim->core().setMinimumRefreshInterval(100);
        QSignalSpy charts(view(), SIGNAL(chartsDataUpdated()));
        const int firstFrame = frameNumber();
        QElapsedTimer clock;
        clock.start();
        QTest::qWait(1000);
        const qint64 elapsed = clock.elapsed();
        const int frames = frameNumber() - firstFrame;
        // Unpaced frames come far faster than the refresh interval.
        QVERIFY2(frames > 5 * charts.count(), qPrintable(QStringLiteral("%1 frames").arg(frames)));
        QVERIFY2(charts.count() >= 3 && charts.count() <= elapsed / 100 + 1,
                 qPrintable(QStringLiteral("%1 refreshes in %2 ms").arg(charts.count()).arg(elapsed)));
    }

    void targetSpeedIsFoundAtItsDopplerFrequency_data()
    {
        QTest::addColumn<double>("speed");
        QTest::newRow("approaching 4 m/s") << -4.0;
        QTest::newRow("receding 1 m/s") << 1.0;
    }

    void targetSpeedIsFoundAtItsDopplerFrequency()
    {
        QFETCH(double, speed);
        // In real time the target keeps its course for the seconds the test takes.
        startOn(bench(target(speed), QStringLiteral("realtime")));
        QSignalSpy charts(view(), SIGNAL(chartsDataUpdated()));
        QTRY_VERIFY(charts.count() >= 2);
        const double peak = spectrumPeakHz();
        const double expected = ZP7SDoppler::dopplerFrequency(speed);
        // The frame's 128 pulses at 2 kHz resolve 15.6 Hz; one bin either way.
        const double maxHz = view()->property("maxDopplerFrequency").toDouble();
        QVERIFY(qAbs(maxHz - 1000.0) < 1e-3);
        QVERIFY2(qAbs(peak - expected) <= 2.0 * maxHz / 128.0,
                 qPrintable(QStringLiteral("peak %1 Hz, expected %2 Hz").arg(peak).arg(expected)));
        double measured = 0.0;
        QVERIFY(QMetaObject::invokeMethod(view(), "radialSpeed", Q_RETURN_ARG(double, measured), Q_ARG(double, peak)));
        QVERIFY2(qAbs(measured - speed) < 0.1, qPrintable(QString::number(measured)));
    }

    void recordingKeepsWholeFrames_data()
    {
        QTest::addColumn<QString>("faults");
        QTest::addColumn<int>("limit");
        QTest::addColumn<QString>("pacing");
        QTest::newRow("up to the frame limit") << QString() << 20 << QStringLiteral("unpaced");
        // Real time, so that the recording is under way when the board goes.
        QTest::newRow("board unplugged") << QStringLiteral(R"(, "faults": [ { "at_frame": 15, "kind": "unplug" } ])")
                                         << 100000 << QStringLiteral("realtime");
    }

    void recordingKeepsWholeFrames()
    {
        QFETCH(QString, faults);
        QFETCH(int, limit);
        QFETCH(QString, pacing);
        startOn(bench(faults, pacing));
        RecordingUserSettings* settings = m_sim->core().recordingUserSettings();
        settings->setRecordingPath(m_dir.path());
        settings->setFileName(QString::fromLatin1(QTest::currentDataTag()).replace(QLatin1Char(' '), QLatin1Char('_')));
        settings->setTimeLimitOnRecording(false);
        settings->setNumOfFrames(quint32(limit));
        const int before = frameNumber();
        QVERIFY(QMetaObject::invokeMethod(view(), "startRecording"));
        QVERIFY(view()->property("isRecordingActive").toBool());
        QTRY_VERIFY(!view()->property("isRecordingActive").toBool());

        const QString bin = RecordingFiles::binPath(settings->basePath());
        QTRY_VERIFY(QFile::exists(bin));
        QVERIFY(QFile::exists(RecordingFiles::jsonPath(settings->basePath())));
        RadarBinFile file;
        QVERIFY(file.open(bin, QIODevice::ReadOnly));
        RadarRecordingHeader header;
        QVERIFY(file.readHeader(header));
        file.close();
        QCOMPARE(header.modulationTypeEnum, RadarRecordingHeader::kModulationDoppler);
        QCOMPARE(header.samplesPerFrame, 2u * 128u);
        const qint64 frameBytes = QFileInfo(bin).size() - RadarRecordingHeader::kHeaderSize;
        const qint64 record = RadarBinFile::recordSize(header.samplesPerFrame);
        QCOMPARE(frameBytes % record, 0);
        if (faults.isEmpty())
            QCOMPARE(frameBytes / record, qint64(limit));
        else // every frame the board gave after the start, give or take the one under way
            QVERIFY2(qAbs(frameBytes / record - (15 - before)) <= 1,
                     qPrintable(QStringLiteral("%1 frames from frame %2").arg(frameBytes / record).arg(before)));
    }

    void unpluggedBoardIsLetGoWithAMessage()
    {
        startOn(bench(QStringLiteral(R"(, "faults": [ { "at_frame": 25, "kind": "unplug" } ])")));
        QObject* info = view()->property("deviceInfo").value<QObject*>();
        QVERIFY(info);
        QCOMPARE(info->property("deviceName").toString(), QStringLiteral("ZP7"));
        QVERIFY(info->property("deviceTemperature").isValid());
        QSignalSpy told(view(), SIGNAL(enqueueUserMessage(Constants::UserMessageType, QString, QString)));
        QTRY_VERIFY(!view()->property("isConnected").toBool());
        QVERIFY(!isActive());
        QCOMPARE(frameNumber(), 25);
        QTRY_VERIFY(messages(told).contains(QStringLiteral("Communication with device failed")));
        // No reading of a board that is gone stays on show.
        QTRY_VERIFY(!info->property("deviceTemperature").isValid());
        // Starting without a board does nothing.
        QVERIFY(QMetaObject::invokeMethod(view(), "startAcquisition"));
        QVERIFY(!isActive());
    }
};

QTEST_MAIN(TestZP7SRunning)
#include "tst_ZP7SRunning.moc"
