// The processing pipeline against a scripted frame provider and without the
// SDK's processing: frame counting, the refresh interval, calculators that
// cannot be built, the virtual-antenna choice and the recording limit.

#include "FakeVrn.h"
#include "FmcwTestSupport.h"

#include "common/ISeriesChartData.h"
#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/IRadarDataProvider.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/common/RadarDeviceParameters.h"
#include "fmcw/common/SegmentationConfiguration.h"
#include "fmcw/processing/RadarRangeDopplerChartData.h"
#include "fmcw/processing/RangeDopplerUserSettings.h"
#include "fmcw/standard/RadarConfiguration.h"
#include "fmcw/standard/RadarDataProcessing.h"
#include "fmcw/standard/RadarUserSettings.h"
#include "fmcw/standard/items/PolarChart.h"
#include "host/CoreUserSettings.h"
#include "host/RecordingUserSettings.h"
#include "recording/RadarRecorder.h"

#include <QMutex>
#include <QScopeGuard>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>

Q_DECLARE_METATYPE(RadarConstants::Application)

namespace {

// Answers from a script, then "no more frames".
class ScriptedProvider : public IRadarDataProvider
{
public:
    explicit ScriptedProvider(QVector<RadarFrameResult> script) : m_script(std::move(script)) {}
    RadarFrameResult getNextFrame(const RadarDeviceConfiguration&) override
    {
        QMutexLocker lock(&m_mutex);
        return m_script.isEmpty() ? RadarFrameResult() : m_script.takeFirst();
    }
    void stopAcquisition() override {}

private:
    QMutex m_mutex;
    QVector<RadarFrameResult> m_script;
};

RadarFrameResult delivered(SharedFrame frame)
{
    return RadarFrameResult { true, frame.get(), frame };
}

// `count` frames of one channel, two chirps of four samples, for a
// provider's script.
QVector<RadarFrameResult> frames(FakeVrn& fake, int count)
{
    QVector<RadarFrameResult> script;
    for (int i = 0; i < count; ++i)
        script.append(delivered(fake.newFrame(1, 2, 4)));
    return script;
}

// Records one frame per buffer and holds the worker inside the chosen
// frames' hand-over until the test lets it go: the owner's thread can then
// act while a frame is under way.
class HoldingProcessing : public RadarDataProcessing
{
public:
    using RadarDataProcessing::RadarDataProcessing;
    QVector<int> heldFrames;
    QSemaphore held;
    QSemaphore released;

    std::shared_ptr<RadarRecorder> createRecorder(quint32 frameLimit, int) override
    {
        std::shared_ptr<RadarRecorder> recorder = RadarDataProcessing::createRecorder(frameLimit, 1);
        connect(
            recorder.get(), &RadarRecorder::bufferReady, recorder.get(),
            [this](RadarBufferPtr) {
                if (heldFrames.contains(m_handedOver++)) {
                    held.release();
                    released.acquire();
                }
            },
            Qt::DirectConnection);
        return recorder;
    }

private:
    std::atomic<int> m_handedOver { 0 };
};

} // namespace

