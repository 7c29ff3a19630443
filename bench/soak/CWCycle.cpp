#include "CWCycle.h"

#include "EventWait.h"
#include "FaultPlan.h"
#include "SoakBench.h"

#include "host/IDevice.h"

#include <vrn_sim.h>

#include <QEventLoop>
#include <QVariant>
#include <QTimer>

namespace {

constexpr int kStateMs = 10000;
constexpr const char* kCWMode = "CW";

bool call(QObject* view, const char* method)
{
    bool result = false;
    return QMetaObject::invokeMethod(view, method, Qt::DirectConnection, Q_RETURN_ARG(bool, result)) && result;
}

// Lets the simulator's clock run without holding up the event loop.
void pause(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

CWCycle::CWCycle(SoakBench& bench, FaultPlan& plan)
    : m_bench(bench)
    , m_plan(plan)
{
}

QString CWCycle::emitAndCapture(const QString& uuid, QObject* view, CycleResult& result)
{
    if (!call(view, "startEmission"))
        return QStringLiteral("emission did not start");
    const int captures = m_plan.uniform(3, 12);
    const Fault fault = m_plan.next(captures);
    result.faultKind = fault.kind;
    const QByteArray id = uuid.toUtf8();
    for (int i = 1; i <= captures; ++i) {
        if (i == fault.atFrame && fault.kind == Fault::Unplug) {
            m_bench.control().unplug_board(id.constData());
        } else if (i == fault.atFrame && fault.kind != Fault::None) {
            const VrnSimFault sdkFault { VRNSIM_FAULT_FETCH, fault.status, quint32(fault.count), 0, 0 };
            m_bench.control().inject_fault(id.constData(), &sdkFault);
        }
        const bool captured = call(view, "captureFrame");
        if (captured)
            ++result.framesRecorded;
        else if (fault.kind == Fault::None || i < fault.atFrame)
            ++result.framesLost;
    }
    if (result.framesLost > 0)
        return QStringLiteral("%1 captures before the fault (%2 at capture %3) failed")
            .arg(result.framesLost).arg(Fault::name(fault.kind)).arg(fault.atFrame);
    if (view->property("isConnected").toBool())
        call(view, "stopEmission");
    return {};
}

QString CWCycle::checkTransmitterOff(const QString& uuid)
{
    const QByteArray id = uuid.toUtf8();
    const quint64 before = m_bench.control().emission_time_ms(id.constData());
    pause(15);
    const quint64 after = m_bench.control().emission_time_ms(id.constData());
    if (after != before)
        return QStringLiteral("the transmitter still emits after the board was let go");
    return {};
}

CycleResult CWCycle::run(int index, const QString& chip)
{
    CycleResult result;
    const QString uuid = QStringLiteral("50a7-cw-%1").arg(chip.toLower());
    std::shared_ptr<IDevice> device;
    result.failure = m_bench.plug(uuid, SoakBench::boardJson(uuid, chip, QStringLiteral("unpaced"), quint32(index)), device);
    QObject* view = m_bench.view("radarCWView");
    QObject* coordinator = m_bench.view("radarCoordinator");
    if (result.failure.isEmpty() && (!view || !coordinator))
        result.failure = QStringLiteral("the module has no \"radarCWView\" or \"radarCoordinator\"");
    if (result.failure.isEmpty() && !device->connectDevice())
        result.failure = QStringLiteral("board %1 did not connect").arg(uuid);
    if (result.failure.isEmpty()) {
        coordinator->setProperty("userMode", QString::fromLatin1(kCWMode));
        EventWait wait;
        wait.watch(view, "isConnectedChanged()");
        if (!wait.until([&] { return view->property("isConnected").toBool(); }, kStateMs))
            result.failure = QStringLiteral("board %1 did not come up in CW mode").arg(uuid);
    }
    if (result.failure.isEmpty())
        result.failure = emitAndCapture(uuid, view, result);
    if (coordinator)
        coordinator->setProperty("userMode", QStringLiteral("Standard"));
    if (device)
        device->disconnectDevice();
    device.reset();
    const QString off = checkTransmitterOff(uuid);
    if (result.failure.isEmpty())
        result.failure = off;
    m_bench.control().clear_faults(uuid.toUtf8().constData());
    const QString unplugged = m_bench.unplug(uuid);
    if (result.failure.isEmpty())
        result.failure = unplugged;
    if (!result.failure.isEmpty())
        result.failure = QStringLiteral("cycle %1 (CW, %2): %3").arg(index).arg(chip, result.failure);
    return result;
}
