#pragma once

#include <QObject>

class QSocketNotifier;

// Turns SIGINT and SIGTERM into a Qt signal on the thread that created the
// watcher, so a session can finish cleanly instead of dying mid-write. The
// handler only writes the signal number into a socket pair (the one thing
// it may safely do); a socket notifier reads it back in the event loop.
// One watcher per process; the previous handlers return when it goes.
class InterruptWatcher : public QObject
{
    Q_OBJECT
public:
    explicit InterruptWatcher(QObject* parent = nullptr);
    ~InterruptWatcher() override;

    // False (with a log line) when the signals could not be taken over; the
    // process then keeps the default behaviour.
    bool isWatching() const { return m_notifier != nullptr; }

signals:
    void interrupted(int signalNumber);

private:
    void readSignals();

    QSocketNotifier* m_notifier = nullptr;
};