class TestRadarDataProcessing : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        Q_INIT_RESOURCE(radar_configurations);
        qRegisterMetaType<RadarEventCode>();
    }

    void init()
    {
        m_fake = std::make_unique<FakeVrn>();
        m_core = std::make_unique<CoreUserSettings>();
        m_settings = std::make_unique<RadarUserSettings>(nullptr, nullptr);
        m_configuration = std::make_unique<RadarConfiguration>(&m_fake->table, m_settings.get());
        describeBoard(*m_configuration->editedConfiguration());
        describeBoard(*m_configuration->appliedConfiguration());
        // No broker: the SDK's processing is out of reach.
        m_processing = std::make_unique<RadarDataProcessing>(nullptr, m_core.get(), m_configuration.get(),
                                                             m_settings.get());
    }

    void cleanup()
    {
        m_processing.reset();
        m_configuration.reset();
        m_settings.reset();
        m_core.reset();
        m_fake.reset();
    }

    void calculatorsThatCannotBeBuiltAreReported_data()
    {
        QTest::addColumn<RadarConstants::Application>("application");
        QTest::addColumn<QStringList>("calculators");
        QTest::newRow("none") << RadarConstants::None << QStringList { "Range Spectrum", "Range Doppler Map" };
        QTest::newRow("presence") << RadarConstants::PresenceSensing
                                  << QStringList { "Presence Sensing", "Range Spectrum", "Range Doppler Map" };
        QTest::newRow("segmentation") << RadarConstants::Segmentation
                                      << QStringList { "Segmentation", "Range Spectrum", "Range Doppler Map" };
    }

    void calculatorsThatCannotBeBuiltAreReported()
    {
        QFETCH(RadarConstants::Application, application);
        QFETCH(QStringList, calculators);
        QSignalSpy events(m_processing.get(), &IRadarDataProcessing::triggerEvent);
        QVERIFY(m_configuration->applyDefaultConfiguration(application));
        QVERIFY(m_configuration->applyGuiConfiguration());

        // Once each, in the order they are built.
        QVector<RadarEvent> expected;
        for (const QString& step : calculators)
            expected.append({ RadarEventCode::Error,
                              step + " not configured properly. Processing of data will be continued without this step",
                              QString(step).remove(" Map") + " calculator is NULL" });
        QCOMPARE(eventsOf(events), expected);
        QCOMPARE(m_core->recordingUserSettings()->frameRepetitionTimeS(),
                 application == RadarConstants::PresenceSensing ? 0.2f : 0.1f);
    }

    void resetWhileAFrameIsUnderWayRestartsTheCount()
    {
        QTemporaryDir dir;
        m_core->recordingUserSettings()->setRecordingPath(dir.path());
        QVERIFY(m_configuration->applyDefaultConfiguration(RadarConstants::None));
        QVERIFY(m_configuration->applyGuiConfiguration());
        // Records of two chirps of four samples, as frames() delivers them:
        // a recording without samples per frame is refused.
        m_configuration->appliedConfiguration()->parameters()->setNumChirpsPerFrame(2);
        m_configuration->appliedConfiguration()->parameters()->setNumSamplesPerChirp(4);
        HoldingProcessing processing(nullptr, m_core.get(), m_configuration.get(), m_settings.get());
        processing.heldFrames = { 2, 3 };
        ScriptedProvider provider(frames(*m_fake, 6));
        processing.setDataProvider(&provider);
        // A failed check must not leave the worker held with the chain locked.
        const auto letGo = qScopeGuard([&processing] { processing.released.release(100); });
        processing.startRecording();
        QVERIFY(processing.isRecordingActive());
        processing.startAcquisition();

        // The third frame has its number and is being recorded.
        QVERIFY(processing.held.tryAcquire(1, 5000));
        processing.resetFrameCounter();
        processing.released.release();
        // The fourth frame is the first of the new count.
        QVERIFY(processing.held.tryAcquire(1, 5000));
        QCOMPARE(processing.frameNumber(), 1u);
        processing.released.release();
        processing.stopAcquisition();
    }

    void chartsRefreshNoMoreOftenThanTheInterval_data()
    {
        QTest::addColumn<int>("intervalMs");
        QTest::addColumn<int>("refreshes");
        QTest::newRow("longer than the run") << 100000 << 0;
        QTest::newRow("every frame") << -1 << 4;
    }

    void chartsRefreshNoMoreOftenThanTheInterval()
    {
        QFETCH(int, intervalMs);
        QFETCH(int, refreshes);
        m_core->setMinimumRefreshInterval(intervalMs);
        QVERIFY(m_configuration->applyDefaultConfiguration(RadarConstants::None));
        QVERIFY(m_configuration->applyGuiConfiguration());
        // An empty frame is neither counted nor shown.
        QVector<RadarFrameResult> script = frames(*m_fake, 4);
        script.insert(1, delivered(SharedFrame()));
        ScriptedProvider provider(script);
        m_processing->setDataProvider(&provider);
        QSignalSpy updated(m_processing.get(), &IRadarDataProcessing::chartsDataUpdated);
        QSignalSpy numbers(m_processing.get(), &IRadarDataProcessing::frameNumberChanged);
        m_processing->startAcquisition();
        QTRY_COMPARE(numbers.count(), 5);
        QTRY_COMPARE(updated.count(), refreshes);
        QCOMPARE(textsOf(numbers, 0), QStringList({ "0", "1", "2", "3", "4" }));
        // The newest frame reaches the time-domain chart.
        if (refreshes > 0)
            QVERIFY(m_processing->chartData(Constants::Chart::TimeDomain)->iterator(0));
        m_processing->stopAcquisition();
    }

    void virtualAntennaIndex_data()
    {
        QTest::addColumn<int>("tx");
        QTest::addColumn<int>("rx");
        QTest::addColumn<quint32>("txMask");
        QTest::addColumn<quint32>("rxMask");
        QTest::addColumn<quint32>("index");
        QTest::newRow("first pair") << 0 << 0 << 0x1u << 0x7u << 0u;
        QTest::newRow("Rx3 behind an off Rx2") << 0 << 2 << 0x1u << 0x5u << 1u;
        QTest::newRow("Tx2 after three receivers") << 1 << 0 << 0x3u << 0x7u << 3u;
        QTest::newRow("Tx2 Rx2 with Rx1 off") << 1 << 1 << 0x3u << 0x6u << 2u;
        QTest::newRow("disabled transmitter") << 1 << 0 << 0x1u << 0x7u << 0u;
        QTest::newRow("transmitter beyond the masks") << 32 << 0 << 0x1u << 0x7u << 0u;
        QTest::newRow("receiver beyond the masks") << 0 << 33 << 0x1u << 0x7u << 0u;
        QTest::newRow("negative transmitter") << -1 << 0 << 0x1u << 0x7u << 0u;
    }

    void virtualAntennaIndex()
    {
        QFETCH(int, tx);
        QFETCH(int, rx);
        QFETCH(quint32, txMask);
        QFETCH(quint32, rxMask);
        QFETCH(quint32, index);
        QCOMPARE(RadarDataProcessing::virtualAntennaIndex(tx, rx, txMask, rxMask, 4), index);
    }

    void recordingFrameLimit_data()
    {
        QTest::addColumn<bool>("timeLimit");
        QTest::addColumn<int>("seconds");
        QTest::addColumn<int>("milliseconds");
        QTest::addColumn<float>("frameTime");
        QTest::addColumn<quint32>("frames");
        QTest::newRow("frame count") << false << 5 << 0 << 0.1f << 100u;
        QTest::newRow("250 ms at 0.1 s rounds up") << true << 0 << 250 << 0.1f << 3u;
        QTest::newRow("7 s at 0.7 s") << true << 7 << 0 << 0.7f << 10u;
        QTest::newRow("9 s at 0.9 s") << true << 9 << 0 << 0.9f << 10u;
        QTest::newRow("7 s at 0.35 s") << true << 7 << 0 << 0.35f << 20u;
    }

    void recordingFrameLimit()
    {
        QFETCH(bool, timeLimit);
        QFETCH(int, seconds);
        QFETCH(int, milliseconds);
        QFETCH(float, frameTime);
        QFETCH(quint32, frames);
        RecordingUserSettings settings;
        settings.setNumOfFrames(100);
        settings.setTimeLimitOnRecording(timeLimit);
        settings.setDuration(0, 0, quint32(seconds), quint32(milliseconds));
        QCOMPARE(RadarDataProcessing::recordingFrameLimit(settings, frameTime), frames);
    }

    void presenceHistorySpansThirtySeconds_data()
    {
        QTest::addColumn<float>("frameTime");
        QTest::addColumn<int>("points");
        QTest::newRow("0.1 s") << 0.1f << 301;
        QTest::newRow("0.3 s") << 0.3f << 101;
        QTest::newRow("0.7 s") << 0.7f << 43;
        QTest::newRow("no frame time") << 0.0f << 0;
    }

    void presenceHistorySpansThirtySeconds()
    {
        QFETCH(float, frameTime);
        QFETCH(int, points);
        QCOMPARE(RadarDataProcessing::presenceHistoryCapacity(frameTime), points);
    }

    void polarChartMustExist()
    {
        QSignalSpy events(m_processing.get(), &IRadarDataProcessing::triggerEvent);
        m_processing->attachChartItem(Constants::Chart::Polar, nullptr);
        QCOMPARE(eventsOf(events), QVector<RadarEvent>({ { RadarEventCode::Error, "Cannot connect data from GUI to radar.",
                                                          "Polar chart pointer is NULL" } }));
    }

    void polarChartReceivesTheSegments_data()
    {
        QTest::addColumn<RadarConstants::Application>("application");
        QTest::addColumn<bool>("attachFirst");
        QTest::addColumn<bool>("segmented");
        QTest::newRow("attached, then segmentation applied") << RadarConstants::Segmentation << true << true;
        QTest::newRow("segmentation applied, then attached") << RadarConstants::Segmentation << false << true;
        QTest::newRow("no segmentation") << RadarConstants::None << true << false;
    }

    void polarChartReceivesTheSegments()
    {
        QFETCH(RadarConstants::Application, application);
        QFETCH(bool, attachFirst);
        QFETCH(bool, segmented);
        PolarChart chart;
        QVERIFY(m_configuration->applyDefaultConfiguration(application));
        const QVector<float> widths { 20.5f, 35.0f, 15.9f };
        m_configuration->editedConfiguration()->segmentation()->setSegmentsDegrees(widths);
        if (attachFirst)
            m_processing->attachChartItem(Constants::Chart::Polar, &chart);
        // The segmentation calculator cannot be built without the SDK; the
        // chart gets the configured segments all the same.
        QVERIFY(m_configuration->applyGuiConfiguration());
        if (!attachFirst)
            m_processing->attachChartItem(Constants::Chart::Polar, &chart);

        QStringList segments;
        for (const PolarChart::Segment& segment : chart.segments())
            segments.append(QStringLiteral("%1 %2").arg(segment.label).arg(segment.width));
        QCOMPARE(segments, segmented ? QStringList({ "S1 20", "S2 35", "S3 15" }) : QStringList());
    }

    void rangeDopplerMapComesFromTheChosenAntenna_data()
    {
        // Antennas as the pages number them; the shown pair as the settings
        // hold it, 0-based; the channel of the frame the map must come from.
        QTest::addColumn<QVector<int>>("txAntennas");
        QTest::addColumn<QVector<int>>("rxAntennas");
        QTest::addColumn<int>("steps");
        QTest::addColumn<int>("shownTx");
        QTest::addColumn<int>("shownRx");
        QTest::addColumn<int>("channel");
        using V = QVector<int>;
        QTest::newRow("Tx2 with Rx2 and Rx4, as applied") << V { 2 } << V { 2, 4 } << 0 << 1 << 1 << 0;
        QTest::newRow("Tx2, one step on to Rx4") << V { 2 } << V { 2, 4 } << 1 << 1 << 3 << 1;
        QTest::newRow("Tx1 with every receiver, two steps on") << V { 1 } << V { 1, 2, 3, 4 } << 2 << 0 << 2 << 2;
    }

    void rangeDopplerMapComesFromTheChosenAntenna()
    {
        QFETCH(QVector<int>, txAntennas);
        QFETCH(QVector<int>, rxAntennas);
        QFETCH(int, steps);
        QFETCH(int, shownTx);
        QFETCH(int, shownRx);
        QFETCH(int, channel);
        std::unique_ptr<RadarDataProcessing> processing = processingOnSdk();
        QVERIFY(m_configuration->applyDefaultConfiguration(RadarConstants::None));
        Metrics& metrics = *m_configuration->editedConfiguration()->metrics();
        metrics.tx()->setActiveAntennas(txAntennas);
        metrics.rx()->setActiveAntennas(rxAntennas);
        QVERIFY(m_configuration->applyGuiConfiguration());

        RangeDopplerUserSettings& shown = *m_settings->rangeDoppler();
        for (int i = 0; i < steps; ++i)
            shown.switchToAnotherAntenna();
        QCOMPARE(std::make_pair(shown.currentTxIndex(), shown.currentRxIndex()), std::make_pair(shownTx, shownRx));
        refreshCharts(*processing, m_fake->newFrame(quint32(rxAntennas.size()), 2, 4));

        // Every sample of channel c is 10 × (c + 1), and the scripted map
        // repeats its input's first sample.
        auto* chart = static_cast<RadarRangeDopplerChartData*>(processing->rangeDopplerChartData());
        QVERIFY(chart->map());
        QCOMPARE(chart->map()->data[0], 10.0f * float(channel + 1));
    }

    void failedRangeDopplerMapKeepsThePreviousImage()
    {
        std::unique_ptr<RadarDataProcessing> processing = processingOnSdk();
        QVERIFY(m_configuration->applyDefaultConfiguration(RadarConstants::None));
        QVERIFY(m_configuration->applyGuiConfiguration());
        refreshCharts(*processing, m_fake->newFrame(1, 2, 4));
        IRangeDopplerChartData* chart = processing->rangeDopplerChartData();
        QPixmap before;
        QVERIFY(chart->render(before));

        m_fake->rdmRunError = "no map this time";
        QTest::ignoreMessage(QtCriticalMsg, "Failed to calculate Range Doppler Map data no map this time");
        processing->onUpdateChartsData();

        QPixmap after;
        QVERIFY(chart->render(after));
        QCOMPARE(after.toImage(), before.toImage());
    }

    void presenceDefaultsTheSdkRefusesReachTheUser()
    {
        m_fake->psError = "no presence defaults";
        std::unique_ptr<RadarDataProcessing> processing = processingOnSdk();
        QSignalSpy events(processing.get(), &IRadarDataProcessing::triggerEvent);
        QVERIFY(m_configuration->applyDefaultConfiguration(RadarConstants::PresenceSensing));
        QVERIFY(m_configuration->applyGuiConfiguration());

        QVERIFY(eventsOf(events).contains(
            { RadarEventCode::Error, "Failed to get default presence sensing configuration from SDK", "no presence defaults" }));
    }

