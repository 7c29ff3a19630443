#pragma once

#include <QObject>

#include <condition_variable>
#include <memory>
#include <mutex>

class CyclicTaskWorker;
class IRadarCWEmission;

// Keeps the transmitter from emitting continuously below a 100 % duty
// cycle: in every period it lets emission run for the duty cycle's share,
// switches it off for the rest and on again. Runs on its own worker thread
// from construction; a failing switch ends it. Destroying it ends a wait at
// once and stops the worker; emission is left as the last switch left it.
class RadarCWOverheatingProtector : public QObject
{
    Q_OBJECT
public:
    // `emission` is not owned and must outlive the protector.
    RadarCWOverheatingProtector(IRadarCWEmission* emission, quint8 dutyCycle, quint32 periodMs,
                                QObject* parent = nullptr);
    ~RadarCWOverheatingProtector() override;

    quint8 dutyCycle() const { return m_dutyCycle; }
    quint32 periodMs() const { return m_periodMs; }
    bool isRunning() const;

public slots:
    // One period: on-time, stop, off-time, start. False ends the worker.
    bool work();

private:
    // False when the destructor cut the wait short.
    bool wait(quint32 milliseconds);

    IRadarCWEmission* m_emission;
    const quint8 m_dutyCycle;
    const quint32 m_periodMs;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_ending = false; // guarded by m_mutex
    std::unique_ptr<CyclicTaskWorker> m_worker;
};
