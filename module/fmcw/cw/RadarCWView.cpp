#include "fmcw/cw/RadarCWView.h"

#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/RadarAntennas.h"
#include "fmcw/cw/IRadarCWCoordinator.h"
#include "fmcw/cw/RadarCWDataProcessing.h"
#include "fmcw/cw/config/RadarCWConfig.h"
#include "fmcw/cw/config/RadarCWParams.h"
#include "fmcw/cw/config/RadarDeviceCWConfig.h"
#include "flashing/RadarFirmwareNotice.h"

#include <QDebug>

RadarCWView::RadarCWView(IRadarCWCoordinator* coordinator, RadarCWConfig* config, RadarCWDataProcessing* processing,
                         QObject* parent)
    : QObject(parent)
    , m_coordinator(coordinator)
    , m_config(config)
    , m_processing(processing)
{
    m_firmware = new RadarFirmwareNotice(this);
    m_firmware->watch(deviceInfo());
    connect(m_coordinator, &IRadarSubmoduleCoordinator::isConnectedChanged, m_firmware,
            &RadarFirmwareNotice::setConnected);
    connect(m_firmware, &RadarFirmwareNotice::newerImageChanged, this, &RadarCWView::newFirmwareImageChanged);
    connect(m_firmware, &RadarFirmwareNotice::announce, this,
            [this](const QString& message, const QString& details) {
                emit enqueueUserMessage(Constants::Info, message, details);
            });
    connect(m_coordinator, &IRadarSubmoduleCoordinator::isConnectedChanged, this, [this] {
        updateRadarType();
        emit isConnectedChanged();
    });
    connect(m_coordinator, &IRadarCWCoordinator::isEmissionActiveChanged, this, &RadarCWView::isEmissionActiveChanged);
    connect(m_coordinator, &IRadarCWCoordinator::enqueueUserMessage, this, &RadarCWView::enqueueUserMessage);
    connect(m_processing, &RadarCWDataProcessing::chartsDataUpdated, this, &RadarCWView::onChartsDataUpdated);
    connect(m_config, &RadarCWConfig::deviceConfigUpdated, this, [this] {
        updateRadarType();
        changeRevertApplyAvailability();
        emit radarConfigurationUpdated();
    });
    connect(m_config->deviceInfo(), &DeviceInfo::deviceNameChanged, this, &RadarCWView::updateRadarType);

    // The pages write into the edited copy directly: every edit may make it
    // differ from the device copy, or match it again.
    RadarDeviceCWConfig* edited = m_config->guiConfig();
    connect(edited->params(), &RadarCWParams::guiParamChanged, this, &RadarCWView::changeRevertApplyAvailability);
    connect(edited->rxAntennas(), &RadarAntennas::antennasChanged, this, &RadarCWView::changeRevertApplyAvailability);
    connect(edited->txAntennas(), &RadarAntennas::antennasChanged, this, &RadarCWView::changeRevertApplyAvailability);
}

RadarCWView::~RadarCWView() = default;

bool RadarCWView::isConnected() const
{
    return m_coordinator->isConnected();
}

RadarCWUserSettings* RadarCWView::userSettings() const
{
    return m_config->userSettings();
}

RadarDeviceCWConfig* RadarCWView::guiConfig() const
{
    return m_config->guiConfig();
}

RadarDeviceCWConfig* RadarCWView::deviceConfig() const
{
    return m_config->deviceConfig();
}

DeviceInfo* RadarCWView::deviceInfo() const
{
    return m_config->deviceInfo();
}

bool RadarCWView::isEmissionActive() const
{
    return m_coordinator->isEmissionActive();
}

void RadarCWView::updateRadarType()
{
    const RadarConstants::RadarType type = m_config->deviceInfo()->radarType();
    if (type == m_radarType)
        return;
    m_radarType = type;
    emit radarTypeChanged();
}

void RadarCWView::setRevertApplyAvailable(bool available)
{
    if (available == m_revertApplyAvailable)
        return;
    m_revertApplyAvailable = available;
    emit revertApplyAvailableChanged();
}

void RadarCWView::changeRevertApplyAvailability()
{
    setRevertApplyAvailable(m_config->differs());
}

void RadarCWView::onChartsDataUpdated(bool value)
{
    if (value != m_frameAvailable) {
        m_frameAvailable = value;
        emit isFrameAvailableChanged();
    }
    emit chartsDataUpdated();
}

bool RadarCWView::applyDefaultConfig()
{
    const bool result = m_coordinator->applyDefaultConfig();
    changeRevertApplyAvailability();
    return result;
}

bool RadarCWView::applyGuiConfig()
{
    const bool result = m_coordinator->applyGuiConfig();
    changeRevertApplyAvailability();
    return result;
}

void RadarCWView::revertConfig()
{
    m_config->revertConfig();
    changeRevertApplyAvailability();
}

bool RadarCWView::saveConfig(QString filePath)
{
    return m_config->saveConfig(filePath);
}

bool RadarCWView::loadConfig(QString filePath)
{
    const bool result = m_config->loadConfig(filePath);
    changeRevertApplyAvailability();
    return result;
}

bool RadarCWView::startEmission()
{
    return m_coordinator->startEmission();
}

bool RadarCWView::stopEmission()
{
    return m_coordinator->stopEmission();
}

bool RadarCWView::captureFrame()
{
    return m_processing->captureFrame();
}

bool RadarCWView::logOneFrame()
{
    return m_processing->logOneFrame();
}

ISeriesChartData* RadarCWView::getChartData(int chartType)
{
    return m_processing->chartData(static_cast<Constants::Chart>(chartType));
}

QString RadarCWView::suggestGeneralConfigFileName()
{
    return m_config->suggestGeneralConfigFileName();
}

void RadarCWView::applyRangeSpectrumConfigurationRuntime()
{
    m_processing->onRadarConfigurationRuntimeUpdated();
}

void RadarCWView::setFirmwareSource(const IRadarFirmwareSource* source)
{
    m_firmware->setSource(source);
}

QString RadarCWView::newFirmwareImage() const
{
    return m_firmware->newerImage();
}

QString RadarCWView::checkIfNewFirmwareIsAvailable()
{
    return m_firmware->check();
}
