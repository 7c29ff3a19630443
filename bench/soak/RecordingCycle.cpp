#include "RecordingCycle.h"

#include "EventWait.h"
#include "FaultPlan.h"
#include "FrameTally.h"
#include "ModuleHost.h"
#include "RecordingAudit.h"
#include "SoakBench.h"

#include "host/CoreUserSettings.h"
#include "host/IDevice.h"
#include "host/RecordingUserSettings.h"
#include "recording/RecordingFiles.h"

#include <vrn_sim.h>

#include <QDebug>
#include <QVariant>
#include <QDir>
#include <QFile>

namespace {

constexpr int kStateMs = 10000;
// The stalled cycles' board: the default configurations' frame time and a
// FIFO small enough that a stall of a few frames overflows it.
constexpr int kFrameMs = 100;
constexpr int kStalledFifoFrames = 2;

} // namespace

RecordingCycle::RecordingCycle(SoakBench& bench, FaultPlan& plan, QString directory)
    : m_bench(bench)
    , m_plan(plan)
    , m_directory(std::move(directory))
{
}

void RecordingCycle::inject(const QString& uuid, const Fault& fault)
{
    const QByteArray id = uuid.toUtf8();
    if (fault.kind == Fault::Unplug) {
        m_bench.control().unplug_board(id.constData());
        return;
    }
    const VrnSimFault sdkFault = fault.kind == Fault::HostStall
        ? VrnSimFault { VRNSIM_FAULT_STALL, 0, 1, 0, quint32(fault.stallMs) }
        : VrnSimFault { VRNSIM_FAULT_FETCH, fault.status, quint32(fault.count), 0, 0 };
    if (const char* error = m_bench.control().inject_fault(id.constData(), &sdkFault))
        qWarning() << "Soak: fault not injected:" << error;
}

QString RecordingCycle::record(const QString& uuid, QObject* view, const QString& base, Pace pace,
                               CycleResult& result)
{
    RecordingUserSettings& settings = *m_bench.host().coreConfiguration().coreUserSettings()->recordingUserSettings();
    const int frames = pace == Pace::Unpaced ? m_plan.uniform(10, 60) : m_plan.uniform(4, 12);
    settings.setRecordingPath(m_directory);
    settings.setFileName(QFileInfo(base).fileName());
    settings.setTxtFile(false);
    settings.setTimeLimitOnRecording(false);
    settings.setNumOfFrames(quint32(frames));

    const Fault fault = pace == Pace::Stalled ? m_plan.stall(frames, kStalledFifoFrames, kFrameMs) : m_plan.next(frames);
    result.faultKind = fault.kind;
    FrameTally tally(view);
    if (!tally.isConnected())
        return QStringLiteral("the view lacks the frame or recording signals");
    bool injected = fault.kind == Fault::None;
    QObject::connect(&tally, &FrameTally::countedWhileRecording, [&](int count) {
        if (!injected && count >= fault.atFrame) {
            injected = true;
            inject(uuid, fault);
        }
    });
    QMetaObject::invokeMethod(view, "startRecording", Qt::DirectConnection);
    tally.reset();
    if (!tally.recordingActive())
        return QStringLiteral("the recording did not start");

    // The recording ends at its limit; a fault that stops acquisition or
    // loses the board leaves the user to end it.
    EventWait wait;
    wait.watch(view, "isRecordingActiveChanged(bool)");
    wait.watch(view, "isActiveChanged()");
    wait.watch(view, "isConnectedChanged()");
    const bool ended = wait.until([&] {
        return !tally.recordingActive() || !view->property("isActive").toBool()
            || !view->property("isConnected").toBool();
    }, kStateMs);
    // A recording that ended by itself while the board still ran reached
    // its limit; the view hears of its last frame only after that end, so
    // the limit is checked against the file instead.
    const bool atLimit = ended && !tally.recordingActive() && view->property("isActive").toBool();
    QMetaObject::invokeMethod(view, "stopRecording", Qt::DirectConnection);
    if (!wait.until([&] { return !tally.recordingActive(); }, kStateMs))
        return QStringLiteral("the recording did not end when stopped");
    if (!ended)
        return QStringLiteral("the recording neither ended nor lost its board within %1 s (fault: %2)")
            .arg(kStateMs / 1000).arg(Fault::name(fault.kind));

    const RecordingAudit audit = RecordingAudit::of(RecordingFiles::binPath(base), tally.recorded());
    result.framesRecorded = audit.fileFrames;
    result.beforeStart = audit.beforeStart;
    result.framesLost = audit.lost;
    if (!audit.error.isEmpty())
        return audit.error;
    if (atLimit && audit.fileFrames != frames) {
        result.framesLost += qMax<qint64>(0, frames - audit.fileFrames);
        return QStringLiteral("the recording ended at its limit of %1 frames but %2 holds %3")
            .arg(frames).arg(RecordingFiles::binPath(base)).arg(audit.fileFrames);
    }
    if (const QString overflow = checkOverflow(view, fault, injected, uuid); !overflow.isEmpty())
        return overflow;
    if (result.framesLost > 0)
        return QStringLiteral("%1 of %2 counted frames are not in %3 (fault: %4 at frame %5)")
            .arg(result.framesLost).arg(tally.recorded().size()).arg(RecordingFiles::binPath(base))
            .arg(Fault::name(fault.kind)).arg(fault.atFrame);
    return {};
}

