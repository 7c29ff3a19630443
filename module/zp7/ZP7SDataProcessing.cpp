#include "zp7/ZP7SDataProcessing.h"

#include "core/CyclicTaskWorker.h"
#include "host/CoreUserSettings.h"
#include "recording/RadarRecordingSession.h"
#include "zp7/IZP7SDataProvider.h"
#include "zp7/ZP7SDopplerSpectrumChartData.h"
#include "zp7/ZP7STimeDomainChartData.h"
#include "zp7/config/ZP7SConfig.h"
#include "zp7/config/ZP7SDeviceConfig.h"
#include "zp7/config/ZP7SFrameParams.h"
#include "zp7/config/ZP7SUserSettings.h"
#include "zp7/recording/ZP7SRecordFrame.h"
#include "zp7/recording/ZP7SRecordingSource.h"

#include <QDebug>

namespace {
// The frame count's half of the numbering word.
constexpr quint64 kCountMask = 0xffffffffu;
// The board sends the selected channel only.
constexpr quint32 kChannels = 1;
}

ZP7SDataProcessing::ZP7SDataProcessing(ZP7SConfig* config, CoreUserSettings* coreSettings, QObject* parent)
    : QObject(parent)
    , m_config(config)
    , m_coreSettings(coreSettings)
    , m_timeDomain(std::make_unique<ZP7STimeDomainChartData>())
    , m_spectrum(std::make_unique<ZP7SDopplerSpectrumChartData>())
    , m_session(std::make_unique<RadarRecordingSession>())
{
    m_timeDomain->setChannelCount(kChannels);
    if (m_config) {
        connect(m_config, &ZP7SConfig::deviceConfigUpdated, this, &ZP7SDataProcessing::onRadarConfigurationUpdated);
        connect(m_config, &ZP7SConfig::deviceConfigurationRuntimeUpdated, this,
                &ZP7SDataProcessing::onRadarConfigurationRuntimeUpdated);
    }
    // Emitted on the worker, delivered queued here.
    connect(this, &ZP7SDataProcessing::updateChartsData, this, &ZP7SDataProcessing::onUpdateChartsData);
    connect(this, &ZP7SDataProcessing::frameCounted, this, &ZP7SDataProcessing::onFrameCounted,
            Qt::QueuedConnection);
    if (m_coreSettings) {
        m_refreshIntervalMs = m_coreSettings->minimumRefreshInterval();
        connect(m_coreSettings, &CoreUserSettings::minimumRefreshIntervalChanged, this,
                [this] { m_refreshIntervalMs = m_coreSettings->minimumRefreshInterval(); });
        m_session->setRecordingSettings(m_coreSettings->recordingUserSettings());
    }
    connect(m_session.get(), &RadarRecordingSession::isRecordingActiveChanged, this,
            &ZP7SDataProcessing::isRecordingActiveChanged);
    connect(m_session.get(), &RadarRecordingSession::isParsingActiveChanged, this,
            &ZP7SDataProcessing::isParsingActiveChanged);
    connect(m_session.get(), &RadarRecordingSession::convertingToTxt, this, &ZP7SDataProcessing::convertingToTxt);
    connect(m_session.get(), &RadarRecordingSession::errorDetected, this,
            [this](const QString& message, const QString& details) {
                emit triggerEvent(RadarEventCode::Error, message, details);
            });
}

ZP7SDataProcessing::~ZP7SDataProcessing()
{
    stopAcquisition();
    m_session->shutdown();
}

ZP7SFrame ZP7SDataProcessing::latestFrame() const
{
    std::lock_guard<std::mutex> lock(m_frameMutex);
    return m_latestFrame;
}

ISeriesChartData* ZP7SDataProcessing::chartData(Constants::Chart chartType) const
{
    switch (chartType) {
    case Constants::Chart::TimeDomain:
        return m_timeDomain.get();
    case Constants::Chart::FrequencyDomain:
        return m_spectrum.get();
    default:
        return nullptr;
    }
}

void ZP7SDataProcessing::resetFrameCounter()
{
    quint64 current = m_numbering.load();
    while (!m_numbering.compare_exchange_weak(current, ((current >> 32) + 1) << 32)) {
    }
    emit frameNumberChanged(0);
}

void ZP7SDataProcessing::onFrameCounted(quint32 generation, int frameNumber)
{
    if (generation == quint32(m_numbering.load() >> 32))
        emit frameNumberChanged(frameNumber);
}

void ZP7SDataProcessing::clear()
{
    {
        std::lock_guard<std::mutex> lock(m_frameMutex);
        m_latestFrame.reset();
    }
    m_timeDomain->clear();
    m_spectrum->clear();
    emit chartsDataUpdated();
}

bool ZP7SDataProcessing::acquisitionStep()
{
    IZP7SDataProvider* provider = m_provider.load();
    if (!provider || !m_config)
        return false;
    const ZP7SFrameResult result = provider->getNextFrame(*m_config->deviceConfig());
    if (!result.success)
        return false;
    // A wait cut short (a stop under way) brings no frame.
    if (!result.frame)
        return true;
    {
        std::lock_guard<std::mutex> lock(m_frameMutex);
        m_latestFrame = result.frame;
    }
    // Takes the frame's number; the count wraps within its own half.
    quint64 taken = m_numbering.load();
    while (!m_numbering.compare_exchange_weak(taken, (taken & ~kCountMask) | ((taken + 1) & kCountMask))) {
    }
    const int number = int(taken & kCountMask);
    if (m_session->isRecordingActive())
        m_session->record(ZP7SRecordFrame::wrap(result.frame), number);
    emit frameCounted(quint32(taken >> 32), number + 1);

    if (m_refreshClock.elapsed() > m_refreshIntervalMs.load()) {
        emit updateChartsData();
        m_refreshClock.restart();
    }
    return true;
}

