#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <functional>

// The frame rate a view shows: frames per second over the last second,
// read off a mode's frame counter. The counter restarts at 0 with each
// acquisition or configuration; a smaller value than last time counts as
// the frames since that restart.
class FrameRateMeter : public QObject
{
    Q_OBJECT
public:
    static constexpr int kWindowMs = 1000;

    explicit FrameRateMeter(std::function<quint64()> frameCounter, QObject* parent = nullptr);

    double rate() const { return m_rate; }

signals:
    void rateChanged();

private:
    void measure();

    std::function<quint64()> m_frameCounter;
    QTimer m_timer;
    QElapsedTimer m_clock;
    quint64 m_lastCount = 0;
    double m_rate = 0.0;
};
