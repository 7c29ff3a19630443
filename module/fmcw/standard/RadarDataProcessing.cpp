#include "fmcw/standard/RadarDataProcessing.h"

#include "common/MathAxis.h"
#include "common/RadarFrequencyDomainChartData.h"
#include "common/RadarPresenceSensingChartData.h"
#include "common/RadarRangeSpectrumCalculator.h"
#include "common/RadarTimeDomainChartData.h"
#include "common/RangeSpectrumUserSettings.h"
#include "core/CyclicTaskWorker.h"
#include "fmcw/common/IRadarDataProvider.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/RadarConfigurationUtils.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/common/RadarDeviceParameters.h"
#include "fmcw/common/SegmentationConfiguration.h"
#include "fmcw/processing/RadarPresenceSensingCalculator.h"
#include "fmcw/processing/RadarRangeDopplerChartData.h"
#include "fmcw/processing/RadarRangeDopplerMapCalculator.h"
#include "fmcw/processing/RadarSegmentationCalculator.h"
#include "fmcw/processing/RangeDopplerUserSettings.h"
#include "fmcw/standard/items/PolarChart.h"
#include "fmcw/standard/IRadarConfiguration.h"
#include "fmcw/standard/IRadarUserSettings.h"
#include "fmcw/standard/RadarRecordingSource.h"
#include "host/CoreUserSettings.h"
#include "host/IBroker.h"
#include "recording/RadarFileParsing.h"
#include "recording/RadarFileRecording.h"
#include "recording/RadarPresenceSensingRecorder.h"
#include "recording/RadarRecorder.h"
#include "recording/RecordingFiles.h"

#include <QDebug>
#include <algorithm>
#include <cmath>

namespace {
constexpr int kRecorderBufferFrames = 32;
// The frame count's half of the numbering word.
constexpr quint64 kCountMask = 0xffffffffu;
// Objects with signal connections to this thread die on this thread, even
// when the worker held the last reference.
template <typename T>
std::shared_ptr<T> makeQObjectShared(T* object)
{
    return std::shared_ptr<T>(object, [](T* o) { o->deleteLater(); });
}

// Durations and frame times are decimal values the user typed, held as
// floats: 30 s / 0.3 s comes out as 99.9999..., 7 s / 0.7 s as 10.0000002.
// A quotient within a millionth of a whole number is that number, so the
// floor and ceiling taken of it count the periods the user meant.
double periodsIn(double seconds, float periodS)
{
    const double quotient = seconds / double(periodS);
    const double whole = std::round(quotient);
    return std::abs(quotient - whole) <= 1.0e-6 * whole ? whole : quotient;
}
} // namespace

RadarDataProcessing::RadarDataProcessing(IBroker* broker, CoreUserSettings* coreSettings,
                                         IRadarConfiguration* configuration, IRadarUserSettings* userSettings,
                                         QObject* parent)
    : IRadarDataProcessing(parent)
    , m_broker(broker)
    , m_coreSettings(coreSettings)
    , m_configuration(configuration)
    , m_userSettings(userSettings)
    , m_utils(std::make_unique<RadarConfigurationUtils>(broker ? broker->sdk() : nullptr, false))
    , m_timeDomainChartData(std::make_unique<RadarTimeDomainChartData>(true))
    , m_frequencyDomainChartData(std::make_unique<RadarFrequencyDomainChartData>())
    , m_presenceChartData(std::make_unique<RadarPresenceSensingChartData>())
    , m_rangeDopplerChartData(std::make_unique<RadarRangeDopplerChartData>())
{
    // What the calculators' set-up could not get from the SDK (a presence
    // default, say) reaches the user like the pipeline's own failures.
    connect(m_utils.get(), &IRadarConfigurationUtils::triggerEvent, this, &IRadarDataProcessing::triggerEvent);
    if (m_configuration) {
        connect(m_configuration, &IRadarConfiguration::deviceConfigurationUpdated, this,
                &RadarDataProcessing::onRadarConfigurationUpdated);
        connect(m_configuration, &IRadarConfiguration::deviceConfigurationRuntimeUpdated, this,
                [this] { onRadarConfigurationRuntimeUpdated(m_configuration->appliedConfiguration()); });
        if (RadarDeviceConfiguration* applied = m_configuration->appliedConfiguration()) {
            m_timeDomainChartData->setSeriesCount(
                quint32(applied->metrics()->rx()->activeCount() * applied->metrics()->tx()->activeCount()));
        }
    }
    // Emitted on the worker, delivered queued here.
    connect(this, &RadarDataProcessing::updateChartsData, this, &RadarDataProcessing::onUpdateChartsData,
            Qt::AutoConnection);
    connect(this, &RadarDataProcessing::frameCounted, this, &RadarDataProcessing::onFrameCounted,
            Qt::QueuedConnection);
    if (m_coreSettings) {
        m_refreshIntervalMs = m_coreSettings->minimumRefreshInterval();
        connect(m_coreSettings, &CoreUserSettings::minimumRefreshIntervalChanged, this,
                [this] { m_refreshIntervalMs = m_coreSettings->minimumRefreshInterval(); });
    }
}

