#pragma once

#include "recording/RadarBinFile.h"
#include "recording/RadarFrameRecord.h"
#include "recording/RadarRecordingHeader.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

// Hands out the frame records of a binary recording one at a time at the
// recorded frame rate, with pause, single steps and stop: the part every
// mode's playback shares. What a record becomes (and whether the mode can
// play the recording at all) is the playback's business.
//
// open(), close(), start(), setPaused(), step() and requestStop() belong
// to the owner's thread; next() runs on the acquisition worker. One mutex
// guards the file and the pacing state; the worker waits on a condition
// variable until the next frame is due, a step is asked for, or the state
// changes, never longer than one wait slice so that a stop request of its
// thread is seen.
class RecordingReplay
{
public:
    enum class Fetch {
        Frame,      // `row` holds the next record
        Stopped,    // asked to stop (or not started): nothing handed out
        End,        // every record has been handed out
        ReadFailed, // the file ended before its size promised
    };

    RecordingReplay() = default;
    ~RecordingReplay();
    RecordingReplay(const RecordingReplay&) = delete;
    RecordingReplay& operator=(const RecordingReplay&) = delete;

    // Opens a binary recording and reads its header. False with the user's
    // message and its details when the file is not a recording, cannot be
    // read or states no usable frame size or period; nothing stays open then.
    bool open(const QString& binPath, QString& message, QString& details);
    void close();
    bool isOpen() const;
    // Valid after a successful open().
    const RadarRecordingHeader& header() const { return m_header; }
    quint32 totalFrames() const { return m_totalFrames; }
    // Records handed out since start().
    quint32 delivered() const { return m_delivered.load(); }

    // Paces from now: the next record is due at once.
    void start();
    // False when the state was already the one asked for.
    bool setPaused(bool paused);
    bool isPaused() const;
    // One more record while paused.
    void step();
    // Makes a waiting next() return Stopped, and every next() after it
    // until start().
    void requestStop();

    // Waits until the next record is due and reads it into `row`.
    Fetch next(RadarFrameRecord& row);

    // Reads the header of a binary recording without keeping it open;
    // false when it is not one.
    static bool readHeader(const QString& binPath, RadarRecordingHeader& header);

private:
    using Clock = std::chrono::steady_clock;
    bool readRecord(RadarFrameRecord& row);

    RadarRecordingHeader m_header;
    quint32 m_totalFrames = 0;
    std::atomic<quint32> m_delivered { 0 };

    mutable std::mutex m_mutex; // guards everything below
    std::condition_variable m_changed;
    RadarBinFile m_file;
    bool m_fileOpen = false;
    bool m_paused = false;
    int m_stepsRequested = 0;
    bool m_stopRequested = false;
    bool m_ended = false;
    Clock::time_point m_nextDue;
    Clock::duration m_period {};
};
