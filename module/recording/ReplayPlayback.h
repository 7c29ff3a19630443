#pragma once

#include "host/IPlayback.h"
#include "recording/RadarFrameRecord.h"
#include "recording/RecordingLayout.h"
#include "recording/RecordingReplay.h"

#include <functional>

// What every mode's playback of a binary recording shares: the checks when
// a recording is opened (configuration document beside it, the mode's kind
// of frames, whole channels), the hand-over of the board to the recording,
// and play, pause, step and close over the paced replay. A mode adds how
// its recorded configuration becomes the running one and what a record
// becomes on the acquisition worker.
//
// Everything but nextRecord() belongs to the GUI thread; nextRecord() runs
// on the acquisition worker, waiting in the replay until the next frame is
// due.
class ReplayPlayback : public IPlayback
{
    Q_OBJECT
public:
    explicit ReplayPlayback(QObject* parent = nullptr);
    ~ReplayPlayback() override;

    // Called before the recorded configuration replaces the running one:
    // the mode's coordinator lets go of a connected board there.
    void setBeforeOpen(std::function<void()> hook) { m_beforeOpen = std::move(hook); }

    bool accepts(const QString& basePath) const override;
    bool open(const QString& basePath) override;
    void close() override;
    bool isActive() const override { return m_active; }
    bool isPaused() const override;
    void play() override;
    void pause() override;
    void resume() override;
    void stepFrame() override;
    quint32 totalFramesNumber() const override { return m_totalFrames; }

    // Frames handed out since open().
    quint32 deliveredFrames() const { return m_replay.delivered(); }

signals:
    void totalFramesNumberChanged(quint32 total);
    // The last frame has been handed out (or the file could not be read on).
    void finished();
    void enqueueUserMessage(QString message, QString details);

protected:
    // The kind of recording this mode plays.
    virtual RecordingLayout::Kind kind() const = 0;
    // Floats that one channel takes in a frame record of this kind; 0 when
    // the header describes none.
    virtual quint32 floatsPerChannel(const RadarRecordingHeader& header) const = 0;
    // Makes the recorded configuration the running one; false with `error`.
    virtual bool loadConfiguration(const QByteArray& document, QString& error) = 0;
    // The recording is open and its configuration runs: from now on the
    // mode's acquisition takes its frames from here.
    virtual void attach() = 0;

    // Worker side: the next record into `row()`; false at the end, on a
    // stop request or when the file cannot be read on (then finished() has
    // been emitted, with the user's message for a failed read).
    bool nextRecord();
    void requestStop() { m_replay.requestStop(); }
    const RadarFrameRecord& row() const { return m_row; }
    const RadarRecordingHeader& header() const { return m_replay.header(); }
    quint32 channels() const { return m_channels; }

private:
    void setPaused(bool paused);
    // Tells the user why the recording cannot be played; always false.
    bool refuse(const QString& message, const QString& details);

    std::function<void()> m_beforeOpen;
    RecordingReplay m_replay;
    quint32 m_totalFrames = 0;
    quint32 m_channels = 0;
    bool m_active = false;
    // The worker's: the record being handed out.
    RadarFrameRecord m_row;
};