RadarDataProcessing::~RadarDataProcessing()
{
    stopAcquisition();
    stopRecording();
    if (m_fileRecording)
        m_fileRecording->stop();
    if (m_fileParsing) {
        // Nobody is left to tell: the converter's stop only removes the
        // unfinished text copy.
        m_fileParsing->disconnect(this);
        m_fileParsing->stop();
    }
}

bool RadarDataProcessing::isRecordingActive() const
{
    return m_recorder != nullptr;
}

void RadarDataProcessing::resetFrameCounter()
{
    quint64 current = m_numbering.load();
    while (!m_numbering.compare_exchange_weak(current, ((current >> 32) + 1) << 32)) {
    }
    emit frameNumberChanged(0);
}

void RadarDataProcessing::onFrameCounted(quint32 generation, int frameNumber)
{
    if (generation == quint32(m_numbering.load() >> 32))
        emit frameNumberChanged(frameNumber);
}

void RadarDataProcessing::clearLatestFrame()
{
    std::lock_guard<std::mutex> lock(m_frameMutex);
    m_latestFrame.reset();
}

bool RadarDataProcessing::processCycle()
{
    IRadarDataProvider* provider = m_provider;
    if (!provider || !m_configuration)
        return false;
    const RadarFrameResult result = provider->getNextFrame(*m_configuration->appliedConfiguration());
    if (!result.success)
        return false;
    if (!result.owner)
        return true;
    {
        std::lock_guard<std::mutex> lock(m_frameMutex);
        m_latestFrame = result.owner;
    }
    // Takes the frame's number; the count wraps within its own half.
    quint64 taken = m_numbering.load();
    while (!m_numbering.compare_exchange_weak(taken, (taken & ~kCountMask) | ((taken + 1) & kCountMask))) {
    }
    const quint32 number = quint32(taken & kCountMask);
    processFrame(result.owner, number);
    emit frameCounted(quint32(taken >> 32), int(number + 1));

    if (m_refreshTimer.elapsed() > m_refreshIntervalMs.load()) {
        emit updateChartsData();
        m_refreshTimer.restart();
    }
    return true;
}

void RadarDataProcessing::processFrame(const SharedFrame& frame, quint32 number)
{
    std::unique_lock<std::mutex> lock(m_chainMutex);
    const std::shared_ptr<RadarRecorder> recorder = m_recorder;
    const std::shared_ptr<RadarPresenceSensingRecorder> presenceRecorder = m_presenceRecorder;
    if (recorder)
        recorder->record(frame, int(number));

    if (m_presenceCalculator) {
        m_presenceResult = m_presenceCalculator->process(frame);
        if (presenceRecorder && m_presenceResult)
            presenceRecorder->record(int(number), *m_presenceResult);
        if (!m_presenceResult) {
            resetPresenceChart();
        } else {
            // The chart plots presence high: state 0 is presence.
            m_presenceChartData->append(double(number) * double(m_frameRepetitionTimeS),
                                        m_presenceResult->state == 0 ? 1.0 : 0.0);
        }
    }

    if (m_segmentationCalculator) {
        RadarSegmentationResult segmentation = m_segmentationCalculator->process(frame);
        std::lock_guard<std::mutex> results(m_segmentationMutex);
        m_trackedObjects = std::move(segmentation.trackedObjects);
        m_segments = std::move(segmentation.segments);
    }
}

