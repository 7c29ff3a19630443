#include "EventWait.h"

#include "ViewConnection.h"

#include <QEventLoop>
#include <QTimer>

bool EventWait::watch(QObject* sender, const char* signal)
{
    return connectByName(sender, signal, this, "wake()");
}

void EventWait::wake()
{
    if (m_loop)
        m_loop->quit();
}

bool EventWait::until(const std::function<bool()>& done, int timeoutMs)
{
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(timeoutMs);
    while (!done()) {
        if (!limit.isActive())
            return false;
        QEventLoop loop;
        m_loop = &loop;
        connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
        loop.exec();
        m_loop = nullptr;
    }
    return true;
}
