#pragma once

#include "host/IPlayback.h"
#include "recording/RadarFrameRecord.h"
#include "recording/RecordingReplay.h"
#include "zp7/IZP7SDataProvider.h"

#include <functional>

struct Vrn;
class ZP7SConfig;
class ZP7SDataProcessing;

// Replays a pulsed-Doppler recording through the ZP7 mode's acquisition in
// place of the board: the recorded configuration becomes the running one,
// and the frames come out at the recorded frame rate, each one complex
// frame of the recorded channel. FMCW recordings are refused.
//
// open(), play(), pause(), resume(), stepFrame() and close() belong to the
// GUI thread; getNextFrame() runs on the acquisition worker, waiting in the
// replay until the next frame is due.
class ZP7SPlayback : public IPlayback, public IZP7SDataProvider
{
    Q_OBJECT
public:
    // `config` and `processing` are not owned; `processing` may be null
    // (then whoever fetches the frames calls getNextFrame()).
    ZP7SPlayback(const Vrn* vrn, ZP7SConfig* config, ZP7SDataProcessing* processing, QObject* parent = nullptr);
    ~ZP7SPlayback() override;

    // Called before the recorded configuration replaces the running one:
    // the coordinator lets go of a connected board there.
    void setBeforeOpen(std::function<void()> hook) { m_beforeOpen = std::move(hook); }

    QString name() const override { return QStringLiteral("ZP7"); }
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

    ZP7SFrameResult getNextFrame(const ZP7SDeviceConfig& configuration) override;
    void stopAcquisition() override;

    // Frames handed out since open().
    quint32 deliveredFrames() const { return m_replay.delivered(); }

signals:
    void totalFramesNumberChanged(quint32 total);
    // The last frame has been handed out.
    void finished();
    void enqueueUserMessage(QString message, QString details);

private:
    void setPaused(bool paused);
    ZP7SFrame makeFrame(const RadarFrameRecord& row) const;
    // Tells the user why the recording cannot be played; always false.
    bool refuse(const QString& message, const QString& details);

    const Vrn* m_vrn;
    ZP7SConfig* m_config;
    ZP7SDataProcessing* m_processing;
    std::function<void()> m_beforeOpen;

    RecordingReplay m_replay;
    quint32 m_totalFrames = 0;
    quint32 m_channels = 0;
    quint32 m_samples = 0;
    bool m_active = false;
    // The worker's: the record being turned into a frame.
    RadarFrameRecord m_row;
};