void RadarDataProcessing::onUpdateChartsData()
{
    SharedFrame frame;
    {
        std::lock_guard<std::mutex> lock(m_frameMutex);
        frame = m_latestFrame;
    }
    m_timeDomainChartData->update(frame);
    if (m_rangeSpectrumCalculator && frame) {
        QVector<SharedVector> spectra = m_rangeSpectrumCalculator->processData(frame);
        if (!spectra.isEmpty())
            m_frequencyDomainChartData->update(std::move(spectra));
    }
    updateRangeDopplerChartData(frame);

    if (m_segmentationActive && m_polarChart) {
        RadarTrackedObjects objects;
        std::shared_ptr<const QVector<int>> segments;
        {
            std::lock_guard<std::mutex> lock(m_segmentationMutex);
            objects = m_trackedObjects;
            segments = m_segments;
        }
        if (objects && segments) {
            m_polarChart->setTargets(objects);
            m_polarChart->setSegmentHighlights(*segments);
        }
    }
    ++m_refreshCount;
    emit chartsDataUpdated();
}

quint32 RadarDataProcessing::virtualAntennaIndex(int txIndex, int rxIndex, quint32 txMask, quint32 rxMask,
                                                 int numRxAntennas)
{
    // The masks hold 32 antennas; the page may hand over any index, and one
    // beyond the masks names no enabled antenna (shifting by it is undefined).
    constexpr int kMaskBits = 32;
    if (txIndex < 0 || txIndex >= kMaskBits || rxIndex < 0 || rxIndex >= kMaskBits)
        return 0;
    const int receivers = std::min(numRxAntennas, kMaskBits);
    quint32 index = 0;
    for (int tx = 0; tx <= txIndex; ++tx) {
        if (!(txMask & (1u << tx)))
            continue;
        for (int rx = 0; rx < receivers; ++rx) {
            if (tx == txIndex && rx == rxIndex)
                return index;
            if (rxMask & (1u << rx))
                ++index;
        }
    }
    return 0;
}

void RadarDataProcessing::updateRangeDopplerChartData(const SharedFrame& frame)
{
    RadarDeviceConfiguration* configuration = m_configuration ? m_configuration->appliedConfiguration() : nullptr;
    if (!configuration)
        return;
    const quint32 rxMask = configuration->metrics()->rx()->mask();
    const quint32 txMask = configuration->metrics()->tx()->mask();
    if (rxMask == 0) {
        qCritical() << "Cannot calculate range doppler map. All rx antennas are disabled!";
        return;
    }
    if (txMask == 0) {
        qCritical() << "Cannot calculate range doppler map. All tx antennas are disabled!";
        return;
    }
    if (!frame || !m_rangeDopplerCalculator)
        return;
    const RangeDopplerUserSettings* settings = m_userSettings ? m_userSettings->rangeDoppler() : nullptr;
    const quint32 antenna = settings
        ? virtualAntennaIndex(settings->currentTxIndex(), settings->currentRxIndex(), txMask, rxMask,
                              RadarAntennas::kMaxAntennas)
        : 0;
    // A map that could not be computed leaves the last one on screen rather
    // than blanking the image for one frame.
    if (SharedMatrix map = m_rangeDopplerCalculator->processData(frame, antenna))
        m_rangeDopplerChartData->setMap(std::move(map));
}

void RadarDataProcessing::resetCalculators()
{
    clearLatestFrame();
    std::lock_guard<std::mutex> lock(m_chainMutex);
    m_segmentationCalculator.reset();
    m_segmentList.clear();
    {
        std::lock_guard<std::mutex> results(m_segmentationMutex);
        m_trackedObjects.reset();
        m_segments.reset();
    }
    m_rangeSpectrumCalculator.reset();
    m_rangeDopplerCalculator.reset();
    m_presenceCalculator.reset();
}

