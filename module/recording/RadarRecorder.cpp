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
    RadarBufferPtr last;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_active.load())
            return;
        if (int(m_buffer->size()) >= m_capacity) {
            if (RadarBufferPtr full = takeBuffer())
                emit bufferReady(full);
        }
        m_buffer->emplace_back(frameNumber, std::move(frame));
        if (--m_remaining != 0)
            return;
        m_active.store(false);
        last = takeBuffer();
        if (last)
            emit bufferReady(last);
    }
    emit finished();
}

void RadarRecorder::stop()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_active.load())
            return;
        m_active.store(false);
        if (RadarBufferPtr last = takeBuffer())
            emit bufferReady(last);
    }
    emit finished();
}

RadarBufferPtr RadarRecorder::takeBuffer()
{
    if (m_buffer->empty())
        return nullptr;
    RadarBufferPtr full = std::move(m_buffer);
    m_buffer = std::make_shared<RadarBuffer>();
    m_buffer->reserve(size_t(m_capacity));
    return full;
}
