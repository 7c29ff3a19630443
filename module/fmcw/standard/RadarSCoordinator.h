#pragma once

#include "fmcw/common/MonitorRelease.h"
#include "fmcw/standard/IRadarSCoordinator.h"

#include <functional>
#include <memory>

class CoreUserSettings;
class IRadarConfiguration;
class IRadarDataProcessing;
class IPlayback;
class IRadarTemperatureMonitor;
class RadarDevice;

// The FMCW boards' frame mode: connects a board of a type it serves, keeps
// the device, the configuration and the pipeline in step, and turns the
// collaborators' events into user messages. GUI thread only.
class RadarSCoordinator : public IRadarSCoordinator
{
    Q_OBJECT
public:
    // Makes the temperature monitor of a connected device; null when the
    // device has none.
    using MonitorFactory = std::function<std::unique_ptr<IRadarTemperatureMonitor>(RadarDevice&)>;

    // None of the collaborators is owned.
    RadarSCoordinator(IRadarDataProcessing* processing, CoreUserSettings* coreSettings,
                      IRadarConfiguration* configuration, RadarDevice* device, QObject* parent = nullptr);
    ~RadarSCoordinator() override;

    void setMonitorFactory(MonitorFactory factory) { m_monitorFactory = std::move(factory); }
    // The playback source that a board takes the pipeline back from; not owned.
    void setPlayback(IPlayback* playback) { m_playback = playback; }

    QString name() const { return QStringLiteral("RadarS"); }
    QString deviceUuid() const override { return m_uuid; }
    vrn_Device_Shield_Type_t deviceType() const override { return m_type; }
    bool isConnected() const override { return m_connected; }
    bool connectDevice(const QString& uuid, vrn_Device_Shield_Type_t type) override;
    void disconnectDevice() override;
    void startAcquisition() override;
    void stopAcquisition() override;
    bool isAcquisitionActive() const override { return m_acquiring; }
    QList<Mode> supportedModes() const override;

    bool applyDefaultConfiguration() override;
    bool applyGuiConfiguration() override;
    bool applyConfiguration(const QString& filePath) override;
    bool revertConfiguration() override;
    quint32 fifoOverflowCounter() const override { return m_fifoOverflowCounter; }

public slots:
    void onRadarEvent(RadarEventCode code, QString message, QString details) override;
    void onPlaybackActiveChanged(bool value) override;

private:
    // Stops acquisition around `operation` and restarts it when it ran.
    bool aroundAcquisition(const std::function<bool()>& operation);
    void stopTemperatureMonitor(MonitorRelease release = MonitorRelease::Now);
    void releaseDevice(MonitorRelease monitorRelease);
    void setChartSeriesCount(int count);

    IRadarDataProcessing* m_processing;
    CoreUserSettings* m_coreSettings;
    IRadarConfiguration* m_configuration;
    RadarDevice* m_device;
    IPlayback* m_playback = nullptr;
    std::unique_ptr<IRadarTemperatureMonitor> m_temperatureMonitor;
    MonitorFactory m_monitorFactory;
    quint32 m_fifoOverflowCounter = 0;
    bool m_connected = false;
    bool m_acquiring = false;
    bool m_disconnecting = false;
    QString m_uuid;
    vrn_Device_Shield_Type_t m_type = VRN_SHIELD_UNKNOWN;
};
