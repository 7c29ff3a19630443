#include "flashing/RadarFlasherMonitor.h"

#include "flashing/RadarFlasherPortScanner.h"
#include "flashing/SdkRadarFlasher.h"

#include <QDebug>

namespace {

constexpr unsigned long kStopWaitMs = 3000;

QStringList toStringList(const std::vector<std::string>& texts)
{
    QStringList list;
    for (const std::string& text : texts)
        list << QString::fromStdString(text);
    return list;
}

} // namespace

RadarFlasherMonitor::RadarFlasherMonitor(IRadarFirmwareSource* firmwareSource,
                                         std::unique_ptr<ISdkRadarFlasher> scanLibrary,
                                         RadarFlasher::LibraryFactory jobLibraries, RadarFlasherTiming timing,
                                         QObject* parent)
    : QObject(parent)
    , m_firmwareSource(firmwareSource)
    , m_jobLibraries(std::move(jobLibraries))
    , m_timing(timing)
{
    if (!m_jobLibraries)
        m_jobLibraries = [] { return std::make_unique<SdkRadarFlasher>(); };

    qRegisterMetaType<QMap<QString, QString>>("QMap<QString,QString>");
    auto* scanner = new RadarFlasherPortScanner(std::move(scanLibrary));
    scanner->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, scanner, &QObject::deleteLater);
    connect(this, &RadarFlasherMonitor::scanRequest, scanner, &RadarFlasherPortScanner::scan);
    connect(scanner, &RadarFlasherPortScanner::scanned, this, &RadarFlasherMonitor::onScanned);
    m_thread.start();

    connect(&m_period, &QTimer::timeout, this, &RadarFlasherMonitor::detectDevices);
    setDetectionPeriod(kDefaultDetectionPeriod);
}

RadarFlasherMonitor::~RadarFlasherMonitor()
{
    m_period.stop();
    m_thread.quit();
    if (!m_thread.wait(kStopWaitMs)) {
        qWarning() << "The flasher monitor's detection did not end in time";
        m_thread.terminate();
        m_thread.wait();
    }
    // The host must not keep flashers whose module is going away.
    for (const auto& flasher : qAsConst(m_flashers))
        emit flasherRemoved(flasher->name());
}

void RadarFlasherMonitor::setIdentity(const RadarBaseboardIdentity& identity)
{
    m_identity = identity;
    for (const auto& flasher : qAsConst(m_flashers))
        flasher->setIdentity(identity);
}

void RadarFlasherMonitor::setDetectionPeriod(std::chrono::milliseconds period)
{
    if (period.count() > 0)
        m_period.start(period);
    else
        m_period.stop();
}

// Requests arriving during a look coalesce into one more look after it.
void RadarFlasherMonitor::detectDevices()
{
    if (m_detecting) {
        m_detectAgain = true;
        return;
    }
    m_detecting = true;
    emit scanRequest(QString::fromStdString(m_identity.vendorId), toStringList(m_identity.productIds));
}

void RadarFlasherMonitor::onScanned(const QMap<QString, QString>& normalPorts, const QStringList& bootloaderPorts)
{
    QMap<QString, QString> ports = normalPorts;
    for (const QString& port : bootloaderPorts)
        ports.insert(port, QString::fromLatin1(RadarBaseboardIdentity::kBootloaderProductId));

    for (auto it = m_flashers.begin(); it != m_flashers.end();) {
        const std::shared_ptr<RadarFlasher>& flasher = it.value();
        // A board being flashed leaves the lists while it restarts.
        if (ports.contains(it.key()) || flasher->isBusy()) {
            ++it;
            continue;
        }
        qDebug().noquote() << QStringLiteral("Baseboard on %1 has gone").arg(it.key());
        const std::string name = flasher->name();
        m_inBootloader.remove(it.key());
        it = m_flashers.erase(it);
        emit flasherRemoved(name);
    }

    for (auto it = ports.cbegin(); it != ports.cend(); ++it) {
        const QString& port = it.key();
        const bool inBootloader = bootloaderPorts.contains(port);
        auto known = m_flashers.find(port);
        if (known == m_flashers.end()) {
            qDebug().noquote() << QStringLiteral("Baseboard found on %1 (product %2)").arg(port, it.value());
            auto flasher = std::make_shared<RadarFlasher>(port, it.value(), m_identity, m_firmwareSource,
                                                          m_jobLibraries, m_timing);
            // A board may have gone during its job; look again once it ends.
            connect(flasher.get(), &IFlasher::finished, this, &RadarFlasherMonitor::detectDevices);
            m_flashers.insert(port, flasher);
            emit flasherAdded(flasher);
        } else if (!inBootloader && known.value()->productId() != it.value()) {
            known.value()->setProductId(it.value());
        }
        if (inBootloader && !m_inBootloader.contains(port) && !m_flashers.value(port)->isBusy())
            noticeBootloader(port);
        if (inBootloader)
            m_inBootloader.insert(port);
        else
            m_inBootloader.remove(port);
    }

    m_detecting = false;
    emit detectionFinished();
    if (m_detectAgain) {
        m_detectAgain = false;
        detectDevices();
    }
}

// A board found waiting in its bootloader has no working firmware until it
// is flashed again; the user hears of it once.
void RadarFlasherMonitor::noticeBootloader(const QString& port)
{
    emit triggerEvent(RadarEventCode::Notice,
                      QStringLiteral("The radar baseboard on %1 is waiting in its bootloader").arg(port),
                      QStringLiteral("Flash its firmware to bring it back into normal mode."));
}
