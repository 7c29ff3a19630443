#include "common/FrameRateMeter.h"

FrameRateMeter::FrameRateMeter(std::function<quint64()> frameCounter, QObject* parent)
    : QObject(parent)
    , m_frameCounter(std::move(frameCounter))
{
    m_timer.setInterval(kWindowMs);
    connect(&m_timer, &QTimer::timeout, this, &FrameRateMeter::measure);
    m_timer.start();
    m_clock.start();
}

void FrameRateMeter::measure()
{
    const quint64 count = m_frameCounter();
    const quint64 frames = count >= m_lastCount ? count - m_lastCount : count;
    m_lastCount = count;
    const qint64 elapsed = m_clock.restart();
    const double rate = elapsed > 0 ? double(frames) * 1000.0 / double(elapsed) : 0.0;
    if (rate != m_rate) {
        m_rate = rate;
        emit rateChanged();
    }
}
