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
// thread. The buffer mutex makes the active check and the append one step,
// so a stop() cannot slip between them, and it is never held while a signal
// goes out. A second mutex orders the hand-overs: a buffer taken out by
// record() is handed over before stop() can hand over the last one and
// announce the end. So the buffers go out in order, all of them before
// finished(), and every frame record() took before stop() began is in them.
// Slots of bufferReady() therefore must not call back into the recorder.
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
    // Emitted once per recording, after the last buffer: on reaching the
    // limit or on stop().
    void finished();

public slots:
    void stop();

private:
    // The current buffer if it holds frames, with a fresh one in its place;
    // null when empty. Under the mutex.
    RadarBufferPtr takeBuffer();

    const int m_capacity;
    std::atomic<bool> m_active { false }; // written under the mutex

    // Taken before m_mutex and held while a buffer is handed over.
    std::mutex m_handOverMutex;
    std::mutex m_mutex; // guards the two below
    quint32 m_remaining;
    RadarBufferPtr m_buffer;
};
