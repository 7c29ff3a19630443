#pragma once

#include "flashing/RadarBaseboardIdentity.h"
#include "flashing/RadarFlasher.h"
#include "flashing/RadarFlasherTiming.h"
#include "frame/RadarEventCode.h"
#include "host/IFlasher.h"

#include <QMap>
#include <QObject>
#include <QSet>
#include <QThread>
#include <QTimer>
#include <chrono>
#include <memory>
#include <string>

class IRadarFirmwareSource;
class ISdkRadarFlasher;

// Watches the serial ports for radar baseboards, in normal and in bootloader
// mode, and offers one flasher per board to the host: added when a board
// appears, removed when it has gone (but never during its job). Looks on the
// host's device-change notice and every detection period, since a board in
// its bootloader is no radar device the host would tell of.
class RadarFlasherMonitor : public QObject
{
    Q_OBJECT
public:
    static constexpr std::chrono::milliseconds kDefaultDetectionPeriod { 2000 };

    // `scanLibrary` lists the ports (on the monitor's own thread);
    // `jobLibraries` makes the library of each job, the product's by default.
    RadarFlasherMonitor(IRadarFirmwareSource* firmwareSource, std::unique_ptr<ISdkRadarFlasher> scanLibrary,
                        RadarFlasher::LibraryFactory jobLibraries = {}, RadarFlasherTiming timing = {},
                        QObject* parent = nullptr);
    ~RadarFlasherMonitor() override;

    // The normal-mode identity from the settings; applies from the next look.
    void setIdentity(const RadarBaseboardIdentity& identity);
    // 0 looks only when asked.
    void setDetectionPeriod(std::chrono::milliseconds period);

    QList<std::shared_ptr<RadarFlasher>> flashers() const { return m_flashers.values(); }
    std::shared_ptr<RadarFlasher> flasherOnPort(const QString& port) const { return m_flashers.value(port); }
    bool isDetecting() const { return m_detecting; }

signals:
    void flasherAdded(std::shared_ptr<IFlasher> flasher);
    void flasherRemoved(std::string name);
    void triggerEvent(RadarEventCode code, QString message, QString details);
    // One look at the ports has been taken into account.
    void detectionFinished();
    void scanRequest(const QString& vendorId, const QStringList& productIds);

public slots:
    void detectDevices();

private:
    void onScanned(const QMap<QString, QString>& normalPorts, const QStringList& bootloaderPorts);
    void noticeBootloader(const QString& port);

    IRadarFirmwareSource* m_firmwareSource;
    RadarFlasher::LibraryFactory m_jobLibraries;
    RadarFlasherTiming m_timing;
    RadarBaseboardIdentity m_identity;
    QThread m_thread;
    QTimer m_period;
    // Everything below is touched on the monitor's own thread only.
    QMap<QString, std::shared_ptr<RadarFlasher>> m_flashers; // by port
    QSet<QString> m_inBootloader;
    bool m_detecting = false;
    bool m_detectAgain = false;
};
