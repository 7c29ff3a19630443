#include "SoakBench.h"

#include "EventWait.h"
#include "ModuleHost.h"

#include "host/IDevice.h"

#include <vrn_sim.h>

#include <QQmlContext>
#include <QQmlEngine>

namespace {

constexpr int kRegisterMs = 10000;

std::shared_ptr<IDevice> registered(ModuleHost& host, const QString& uuid)
{
    for (const std::shared_ptr<IDevice>& device : host.deviceRegister().devices()) {
        if (device->property("uuid").toString() == uuid)
            return device;
    }
    return nullptr;
}

} // namespace

SoakBench::SoakBench(ModuleHost& host)
    : m_host(host)
    , m_control(host.sdkLibrary().control())
{
}

QString SoakBench::boardJson(const QString& uuid, const QString& chip, const QString& pacing, quint32 seed,
                             int fifoFrames)
{
    return QStringLiteral(R"({ "uuid": "%1", "chip": "%2", "pacing": "%3", "noise": 0.001, "seed": %4, "fifo_frames": %5 })")
        .arg(uuid, chip, pacing)
        .arg(seed)
        .arg(fifoFrames);
}

QString SoakBench::plug(const QString& uuid, const QString& json, std::shared_ptr<IDevice>& device)
{
    if (const char* error = m_control->plug_board(json.toUtf8().constData()))
        return QStringLiteral("plugging %1: %2").arg(uuid, QString::fromUtf8(error));
    EventWait wait;
    wait.watch(&m_host.deviceRegister(), "devicesChanged()");
    if (!wait.until([&] { return (device = registered(m_host, uuid)) != nullptr; }, kRegisterMs))
        return QStringLiteral("board %1 was plugged but not registered within %2 s").arg(uuid).arg(kRegisterMs / 1000);
    return {};
}

QString SoakBench::unplug(const QString& uuid)
{
    // A board the fault already pulled answers with an error; that is fine.
    m_control->unplug_board(uuid.toUtf8().constData());
    EventWait wait;
    wait.watch(&m_host.deviceRegister(), "devicesChanged()");
    if (!wait.until([&] { return registered(m_host, uuid) == nullptr; }, kRegisterMs))
        return QStringLiteral("board %1 was unplugged but still registered after %2 s").arg(uuid).arg(kRegisterMs / 1000);
    return {};
}

QObject* SoakBench::view(const char* name) const
{
    return m_host.engine()->rootContext()->contextProperty(QString::fromLatin1(name)).value<QObject*>();
}
