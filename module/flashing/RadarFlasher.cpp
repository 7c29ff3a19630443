#include "flashing/RadarFlasher.h"

#include "flashing/IRadarFirmwareSource.h"
#include "flashing/RadarFlasherWorker.h"

#include <QDebug>
#include <QThread>

namespace {
// How long closing waits for a job to leave its library call.
constexpr unsigned long kCloseWaitMs = 3000;
}

RadarFlasher::RadarFlasher(QString port, QString productId, RadarBaseboardIdentity identity,
                           const IRadarFirmwareSource* firmwareSource, LibraryFactory libraryFactory,
                           RadarFlasherTiming timing, QObject* parent)
    : IFlasher(parent)
    , m_name((port + QStringLiteral(" (Radar)")).toStdString())
    , m_port(std::move(port))
    , m_productId(std::move(productId))
    , m_identity(std::move(identity))
    , m_firmwareDir(firmwareSource ? firmwareSource->firmwareDirectoryUrl().toString() : QString())
    , m_filenamePattern(firmwareSource ? firmwareSource->filenamePattern() : QStringLiteral("RadarBaseboardKT4*.bin"))
    , m_libraryFactory(std::move(libraryFactory))
    , m_timing(timing)
{
    // The job reports its status across threads.
    qRegisterMetaType<FlasherStatus::Status>("FlasherStatus::Status");
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &RadarFlasher::onTimerTimeout);
}

RadarFlasher::~RadarFlasher()
{
    QThread* thread = m_thread;
    detachJob();
    // A job stuck in a library call cannot be interrupted; it is given a
    // moment and otherwise left to end on its own.
    if (thread && !thread->wait(kCloseWaitMs))
        qWarning().noquote() << QStringLiteral("The flashing job of %1 is still in the flashing library")
                                    .arg(QString::fromStdString(m_name));
}

bool RadarFlasher::isRunning(FlasherStatus::Status status)
{
    return status == FlasherStatus::STARTED || status == FlasherStatus::BOOTLOADER
        || status == FlasherStatus::FLASHING;
}

void RadarFlasher::flash(const QString& imagePath)
{
    if (isRunning(m_status)) {
        qInfo().noquote() << QStringLiteral("%1 is already flashing; the request is ignored")
                                 .arg(QString::fromStdString(m_name));
        return;
    }
    if (m_thread)
        qWarning().noquote() << QStringLiteral("The previous job of %1 has not left the flashing library yet")
                                    .arg(QString::fromStdString(m_name));

    qDebug().noquote() << QStringLiteral("Flashing %1 with %2").arg(QString::fromStdString(m_name), imagePath);
    auto* worker = new RadarFlasherWorker(m_port, m_productId, imagePath, m_identity, m_timing, m_libraryFactory());
    setProgress(0);
    setStatus(FlasherStatus::STARTED);

    auto* thread = new QThread;
    worker->moveToThread(thread);
    connect(thread, &QThread::started, worker, &RadarFlasherWorker::process);
    // Direct: quitting is safe from the job's thread, and it must not wait
    // for this thread's event loop (closing waits for the job).
    connect(worker, &RadarFlasherWorker::done, thread, &QThread::quit, Qt::DirectConnection);
    connect(thread, &QThread::finished, worker, &QObject::deleteLater);
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    connect(thread, &QThread::finished, this, &RadarFlasher::onFinished);
    connect(worker, &RadarFlasherWorker::updateMessage, this, &RadarFlasher::setMessage);
    connect(worker, &RadarFlasherWorker::updateStatus, this, &RadarFlasher::setStatus);
    connect(worker, &RadarFlasherWorker::updateProgress, this, &RadarFlasher::setProgress);
    m_thread = thread;
    m_worker = worker;
    thread->start();
    m_timer.start(m_timing.timeLimit);
}

void RadarFlasher::clear()
{
    if (isRunning(m_status))
        return;
    setProgress(0);
    setStatus(FlasherStatus::NOT_STARTED);
    setMessage(QString());
}

void RadarFlasher::setProgress(int value)
{
    if (m_progress == value)
        return;
    m_progress = value;
    emit progressChanged();
}

void RadarFlasher::setStatus(FlasherStatus::Status value)
{
    if (m_status == value)
        return;
    m_status = value;
    emit statusChanged();
}

void RadarFlasher::setMessage(QString value)
{
    if (m_message == value)
        return;
    m_message = std::move(value);
    emit messageChanged();
}

void RadarFlasher::onTimerTimeout()
{
    m_timer.stop();
    // The job may have ended just as the timer fired.
    if (!isRunning(m_status))
        return;
    qWarning().noquote() << QStringLiteral("Flashing %1 took longer than %2 ms")
                                .arg(QString::fromStdString(m_name))
                                .arg(m_timing.timeLimit.count());
    // Whatever the job still reports belongs to a job that is over for the
    // user; a new one may start at once.
    detachJob();
    setStatus(FlasherStatus::TIMEOUT);
    setMessage(QStringLiteral("ERROR: Time exceeded during flash. Aborting..."));
    emit finished();
}

void RadarFlasher::onFinished()
{
    if (sender() != m_thread)
        return; // a job given up at its time limit has ended after all
    m_timer.stop();
    m_thread.clear();
    m_worker.clear();
    emit finished();
}

void RadarFlasher::detachJob()
{
    if (m_worker) {
        m_worker->requestStop();
        disconnect(m_worker, nullptr, this, nullptr);
    }
    if (m_thread)
        disconnect(m_thread, nullptr, this, nullptr);
    m_thread.clear();
    m_worker.clear();
}
