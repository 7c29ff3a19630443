#pragma once

#include "fmcw/common/IRadarDataProvider.h"
#include "host/IPlayback.h"
#include "recording/RadarBinFile.h"
#include "recording/RadarFrameRecord.h"
#include "recording/RadarRecordingHeader.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <vector>

struct Vrn;
class IRadarConfiguration;
class IRadarDataProcessing;

// Replays a binary recording through the standard mode's pipeline in place
// of the board: the configuration written beside it becomes the running
// configuration, and the frames come out at the recorded frame rate.
//
// open(), play(), pause(), resume(), stepFrame() and close() belong to the
// GUI thread; getNextFrame() runs on the acquisition worker. The state
// mutex guards the pacing state and the file; the worker waits on the
// condition variable until the next frame is due, a step is asked for, or
// the state changes, never longer than one wait slice so that a stop
// request of its thread is seen.
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
    quint32 deliveredFrames() const { return m_delivered.load(); }

signals:
    void totalFramesNumberChanged(quint32 total);
    // The last frame has been handed out.
    void finished();
    void enqueueUserMessage(QString message, QString details);

private:
    using Clock = std::chrono::steady_clock;
    void setPaused(bool paused);
    bool readFrame(RadarFrameRecord& row);
    RadarFrameResult makeFrame(const RadarFrameRecord& row);
    void reachEnd();

    const Vrn* m_vrn;
    IRadarConfiguration* m_configuration;
    IRadarDataProcessing* m_processing;
    std::function<void()> m_beforeOpen;

    RadarRecordingHeader m_header;
    quint32 m_totalFrames = 0;
    quint32 m_channels = 0;
    bool m_active = false;
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
    RadarFrameRecord m_row;
};
