#include "recording/RadarRecorder.h"

#include <QDebug>

RadarRecorder::RadarRecorder(quint32 frameLimit, int bufferCapacity, QObject* parent)
    : QObject(parent)
    , m_capacity(qMax(1, bufferCapacity))
    , m_remaining(frameLimit)
    , m_buffer(std::make_shared<RadarBuffer>())
{
    qRegisterMetaType<RadarBufferPtr>("RadarBufferPtr");
    m_buffer->reserve(size_t(m_capacity));
}

RadarRecorder::~RadarRecorder()
{
    stop();
}

void RadarRecorder::start()
{
    m_active.store(true);
}

void RadarRecorder::record(SharedFrame frame, int frameNumber)
{
    if (!m_active.load())
        return;
    bool full = false;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        full = int(m_buffer->size()) >= m_capacity;
    }
    if (full)
        flush();
    bool limitReached = false;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_buffer->emplace_back(frameNumber, std::move(frame));
        --m_remaining;
        limitReached = m_remaining == 0;
    }
    if (!limitReached)
        return;
    // Only the caller that switches the flag off reports the end, so a
    // stop() racing with the last frame cannot emit finished() twice.
    bool expected = true;
    if (!m_active.compare_exchange_strong(expected, false))
        return;
    if (!bufferIsEmpty())
        flush();
    emit finished();
}

void RadarRecorder::stop()
{
    if (!m_active.load())
        return;
    if (!bufferIsEmpty())
        flush();
    bool expected = true;
    if (!m_active.compare_exchange_strong(expected, false))
        return;
    // A frame may have slipped in between the flush and the flag: send it
    // too rather than lose it.
    if (!bufferIsEmpty())
        flush();
    emit finished();
}

void RadarRecorder::flush()
{
    RadarBufferPtr full;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (m_buffer->empty())
            return;
        full = std::move(m_buffer);
        m_buffer = std::make_shared<RadarBuffer>();
        m_buffer->reserve(size_t(m_capacity));
    }
    emit bufferReady(full);
}

bool RadarRecorder::bufferIsEmpty() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_buffer->empty();
}
