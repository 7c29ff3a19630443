#include "fmcw/standard/RadarView.h"

#include "common/FrameRateMeter.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/PresenceSensingConfig.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/common/SegmentationConfiguration.h"
#include "fmcw/standard/IRadarConfiguration.h"
#include "fmcw/standard/IRadarDataProcessing.h"
#include "fmcw/standard/IRadarSCoordinator.h"
#include "fmcw/standard/RadarDataProcessing.h"
#include "fmcw/standard/RadarPlayback.h"
#include "flashing/RadarFirmwareNotice.h"
#include "host/RecordingUserSettings.h"
#include "recording/RecordingFiles.h"

#include <QDebug>

RadarView::RadarView(IRadarSCoordinator* coordinator, IRadarConfiguration* configuration,
                     IRadarDataProcessing* processing, RadarPlayback* playback, IRadarUserSettings* userSettings,
                     QObject* parent)
    : QObject(parent)
    , m_coordinator(coordinator)
    , m_configuration(configuration)
    , m_processing(processing)
    , m_playback(playback)
    , m_userSettings(userSettings)
{
    m_firmware = new RadarFirmwareNotice(this);
    m_firmware->watch(deviceConfiguration()->deviceInfo());
    connect(m_coordinator, &IRadarSubmoduleCoordinator::isConnectedChanged, m_firmware,
            &RadarFirmwareNotice::setConnected);
    connect(m_firmware, &RadarFirmwareNotice::newerImageChanged, this, &RadarView::newFirmwareImageChanged);
    connect(m_firmware, &RadarFirmwareNotice::announce, this,
            [this](const QString& message, const QString& details) {
                emit enqueueUserMessage(Constants::Info, message, details);
            });
    connect(m_coordinator, &IRadarSubmoduleCoordinator::isConnectedChanged, this, [this] {
        updateRadarType();
        emit isConnectedChanged();
    });
    connect(m_coordinator, &IRadarSubmoduleCoordinator::isAcquisitionActiveChanged, this, &RadarView::isActiveChanged);
    connect(m_coordinator, &IRadarSCoordinator::fifoOverflowCounterChanged, this,
            &RadarView::fifoOverflowCounterChanged);
    connect(m_coordinator, &IRadarSCoordinator::enqueueUserMessage, this, &RadarView::enqueueUserMessage);

    connect(m_processing, &IRadarDataProcessing::chartsDataUpdated, this, &RadarView::chartsDataUpdated);
    connect(m_processing, &IRadarDataProcessing::frameNumberChanged, this, &RadarView::frameNumberChanged);
    connect(m_processing, &IRadarDataProcessing::isRecordingActiveChanged, this, &RadarView::isRecordingActiveChanged);
    connect(m_processing, &IRadarDataProcessing::convertingToTxt, this, &RadarView::convertingToTxt);
    // Follows the pipeline, not the progress: a conversion is running from
    // the moment it is scheduled, before its first report, until it has
    // ended, also when it fails or is stopped.
    connect(m_processing, &IRadarDataProcessing::isParsingActiveChanged, this, [this](bool active) {
        if (active == m_parsingActive)
            return;
        m_parsingActive = active;
        emit isParsingActiveChanged();
    });

    connect(m_configuration, &IRadarConfiguration::deviceConfigurationUpdated, this, [this] {
        updateRadarType();
        changeRevertApplyAvailability();
        emit radarConfigurationUpdated();
    });

    // The pages write into the edited copy directly: every edit may make it
    // differ from the applied copy, or match it again. The derived scene
    // values are compared too but announce no edit of their own.
    RadarDeviceConfiguration* edited = m_configuration->editedConfiguration();
    connect(edited, &RadarDeviceConfiguration::applicationChanged, this, &RadarView::changeRevertApplyAvailability);
    connect(edited->metrics(), &Metrics::guiParamChanged, this, &RadarView::changeRevertApplyAvailability);
    connect(edited->metrics(), &Metrics::sampleRateHzChanged, this, &RadarView::changeRevertApplyAvailability);
    connect(edited->metrics(), &Metrics::centerFrequencyHzChanged, this, &RadarView::changeRevertApplyAvailability);
    connect(edited->presenceSensing(), &PresenceSensingConfig::guiParamChanged, this,
            &RadarView::changeRevertApplyAvailability);
    connect(edited->segmentation(), &SegmentationConfiguration::guiParamChanged, this,
            &RadarView::changeRevertApplyAvailability);

    if (m_playback) {
        connect(m_playback, &IPlayback::isActiveChanged, this, &RadarView::playbackActiveChanged);
        connect(m_playback, &RadarPlayback::totalFramesNumberChanged, this, &RadarView::totalFramesNumberChanged);
        connect(m_playback, &RadarPlayback::finished, this, &RadarView::finished);
        connect(m_playback, &RadarPlayback::enqueueUserMessage, this,
                [this](const QString& message, const QString& details) {
                    emit enqueueUserMessage(Constants::Error, message, details);
                });
    }

    m_frameRate = new FrameRateMeter([processing] { return quint64(processing->frameNumber()); }, this);
    connect(m_frameRate, &FrameRateMeter::rateChanged, this, &RadarView::frameRateChanged);
}

