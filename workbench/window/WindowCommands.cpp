#include "WindowCommands.h"

#include "BoardList.h"
#include "DeviceListing.h"
#include "ExitCodes.h"
#include "InterruptWatcher.h"
#include "MessageLog.h"
#include "ModuleHost.h"
#include "SessionStatus.h"
#include "ViewConnection.h"
#include "WindowPicture.h"
#include "WorkbenchWindow.h"

#include "host/IDevice.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QImage>
#include <QQuickWindow>
#include <QTimer>

namespace {

// A source that delivers nothing for this long has stalled.
constexpr int kStallMs = 10000;
// The longest wait for the board's first temperature reading.
constexpr int kTemperatureWaitMs = 6000;
// After the last refresh, time for the scene graph to take the new charts.
constexpr int kSettleMs = 300;

// Runs the event loop until `done` holds or `timeoutMs` passes; true when
// it holds.
template<typename Predicate>
bool waitUntil(Predicate done, int timeoutMs)
{
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (done())
            loop.quit();
    });
    QTimer timeout;
    timeout.setSingleShot(true);
    QObject::connect(&timeout, &QTimer::timeout, &loop, &QEventLoop::quit);
    if (done())
        return true;
    poll.start(20);
    timeout.start(timeoutMs);
    loop.exec();
    return done();
}

// The error messages of the session, for standard error.
void printErrors(MessageLog& messages, int from, QTextStream& err)
{
    for (int row = from; row < messages.count(); ++row) {
        const QModelIndex index = messages.index(row);
        if (messages.data(index, MessageLog::TypeRole).toInt() == Constants::Error)
            err << "[error] " << messages.textAt(row).replace('\n', QStringLiteral(" (")) << Qt::endl;
    }
}

} // namespace

bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

int runWindow(ModuleHost& host, LogFile* logFile, bool connect, const QString& device, QTextStream& err)
{
    WorkbenchWindow window(host, logFile);
    const QString error = window.open();
    if (!error.isEmpty()) {
        err << error << Qt::endl;
        return ExitCode::StartError;
    }
    if (connect) {
        // What goes wrong is said in the window's messages; the window
        // stays open for the user to pick another board.
        const QString boardsError = awaitBoards(host);
        const std::shared_ptr<IDevice> board = boardsError.isEmpty()
            ? (device.isEmpty() ? host.deviceRegister().devices().value(0) : findBoard(host, device))
            : nullptr;
        if (board)
            window.boardList().connectBoard(board->name());
        else
            window.messageLog().add(Constants::Error, QStringLiteral("No board to connect"),
                                    !boardsError.isEmpty() ? boardsError
                                    : device.isEmpty()     ? QStringLiteral("No board is attached.")
                                                           : QStringLiteral("No board is named \"%1\" or has that uuid; "
                                                                            "the boards are: %2")
                                                             .arg(device, boardNames(host)));
    }
    // Ctrl+C in the terminal closes the window as the user would: the
    // recording is finished and the board let go.
    InterruptWatcher interrupts;
    QObject::connect(&interrupts, &InterruptWatcher::interrupted, window.window(), &QQuickWindow::close);
    QCoreApplication::exec();
    return ExitCode::Success;
}

int runScreenshot(ModuleHost& host, LogFile* logFile, const QString& file, int frames, QTextStream& out,
                  QTextStream& err)
{
    const QString target = QFileInfo(file).absoluteFilePath();
    if (!QFileInfo(QFileInfo(target).absolutePath()).isDir()) {
        err << "Cannot write " << target << ": no such directory" << Qt::endl;
        return ExitCode::UsageError;
    }
    WorkbenchWindow window(host, logFile);
    const QString error = window.open();
    if (!error.isEmpty()) {
        err << error << Qt::endl;
        return ExitCode::StartError;
    }
    auto fail = [&](const QString& reason) {
        printErrors(window.messageLog(), 0, err);
        err << "Screenshot failed: " << reason << Qt::endl;
        window.finishSession();
        return ExitCode::SessionFailed;
    };

    const QString boardsError = awaitBoards(host);
    if (!boardsError.isEmpty())
        return fail(boardsError);
    BoardList& boards = window.boardList();
    const int first = boards.preferredIndex();
    if (first < 0)
        return fail(QStringLiteral("no board is attached"));
    const QString name = boards.data(boards.index(first), BoardList::NameRole).toString();
    if (!boards.connectBoard(name))
        return fail(QStringLiteral("%1 could not be connected").arg(name));

    // Frames, with a watchdog for a board that stops delivering.
    SessionStatus& status = window.sessionStatus();
    quint64 seen = 0;
    while (status.frames() < quint64(frames)) {
        seen = status.frames();
        waitUntil([&] { return status.frames() > seen || status.frames() >= quint64(frames)
                               || boards.connectedBoard().isEmpty(); },
                  kStallMs);
        if (boards.connectedBoard().isEmpty())
            return fail(QStringLiteral("%1 was lost after %2 frames").arg(name).arg(status.frames()));
        if (status.frames() == seen)
            return fail(QStringLiteral("no frame arrived for %1 s (%2 of %3)").arg(kStallMs / 1000).arg(seen).arg(frames));
    }

    // The board's first temperature reading comes a few seconds after the
    // start; a board that has none is shown without.
    waitUntil([&] { return !status.temperature().isEmpty(); }, kTemperatureWaitMs);

    // The picture shows the charts of a frame, not the empty ones before it,
    // as the connected board's mode draws them.
    QObject* view = window.activeView();
    if (view) {
        QEventLoop refresh;
        connectByName(view, "chartsDataUpdated()", &refresh, "quit()");
        QTimer::singleShot(3000, &refresh, &QEventLoop::quit);
        refresh.exec();
    }
    QEventLoop settle;
    QTimer::singleShot(kSettleMs, &settle, &QEventLoop::quit);
    settle.exec();

    const QImage picture = renderedWindow(*window.window());
    if (picture.isNull())
        return fail(QStringLiteral("the window could not be rendered"));
    if (!picture.save(target, "PNG"))
        return fail(QStringLiteral("cannot write %1").arg(target));
    printErrors(window.messageLog(), 0, err);
    out << "Screenshot: " << target << " (" << picture.width() << 'x' << picture.height() << ", " << status.frames()
        << " frames)" << Qt::endl;
    window.finishSession();
    return ExitCode::Success;
}
