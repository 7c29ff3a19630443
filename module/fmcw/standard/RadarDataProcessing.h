#pragma once

#include "common/SharedFrame.h"
#include "fmcw/processing/RadarTrackedObject.h"
#include "fmcw/standard/IRadarDataProcessing.h"

#include <QElapsedTimer>
#include <QPixmap>
#include <QPointer>
#include <QVector>
#include <atomic>
#include <memory>
#include <mutex>

struct vrn_PresenceSensing_Result_t;
class CoreUserSettings;
class CyclicTaskWorker;
class IBroker;
class IRadarConfiguration;
class IRadarUserSettings;
class PolarChart;
class RadarConfigurationUtils;
class RadarFrequencyDomainChartData;
class RadarPresenceSensingCalculator;
class RadarPresenceSensingChartData;
class RadarRangeDopplerChartData;
class RadarRangeDopplerMapCalculator;
class RadarRangeSpectrumCalculator;
class RadarRecordingSession;
class RecordingUserSettings;
class RadarSegmentationCalculator;
class RadarTimeDomainChartData;

// Threads: the acquisition worker runs processCycle() (provider, recorder,
// presence and segmentation calculators, presence chart data); the owner's
// thread runs every slot, the chart refresh and configuration changes.
// Shared between them: the latest frame (frame mutex, held only to swap or
// copy the pointer), the recorder and presence recorder pointers and the
// application calculators (chain mutex, held by the worker for one frame's
// application step), and the counters (atomic).
class RadarDataProcessing : public IRadarDataProcessing
{
    Q_OBJECT
public:
    RadarDataProcessing(IBroker* broker, CoreUserSettings* coreSettings, IRadarConfiguration* configuration,
                        IRadarUserSettings* userSettings, QObject* parent = nullptr);
    ~RadarDataProcessing() override;

    bool isAcquisitionRunning() const override { return m_worker != nullptr; }
    bool isRecordingActive() const override;
    void startAcquisition() override;
    void stopAcquisition() override;
    quint32 frameNumber() const override { return quint32(m_numbering.load()); }
    void resetFrameCounter() override;
    void resetCalculators() override;
    void attachChartItem(Constants::Chart chartType, PolarChart* item) override;
    IRangeDopplerChartData* rangeDopplerChartData() override;
    ISeriesChartData* chartData(Constants::Chart chartType) override;
    void resetPresenceChart() override;
    void startRecording() override;
    void stopRecording() override;
    bool convertRecordingToText(const QString& binPath, const QString& txtPath) override;
    void stopConvertingToText() override;
    void setDataProvider(IRadarDataProvider* provider) override { m_provider = provider; }
    IRadarDataProvider* dataProvider() const override { return m_provider; }

    std::shared_ptr<RadarRecorder> createRecorder(quint32 frameLimit, int bufferSize) override;
    std::unique_ptr<RadarFileRecording> createFileRecording(const IRadarRecordingSource* source,
                                                            const QString& jsonPath, const QString& binPath) override;
    std::unique_ptr<RadarFileParsing> createFileConverter() override;
    std::shared_ptr<RadarPresenceSensingRecorder> createPresenceRecorder(const QString& filePath) override;

    // Chart refreshes so far; for the host's progress line and for tests.
    quint64 chartRefreshCount() const { return m_refreshCount.load(); }
    // The antenna index the range-Doppler map is computed for, given the
    // selected (tx, rx) pair and the masks; 0 when the pair is not enabled.
    static quint32 virtualAntennaIndex(int txIndex, int rxIndex, quint32 txMask, quint32 rxMask, int numRxAntennas);
    // The frame limit of a recording from the host's settings.
    static quint32 recordingFrameLimit(const RecordingUserSettings& settings, float frameRepetitionTimeS);
    // Points of the presence history: 30 s of frames, both ends included.
    static int presenceHistoryCapacity(float frameRepetitionTimeS);

signals:
    void updateChartsData();
    // Worker to owner: a frame was counted while numbering `generation` ran.
    void frameCounted(quint32 generation, int frameNumber);

public slots:
    void onRadarConfigurationUpdated(RadarDeviceConfiguration* configuration) override;
    void onRadarConfigurationRuntimeUpdated(RadarDeviceConfiguration* configuration) override;
    void onUpdateChartsData();
    void onParserError(QString message, QString details);
    void onFrameCounted(quint32 generation, int frameNumber);

private:
    bool processCycle();
    void processFrame(const SharedFrame& frame, quint32 number);
    void updateRangeDopplerChartData(const SharedFrame& frame);
    void buildRangeCalculators(RadarDeviceConfiguration* configuration);
    // Tells the user that `step` is skipped because its calculator could not
    // be built; processing goes on without it.
    void reportMissingCalculator(const QString& step, const QString& calculator);
    // The presence log begins with the recording's first frame and ends
    // with the recording.
    void startPresenceLog(const QString& base);
    void onRecordingActiveChanged(bool active);
    void clearLatestFrame();
    // The worker of `run` left its loop; idles the pipeline when that run
    // is still the current one.
    void onCycleEnded(quint32 run);

    IBroker* m_broker;
    CoreUserSettings* m_coreSettings;
    IRadarConfiguration* m_configuration;
    IRadarUserSettings* m_userSettings;
    std::unique_ptr<RadarConfigurationUtils> m_utils;

    IRadarDataProvider* m_provider = nullptr;
    QElapsedTimer m_refreshTimer; // the worker's while acquiring
    std::atomic<int> m_refreshIntervalMs { 33 };
    std::atomic<quint64> m_refreshCount { 0 };

    std::mutex m_frameMutex;
    SharedFrame m_latestFrame;
    // Frames counted in the low half, the numbering in the high half; every
    // reset starts a new numbering, so counts still queued from before it
    // are dropped instead of reaching the pages after the new 0. One word,
    // so that the worker takes a frame's number and its numbering in one
    // step and a reset cannot be undone by a frame already under way.
    std::atomic<quint64> m_numbering { 0 };
    QPixmap m_rangeDopplerPixmap;

    std::mutex m_chainMutex; // guards the four below
    std::shared_ptr<const vrn_PresenceSensing_Result_t> m_presenceResult;
    std::unique_ptr<RadarPresenceSensingCalculator> m_presenceCalculator;
    std::unique_ptr<RadarSegmentationCalculator> m_segmentationCalculator;
    std::shared_ptr<RadarPresenceSensingRecorder> m_presenceRecorder;
    float m_frameRepetitionTimeS = 0.0f; // set while the worker is stopped

    std::unique_ptr<RadarRangeSpectrumCalculator> m_rangeSpectrumCalculator;
    std::unique_ptr<RadarRangeDopplerMapCalculator> m_rangeDopplerCalculator;

    std::unique_ptr<RadarTimeDomainChartData> m_timeDomainChartData;
    std::unique_ptr<RadarFrequencyDomainChartData> m_frequencyDomainChartData;
    std::unique_ptr<RadarPresenceSensingChartData> m_presenceChartData;
    std::unique_ptr<RadarRangeDopplerChartData> m_rangeDopplerChartData;

    bool m_segmentationActive = false;
    QVector<float> m_segmentList;
    std::mutex m_segmentationMutex; // guards the two latest results
    RadarTrackedObjects m_trackedObjects;
    std::shared_ptr<const QVector<int>> m_segments;
    QPointer<PolarChart> m_polarChart;

    // Before the worker, which records through it.
    std::unique_ptr<RadarRecordingSession> m_session;

    std::unique_ptr<CyclicTaskWorker> m_worker;
    quint32 m_workerRun = 0; // owner's thread only
};