void RadarDataProcessing::onRadarConfigurationUpdated(RadarDeviceConfiguration* configuration)
{
    if (!configuration || !configuration->metrics() || !configuration->parameters())
        return;
    resetCalculators();
    m_segmentationActive = false;
    {
        std::lock_guard<std::mutex> lock(m_chainMutex);
        m_frameRepetitionTimeS = configuration->metrics()->frameRepetitionTimeS();
        switch (configuration->application()) {
        case RadarConstants::PresenceSensing:
            m_presenceResult.reset();
            if (m_broker)
                m_presenceCalculator = RadarPresenceSensingCalculator::create(*m_broker, *m_utils, *configuration);
            if (!m_presenceCalculator)
                reportMissingCalculator(QStringLiteral("Presence Sensing"), QStringLiteral("Presence Sensing"));
            break;
        case RadarConstants::Segmentation: {
            const RadarDeviceParameters& parameters = *configuration->parameters();
            if (m_broker) {
                m_segmentationCalculator = RadarSegmentationCalculator::create(
                    *m_broker, *configuration->segmentation(), parameters.numSamplesPerChirp(),
                    parameters.numChirpsPerFrame(), RadarConfigurationUtils::bandwidth(parameters),
                    parameters.chirpRepetitionTimeS(), configuration->metrics()->centerFrequencyHz());
            }
            if (!m_segmentationCalculator)
                reportMissingCalculator(QStringLiteral("Segmentation"), QStringLiteral("Segmentation"));
            m_segmentList = configuration->segmentation()->segmentsDegrees();
            if (m_polarChart)
                m_polarChart->setSegments(m_segmentList);
            m_segmentationActive = true;
            break;
        }
        case RadarConstants::None:
            break;
        }
    }
    clearLatestFrame();
    resetFrameCounter();

    const quint32 series
        = quint32(configuration->metrics()->rx()->activeCount() * configuration->metrics()->tx()->activeCount());
    m_timeDomainChartData->setSeriesCount(series);
    // The time-domain page shows the first chirp of each frame until the
    // user picks others; every configuration has a first chirp.
    m_timeDomainChartData->setChirpList(std::make_shared<const QVector<qint32>>(QVector<qint32> { 1 }));
    m_frequencyDomainChartData->setSeriesCount(series);
    buildRangeCalculators(configuration);
    if (m_coreSettings)
        m_coreSettings->recordingUserSettings()->updateFrameRepetitionTimeS(
            configuration->metrics()->frameRepetitionTimeS());
}

void RadarDataProcessing::onRadarConfigurationRuntimeUpdated(RadarDeviceConfiguration* configuration)
{
    if (!configuration || !configuration->metrics() || !configuration->parameters())
        return;
    buildRangeCalculators(configuration);
}

void RadarDataProcessing::buildRangeCalculators(RadarDeviceConfiguration* configuration)
{
    const RadarDeviceParameters& parameters = *configuration->parameters();
    RangeSpectrumUserSettings* spectrumSettings = m_userSettings ? m_userSettings->rangeSpectrum() : nullptr;
    m_rangeSpectrumCalculator.reset();
    if (m_broker && spectrumSettings)
        m_rangeSpectrumCalculator = RadarRangeSpectrumCalculator::create(*m_broker, *spectrumSettings);
    if (!m_rangeSpectrumCalculator) {
        reportMissingCalculator(QStringLiteral("Range Spectrum"), QStringLiteral("Range Spectrum"));
    } else {
        const RadarRangeSpectrumCalculator::Axis axis = m_rangeSpectrumCalculator->calculateDistanceAxis(
            spectrumSettings->fftSize(), parameters.numSamplesPerChirp(), configuration->metrics()->maxRangeM());
        if (axis.first) {
            configuration->frequencyDomainAxis()->setSpec(axis.second);
            m_frequencyDomainChartData->setAxis(axis.second.min, axis.second.step);
        }
    }

    RangeDopplerUserSettings* dopplerSettings = m_userSettings ? m_userSettings->rangeDoppler() : nullptr;
    m_rangeDopplerCalculator.reset();
    if (m_broker && dopplerSettings) {
        m_rangeDopplerCalculator = RadarRangeDopplerMapCalculator::create(
            *m_broker, *dopplerSettings, configuration->dopplerRangeAxis(), configuration->dopplerSpeedAxis(),
            parameters.upperFrequencyHz() - parameters.lowerFrequencyHz(), configuration->metrics()->frameRepetitionTimeS(),
            parameters.chirpRepetitionTimeS(), configuration->metrics()->centerFrequencyHz());
    }
    if (!m_rangeDopplerCalculator) {
        reportMissingCalculator(QStringLiteral("Range Doppler Map"), QStringLiteral("Range Doppler"));
    } else {
        m_rangeDopplerChartData->setDimensions(dopplerSettings->dopplerFftSize(), dopplerSettings->rangeFftSize() / 2,
                                               quint32(-dopplerSettings->colorThreshold()));
    }
}

