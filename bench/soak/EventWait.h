#pragma once

#include <QObject>
#include <functional>

class QEventLoop;

// Runs the event loop until a condition holds, looking again each time one
// of the watched signals fires; no polling. False when the time ran out.
class EventWait : public QObject
{
    Q_OBJECT
public:
    // `signal` as SIGNAL() would spell it without the code, e.g. "isConnectedChanged()".
    bool watch(QObject* sender, const char* signal);
    bool until(const std::function<bool()>& done, int timeoutMs);

public slots:
    void wake();

private:
    QEventLoop* m_loop = nullptr;
};
