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
    bool limitReached = false;
    {
        std::lock_guard<std::mutex> handOver(m_handOverMutex);
        RadarBufferPtr full;
        RadarBufferPtr last;
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            if (!m_active.load())
                return;
            if (int(m_buffer->size()) >= m_capacity)
                full = takeBuffer();
            m_buffer->emplace_back(frameNumber, std::move(frame));
            limitReached = --m_remaining == 0;
            if (limitReached) {
                m_active.store(false);
                last = takeBuffer();
            }
        }
        if (full)
            emit bufferReady(full);
        if (last)
            emit bufferReady(last);
    }
    if (limitReached)
        emit finished();
}

void RadarRecorder::stop()
{
    {
        std::lock_guard<std::mutex> handOver(m_handOverMutex);
        RadarBufferPtr last;
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            if (!m_active.load())
                return;
            m_active.store(false);
            last = takeBuffer();
        }
        if (last)
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