QString RecordingCycle::checkOverflow(QObject* view, const Fault& fault, bool injected, const QString& uuid)
{
    const bool overflows = fault.kind == Fault::FifoOverflow || fault.kind == Fault::HostStall;
    if (!overflows || !injected || !m_countsOverflows)
        return {};
    // A failed fetch is the FMCW module's sign of a FIFO overflow: it must
    // show, or the fault went unnoticed.
    // On an unpaced board the view's count trails the board, so the fetch
    // may fail only now; the board still acquires, so it does fail.
    EventWait wait;
    wait.watch(view, "fifoOverflowCounterChanged()");
    const auto overflowCounted = [view] { return view->property("fifoOverflowCounter").toUInt() > 0; };
    if (!wait.until(overflowCounted, kStateMs))
        return QStringLiteral("%1 but the view counted no FIFO overflow")
            .arg(fault.kind == Fault::HostStall ? QStringLiteral("the host stalled %1 ms").arg(fault.stallMs)
                                                : QStringLiteral("a failed fetch was injected"));
    if (fault.kind == Fault::HostStall && m_bench.control().dropped_frames(uuid.toUtf8().constData()) == 0)
        return QStringLiteral("the host stalled %1 ms but the board's FIFO did not overflow").arg(fault.stallMs);
    return {};
}

CycleResult RecordingCycle::run(int index, const QString& chip, const char* viewName, Pace pace)
{
    CycleResult result;
    // The pulsed-Doppler mode ends acquisition on a failed fetch instead.
    m_countsOverflows = qstrcmp(viewName, "radarView") == 0;
    const QString uuid = QStringLiteral("50a7-%1").arg(chip.toLower());
    std::shared_ptr<IDevice> device;
    const QString pacing = pace == Pace::Unpaced ? QStringLiteral("unpaced") : QStringLiteral("realtime");
    const int fifoFrames = pace == Pace::Stalled ? kStalledFifoFrames : 4;
    result.failure = m_bench.plug(uuid, SoakBench::boardJson(uuid, chip, pacing, quint32(index), fifoFrames), device);
    QObject* view = m_bench.view(viewName);
    if (result.failure.isEmpty() && !view)
        result.failure = QStringLiteral("the module has no view \"%1\"").arg(QLatin1String(viewName));
    if (result.failure.isEmpty() && !device->connectDevice())
        result.failure = QStringLiteral("board %1 did not connect").arg(uuid);
    if (result.failure.isEmpty()) {
        EventWait wait;
        wait.watch(view, "isActiveChanged()");
        if (!wait.until([&] { return view->property("isActive").toBool(); }, kStateMs))
            result.failure = QStringLiteral("board %1 connected but does not acquire").arg(uuid);
    }
    const QString base = QDir(m_directory).filePath(QStringLiteral("cycle-%1").arg(index));
    if (result.failure.isEmpty())
        result.failure = record(uuid, view, base, pace, result);
    if (device)
        device->disconnectDevice();
    device.reset();
    result.droppedByBoard = m_bench.control().dropped_frames(uuid.toUtf8().constData());
    m_bench.control().clear_faults(uuid.toUtf8().constData());
    const QString unplugged = m_bench.unplug(uuid);
    if (result.failure.isEmpty())
        result.failure = unplugged;
    for (const QString& path : RecordingFiles::existingSiblings(base))
        QFile::remove(path);
    if (!result.failure.isEmpty())
        result.failure = QStringLiteral("cycle %1 (%2): %3").arg(index).arg(chip, result.failure);
    return result;
}
