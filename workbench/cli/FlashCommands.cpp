#include "FlashCommands.h"

#include "ExitCodes.h"
#include "FirmwareImages.h"
#include "FlashJob.h"
#include "InterruptWatcher.h"
#include "ModuleHost.h"

#include "host/IFlasher.h"

#include <QEventLoop>
#include <QTextStream>
#include <QTimer>

namespace {

// The monitor answers the notice on the GUI thread; the list has settled
// once it stayed the same for a moment.
constexpr int kQuietMs = 300;
constexpr int kMostMs = 5000;

void awaitFlashers(ModuleHost& host)
{
    QEventLoop loop;
    QTimer quiet;
    quiet.setSingleShot(true);
    QObject::connect(&quiet, &QTimer::timeout, &loop, &QEventLoop::quit);
    QObject::connect(&host.flasherRegister(), &HostFlasherRegister::flashersChanged, &quiet,
                     [&quiet] { quiet.start(kQuietMs); });
    QTimer::singleShot(kMostMs, &loop, &QEventLoop::quit);
    host.deviceChangeNotifier().notifyLater();
    quiet.start(kQuietMs);
    loop.exec();
}

QString flasherNames(ModuleHost& host)
{
    QStringList names;
    for (const auto& flasher : host.flasherRegister().flashers())
        names << QStringLiteral("\"%1\"").arg(QString::fromStdString(flasher->name()));
    return names.isEmpty() ? QStringLiteral("none") : names.join(QStringLiteral(", "));
}

} // namespace

int listFlashers(ModuleHost& host, QTextStream& out, QTextStream& err)
{
    awaitFlashers(host);
    const auto flashers = host.flasherRegister().flashers();
    if (flashers.isEmpty()) {
        err << "No baseboard was found on the serial ports." << Qt::endl;
        return ExitCode::Success;
    }
    for (const auto& flasher : flashers) {
        const QString image = FirmwareImages::newest(*flasher);
        out << QString::fromStdString(flasher->name()) << '\t' << FlashJob::statusName(flasher->status()) << '\t'
            << (image.isEmpty() ? QStringLiteral("no image in %1").arg(FirmwareImages::localFolder(flasher->firmwareDir())) : image)
            << Qt::endl;
    }
    return ExitCode::Success;
}

int flashBoard(ModuleHost& host, const QString& name, const QString& image, QTextStream& out, QTextStream& err)
{
    awaitFlashers(host);
    std::shared_ptr<IFlasher> flasher = host.flasherRegister().flasher(name);
    if (!flasher)
        flasher = host.flasherRegister().flasher(name + QStringLiteral(" (Radar)"));
    if (!flasher) {
        err << "No flasher is named \"" << name << "\"; the flashers are: " << flasherNames(host) << Qt::endl;
        return ExitCode::UsageError;
    }
    QString path = image.isEmpty() ? FirmwareImages::newest(*flasher) : FirmwareImages::userPath(image);
    if (path.isEmpty()) {
        err << "No firmware image matching " << flasher->filenamePattern() << " in "
            << FirmwareImages::localFolder(flasher->firmwareDir()) << "; give one with --image FILE." << Qt::endl;
        return ExitCode::UsageError;
    }
    out << "Flashing " << QString::fromStdString(flasher->name()) << " with " << path << Qt::endl;

    FlashJob job(flasher, out);
    // Stopping half-way may leave the board in its bootloader, where it can
    // be flashed again; the first signal only warns.
    InterruptWatcher interrupts;
    int interruptions = 0;
    int lastSignal = 0;
    QObject::connect(&interrupts, &InterruptWatcher::interrupted, &job, [&](int signalNumber) {
        lastSignal = signalNumber;
        if (++interruptions == 1) {
            out << Qt::endl << "The board is being flashed; stopping now may leave it in its bootloader. "
                                "Interrupt again to stop waiting." << Qt::endl;
            return;
        }
        job.onInterrupted(signalNumber);
    });
    const FlasherStatus::Status status = job.run(path);
    if (job.wasInterrupted()) {
        err << "Interrupted while " << FlashJob::statusName(status) << ": " << flasher->message() << Qt::endl;
        return ExitCode::interruptedBy(lastSignal);
    }
    if (status == FlasherStatus::FINISHED_SUCCESS)
        return ExitCode::Success;
    if (status == FlasherStatus::NOT_STARTED || !FlashJob::isFinal(status)) {
        err << "The flasher did not start the job: " << FlashJob::statusName(status) << Qt::endl;
        return ExitCode::SessionFailed;
    }
    err << "Flashing failed: " << FlashJob::statusName(status) << ": " << job.failure() << Qt::endl;
    return ExitCode::SessionFailed;
}