void ZP7SDataProcessing::startAcquisition()
{
    if (m_worker || !m_provider.load())
        return;
    const quint32 run = ++m_workerRun;
    // The end hook runs on the worker as its loop ends, after a stop() as
    // well as after a failed fetch; only a run still current when the call
    // arrives here ended by itself.
    m_worker = std::make_unique<CyclicTaskWorker>([this] { return acquisitionStep(); }, CyclicTaskWorker::Hook(),
                                                  [this, run] {
                                                      QMetaObject::invokeMethod(
                                                          this, [this, run] { onWorkerEnded(run); },
                                                          Qt::QueuedConnection);
                                                  });
    // Started before the worker, which owns it from then on.
    m_refreshClock.start();
    m_worker->start();
    qInfo() << "ZP7 acquisition started";
}

void ZP7SDataProcessing::stopAcquisition()
{
    if (!m_worker)
        return;
    // Every frame already offered reaches the file.
    stopRecording();
    m_worker->stop();
    m_worker.reset();
    if (IZP7SDataProvider* provider = m_provider.load())
        provider->stopAcquisition();
    qInfo() << "ZP7 acquisition stopped after" << frameNumber() << "frames";
}

void ZP7SDataProcessing::onWorkerEnded(quint32 run)
{
    if (!m_worker || run != m_workerRun)
        return;
    stopRecording();
    m_worker->stop();
    m_worker.reset();
    // The count stays on show: the frames this run delivered.
    qInfo() << "ZP7 acquisition ended by itself after" << frameNumber() << "frames";
    emit acquisitionEnded();
}

void ZP7SDataProcessing::onUpdateChartsData()
{
    const ZP7SFrame frame = latestFrame();
    if (!frame)
        return;
    m_timeDomain->update(frame);
    m_spectrum->update(frame);
    ++m_refreshCount;
    emit chartsDataUpdated();
}

void ZP7SDataProcessing::configureCharts()
{
    if (!m_config)
        return;
    ZP7SDeviceConfig* running = m_config->deviceConfig();
    const quint16 samples = running->frameParams()->numOfSamples();
    RangeSpectrumUserSettings* settings = m_config->userSettings()->rangeSpectrum();
    if (samples == 0 || !settings) {
        m_spectrum->configure({}, 0.0f);
        return;
    }
    const ZP7SDopplerTransform::Settings transform = ZP7SDopplerTransform::settingsFor(*settings, samples);
    // The pages read the axis off the running configuration: it follows
    // the FFT actually used, also when the settings asked for a shorter one.
    if (m_spectrum->configure(transform, running->frameParams()->pulseRepetitionTime())) {
        running->updateFrequencyDomainAxis(transform.fftSize);
    } else {
        emit triggerEvent(RadarEventCode::Error,
                          QStringLiteral("Doppler Spectrum not configured properly. Processing of data will be "
                                         "continued without this step"),
                          QStringLiteral("FFT of %1 points for %2 samples").arg(transform.fftSize).arg(samples));
    }
}

void ZP7SDataProcessing::onRadarConfigurationUpdated()
{
    // Frames of the previous configuration would be drawn on the new axes.
    {
        std::lock_guard<std::mutex> lock(m_frameMutex);
        m_latestFrame.reset();
    }
    m_timeDomain->clear();
    resetFrameCounter();
    configureCharts();
    if (m_coreSettings && m_config) {
        const float rate = m_config->deviceConfig()->frameParams()->frameRepetitionRate();
        if (rate > 0.0f)
            m_coreSettings->recordingUserSettings()->updateFrameRepetitionTimeS(1.0f / rate);
    }
    emit chartsDataUpdated();
}

void ZP7SDataProcessing::onRadarConfigurationRuntimeUpdated()
{
    configureCharts();
    onUpdateChartsData();
}

void ZP7SDataProcessing::startRecording()
{
    if (!m_config || !m_coreSettings || m_session->isRecordingActive())
        return;
    const float rate = m_config->deviceConfig()->frameParams()->frameRepetitionRate();
    const quint32 limit = RadarRecordingSession::recordingFrameLimit(*m_coreSettings->recordingUserSettings(),
                                                                     rate > 0.0f ? 1.0f / rate : 0.0f);
    if (m_session->start(std::make_shared<ZP7SRecordingSource>(*m_config), limit))
        qInfo().noquote() << "ZP7 recording to" << m_session->basePath() << "of at most" << limit << "frames";
}

void ZP7SDataProcessing::stopRecording()
{
    m_session->stop();
}

bool ZP7SDataProcessing::isRecordingActive() const
{
    return m_session->isRecordingActive();
}

bool ZP7SDataProcessing::isParsingActive() const
{
    return m_session->isParsingActive();
}

void ZP7SDataProcessing::stopConvertingToText()
{
    m_session->stopConvertingToText();
}
