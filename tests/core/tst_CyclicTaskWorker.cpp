#include "core/CyclicTaskWorker.h"

#include <QSemaphore>
#include <QtTest>

#include <atomic>
#include <mutex>
#include <vector>

namespace {

// Records what the worker's thread did, readable from the test's thread.
// A standard mutex and container, whose hand-over thread checkers can
// follow; a shared QStringList would be released outside the lock.
class Journal
{
public:
    void add(const QString& entry)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_entries.push_back(entry);
    }
    QStringList entries() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        QStringList entries;
        for (const QString& entry : m_entries)
            entries.append(entry);
        return entries;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<QString> m_entries;
};

}

class TestCyclicTaskWorker : public QObject
{
    Q_OBJECT
private slots:
    void taskReturningFalseRunsOnceBetweenHooksOnAnotherThread()
    {
        Journal journal;
        std::atomic<QThread*> taskThread { nullptr };
        std::atomic<QThread*> hookThread { nullptr };
        CyclicTaskWorker worker([&] { taskThread = QThread::currentThread(); journal.add("task"); return false; },
                                [&] { hookThread = QThread::currentThread(); journal.add("start"); },
                                [&] { journal.add("finish"); });
        // Stopping a worker that never started does nothing.
        worker.stop();
        QVERIFY(!worker.isRunning());
        QVERIFY(journal.entries().isEmpty());
        worker.start();
        QTRY_COMPARE(journal.entries(), (QStringList { "start", "task", "finish" }));
        QVERIFY(taskThread.load() != QThread::currentThread());
        QCOMPARE(hookThread.load(), taskThread.load());
        // The thread idles in its event loop until stopped.
        QVERIFY(worker.isRunning());
        worker.stop();
        QVERIFY(!worker.isRunning());
        QCOMPARE(journal.entries().size(), 3);
        QCOMPARE(worker.thread(), QThread::currentThread());

        // It starts again after a stop.
        worker.start();
        QTRY_COMPARE(journal.entries().size(), 6);
        QVERIFY(worker.isRunning());
        worker.stop();
        QVERIFY(!worker.isRunning());
    }

    void stopWhileLoopingEndsAfterCurrentCallAndRunsOnFinish()
    {
        std::atomic<int> calls { 0 };
        std::atomic<bool> inCall { false };
        std::atomic<bool> inCallAtFinish { true };
        std::atomic<int> finishes { 0 };
        std::atomic<int> callsAtFinish { -1 };
        QSemaphore neverReleased;
        CyclicTaskWorker worker(
            [&] {
                inCall = true;
                ++calls;
                // Paces the loop the way a blocking read would.
                neverReleased.tryAcquire(1, 2);
                inCall = false;
                return true;
            },
            {}, [&] {
                inCallAtFinish = inCall.load();
                callsAtFinish = calls.load();
                ++finishes;
            });
        worker.start();
        QTRY_VERIFY(calls.load() >= 3);
        worker.stop();

        QCOMPARE(finishes.load(), 1);
        QVERIFY(!inCallAtFinish.load());
        QCOMPARE(calls.load(), callsAtFinish.load());
        QVERIFY(!worker.isRunning());
    }

    void emptyTaskCallsNoHook()
    {
        Journal journal;
        CyclicTaskWorker worker(CyclicTaskWorker::Task(), [&] { journal.add("start"); },
                                [&] { journal.add("finish"); });
        worker.start();
        QVERIFY(worker.isRunning());
        // stop() waits for the thread, so the started slot has run by now.
        worker.stop();
        QVERIFY(journal.entries().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestCyclicTaskWorker)
#include "tst_CyclicTaskWorker.moc"
