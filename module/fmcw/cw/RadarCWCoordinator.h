#pragma once

#include "fmcw/common/MonitorRelease.h"
#include "fmcw/cw/IRadarCWCoordinator.h"

#include <QTimer>

#include <functional>
#include <memory>

class CoreUserSettings;
class IRadarTemperatureMonitor;
class IRadarTxPowerMonitor;
class RadarCWConfig;
class RadarCWController;
class RadarCWDataProcessing;
class RadarCWOverheatingProtector;
class RadarDevice;
class RadarDeviceCWConfig;

// CW mode's coordinator: opens a board of a type it serves, puts its CW
// controller in charge, keeps the temperature and Tx-power readouts going
// and runs emission under the overheating protector; turns the mode's
// events into user messages. GUI thread only.
class RadarCWCoordinator : public IRadarCWCoordinator
{
    Q_OBJECT
public:
    static constexpr int kMonitorPeriodMs = 1000;
    static constexpr quint32 kProtectorPeriodMs = 1000;

    // None of the collaborators is owned; `coreSettings` may be null.
    RadarCWCoordinator(RadarDevice* device, RadarCWController* controller, RadarCWConfig* config,
                       RadarCWDataProcessing* processing, CoreUserSettings* coreSettings, QObject* parent = nullptr);
    ~RadarCWCoordinator() override;

    QString deviceUuid() const override { return m_uuid; }
    vrn_Device_Shield_Type_t deviceType() const override { return m_type; }
    bool isConnected() const override { return m_connected; }
    bool connectDevice(const QString& uuid, vrn_Device_Shield_Type_t type) override;
    void disconnectDevice() override;
    // CW mode has no frame acquisition: frames are captured one by one.
    void startAcquisition() override {}
    void stopAcquisition() override {}
    bool isAcquisitionActive() const override { return false; }
    QList<Mode> supportedModes() const override;

    bool startEmission() override;
    bool stopEmission() override;
    bool isEmissionActive() const override { return m_emitting; }
    bool applyDefaultConfig() override;
    bool applyGuiConfig() override;

    // For tests and the pages' status: what is running now.
    bool isProtectorRunning() const { return m_protector != nullptr; }
    bool hasTemperatureMonitor() const { return m_temperatureMonitor != nullptr; }
    bool hasTxPowerMonitor() const { return m_txPowerMonitor != nullptr; }

public slots:
    void onRadarEvent(RadarEventCode code, QString message, QString details) override;
    void onDeviceConfigUpdated(RadarDeviceCWConfig* config);

private:
    bool monitorsSupported() const;
    void startMonitors();
    void stopTemperatureMonitor(MonitorRelease release);
    void restartTxPowerMonitor();
    void stopTxPowerMonitor(MonitorRelease release);
    void releaseDevice(MonitorRelease release);
    // Stops emission around `operation` and starts it again when it ran,
    // so that the protector runs with the configuration now applied.
    bool aroundEmission(const std::function<bool()>& operation);
    void setEmitting(bool emitting);
    void setChartSeriesCount(int count);

    RadarDevice* m_device;
    RadarCWController* m_controller;
    RadarCWConfig* m_config;
    RadarCWDataProcessing* m_processing;
    CoreUserSettings* m_coreSettings;
    std::unique_ptr<IRadarTemperatureMonitor> m_temperatureMonitor;
    std::unique_ptr<IRadarTxPowerMonitor> m_txPowerMonitor;
    QTimer m_txPowerTimer;
    std::unique_ptr<RadarCWOverheatingProtector> m_protector;
    bool m_connected = false;
    bool m_releasing = false;
    bool m_emitting = false;
    QString m_uuid;
    vrn_Device_Shield_Type_t m_type = VRN_SHIELD_UNKNOWN;
};
