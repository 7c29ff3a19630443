// Frames per second through the standard mode's whole pipeline on the
// unpaced simulated default board (default configuration, charts refreshed
// every 33 ms), with and without recording, and the time from a frame's
// arrival at the pipeline to the chart-data update that shows it.
//
// Target: at least 5,000 default frames per second while recording, losing
// none (every counted frame is in the file).

#include "common/RangeSpectrumUserSettings.h"
#include "common/TimeDomainUserSettings.h"
#include "fmcw/common/IRadarDataProvider.h"
#include "fmcw/common/RadarDevice.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/standard/RadarConfiguration.h"
#include "fmcw/standard/RadarDataProcessing.h"
#include "fmcw/standard/RadarUserSettings.h"
#include "host/CoreUserSettings.h"
#include "host/IBroker.h"
#include "recording/RadarBinFile.h"
#include "recording/RecordingFiles.h"

#include <vrn_sim.h>

#include <benchmark/benchmark.h>

#include <QEventLoop>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLibrary>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <memory>
#include <mutex>
#include <vector>

// Resource initialisers live in the global namespace.
static void initialiseConfigurations()
{
    Q_INIT_RESOURCE(radar_configurations);
}

namespace {

using Clock = std::chrono::steady_clock;
constexpr quint32 kFrames = 5000;
const char* const kBoard = "1f3c-0001";

class Broker : public IBroker
{
public:
    explicit Broker(const Vrn* vrn) : m_vrn(vrn) {}
    const Vrn* sdk() const override { return m_vrn; }
    QString applicationDirectory() const override { return QString(); }

private:
    const Vrn* m_vrn;
};

// The board's frames, each stamped with the moment the pipeline got it.
class StampingProvider : public IRadarDataProvider
{
public:
    explicit StampingProvider(RadarDevice& device) : m_device(device) {}
    RadarFrameResult getNextFrame(const RadarDeviceConfiguration& configuration) override
    {
        RadarFrameResult result = m_device.getNextFrame(configuration);
        if (result.owner)
            lastArrival.store(Clock::now().time_since_epoch().count());
        return result;
    }
    void stopAcquisition() override { m_device.stopAcquisition(); }

    std::atomic<Clock::rep> lastArrival { 0 };

private:
    RadarDevice& m_device;
};

struct Pipeline {
    QLibrary library { QStringLiteral(VRN_SIM_LIBRARY) };
    const Vrn* vrn = nullptr;
    std::unique_ptr<Broker> broker;
    CoreUserSettings core;
    RangeSpectrumUserSettings rangeSpectrum;
    TimeDomainUserSettings timeDomain;
    std::unique_ptr<RadarUserSettings> settings;
    std::unique_ptr<RadarConfiguration> configuration;
    std::unique_ptr<RadarDevice> device;
    std::unique_ptr<StampingProvider> provider;
    std::unique_ptr<RadarDataProcessing> processing;
    QTemporaryDir dir;
    QString error;

    Pipeline()
    {
        initialiseConfigurations();
        if (!library.load()) {
            error = library.errorString();
            return;
        }
        vrn = reinterpret_cast<vrn_entry_points_fn>(library.resolve(VRN_ENTRY_POINTS_SYMBOL))();
        const VrnSimControl* control
            = reinterpret_cast<vrnsim_control_fn>(library.resolve(VRNSIM_CONTROL_SYMBOL))();
        const QByteArray bench = QByteArrayLiteral(R"({ "boards": [ { "uuid": "1f3c-0001", "shield": 512,
            "chip": "KMR7A", "pacing": "unpaced" } ] })");
        if (const char* failure = control->load_bench_json(bench.constData())) {
            error = QString::fromUtf8(failure);
            return;
        }
        broker = std::make_unique<Broker>(vrn);
        core.setMinimumRefreshInterval(33);
        settings = std::make_unique<RadarUserSettings>(&rangeSpectrum, &timeDomain);
        configuration = std::make_unique<RadarConfiguration>(vrn, settings.get());
        device = std::make_unique<RadarDevice>(vrn);
        provider = std::make_unique<StampingProvider>(*device);
        processing = std::make_unique<RadarDataProcessing>(broker.get(), &core, configuration.get(), settings.get());
        if (!device->connectDevice(QString::fromLatin1(kBoard), VRN_SHIELD_FMCW_512)) {
            error = QStringLiteral("the simulated board does not open");
            return;
        }
        configuration->bindDevice(device.get());
        if (!configuration->applyGuiConfiguration())
            error = QStringLiteral("the default configuration is refused");
        processing->setDataProvider(provider.get());
    }
};

Pipeline* g_pipeline = nullptr;

struct Run {
    double seconds = 0;
    quint32 frames = 0;
    qint64 recorded = -1;
    std::vector<double> latenciesUs;
};

