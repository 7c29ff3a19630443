#pragma once

#include "core/IWorker.h"

#include <atomic>
#include <functional>

class QThread;

// Calls a task back-to-back on a dedicated time-critical thread until the
// task returns false or the owner calls stop(). There is no period: pacing
// is the task's business, typically a blocking read.
//
// start(), stop() and isRunning() belong to the owner's thread; the task and
// both hooks run on the worker's thread, so anything they share with the
// rest of the program must go through queued signals or their own locks.
class CyclicTaskWorker : public IWorker
{
    Q_OBJECT
public:
    using Task = std::function<bool()>;
    using Hook = std::function<void()>;

    explicit CyclicTaskWorker(Task task, Hook onStart = Hook(), Hook onFinish = Hook());
    ~CyclicTaskWorker() override;

    bool isRunning() const override;
    // Owners call stop() before starting again; a second start() replaces
    // the thread without stopping the first.
    void start() override;
    // Waits up to 3000 ms for the current task call to return, then
    // terminates the thread. Does nothing when not started.
    void stop() override;

private slots:
    void doWork();

private:
    Task m_task;
    Hook m_onStart;
    Hook m_onFinish;
    QThread* m_thread = nullptr;
    // The worker's thread sets it as the last thing it does with this
    // object; stop() reads it once the thread has ended. QThread::wait()
    // synchronises inside Qt, where thread checkers cannot see it: this
    // pair makes the hand-back of the task, the hooks and everything they
    // touched visible to them as well.
    std::atomic<bool> m_handedBack { false };
};