void RadarDataProcessing::reportMissingCalculator(const QString& step, const QString& calculator)
{
    emit triggerEvent(RadarEventCode::Error,
                      step + QStringLiteral(" not configured properly. Processing of data will be continued without "
                                            "this step"),
                      calculator + QStringLiteral(" calculator is NULL"));
}

void RadarDataProcessing::resetPresenceChart()
{
    // Called with the chain mutex held (cycle) or while the worker is stopped.
    if (!m_presenceCalculator || m_frameRepetitionTimeS <= 0.0f)
        return;
    m_presenceChartData->setCapacity(presenceHistoryCapacity(m_frameRepetitionTimeS));
}

void RadarDataProcessing::attachChartItem(Constants::Chart chartType, PolarChart* chart)
{
    if (chartType != Constants::Chart::Polar)
        return;
    if (!chart) {
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("Cannot connect data from GUI to radar."),
                          QStringLiteral("Polar chart pointer is NULL"));
        return;
    }
    m_polarChart = chart;
    if (!m_segmentList.isEmpty())
        chart->setSegments(m_segmentList);
}

IRangeDopplerChartData* RadarDataProcessing::rangeDopplerChartData()
{
    return m_rangeDopplerChartData.get();
}

ISeriesChartData* RadarDataProcessing::chartData(Constants::Chart chartType)
{
    switch (chartType) {
    case Constants::Chart::TimeDomain:
        return m_timeDomainChartData.get();
    case Constants::Chart::FrequencyDomain:
        return m_frequencyDomainChartData.get();
    case Constants::Chart::PresenceSensing:
        return m_presenceChartData.get();
    default:
        return nullptr;
    }
}

void RadarDataProcessing::startAcquisition()
{
    if (m_worker)
        return;
    {
        std::lock_guard<std::mutex> lock(m_chainMutex);
        resetPresenceChart();
    }
    resetFrameCounter();
    const quint32 run = ++m_workerRun;
    // The hook runs on the worker as its loop ends, after a stop() as well
    // as when the provider has no more frames; only a run still current
    // when the call arrives here ended by itself.
    m_worker = std::make_unique<CyclicTaskWorker>([this] { return processCycle(); }, CyclicTaskWorker::Hook(),
                                                  [this, run] {
                                                      QMetaObject::invokeMethod(
                                                          this, [this, run] { onCycleEnded(run); },
                                                          Qt::QueuedConnection);
                                                  });
    // Started before the worker, which owns it from then on.
    m_refreshTimer.start();
    m_worker->start();
    qInfo() << "Acquisition started";
}

void RadarDataProcessing::stopAcquisition()
{
    if (!m_worker)
        return;
    stopRecording();
    m_worker->stop();
    m_worker.reset();
    resetFrameCounter();
    qInfo() << "Acquisition stopped";
}

void RadarDataProcessing::onCycleEnded(quint32 run)
{
    if (!m_worker || run != m_workerRun)
        return;
    // Idle again, so that a start runs; unlike a stop, the count stays on
    // show as the number of frames the run delivered.
    stopRecording();
    m_worker->stop();
    m_worker.reset();
    qInfo() << "Acquisition ended: the provider has no more frames";
    emit acquisitionEnded();
}

quint32 RadarDataProcessing::recordingFrameLimit(const RecordingUserSettings& settings, float frameRepetitionTimeS)
{
    if (!settings.timeLimitOnRecording() || frameRepetitionTimeS <= 0.0f)
        return settings.numOfFrames();
    const double seconds = settings.milliseconds() * 0.001 + settings.seconds() + settings.minutes() * 60.0
        + settings.hours() * 3600.0;
    return quint32(std::ceil(periodsIn(seconds, frameRepetitionTimeS)));
}