// Acquires until kFrames frames went through (recording them when asked)
// and the recording, if any, is closed.
Run runOnce(bool record)
{
    Pipeline& p = *g_pipeline;
    Run run;
    QEventLoop loop;
    QTimer poll;
    poll.setInterval(2);
    bool recordingDone = !record;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (run.frames == 0 && p.processing->frameNumber() >= kFrames) {
            run.frames = p.processing->frameNumber();
            run.seconds = std::chrono::duration<double>(Clock::now() - Clock::time_point()).count() - run.seconds;
            p.processing->stopAcquisition();
        }
        if (run.frames != 0 && recordingDone)
            loop.quit();
    });
    // Each refresh request (on the worker, right after the frame that
    // triggers it) is answered by one chart update on this thread, in order:
    // the i-th update is measured against the arrival of the i-th request's
    // frame. The two sides are paired afterwards because the update may
    // finish before the worker gets round to noting its request.
    std::mutex stampMutex;
    std::vector<Clock::rep> requestArrivals;
    std::vector<Clock::rep> updateEnds;
    auto requested = QObject::connect(
        p.processing.get(), &RadarDataProcessing::updateChartsData, &loop,
        [&] {
            std::lock_guard<std::mutex> lock(stampMutex);
            requestArrivals.push_back(p.provider->lastArrival.load());
        },
        Qt::DirectConnection);
    auto refreshed = QObject::connect(p.processing.get(), &IRadarDataProcessing::chartsDataUpdated, &loop,
                                      [&] { updateEnds.push_back(Clock::now().time_since_epoch().count()); });
    auto recording = QObject::connect(p.processing.get(), &IRadarDataProcessing::isRecordingActiveChanged, &loop,
                                      [&](bool active) {
                                          if (!active)
                                              recordingDone = true;
                                      });
    const QString base = p.dir.filePath(QStringLiteral("bench"));
    if (record) {
        RecordingUserSettings& settings = *p.core.recordingUserSettings();
        settings.setRecordingPath(p.dir.path());
        settings.setFileName(QStringLiteral("bench"));
        settings.setTimeLimitOnRecording(false);
        settings.setNumOfFrames(kFrames);
        // A recording never overwrites an earlier one; each run replaces the last.
        for (const QString& path : RecordingFiles::existingSiblings(base))
            QFile::remove(path);
    }
    // The recorder is ready before the first frame, so it must hold every
    // one of the kFrames frames counted.
    if (record)
        p.processing->startRecording();
    run.seconds = std::chrono::duration<double>(Clock::now() - Clock::time_point()).count();
    p.processing->startAcquisition();
    poll.start();
    loop.exec();
    QObject::disconnect(requested);
    QObject::disconnect(refreshed);
    {
        std::lock_guard<std::mutex> lock(stampMutex);
        for (size_t i = 0; i < std::min(requestArrivals.size(), updateEnds.size()); ++i)
            run.latenciesUs.push_back(double(updateEnds[i] - requestArrivals[i]) / 1000.0);
    }
    QObject::disconnect(recording);
    if (record) {
        // The file recording closes its file when it has written the queue.
        QCoreApplication::processEvents();
        const QString path = base + QStringLiteral(".raw.bin");
        RadarBinFile file;
        RadarRecordingHeader header;
        if (file.open(path, QIODevice::ReadOnly) && file.readHeader(header))
            run.recorded = (QFileInfo(path).size() - RadarRecordingHeader::kHeaderSize)
                / RadarBinFile::recordSize(header.samplesPerFrame);
        file.close();
    }
    return run;
}

void BM_Pipeline(benchmark::State& state)
{
    if (!g_pipeline->error.isEmpty()) {
        state.SkipWithError(qPrintable(g_pipeline->error));
        return;
    }
    const bool record = state.range(0) != 0;
    double frames = 0;
    double seconds = 0;
    double lost = 0;
    std::vector<double> latencies;
    for (auto _ : state) {
        Run run = runOnce(record);
        state.SetIterationTime(run.seconds);
        frames += run.frames;
        seconds += run.seconds;
        if (record)
            lost += double(kFrames) - double(run.recorded);
        latencies.insert(latencies.end(), run.latenciesUs.begin(), run.latenciesUs.end());
    }
    state.counters["fps"] = seconds > 0 ? frames / seconds : 0;
    if (record)
        state.counters["lost"] = lost;
    if (!latencies.empty()) {
        std::sort(latencies.begin(), latencies.end());
        state.counters["refresh_us_median"] = latencies[latencies.size() / 2];
        state.counters["refresh_us_p95"] = latencies[latencies.size() * 95 / 100];
        state.counters["refreshes"] = double(latencies.size());
    }
}

} // namespace

BENCHMARK(BM_Pipeline)->ArgName("recording")->Arg(0)->Arg(1)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    Pipeline pipeline;
    g_pipeline = &pipeline;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    g_pipeline = nullptr;
    return 0;
}
