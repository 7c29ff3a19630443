// Sustained recording throughput against dd writing the same number of
// bytes into the same directory. Frames are handed to the recorder from an
// acquisition thread as fast as it can go; the clock stops when the file
// recording has drained its queue, closed the file and the file is on disk
// (fsync), as dd's does with conv=fsync. The best run of each side counts.
//
// The directory is BENCH_RECORDING_DIR when set, else the system's
// temporary directory.

#include "recording/IRadarRecordingSource.h"
#include "recording/RadarBinFile.h"
#include "recording/RadarFileRecording.h"
#include "recording/RadarRecorder.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <unistd.h>
#include <memory>
#include <vector>

namespace {

constexpr int kChirps = 64;
constexpr int kSamples = 256;
constexpr int kAntennas = 3; // one transmitter, three receivers
constexpr int kFrames = 1500;
constexpr int kPool = 16;

// Best run of each side: page-cache write-back of earlier runs makes single
// runs of both sides swing widely on a shared machine.
struct Totals
{
    double best = 0; // bytes per second
    void add(double bytes, double seconds)
    {
        if (seconds > 0)
            best = std::max(best, bytes / seconds);
    }
    double rate() const { return best; }
};
Totals g_recording;
Totals g_dd;

QString benchDirectory()
{
    const QString dir = qEnvironmentVariable("BENCH_RECORDING_DIR");
    return dir.isEmpty() ? QDir::tempPath() : dir;
}

class BenchSource : public IRadarRecordingSource
{
public:
    RadarRecordingHeader recordingHeader() const override
    {
        RadarRecordingHeader h;
        h.numTxAntennas = 1;
        h.numRxAntennas = 3;
        h.maskTxAntennas = 1;
        h.maskRxAntennas = 7;
        h.chirpsPerFrame = kChirps;
        h.samplesPerChirp = kSamples;
        h.framePeriodSec = 0.01f;
        return h;
    }
    QByteArray configurationJson() const override { return QByteArray(); }
};

struct OwnedFrame
{
    std::vector<std::vector<float>> data;
    std::vector<vrn_Matrix_R_s> matrices;
    std::vector<vrn_Matrix_R_s*> pointers;
    vrn_Frame_R_t frame {};
};

SharedFrame makeFrame(int seed)
{
    auto owner = std::make_shared<OwnedFrame>();
    owner->data.resize(kAntennas);
    owner->matrices.resize(kAntennas);
    for (int a = 0; a < kAntennas; ++a) {
        owner->data[a].resize(size_t(kChirps * kSamples));
        for (size_t i = 0; i < owner->data[a].size(); ++i)
            owner->data[a][i] = float((seed * 31 + a * 7 + int(i)) % 4096) / 4095.0f;
        owner->matrices[a] = { kChirps, kSamples, kSamples, owner->data[a].data() };
        owner->pointers.push_back(&owner->matrices[a]);
    }
    owner->frame.num_rx = kAntennas;
    owner->frame.rx_data = owner->pointers.data();
    return SharedFrame(owner, &owner->frame);
}

void BM_Recording(benchmark::State& state)
{
    QTemporaryDir dir(benchDirectory() + QStringLiteral("/bench_recording-XXXXXX"));
    std::vector<SharedFrame> pool;
    for (int i = 0; i < kPool; ++i)
        pool.push_back(makeFrame(i));
    const qint64 expectedSize = 88 + kFrames * RadarBinFile::recordSize(kAntennas * kChirps * kSamples);
    BenchSource source;

    for (auto _ : state) {
        const QString bin = dir.filePath(QStringLiteral("bench.raw.bin"));
        RadarFileRecording recording(&source, QString(), bin);
        RadarRecorder recorder(kFrames, 32);
        QObject::connect(&recorder, &RadarRecorder::bufferReady, &recording, &RadarFileRecording::collectRadarBuffer,
                         Qt::QueuedConnection);
        QObject::connect(&recorder, &RadarRecorder::finished, &recording, &RadarFileRecording::stop,
                         Qt::QueuedConnection);
        int errors = 0;
        QObject::connect(&recording, &RadarFileRecording::errorDetected, [&] { ++errors; });
        QEventLoop loop;
        QObject::connect(&recording, &RadarFileRecording::finished, &loop, &QEventLoop::quit);

        QElapsedTimer timer;
        timer.start();
        if (!recording.start()) {
            state.SkipWithError("cannot start the recording");
            break;
        }
        recorder.start();
        std::unique_ptr<QThread> acquisition(QThread::create([&] {
            for (int i = 0; i < kFrames; ++i)
                recorder.record(pool[size_t(i % kPool)], i);
        }));
        acquisition->start();
        loop.exec();
        // On disk, not only in the page cache, as dd's conv=fsync.
        QFile written(bin);
        if (written.open(QIODevice::ReadWrite))
            ::fsync(written.handle());
        written.close();
        const double seconds = double(timer.nsecsElapsed()) * 1e-9;
        acquisition->wait();

        const qint64 size = QFileInfo(bin).size();
        if (errors != 0 || size != expectedSize) {
            state.SkipWithError("frames missing from the recording");
            break;
        }
        state.SetIterationTime(seconds);
        g_recording.add(double(size), seconds);
        QFile::remove(bin);
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * expectedSize);
}

void BM_DdSameBytes(benchmark::State& state)
{
    QTemporaryDir dir(benchDirectory() + QStringLiteral("/bench_recording-XXXXXX"));
    const qint64 bytes = 88 + kFrames * RadarBinFile::recordSize(kAntennas * kChirps * kSamples);
    for (auto _ : state) {
        const QString target = dir.filePath(QStringLiteral("dd.bin"));
        QElapsedTimer timer;
        timer.start();
        QProcess dd;
        dd.start(QStringLiteral("dd"), { QStringLiteral("if=/dev/zero"), QStringLiteral("of=") + target,
                                         QStringLiteral("bs=1M"), QStringLiteral("count=%1").arg(bytes),
                                         QStringLiteral("iflag=count_bytes"), QStringLiteral("conv=fsync"),
                                         QStringLiteral("status=none") });
        if (!dd.waitForFinished(-1) || dd.exitCode() != 0 || QFileInfo(target).size() != bytes) {
            state.SkipWithError("dd failed");
            break;
        }
        const double seconds = double(timer.nsecsElapsed()) * 1e-9;
        state.SetIterationTime(seconds);
        g_dd.add(double(bytes), seconds);
        QFile::remove(target);
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * bytes);
}

}

BENCHMARK(BM_DdSameBytes)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Recording)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    if (g_recording.rate() > 0 && g_dd.rate() > 0) {
        const double ratio = g_recording.rate() / g_dd.rate();
        std::printf("recording %.1f MB/s, dd %.1f MB/s, ratio %.2f (target >= 0.70): %s\n", g_recording.rate() / 1e6,
                    g_dd.rate() / 1e6, ratio, ratio >= 0.70 ? "met" : "NOT met");
    }
    return 0;
}