RadarView::~RadarView() = default;

bool RadarView::isActive() const
{
    return m_coordinator->isAcquisitionActive();
}

bool RadarView::isConnected() const
{
    return m_coordinator->isConnected();
}

bool RadarView::isPlaybackActive() const
{
    return m_playback && m_playback->isActive();
}

RadarDeviceConfiguration* RadarView::guiConfiguration() const
{
    return m_configuration->editedConfiguration();
}

RadarDeviceConfiguration* RadarView::deviceConfiguration() const
{
    return m_configuration->appliedConfiguration();
}

quint32 RadarView::totalFramesNumber() const
{
    return m_playback ? m_playback->totalFramesNumber() : 0;
}

bool RadarView::isRecordingActive() const
{
    return m_processing->isRecordingActive();
}

quint32 RadarView::fifoOverflowCounter() const
{
    return m_coordinator->fifoOverflowCounter();
}

double RadarView::frameRate() const
{
    return m_frameRate->rate();
}

void RadarView::updateRadarType()
{
    const RadarConstants::RadarType type = m_configuration->appliedConfiguration()->radarType();
    if (type == m_radarType)
        return;
    m_radarType = type;
    emit radarTypeChanged();
}

void RadarView::changeRevertApplyAvailability()
{
    const bool available = m_configuration->differs();
    if (available == m_revertApplyAvailable)
        return;
    m_revertApplyAvailable = available;
    emit revertApplyAvailableChanged();
}

bool RadarView::applyDefaultConfiguration()
{
    const bool result = m_coordinator->applyDefaultConfiguration();
    changeRevertApplyAvailability();
    return result;
}

bool RadarView::applyGuiConfiguration()
{
    const bool result = m_coordinator->applyGuiConfiguration();
    changeRevertApplyAvailability();
    return result;
}

bool RadarView::revertConfiguration()
{
    const bool result = m_coordinator->revertConfiguration();
    changeRevertApplyAvailability();
    return result;
}

bool RadarView::applyConfiguration(QString filePath)
{
    const bool result = m_coordinator->applyConfiguration(filePath);
    changeRevertApplyAvailability();
    return result;
}

bool RadarView::saveConfiguration(QString filePath)
{
    return m_configuration->saveConfiguration(filePath);
}

void RadarView::applyRangeSpectrumConfigurationRuntime()
{
    m_configuration->updateRangeSpectrumRuntime(m_configuration->appliedConfiguration());
}

void RadarView::applyRangeDopplerMapConfigurationRuntime()
{
    m_configuration->updateRangeDopplerRuntime(m_configuration->appliedConfiguration());
}

QString RadarView::suggestGeneralConfigFileName()
{
    return m_configuration->suggestGeneralConfigFileName();
}

void RadarView::setDataForPolarChart(Constants::Chart chartType, PolarChart* chart)
{
    m_processing->attachChartItem(chartType, chart);
}

IRangeDopplerChartData* RadarView::getRangeDopplerChartData()
{
    return m_processing->rangeDopplerChartData();
}

ISeriesChartData* RadarView::getChartData(int chartType)
{
    return m_processing->chartData(static_cast<Constants::Chart>(chartType));
}

void RadarView::startRecording()
{
    m_processing->startRecording();
}

void RadarView::stopRecording()
{
    m_processing->stopRecording();
}

void RadarView::stopParsing()
{
    m_processing->stopConvertingToText();
}

QStringList RadarView::recordingFiles() const
{
    if (!m_recordingSettings)
        return {};
    const QString base = m_recordingSettings->basePath();
    QStringList files { RecordingFiles::jsonPath(base), RecordingFiles::binPath(base) };
    if (m_recordingSettings->txtFile())
        files.append(RecordingFiles::txtPath(base));
    if (deviceConfiguration()->application() == RadarConstants::PresenceSensing)
        files.append(RecordingFiles::presencePath(base));
    return files;
}

quint32 RadarView::recordingFrameLimit() const
{
    if (!m_recordingSettings)
        return 0;
    return RadarDataProcessing::recordingFrameLimit(*m_recordingSettings,
                                                    deviceConfiguration()->metrics()->frameRepetitionTimeS());
}

void RadarView::setFirmwareSource(const IRadarFirmwareSource* source)
{
    m_firmware->setSource(source);
}

QString RadarView::newFirmwareImage() const
{
    return m_firmware->newerImage();
}

QString RadarView::checkIfNewFirmwareIsAvailable()
{
    return m_firmware->check();
}
