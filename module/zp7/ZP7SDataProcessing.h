#pragma once

#include "frame/RadarEventCode.h"
#include "host/Constants.h"
#include "zp7/ZP7SFrame.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>

#include <atomic>
#include <memory>
#include <mutex>

class CoreUserSettings;
class CyclicTaskWorker;
class ISeriesChartData;
class IZP7SDataProvider;
class RadarRecordingSession;
class ZP7SConfig;
class ZP7SDopplerSpectrumChartData;
class ZP7STimeDomainChartData;

// The ZP7 mode's acquisition: a CyclicTaskWorker fetches frame after frame
// from the provider (the board or a playback), counts every one, offers it
// to the recording, and asks for a chart update at most once per refresh
// interval; the charts are computed from the newest frame on the owner's
// thread. Shared between the two threads: the newest frame (frame mutex,
// held only to swap the pointer), the provider, the frame numbering and the
// refresh interval (atomic). The running configuration is read by the
// worker and changed only while it is stopped. Everything else belongs to the owner's thread.
class ZP7SDataProcessing : public QObject
{
    Q_OBJECT
public:
    // Neither is owned; `coreSettings` may be null (33 ms refresh, no
    // recording then).
    ZP7SDataProcessing(ZP7SConfig* config, CoreUserSettings* coreSettings, QObject* parent = nullptr);
    ~ZP7SDataProcessing() override;

    // Not owned; null detaches (a board is attached again by its coordinator).
    void setDataProvider(IZP7SDataProvider* provider) { m_provider.store(provider); }
    IZP7SDataProvider* dataProvider() const { return m_provider.load(); }

    // Only with a provider; a running acquisition is left alone.
    void startAcquisition();
    void stopAcquisition();
    bool isAcquisitionActive() const { return m_worker != nullptr; }

    void resetFrameCounter();
    // Frames counted since the last reset.
    int frameNumber() const { return int(m_numbering.load() & 0xffffffffu); }
    // Chart updates so far; for the host's progress line and for tests.
    quint64 chartRefreshCount() const { return m_refreshCount; }
    ZP7SFrame latestFrame() const;
    ISeriesChartData* chartData(Constants::Chart chartType) const;
    ZP7STimeDomainChartData* timeDomainChartData() const { return m_timeDomain.get(); }
    ZP7SDopplerSpectrumChartData* dopplerSpectrumChartData() const { return m_spectrum.get(); }
    // Drops the newest frame and what the charts show of it.
    void clear();

    // Recording of the frames acquired from now on, under the host's
    // recording settings.
    void startRecording();
    void stopRecording();
    bool isRecordingActive() const;
    bool isParsingActive() const;
    void stopConvertingToText();
    RadarRecordingSession* recordingSession() const { return m_session.get(); }

signals:
    // Worker to owner: time for a chart update.
    void updateChartsData();
    void chartsDataUpdated();
    void triggerEvent(RadarEventCode code, QString message, QString details);
    void frameNumberChanged(int frameNumber);
    // The worker stopped by itself (the provider failed or ran dry) and the
    // acquisition is idle again; not emitted for stopAcquisition().
    void acquisitionEnded();
    void isRecordingActiveChanged(bool value);
    void isParsingActiveChanged(bool value);
    void convertingToTxt(int progress);
    // Worker to owner: a frame was counted while numbering `generation` ran.
    void frameCounted(quint32 generation, int frameNumber);

public slots:
    // A new running configuration: new frames, a new Doppler transform.
    void onRadarConfigurationUpdated();
    // New chart settings over the same frames.
    void onRadarConfigurationRuntimeUpdated();
    void onUpdateChartsData();

private:
    bool acquisitionStep();
    void configureCharts();
    void onFrameCounted(quint32 generation, int frameNumber);
    void onWorkerEnded(quint32 run);

    ZP7SConfig* m_config;
    CoreUserSettings* m_coreSettings;
    // Read by the worker; changed by the owner while no worker runs.
    std::atomic<IZP7SDataProvider*> m_provider { nullptr };

    mutable std::mutex m_frameMutex;
    ZP7SFrame m_latestFrame; // guarded by m_frameMutex
    // Frames counted in the low half, the numbering in the high half: a
    // reset starts a new numbering, and counts still queued from the old
    // one are dropped instead of reaching the pages after the new 0.
    std::atomic<quint64> m_numbering { 0 };
    std::atomic<int> m_refreshIntervalMs { 33 };
    QElapsedTimer m_refreshClock; // the worker's while acquiring
    quint64 m_refreshCount = 0;

    std::unique_ptr<ZP7STimeDomainChartData> m_timeDomain;
    std::unique_ptr<ZP7SDopplerSpectrumChartData> m_spectrum;
    std::unique_ptr<RadarRecordingSession> m_session;
    std::unique_ptr<CyclicTaskWorker> m_worker;
    quint32 m_workerRun = 0;
};
