#include "fmcw/cw/RadarCWDataProcessing.h"

#include "common/MathAxis.h"
#include "common/RadarFrequencyDomainChartData.h"
#include "common/RadarRangeSpectrumCalculator.h"
#include "common/RadarTimeDomainChartData.h"
#include "common/RangeSpectrumUserSettings.h"
#include "core/LoggingConfiguration.h"
#include "fmcw/common/RadarAntennas.h"
#include "fmcw/cw/RadarCWController.h"
#include "fmcw/cw/config/RadarCWConfig.h"
#include "fmcw/cw/config/RadarCWFileLogging.h"
#include "fmcw/cw/config/RadarCWParams.h"
#include "fmcw/cw/config/RadarCWUserSettings.h"
#include "fmcw/cw/config/RadarDeviceCWConfig.h"

#include <QDateTime>
#include <QDebug>
#include <QFileInfo>

namespace {

// The one chirp a CW frame holds.
const RadarTimeDomainChartData::ChirpList kFirstChirp = std::make_shared<const QVector<qint32>>(QVector<qint32> { 1 });

}

RadarCWDataProcessing::RadarCWDataProcessing(IBroker* broker, RadarCWController* controller, RadarCWConfig* config,
                                             QObject* parent)
    : QObject(parent)
    , m_broker(broker)
    , m_controller(controller)
    , m_config(config)
    , m_timeDomain(std::make_unique<RadarTimeDomainChartData>(false))
    , m_frequencyDomain(std::make_unique<RadarFrequencyDomainChartData>())
{
    m_timeDomain->setChirpList(kFirstChirp);
    connect(m_config, &RadarCWConfig::deviceConfigUpdated, this, &RadarCWDataProcessing::onRadarConfigurationUpdated);
    connect(m_config, &RadarCWConfig::deviceConfigurationRuntimeUpdated, this,
            &RadarCWDataProcessing::onRadarConfigurationRuntimeUpdated);
    connect(this, &RadarCWDataProcessing::updateChartsData, this, &RadarCWDataProcessing::onUpdateChartsData);
}

RadarCWDataProcessing::~RadarCWDataProcessing() = default;

bool RadarCWDataProcessing::isFrameAvailable() const
{
    std::lock_guard<std::mutex> lock(m_frameMutex);
    return m_frame != nullptr;
}

SharedFrame RadarCWDataProcessing::latestFrame() const
{
    std::lock_guard<std::mutex> lock(m_frameMutex);
    return m_frame;
}

quint64 RadarCWDataProcessing::frameSequence() const
{
    std::lock_guard<std::mutex> lock(m_frameMutex);
    return m_sequence;
}

ISeriesChartData* RadarCWDataProcessing::chartData(Constants::Chart chartType) const
{
    switch (chartType) {
    case Constants::Chart::TimeDomain:
        return m_timeDomain.get();
    case Constants::Chart::FrequencyDomain:
        return m_frequencyDomain.get();
    default:
        return nullptr;
    }
}

void RadarCWDataProcessing::clear()
{
    {
        std::lock_guard<std::mutex> lock(m_frameMutex);
        m_frame.reset();
    }
    m_timeDomain->update(SharedFrame());
    m_frequencyDomain->update({});
    emit chartsDataUpdated(false);
}

bool RadarCWDataProcessing::captureFrame()
{
    RadarCWController::FrameResult result = m_controller->fetchFrame(*m_config->deviceConfig());
    if (!result.first)
        return false;
    {
        std::lock_guard<std::mutex> lock(m_frameMutex);
        m_frame = std::move(result.second);
        ++m_sequence;
    }
    emit updateChartsData();
    return true;
}

void RadarCWDataProcessing::onUpdateChartsData()
{
    const SharedFrame frame = latestFrame();
    if (!frame)
        return;
    m_timeDomain->update(frame);
    if (m_calculator) {
        QVector<SharedVector> spectra = m_calculator->processData(frame);
        if (!spectra.isEmpty())
            m_frequencyDomain->update(std::move(spectra));
    }
    emit chartsDataUpdated(true);
}

void RadarCWDataProcessing::onRadarConfigurationUpdated()
{
    // A frame of the previous configuration would be logged under the
    // header of the new one.
    clear();
    const quint32 receivers = quint32(m_config->deviceConfig()->rxAntennas()->activeCount());
    m_timeDomain->setSeriesCount(receivers);
    m_frequencyDomain->setSeriesCount(receivers);
    buildCalculator();
}

void RadarCWDataProcessing::onRadarConfigurationRuntimeUpdated()
{
    buildCalculator();
    onUpdateChartsData();
}

void RadarCWDataProcessing::buildCalculator()
{
    m_calculator.reset();
    RangeSpectrumUserSettings* settings = m_config->userSettings()->rangeSpectrum();
    if (!m_broker || !settings)
        return;
    m_calculator = RadarRangeSpectrumCalculator::create(*m_broker, *settings);
    if (!m_calculator) {
        emit triggerEvent(RadarEventCode::Error,
                          QStringLiteral("Range Spectrum not configured properly. Processing of data will be "
                                         "continued without this step"),
                          QStringLiteral("Range Spectrum calculator is NULL"));
        return;
    }
    // The spectrum of a CW frame is over frequency: its x axis is the
    // frequency of each bin at the ADC's sampling rate.
    RadarDeviceCWConfig* device = m_config->deviceConfig();
    const RadarRangeSpectrumCalculator::Axis axis
        = m_calculator->calculateFrequencyAxis(int(settings->fftSize()), float(device->params()->samplingRate()));
    if (axis.first) {
        device->frequencyDomainAxis()->setSpec(axis.second);
        m_frequencyDomain->setAxis(axis.second.min, axis.second.step);
    }
}

bool RadarCWDataProcessing::logOneFrame()
{
    LoggingConfiguration* logging = m_config->userSettings()->loggingConfiguration();
    if (!logging->checkIfLoggingPathIsValid()) {
        emit triggerEvent(RadarEventCode::Notice, QStringLiteral("Path is not valid"), logging->loggingPath());
        return false;
    }
    const SharedFrame frame = latestFrame();
    if (!frame) {
        emit triggerEvent(RadarEventCode::Notice, QStringLiteral("No frame has been captured yet"),
                          QStringLiteral("Capture a frame before logging it"));
        return false;
    }

    // The file is named on a scratch copy of the settings: the prefix the
    // page shows stays as the user typed it.
    const QString prefix = logging->loggingFileName();
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    LoggingConfiguration target;
    target.setLoggingPath(logging->loggingPath());
    target.setIsCustomFileName(true);
    target.setLoggingFileName(prefix + QStringLiteral("_") + stamp);
    // Two frames logged within one second keep both files.
    for (int copy = 2; target.checkIfFileExist(); ++copy)
        target.setLoggingFileName(prefix + QStringLiteral("_") + stamp + QStringLiteral("_%1").arg(copy));

    RadarCWFileLogging file(*m_config->deviceConfig(), *m_config->deviceInfo(), frame);
    connect(&file, &CSVFileLogging::errorDetected, this, [this](const QString& message, const QString& details) {
        emit triggerEvent(RadarEventCode::Error, message, details);
    });
    if (!file.write(target))
        return false;
    m_lastLogFile = target.logFilePath();
    logging->setNumberOfLogs(logging->numberOfLogs() + 1);
    qInfo().noquote() << "CW frame logged to" << m_lastLogFile;
    return true;
}
