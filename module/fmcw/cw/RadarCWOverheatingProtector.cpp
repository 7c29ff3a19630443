#include "fmcw/cw/RadarCWOverheatingProtector.h"

#include "core/CyclicTaskWorker.h"
#include "fmcw/cw/IRadarCWEmission.h"

#include <QDebug>

#include <algorithm>
#include <chrono>

RadarCWOverheatingProtector::RadarCWOverheatingProtector(IRadarCWEmission* emission, quint8 dutyCycle,
                                                         quint32 periodMs, QObject* parent)
    : QObject(parent)
    , m_emission(emission)
    , m_dutyCycle(std::min<quint8>(dutyCycle, 100))
    , m_periodMs(periodMs)
    , m_worker(std::make_unique<CyclicTaskWorker>([this] { return work(); }))
{
    m_worker->start();
}

RadarCWOverheatingProtector::~RadarCWOverheatingProtector()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_ending = true;
    }
    m_wake.notify_all();
    m_worker->stop();
}

bool RadarCWOverheatingProtector::isRunning() const
{
    return m_worker->isRunning();
}

bool RadarCWOverheatingProtector::wait(quint32 milliseconds)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (milliseconds >= 1)
        m_wake.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] { return m_ending; });
    return !m_ending;
}

bool RadarCWOverheatingProtector::work()
{
    // Integer arithmetic: 30 % of 1000 ms is 300 ms on and 700 ms off.
    const quint32 onTimeMs = quint32(quint64(m_dutyCycle) * m_periodMs / 100);
    const quint32 offTimeMs = quint32(quint64(100 - m_dutyCycle) * m_periodMs / 100);
    if (!wait(onTimeMs))
        return false;
    if (!m_emission->stopEmission()) {
        qWarning() << "Overheating protection ends: CW emission could not be stopped";
        return false;
    }
    if (!wait(offTimeMs))
        return false;
    if (!m_emission->startEmission()) {
        qWarning() << "Overheating protection ends: CW emission could not be started again";
        return false;
    }
    return true;
}
