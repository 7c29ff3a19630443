#include "zp7/ZP7SView.h"

#include "common/FrameRateMeter.h"
#include "flashing/RadarFirmwareNotice.h"
#include "host/IPlayback.h"
#include "host/RecordingUserSettings.h"
#include "recording/RadarRecordingSession.h"
#include "recording/RecordingFiles.h"
#include "zp7/ZP7SCoordinator.h"
#include "zp7/ZP7SDataProcessing.h"
#include "zp7/ZP7SDoppler.h"
#include "zp7/config/ZP7SConfig.h"
#include "zp7/config/ZP7SDeviceConfig.h"
#include "zp7/config/ZP7SFrameParams.h"
#include "zp7/config/ZP7SPulseConfigParams.h"
#include "zp7/recording/ZP7SPlayback.h"

#include <QDebug>

ZP7SView::ZP7SView(ZP7SCoordinator* coordinator, ZP7SConfig* config, ZP7SDataProcessing* processing,
                   IPlayback* playback, QObject* parent)
    : QObject(parent)
    , m_coordinator(coordinator)
    , m_config(config)
    , m_processing(processing)
    , m_playback(playback)
{
    m_firmware = new RadarFirmwareNotice(this);
    m_firmware->watch(deviceInfo());
    connect(m_coordinator, &IRadarSubmoduleCoordinator::isConnectedChanged, m_firmware,
            &RadarFirmwareNotice::setConnected);
    connect(m_firmware, &RadarFirmwareNotice::newerImageChanged, this, &ZP7SView::newFirmwareImageChanged);
    connect(m_firmware, &RadarFirmwareNotice::announce, this,
            [this](const QString& message, const QString& details) {
                emit enqueueUserMessage(Constants::Info, message, details);
            });
    connect(m_coordinator, &IRadarSubmoduleCoordinator::isConnectedChanged, this, &ZP7SView::isConnectedChanged);
    connect(m_coordinator, &IRadarSubmoduleCoordinator::isAcquisitionActiveChanged, this, &ZP7SView::isActiveChanged);
    connect(m_coordinator, &ZP7SCoordinator::enqueueUserMessage, this, &ZP7SView::enqueueUserMessage);

    connect(m_processing, &ZP7SDataProcessing::chartsDataUpdated, this, &ZP7SView::chartsDataUpdated);
    connect(m_processing, &ZP7SDataProcessing::frameNumberChanged, this, &ZP7SView::onFrameNumberChanged);
    connect(m_processing, &ZP7SDataProcessing::isRecordingActiveChanged, this, &ZP7SView::isRecordingActiveChanged);
    connect(m_processing, &ZP7SDataProcessing::isParsingActiveChanged, this, &ZP7SView::isParsingActiveChanged);
    connect(m_processing, &ZP7SDataProcessing::convertingToTxt, this, &ZP7SView::convertingToTxt);

    connect(m_config, &ZP7SConfig::deviceConfigUpdated, this, [this] {
        changeRevertApplyAvailability();
        emit radarConfigurationUpdated();
    });
    // The pages write into the edited copy directly: every edit may make it
    // differ from the running copy, or match it again.
    ZP7SDeviceConfig* edited = m_config->guiConfig();
    connect(edited->frameParams(), &ZP7SFrameParams::guiParamChanged, this, &ZP7SView::changeRevertApplyAvailability);
    connect(edited->pulseConfigParams(), &ZP7SPulseConfigParams::guiParamChanged, this,
            &ZP7SView::changeRevertApplyAvailability);

    if (m_playback) {
        connect(m_playback, &IPlayback::isActiveChanged, this, &ZP7SView::playbackActiveChanged);
        if (auto* zp7 = qobject_cast<ZP7SPlayback*>(m_playback)) {
            connect(zp7, &ZP7SPlayback::totalFramesNumberChanged, this, &ZP7SView::totalFramesNumberChanged);
            connect(zp7, &ZP7SPlayback::finished, this, &ZP7SView::finished);
            connect(zp7, &ZP7SPlayback::enqueueUserMessage, this,
                    [this](const QString& message, const QString& details) {
                        emit enqueueUserMessage(Constants::Error, message, details);
                    });
        }
    }

    m_frameRate = new FrameRateMeter([this] { return quint64(qMax(m_frameNumber, 0)); }, this);
    connect(m_frameRate, &FrameRateMeter::rateChanged, this, &ZP7SView::frameRateChanged);
}

ZP7SView::~ZP7SView() = default;

bool ZP7SView::isConnected() const
{
    return m_coordinator->isConnected();
}

bool ZP7SView::isActive() const
{
    return m_coordinator->isAcquisitionActive();
}

