#pragma once

#include "recording/RecordingFrame.h"

#include <QObject>

#include <atomic>
#include <mutex>

// First stage of the recording chain, living beside the acquisition loop:
// collects shared frames into buffers of a fixed capacity and hands each
// full buffer over by signal, so acquisition never waits for the disk.
//
// record() runs on the acquisition thread, stop() usually on the GUI
// thread; the buffer mutex serialises them and is never held while a signal
// is emitted.
class RadarRecorder : public QObject
{
    Q_OBJECT
public:
    // A frame limit of 0 is decremented before it is tested, so such a
    // recording in effect runs until stopped.
    RadarRecorder(quint32 frameLimit, int bufferCapacity, QObject* parent = nullptr);
    ~RadarRecorder() override;

    void start();
    bool isActive() const { return m_active.load(); }
    // Frames offered before start() or after the recording finished are
    // dropped.
    void record(SharedFrame frame, int frameNumber);

signals:
    void bufferReady(RadarBufferPtr ptrToBuffer);
    // Emitted once per recording: on reaching the limit or on stop().
    void finished();

public slots:
    void stop();

private:
    void flush();
    bool bufferIsEmpty() const;

    const int m_capacity;
    std::atomic<bool> m_active { false };

    mutable std::mutex m_mutex; // guards the two below
    quint32 m_remaining;
    RadarBufferPtr m_buffer;
};
