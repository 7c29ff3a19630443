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
#include "recording/RadarRecordingSession.h"
#include "recording/RadarPresenceSensingRecorder.h"
#include "recording/RadarRecorder.h"
#include "recording/RecordingFiles.h"

#include <QDebug>
#include <algorithm>
#include <cmath>

namespace {
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
    , m_session(std::make_unique<RadarRecordingSession>())
{
    // The chain is built through our own factories, which subclasses
    // replace.
    RadarRecordingSession::Parts parts;
    parts.recorder = [this](quint32 frameLimit, int bufferFrames) { return createRecorder(frameLimit, bufferFrames); };
    parts.fileRecording = [this](const IRadarRecordingSource* source, const QString& jsonPath, const QString& binPath) {
        return createFileRecording(source, jsonPath, binPath);
    };
    parts.converter = [this] { return createFileConverter(); };
    m_session->setParts(std::move(parts));
    connect(m_session.get(), &RadarRecordingSession::isRecordingActiveChanged, this,
            &RadarDataProcessing::onRecordingActiveChanged);
    connect(m_session.get(), &RadarRecordingSession::isParsingActiveChanged, this,
            &IRadarDataProcessing::isParsingActiveChanged);
    connect(m_session.get(), &RadarRecordingSession::convertingToTxt, this, &IRadarDataProcessing::convertingToTxt);
    connect(m_session.get(), &RadarRecordingSession::errorDetected, this, &RadarDataProcessing::onParserError);
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
    m_session->shutdown();
}

bool RadarDataProcessing::isRecordingActive() const
{
    return m_session->isRecordingActive();
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
    const std::shared_ptr<RadarPresenceSensingRecorder> presenceRecorder = m_presenceRecorder;
    m_session->record(frame, int(number));

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
    return RadarRecordingSession::recordingFrameLimit(settings, frameRepetitionTimeS);
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
    if (m_session->isRecordingActive() || !m_coreSettings || !m_configuration)
        return;
    RadarDeviceConfiguration& applied = *m_configuration->appliedConfiguration();
    RecordingUserSettings& settings = *m_coreSettings->recordingUserSettings();
    m_session->setRecordingSettings(&settings);
    const bool presence = applied.application() == RadarConstants::PresenceSensing;
    m_session->setStartHook([this, presence](const QString& base) {
        if (presence)
            startPresenceLog(base);
    });
    const quint32 frameLimit = recordingFrameLimit(settings, applied.metrics()->frameRepetitionTimeS());
    m_session->start(std::make_shared<RadarRecordingSource>(applied, m_configuration->recordingDocument()),
                     frameLimit);
}

void RadarDataProcessing::startPresenceLog(const QString& base)
{
    // The presence log is the standard mode's own, beside the raw frames.
    std::shared_ptr<RadarPresenceSensingRecorder> presenceRecorder
        = createPresenceRecorder(RadarPresenceSensingRecorder::filePathFor(base));
    if (!presenceRecorder)
        return;
    connect(presenceRecorder.get(), &RadarPresenceSensingRecorder::errorDetected, this,
            &RadarDataProcessing::onParserError);
    presenceRecorder->start();
    std::lock_guard<std::mutex> lock(m_chainMutex);
    m_presenceRecorder = std::move(presenceRecorder);
}

void RadarDataProcessing::onRecordingActiveChanged(bool active)
{
    if (!active) {
        std::shared_ptr<RadarPresenceSensingRecorder> presenceRecorder;
        {
            std::lock_guard<std::mutex> lock(m_chainMutex);
            presenceRecorder = std::move(m_presenceRecorder);
        }
        if (presenceRecorder)
            presenceRecorder->stop();
    }
    emit isRecordingActiveChanged(active);
}

void RadarDataProcessing::stopRecording()
{
    m_session->stop();
}

bool RadarDataProcessing::convertRecordingToText(const QString& binPath, const QString& txtPath)
{
    return m_session->convertToText(binPath, txtPath);
}

void RadarDataProcessing::onParserError(QString message, QString details)
{
    emit triggerEvent(RadarEventCode::Error, message, details);
}

void RadarDataProcessing::stopConvertingToText()
{
    m_session->stopConvertingToText();
}
