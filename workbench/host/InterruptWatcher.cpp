#include "InterruptWatcher.h"

#include <QDebug>
#include <QSocketNotifier>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int kWatched[] = { SIGINT, SIGTERM };

// Written by the handler, read on the watcher's thread: [0] is read, [1] written.
int g_pipe[2] = { -1, -1 };
struct sigaction g_previous[sizeof(kWatched) / sizeof(kWatched[0])];

extern "C" void onSignal(int signalNumber)
{
    const int savedErrno = errno;
    const unsigned char byte = static_cast<unsigned char>(signalNumber);
    // Non-blocking: a full socket only loses a repeat of a signal already
    // queued, and the handler never waits.
    (void)::write(g_pipe[1], &byte, 1);
    errno = savedErrno;
}

} // namespace

InterruptWatcher::InterruptWatcher(QObject* parent)
    : QObject(parent)
{
    if (g_pipe[0] >= 0) {
        qWarning() << "Signals are already watched by another watcher";
        return;
    }
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, g_pipe) != 0) {
        qWarning() << "Cannot create the signal socket pair:" << std::strerror(errno);
        g_pipe[0] = g_pipe[1] = -1;
        return;
    }
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    // Restart interrupted system calls: the rest of the process need not
    // know that a signal came.
    action.sa_flags = SA_RESTART;
    for (size_t i = 0; i < sizeof(kWatched) / sizeof(kWatched[0]); ++i) {
        if (::sigaction(kWatched[i], &action, &g_previous[i]) != 0)
            qWarning() << "Cannot handle signal" << kWatched[i] << ':' << std::strerror(errno);
    }
    m_notifier = new QSocketNotifier(g_pipe[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &InterruptWatcher::readSignals);
}

InterruptWatcher::~InterruptWatcher()
{
    if (!m_notifier)
        return;
    for (size_t i = 0; i < sizeof(kWatched) / sizeof(kWatched[0]); ++i)
        ::sigaction(kWatched[i], &g_previous[i], nullptr);
    delete m_notifier;
    ::close(g_pipe[0]);
    ::close(g_pipe[1]);
    g_pipe[0] = g_pipe[1] = -1;
}

void InterruptWatcher::readSignals()
{
    unsigned char byte = 0;
    const ssize_t got = ::read(g_pipe[0], &byte, 1);
    if (got == 1)
        emit interrupted(int(byte));
}