private:
    // A pipeline on the scripted processing SDK, with a KMR7C of four
    // receivers and two transmitters (one radiating at a time) described
    // to the configuration.
    std::unique_ptr<RadarDataProcessing> processingOnSdk()
    {
        describeBoard(*m_configuration->editedConfiguration(), QStringLiteral("KMR7C"), 4, 2);
        describeBoard(*m_configuration->appliedConfiguration(), QStringLiteral("KMR7C"), 4, 2);
        m_core->setMinimumRefreshInterval(-1);
        return std::make_unique<RadarDataProcessing>(&m_fake->broker, m_core.get(), m_configuration.get(), m_settings.get());
    }

    // Runs `frame` through the worker and waits for the charts it refreshes.
    void refreshCharts(RadarDataProcessing& processing, const SharedFrame& frame)
    {
        ScriptedProvider provider({ delivered(frame) });
        processing.setDataProvider(&provider);
        QSignalSpy updated(&processing, &IRadarDataProcessing::chartsDataUpdated);
        QSignalSpy ended(&processing, &IRadarDataProcessing::acquisitionEnded);
        processing.startAcquisition();
        QTRY_COMPARE(updated.count(), 1);
        QTRY_COMPARE(ended.count(), 1);
        processing.setDataProvider(nullptr);
    }

    std::unique_ptr<FakeVrn> m_fake;
    std::unique_ptr<CoreUserSettings> m_core;
    std::unique_ptr<RadarUserSettings> m_settings;
    std::unique_ptr<RadarConfiguration> m_configuration;
    std::unique_ptr<RadarDataProcessing> m_processing;
};

QTEST_MAIN(TestRadarDataProcessing)
#include "tst_RadarDataProcessing.moc"
