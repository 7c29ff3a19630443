#pragma once

#include "fmcw/common/MonitorRelease.h"
#include "frame/IRadarSubmoduleCoordinator.h"
#include "host/Constants.h"

#include <functional>
#include <memory>

class CoreUserSettings;
class IPlayback;
class IRadarTemperatureMonitor;
class ZP7SConfig;
class ZP7SDataProcessing;
class ZP7SDevice;

// The pulsed-Doppler boards' frame mode: opens a board of the type it
// serves, keeps the device, the configuration and the acquisition in step,
// reads the temperature, and turns the collaborators' events into user
// messages. A failed frame fetch ends acquisition with a message; the user
// (or the host) may start it again. GUI thread only.
class ZP7SCoordinator : public IRadarSubmoduleCoordinator
{
    Q_OBJECT
public:
    static constexpr int kTemperatureIntervalMs = 5000;

    // None of the collaborators is owned; `coreSettings` may be null.
    ZP7SCoordinator(ZP7SDevice* device, ZP7SConfig* config, ZP7SDataProcessing* processing,
                    CoreUserSettings* coreSettings, QObject* parent = nullptr);
    ~ZP7SCoordinator() override;

    // The playback a board takes the acquisition back from; not owned.
    void setPlayback(IPlayback* playback) { m_playback = playback; }

    QString deviceUuid() const override { return m_uuid; }
    vrn_Device_Shield_Type_t deviceType() const override { return m_type; }
    bool isConnected() const override { return m_connected; }
    bool connectDevice(const QString& uuid, vrn_Device_Shield_Type_t type) override;
    void disconnectDevice() override;
    void startAcquisition() override;
    void stopAcquisition() override;
    bool isAcquisitionActive() const override { return m_acquiring; }
    QList<Mode> supportedModes() const override;

    bool applyDefaultConfiguration();
    bool applyGuiConfiguration();
    bool applyConfiguration(const QString& filePath);
    bool revertConfiguration();

    bool hasTemperatureMonitor() const { return m_temperatureMonitor != nullptr; }

signals:
    void enqueueUserMessage(Constants::UserMessageType type, QString msg, QString details);

public slots:
    void onRadarEvent(RadarEventCode code, QString message, QString details) override;
    void onPlaybackActiveChanged(bool active);

private:
    // Stops acquisition around `operation` and starts it again when it ran.
    bool aroundAcquisition(const std::function<bool()>& operation);
    void stopTemperatureMonitor(MonitorRelease release);
    void releaseDevice(MonitorRelease release);
    void setAcquiring(bool acquiring);
    void setChartSeriesCount(int count);

    ZP7SDevice* m_device;
    ZP7SConfig* m_config;
    ZP7SDataProcessing* m_processing;
    CoreUserSettings* m_coreSettings;
    IPlayback* m_playback = nullptr;
    std::unique_ptr<IRadarTemperatureMonitor> m_temperatureMonitor;
    bool m_connected = false;
    bool m_releasing = false;
    bool m_acquiring = false;
    QString m_uuid;
    vrn_Device_Shield_Type_t m_type = VRN_SHIELD_UNKNOWN;
};
