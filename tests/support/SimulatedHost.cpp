#include "SimulatedHost.h"

#include "DeviceListing.h"
#include "ModuleHost.h"

#include "host/IDevice.h"

#include <QDir>
#include <QFile>
#include <QQmlContext>
#include <QQmlEngine>

SimulatedHost::SimulatedHost() = default;

SimulatedHost::~SimulatedHost()
{
    stop();
}

QString SimulatedHost::start(const QString& benchJson, const QString& directory)
{
    const QString bench = QDir(directory).filePath(QStringLiteral("bench.json"));
    QFile file(bench);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(benchJson.toUtf8()) < 0)
        return QStringLiteral("Cannot write %1: %2").arg(bench, file.errorString());
    file.close();

    m_host = std::make_unique<ModuleHost>();
    ModuleHost::Options options;
    options.modulePath = QStringLiteral(RADAR_MODULE);
    options.sdkPath = QStringLiteral(VRN_SIM_LIBRARY);
    options.settingsPath = QDir(directory).filePath(QStringLiteral("settings.json"));
    options.benchPath = bench;
    QString error = m_host->start(options);
    if (error.isEmpty())
        error = awaitBoards(*m_host);
    if (error.isEmpty() && !view())
        error = QStringLiteral("The module set no \"radarView\"");
    return error;
}

QString SimulatedHost::connectFirstBoard()
{
    m_device = m_host->deviceRegister().devices().value(0);
    if (!m_device)
        return QStringLiteral("No board was detected");
    if (!m_device->connectDevice())
        return QStringLiteral("Board %1 did not connect").arg(m_device->name());
    return {};
}

void SimulatedHost::stop()
{
    m_device.reset();
    if (m_host)
        m_host->stop();
    m_host.reset();
}

CoreUserSettings& SimulatedHost::core()
{
    return *m_host->coreConfiguration().coreUserSettings();
}

QObject* SimulatedHost::view() const
{
    return m_host->engine()->rootContext()->contextProperty(QStringLiteral("radarView")).value<QObject*>();
}

QString SimulatedHost::oneBoardBench(const QString& uuid, const QString& chip, const QString& pacing,
                                     const QString& scene)
{
    const QString sceneMember = scene.isEmpty() ? QString() : QStringLiteral(", \"scene\": %1").arg(scene);
    return QStringLiteral(R"({ "boards": [ { "uuid": "%1", "shield": 512, "chip": "%2", "pacing": "%3",
        "noise": 0.001, "seed": 7%4 } ] })")
        .arg(uuid, chip, pacing, sceneMember);
}
