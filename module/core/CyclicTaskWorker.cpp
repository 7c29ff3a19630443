#include "core/CyclicTaskWorker.h"

#include <QDebug>
#include <QThread>

namespace {
constexpr unsigned long kStopTimeoutMs = 3000;
}

CyclicTaskWorker::CyclicTaskWorker(Task task, Hook onStart, Hook onFinish)
    : m_task(std::move(task))
    , m_onStart(std::move(onStart))
    , m_onFinish(std::move(onFinish))
{
}

CyclicTaskWorker::~CyclicTaskWorker()
{
    stop();
}

bool CyclicTaskWorker::isRunning() const
{
    return m_thread && m_thread->isRunning();
}

void CyclicTaskWorker::start()
{
    QThread* owner = thread();
    m_thread = new QThread();
    moveToThread(m_thread);
    connect(m_thread, &QThread::started, this, &CyclicTaskWorker::doWork);
    // An object can only be pushed away from the thread it lives in, never
    // pulled back; hand ourselves back to the owner from inside the worker
    // thread as it finishes, so that a later start() can move us again and
    // the owner never holds an object that lives in a deleted thread.
    connect(
        m_thread, &QThread::finished, this,
        [this, owner] {
            moveToThread(owner);
            m_handedBack.store(true, std::memory_order_release);
        },
        Qt::DirectConnection);
    m_handedBack.store(false, std::memory_order_relaxed);
    m_thread->start(QThread::TimeCriticalPriority);
}

void CyclicTaskWorker::stop()
{
    if (!m_thread)
        return;
    if (m_thread->isRunning()) {
        m_thread->requestInterruption();
        m_thread->quit();
        if (!m_thread->wait(kStopTimeoutMs)) {
            m_thread->terminate();
            m_thread->wait();
        }
        if (!m_handedBack.load(std::memory_order_acquire))
            qWarning() << "The worker thread ended without handing the worker back";
    }
    delete m_thread;
    m_thread = nullptr;
}

void CyclicTaskWorker::doWork()
{
    if (!m_task)
        return;
    if (m_onStart)
        m_onStart();
    QThread* self = QThread::currentThread();
    // Interruption is checked between calls only: a call in progress is
    // never cut short, stop() waits for it.
    if (!self->isInterruptionRequested()) {
        while (m_task() && !self->isInterruptionRequested()) {
        }
    }
    if (m_onFinish)
        m_onFinish();
}