bool ZP7SView::isPlaybackActive() const
{
    return m_playback && m_playback->isActive();
}

ZP7SUserSettings* ZP7SView::userSettings() const
{
    return m_config->userSettings();
}

ZP7SDeviceConfig* ZP7SView::guiConfiguration() const
{
    return m_config->guiConfig();
}

ZP7SDeviceConfig* ZP7SView::deviceConfiguration() const
{
    return m_config->deviceConfig();
}

DeviceInfo* ZP7SView::deviceInfo() const
{
    return m_config->deviceInfo();
}

quint32 ZP7SView::totalFramesNumber() const
{
    return m_playback ? m_playback->totalFramesNumber() : 0;
}

bool ZP7SView::isRecordingActive() const
{
    return m_processing->isRecordingActive();
}

bool ZP7SView::isParsingActive() const
{
    return m_processing->isParsingActive();
}

double ZP7SView::maxDopplerFrequency() const
{
    return m_config->deviceConfig()->pulseRepetitionFrequency() / 2.0;
}

void ZP7SView::setRevertApplyAvailable(bool available)
{
    if (available == m_revertApplyAvailable)
        return;
    m_revertApplyAvailable = available;
    emit revertApplyAvailableChanged();
}

void ZP7SView::changeRevertApplyAvailability()
{
    setRevertApplyAvailable(m_config->differs());
}

void ZP7SView::onFrameNumberChanged(int frameNumber)
{
    m_frameNumber = frameNumber;
    emit frameNumberChanged(frameNumber);
}

double ZP7SView::frameRate() const
{
    return m_frameRate->rate();
}

bool ZP7SView::applyDefaultConfiguration()
{
    const bool result = m_coordinator->applyDefaultConfiguration();
    changeRevertApplyAvailability();
    return result;
}

bool ZP7SView::applyGuiConfiguration()
{
    const bool result = m_coordinator->applyGuiConfiguration();
    changeRevertApplyAvailability();
    return result;
}

bool ZP7SView::revertConfiguration()
{
    const bool result = m_coordinator->revertConfiguration();
    changeRevertApplyAvailability();
    return result;
}

bool ZP7SView::applyConfiguration(QString filePath)
{
    const bool result = m_coordinator->applyConfiguration(filePath);
    changeRevertApplyAvailability();
    return result;
}

bool ZP7SView::saveConfiguration(QString filePath)
{
    return m_config->saveConfigFile(filePath);
}

void ZP7SView::applyRangeSpectrumConfigurationRuntime()
{
    m_config->updateRangeSpectrumRuntime();
}

QString ZP7SView::suggestGeneralConfigFileName()
{
    return m_config->suggestGeneralConfigFileName();
}

ISeriesChartData* ZP7SView::getChartData(int chartType)
{
    return m_processing->chartData(static_cast<Constants::Chart>(chartType));
}

void ZP7SView::startAcquisition()
{
    m_coordinator->startAcquisition();
}

void ZP7SView::stopAcquisition()
{
    m_coordinator->stopAcquisition();
}

void ZP7SView::startRecording()
{
    m_processing->startRecording();
}

void ZP7SView::stopRecording()
{
    m_processing->stopRecording();
}

void ZP7SView::stopParsing()
{
    m_processing->stopConvertingToText();
}

QStringList ZP7SView::recordingFiles() const
{
    if (!m_recordingSettings)
        return {};
    const QString base = m_recordingSettings->basePath();
    QStringList files { RecordingFiles::jsonPath(base), RecordingFiles::binPath(base) };
    if (m_recordingSettings->txtFile())
        files.append(RecordingFiles::txtPath(base));
    return files;
}

quint32 ZP7SView::recordingFrameLimit() const
{
    if (!m_recordingSettings)
        return 0;
    const float rate = m_config->deviceConfig()->frameParams()->frameRepetitionRate();
    return RadarRecordingSession::recordingFrameLimit(*m_recordingSettings, rate > 0.0f ? 1.0f / rate : 0.0f);
}

void ZP7SView::setFirmwareSource(const IRadarFirmwareSource* source)
{
    m_firmware->setSource(source);
}

QString ZP7SView::newFirmwareImage() const
{
    return m_firmware->newerImage();
}

QString ZP7SView::checkIfNewFirmwareIsAvailable()
{
    return m_firmware->check();
}

double ZP7SView::radialSpeed(double frequencyHz) const
{
    return ZP7SDoppler::radialSpeed(frequencyHz);
}

double ZP7SView::dopplerFrequency(double speedMPerS) const
{
    return ZP7SDoppler::dopplerFrequency(speedMPerS);
}