int RadarDataProcessing::presenceHistoryCapacity(float frameRepetitionTimeS)
{
    if (!(frameRepetitionTimeS > 0.0f))
        return 0;
    // Thirty seconds of history, both ends included.
    return int(std::floor(periodsIn(30.0, frameRepetitionTimeS))) + 1;
}

std::shared_ptr<RadarRecorder> RadarDataProcessing::createRecorder(quint32 frameLimit, int bufferSize)
{
    return makeQObjectShared(new RadarRecorder(frameLimit, bufferSize));
}

std::unique_ptr<RadarFileRecording> RadarDataProcessing::createFileRecording(const IRadarRecordingSource* source,
                                                                             const QString& jsonPath,
                                                                             const QString& binPath)
{
    return std::make_unique<RadarFileRecording>(source, jsonPath, binPath);
}

std::unique_ptr<RadarFileParsing> RadarDataProcessing::createFileConverter()
{
    return std::make_unique<RadarFileParsing>();
}

std::shared_ptr<RadarPresenceSensingRecorder> RadarDataProcessing::createPresenceRecorder(const QString& filePath)
{
    return makeQObjectShared(new RadarPresenceSensingRecorder(filePath));
}

void RadarDataProcessing::startRecording()
{
    if (m_recorder || !m_coreSettings || !m_configuration)
        return;
    if (m_fileRecording) {
        qWarning() << "The previous recording is still being written";
        return;
    }
    RecordingUserSettings& settings = *m_coreSettings->recordingUserSettings();
    RadarDeviceConfiguration& applied = *m_configuration->appliedConfiguration();
    const QString base = settings.basePath();
    // Files of two recordings under one base would be out of step (a text
    // copy of other frames, another configuration): never mix them.
    const QStringList existing = RecordingFiles::existingSiblings(base);
    if (!existing.isEmpty()) {
        emit triggerEvent(RadarEventCode::Error,
                          QStringLiteral("Recording files already exist: %1").arg(existing.join(QStringLiteral(", "))),
                          QStringLiteral("Choose another file name or remove these files before recording."));
        return;
    }
    if (settings.txtFile() && m_fileParsing) {
        emit triggerEvent(RadarEventCode::Error, QStringLiteral("A text copy is still being written"),
                          QStringLiteral("Wait until the text copy of the previous recording is finished or stop "
                                         "it before recording with a text copy."));
        return;
    }
    m_recordingBasePath = base;
    const quint32 frameLimit = recordingFrameLimit(settings, applied.metrics()->frameRepetitionTimeS());

    m_recordingSource = std::make_unique<RadarRecordingSource>(applied, m_configuration->recordingDocument());
    std::shared_ptr<RadarRecorder> recorder = createRecorder(frameLimit, kRecorderBufferFrames);
    m_fileRecording = createFileRecording(m_recordingSource.get(), RecordingFiles::jsonPath(base),
                                          RecordingFiles::binPath(base));
    if (settings.txtFile())
        setUpFileParsing();
    std::shared_ptr<RadarPresenceSensingRecorder> presenceRecorder;
    if (applied.application() == RadarConstants::PresenceSensing) {
        presenceRecorder = createPresenceRecorder(RadarPresenceSensingRecorder::filePathFor(base));
        connect(presenceRecorder.get(), &RadarPresenceSensingRecorder::errorDetected, this,
                &RadarDataProcessing::onParserError);
    }

    // Direct: the file recording queues under its own lock, and a buffer
    // handed over on the worker must be queued before a stop() on this
    // thread can close the file.
    connect(recorder.get(), &RadarRecorder::bufferReady, m_fileRecording.get(),
            &RadarFileRecording::collectRadarBuffer, Qt::DirectConnection);
    connect(recorder.get(), &RadarRecorder::finished, m_fileRecording.get(), &RadarFileRecording::stop);
    connect(recorder.get(), &RadarRecorder::finished, this, &RadarDataProcessing::onRecorderFinished);
    connect(m_fileRecording.get(), &RadarFileRecording::finished, this, &RadarDataProcessing::onFileRecordingFinished);
    connect(m_fileRecording.get(), &RadarFileRecording::errorDetected, this, &RadarDataProcessing::onParserError);
    // Queued even when the write failed on this thread, inside the file
    // recording's stop(): the recording ends after the error is out, and
    // not from within the chain that is being taken down.
    connect(m_fileRecording.get(), &RadarFileRecording::writeFailed, this, &RadarDataProcessing::stopRecording,
            Qt::QueuedConnection);

    if (!m_fileRecording->start()) {
        m_fileRecording.reset();
        m_fileParsing.reset();
        m_recordingSource.reset();
        return;
    }
    if (presenceRecorder)
        presenceRecorder->start();
    recorder->start();
    {
        std::lock_guard<std::mutex> lock(m_chainMutex);
        m_recorder = std::move(recorder);
        m_presenceRecorder = std::move(presenceRecorder);
    }
    emit isRecordingActiveChanged(true);
}

