#include "SoakRun.h"

#include "CWCycle.h"
#include "FaultPlan.h"
#include "ModuleHost.h"
#include "ProcessProbe.h"
#include "RecordingCycle.h"
#include "SoakBench.h"

#include <vrn_sim.h>

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

// Resident memory may grow after the warm-up by this much at most: enough
// for allocator slack, far below what a leak of a frame or a thread per
// cycle adds over a long run.
constexpr qint64 kGrowthKiB = 16 * 1024;

} // namespace

SoakRun::SoakRun(quint32 seed, QTextStream& out)
    : m_seed(seed)
    , m_out(out)
{
}

void SoakRun::add(const CycleResult& result)
{
    if (result.faultKind != 0)
        ++m_faults;
    ++m_faultsByKind[result.faultKind];
    m_recorded += result.framesRecorded;
    m_lost += result.framesLost;
    m_beforeStart += result.beforeStart;
    m_dropped += result.droppedByBoard;
    if (!result.failure.isEmpty()) {
        m_failures.append(result.failure);
        m_out << "FAILED " << result.failure << Qt::endl;
    }
}

bool SoakRun::run(int cycles)
{
    QTemporaryDir directory;
    ModuleHost host;
    ModuleHost::Options options;
    options.modulePath = QStringLiteral(RADAR_MODULE);
    options.sdkPath = QStringLiteral(VRN_SIM_LIBRARY);
    options.settingsPath = directory.filePath(QStringLiteral("settings.json"));
    const QString error = host.start(options);
    if (!error.isEmpty() || !host.sdkLibrary().control()) {
        m_out << "The module did not start on the simulator: " << error << Qt::endl;
        return false;
    }
    SoakBench bench(host);
    // The default bench's board is not the soak's.
    host.sdkLibrary().control()->load_bench_json(R"({ "boards": [] })");
    FaultPlan plan(m_seed);
    RecordingCycle recording(bench, plan, directory.path());
    CWCycle cw(bench, plan);
    const int warmUp = qMax(1, qMin(50, cycles / 10));
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < cycles; ++i) {
        // Now and then a board in real time, for faults that need a clock,
        // and one whose FIFO overflows because the host falls behind.
        if (i % 50 == 49) {
            add(recording.run(i, QStringLiteral("KMR7A"), "radarView", RecordingCycle::Pace::RealTime));
        } else if (i % 50 == 24) {
            add(recording.run(i, QStringLiteral("KMR7A"), "radarView", RecordingCycle::Pace::Stalled));
        } else switch (i % 5) {
        case 0: add(recording.run(i, QStringLiteral("KMR7A"), "radarView")); break;
        case 1: add(recording.run(i, QStringLiteral("ZP7"), "zp7sView")); break;
        case 2: add(cw.run(i, QStringLiteral("KMR7B"))); break;
        case 3: add(recording.run(i, QStringLiteral("KMR7C"), "radarView")); break;
        default: add(recording.run(i, QStringLiteral("KMR7B"), "radarView")); break;
        }
        if (i + 1 == warmUp) {
            m_warmKiB = ProcessProbe::residentKiB();
            m_warmThreads = ProcessProbe::threadCount();
        }
        if ((i + 1) % 500 == 0)
            m_out << "cycle " << i + 1 << ": " << ProcessProbe::residentKiB() << " KiB resident, "
                  << ProcessProbe::threadCount() << " threads, " << clock.elapsed() / 1000 << " s" << Qt::endl;
    }
    const bool fine = judge(cycles);
    m_out << "time " << clock.elapsed() / 1000.0 << " s" << Qt::endl;
    host.stop();
    return fine;
}

bool SoakRun::judge(int cycles)
{
    const qint64 endKiB = ProcessProbe::residentKiB();
    const int endThreads = ProcessProbe::threadCount();
    m_out << "cycles " << cycles << " (seed " << m_seed << ")" << Qt::endl;
    m_out << "faults injected " << m_faults << ":";
    for (int kind = 1; kind < Fault::KindCount; ++kind)
        m_out << " " << Fault::name(Fault::Kind(kind)) << " " << m_faultsByKind[kind];
    m_out << Qt::endl;
    m_out << "frames recorded " << m_recorded << ", lost " << m_lost << " (counted before the recorder started "
          << m_beforeStart << ", dropped by the boards " << m_dropped << ")" << Qt::endl;
    m_out << "resident memory after warm-up " << m_warmKiB << " KiB, at the end " << endKiB << " KiB, peak "
          << ProcessProbe::peakResidentKiB() << " KiB" << Qt::endl;
    m_out << "threads after warm-up " << m_warmThreads << ", at the end " << endThreads << Qt::endl;
    bool fine = m_failures.isEmpty() && m_lost == 0;
    if (endKiB - m_warmKiB > kGrowthKiB) {
        m_out << "FAILED memory grew by " << endKiB - m_warmKiB << " KiB after the warm-up" << Qt::endl;
        fine = false;
    }
    if (endThreads > m_warmThreads) {
        m_out << "FAILED " << endThreads - m_warmThreads << " threads were left behind" << Qt::endl;
        fine = false;
    }
    m_out << (fine ? "soak passed" : "soak FAILED") << Qt::endl;
    return fine;
}
