#pragma once

#include "fmcw/common/IRadarDataProvider.h"
#include "host/IPlayback.h"
#include "recording/RadarFrameRecord.h"
#include "recording/RecordingReplay.h"

#include <functional>

struct Vrn;
class IRadarConfiguration;
class IRadarDataProcessing;

// Replays an FMCW binary recording through the standard mode's pipeline in
// place of the board: the configuration written beside it becomes the
// running configuration, and the frames come out at the recorded frame
// rate. Pulsed-Doppler recordings are refused.
//
// open(), play(), pause(), resume(), stepFrame() and close() belong to the
// GUI thread; getNextFrame() runs on the acquisition worker, waiting in the
// replay until the next frame is due.
class RadarPlayback : public IPlayback, public IRadarDataProvider
{
    Q_OBJECT
public:
    RadarPlayback(const Vrn* vrn, IRadarConfiguration* configuration, IRadarDataProcessing* processing,
                  QObject* parent = nullptr);
    ~RadarPlayback() override;

    // Called before the recorded configuration replaces the running one:
    // the coordinator lets go of a connected board there.
    void setBeforeOpen(std::function<void()> hook) { m_beforeOpen = std::move(hook); }

    QString name() const override { return QStringLiteral("Radar"); }
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

    RadarFrameResult getNextFrame(const RadarDeviceConfiguration& configuration) override;
    void stopAcquisition() override;

    // Frames handed out since play().
    quint32 deliveredFrames() const { return m_replay.delivered(); }

signals:
    void totalFramesNumberChanged(quint32 total);
    // The last frame has been handed out.
    void finished();
    void enqueueUserMessage(QString message, QString details);

private:
    void setPaused(bool paused);
    RadarFrameResult makeFrame(const RadarFrameRecord& row);
    // Tells the user why the recording cannot be played; always false.
    bool refuse(const QString& message, const QString& details);

    const Vrn* m_vrn;
    IRadarConfiguration* m_configuration;
    IRadarDataProcessing* m_processing;
    std::function<void()> m_beforeOpen;

    RecordingReplay m_replay;
    quint32 m_totalFrames = 0;
    quint32 m_channels = 0;
    bool m_active = false;
    // The worker's: the record being turned into a frame.
    RadarFrameRecord m_row;
};