void RadarDataProcessing::onRecorderFinished()
{
    std::shared_ptr<RadarRecorder> recorder;
    std::shared_ptr<RadarPresenceSensingRecorder> presenceRecorder;
    {
        std::lock_guard<std::mutex> lock(m_chainMutex);
        recorder = std::move(m_recorder);
        presenceRecorder = std::move(m_presenceRecorder);
    }
    if (!recorder)
        return;
    if (presenceRecorder)
        presenceRecorder->stop();
    // A host waiting for the text copy must see it scheduled before it sees
    // the recording end.
    if (m_fileParsing)
        setParsingActive(true);
    emit isRecordingActiveChanged(false);
}

void RadarDataProcessing::stopRecording()
{
    std::shared_ptr<RadarRecorder> recorder;
    {
        std::lock_guard<std::mutex> lock(m_chainMutex);
        recorder = m_recorder;
    }
    if (!recorder)
        return;
    // Hands over the last buffer and emits finished(): the file is completed
    // and onRecorderFinished() drops the chain.
    recorder->stop();
    onRecorderFinished();
}

void RadarDataProcessing::onFileRecordingFinished()
{
    if (!m_fileRecording)
        return;
    const QString binPath = m_fileRecording->binPath();
    // We are inside its stop(): it goes once that has returned.
    m_fileRecording.release()->deleteLater();
    m_recordingSource.reset();
    if (!m_fileParsing)
        return;
    setParsingActive(true);
    if (!m_fileParsing->start(binPath, RecordingFiles::txtPath(m_recordingBasePath))) {
        m_fileParsing.reset();
        setParsingActive(false);
    }
}

bool RadarDataProcessing::convertRecordingToText(const QString& binPath, const QString& txtPath)
{
    if (m_fileParsing)
        return false;
    setUpFileParsing();
    if (!m_fileParsing->start(binPath, txtPath)) {
        m_fileParsing.reset();
        return false;
    }
    setParsingActive(true);
    return true;
}

void RadarDataProcessing::setUpFileParsing()
{
    m_fileParsing = createFileConverter();
    RadarFileParsing* parsing = m_fileParsing.get();
    connect(parsing, &RadarFileParsing::convertingToTxt, this, &IRadarDataProcessing::convertingToTxt);
    connect(parsing, &RadarFileParsing::errorDetected, this, &RadarDataProcessing::onParserError);
    // finished() follows the run's errors on the same path, so the user has
    // the message before the conversion shows as over.
    connect(parsing, &RadarFileParsing::finished, this, [this, parsing] {
        if (m_fileParsing.get() != parsing)
            return;
        m_fileParsing.release()->deleteLater();
        setParsingActive(false);
    });
}

void RadarDataProcessing::setParsingActive(bool active)
{
    if (active == m_parsingActive)
        return;
    m_parsingActive = active;
    emit isParsingActiveChanged(active);
}

void RadarDataProcessing::onParserError(QString message, QString details)
{
    emit triggerEvent(RadarEventCode::Error, message, details);
}

void RadarDataProcessing::stopConvertingToText()
{
    if (m_fileParsing)
        m_fileParsing->stop();
}
