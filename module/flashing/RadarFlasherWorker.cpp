#include "flashing/RadarFlasherWorker.h"

#include <QDebug>
#include <QFileInfo>

#include <algorithm>
#include <thread>

namespace {

constexpr int kBootloaderPolls = 25;
constexpr unsigned int kBootloaderPollMs = 200;
constexpr unsigned int kReturnPollMs = 10;
// The initial wait is slept in slices so that a stopped job ends promptly.
constexpr std::chrono::milliseconds kWaitSlice { 100 };

bool contains(const std::vector<std::string>& ports, const std::string& port)
{
    return std::find(ports.begin(), ports.end(), port) != ports.end();
}

} // namespace

RadarFlasherWorker::RadarFlasherWorker(QString port, QString productId, QString imagePath,
                                       RadarBaseboardIdentity identity, RadarFlasherTiming timing,
                                       std::unique_ptr<ISdkRadarFlasher> library, QObject* parent)
    : QObject(parent)
    , m_port(port.toStdString())
    , m_productId(productId.toStdString())
    , m_imagePath(std::move(imagePath))
    , m_identity(std::move(identity))
    , m_timing(timing)
    , m_library(library.release())
{
    m_library->setParent(this);
    connect(m_library, &ISdkRadarFlasher::updateMessage, this, &RadarFlasherWorker::updateMessage);
    connect(m_library, &ISdkRadarFlasher::updateProgress, this, &RadarFlasherWorker::updateProgress);
    connect(m_library, &ISdkRadarFlasher::updateStatus, this, &RadarFlasherWorker::updateStatus);
}

void RadarFlasherWorker::process()
{
    run();
    emit done();
}

void RadarFlasherWorker::run()
{
    if (!imageIsReadable() || !waitInitially())
        return;

    const std::vector<std::string> alreadyInBootloader =
        m_library->findComPorts(RadarBaseboardIdentity::kBootloaderVendorId, RadarBaseboardIdentity::kBootloaderProductId);
    std::vector<std::string> bootloaderPorts;
    if (contains(alreadyInBootloader, m_port)) {
        // A board left in its bootloader (an earlier job broke off) is
        // written at once.
        bootloaderPorts = alreadyInBootloader;
    } else {
        emit updateMessage(QStringLiteral("BOOTLOADER: 0 Activating the bootloader"));
        emit updateProgress(0);
        emit updateStatus(FlasherStatus::STARTED);
        if (!listsPort(m_identity.vendorId, m_productId)) {
            emit updateMessage(QStringLiteral("ERROR: DEVICE NOT FOUND"));
            emit updateStatus(FlasherStatus::NO_DEVICE);
            return;
        }
        std::string error;
        if (!m_library->activateBootloader(m_productId, m_port, error)) {
            fail(QString::fromStdString(error), FlasherStatus::BOOTLOADER_FAILURE);
            return;
        }
        bootloaderPorts = awaitBootloader();
        if (stopped())
            return;
        if (bootloaderPorts.empty()) {
            emit updateMessage(QStringLiteral("ERROR: DEVICE NOT FOUND"));
            emit updateStatus(FlasherStatus::NO_DEVICE);
            return;
        }
        emit updateStatus(FlasherStatus::BOOTLOADER);
    }

    // With several boards in their bootloaders at once, ours is the one to
    // write; otherwise the one that has just appeared.
    const std::string bootloaderPort = contains(bootloaderPorts, m_port) ? m_port : bootloaderPorts.front();
    emit updateMessage(QStringLiteral("BOOTLOADER: 100 %1").arg(QString::fromStdString(bootloaderPort)));

    emit updateStatus(FlasherStatus::FLASHING);
    std::string error;
    const bool written = m_library->flash(bootloaderPort, m_imagePath.toStdString(), error);
    if (stopped())
        return;
    if (!written) {
        fail(QString::fromStdString(error), FlasherStatus::FLASHING_FAILURE);
        return;
    }

    if (!isBackInNormalMode()) {
        if (stopped())
            return;
        fail(QStringLiteral("The board did not come back on %1 in normal mode within %2 s after flashing")
                 .arg(QString::fromStdString(m_port))
                 .arg(m_timing.returnLimit.count() / 1000.0),
             FlasherStatus::FINISHED_FAILURE);
        return;
    }
    emit updateMessage(QStringLiteral("EXIT: successful"));
    emit updateStatus(FlasherStatus::FINISHED_SUCCESS);
}

// Checked before the board is touched: a board put into its bootloader for
// an image that cannot be read would be left there for nothing.
bool RadarFlasherWorker::imageIsReadable()
{
    const QFileInfo image(m_imagePath);
    if (m_imagePath.isEmpty()) {
        fail(QStringLiteral("No firmware image was given"), FlasherStatus::FINISHED_FAILURE);
        return false;
    }
    if (!image.isFile() || !image.isReadable()) {
        fail(QStringLiteral("The firmware image %1 does not exist or cannot be read").arg(m_imagePath),
             FlasherStatus::FINISHED_FAILURE);
        return false;
    }
    return true;
}

bool RadarFlasherWorker::waitInitially()
{
    const auto until = std::chrono::steady_clock::now() + m_timing.initialWait;
    while (!stopped()) {
        const auto now = std::chrono::steady_clock::now();
        if (now >= until)
            return true;
        std::this_thread::sleep_until(std::min(until, now + kWaitSlice));
    }
    return false;
}

bool RadarFlasherWorker::listsPort(const std::string& vendorId, const std::string& productId)
{
    return contains(m_library->findComPorts(vendorId, productId), m_port);
}

std::vector<std::string> RadarFlasherWorker::awaitBootloader()
{
    for (int poll = 0; poll < kBootloaderPolls && !stopped(); ++poll) {
        m_library->sleep_for(kBootloaderPollMs);
        std::vector<std::string> ports = m_library->findComPorts(RadarBaseboardIdentity::kBootloaderVendorId,
                                                                 RadarBaseboardIdentity::kBootloaderProductId);
        if (!ports.empty())
            return ports;
    }
    return {};
}

// A board that never comes back would otherwise keep the job, and its
// thread, alive for good.
bool RadarFlasherWorker::isBackInNormalMode()
{
    const auto until = std::chrono::steady_clock::now() + m_timing.returnLimit;
    while (!stopped()) {
        m_library->sleep_for(kReturnPollMs);
        for (const std::string& productId : m_identity.productIds) {
            if (listsPort(m_identity.vendorId, productId))
                return true;
        }
        if (std::chrono::steady_clock::now() >= until)
            return false;
    }
    return false;
}

void RadarFlasherWorker::fail(const QString& reason, FlasherStatus::Status status)
{
    m_lastLibraryMessage = reason;
    qWarning().noquote() << QStringLiteral("Flashing the board on %1 failed: %2")
                                .arg(QString::fromStdString(m_port), reason);
    emit updateMessage(QStringLiteral("ERROR: %1").arg(reason));
    emit updateMessage(QStringLiteral("EXIT: failure"));
    emit updateStatus(status);
}
