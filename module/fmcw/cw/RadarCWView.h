#pragma once

#include "frame/RadarConstants.h"
#include "host/Constants.h"

#include <QObject>
#include <QString>

class DeviceInfo;
class IRadarCWCoordinator;
class IRadarFirmwareSource;
class RadarFirmwareNotice;
class ISeriesChartData;
class RadarCWConfig;
class RadarCWDataProcessing;
class RadarCWUserSettings;
class RadarDeviceCWConfig;

// What the CW pages bind to ("radarCWView"). Holds nothing but a few
// change flags: every operation goes to the coordinator, the configuration
// object or the data processing.
class RadarCWView : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isConnected READ isConnected NOTIFY isConnectedChanged)
    Q_PROPERTY(RadarCWUserSettings* userSettings READ userSettings CONSTANT)
    Q_PROPERTY(RadarDeviceCWConfig* guiConfig READ guiConfig CONSTANT)
    Q_PROPERTY(RadarDeviceCWConfig* deviceConfig READ deviceConfig CONSTANT)
    Q_PROPERTY(DeviceInfo* deviceInfo READ deviceInfo CONSTANT)
    Q_PROPERTY(QString newFirmwareImage READ newFirmwareImage NOTIFY newFirmwareImageChanged)
    Q_PROPERTY(RadarConstants::RadarType radarType READ radarType NOTIFY radarTypeChanged)
    Q_PROPERTY(bool revertApplyAvailable READ revertApplyAvailable WRITE setRevertApplyAvailable
                   NOTIFY revertApplyAvailableChanged)
    Q_PROPERTY(bool isEmissionActive READ isEmissionActive NOTIFY isEmissionActiveChanged)
    Q_PROPERTY(bool isFrameAvailable READ isFrameAvailable NOTIFY isFrameAvailableChanged)
public:
    RadarCWView(IRadarCWCoordinator* coordinator, RadarCWConfig* config, RadarCWDataProcessing* processing,
                QObject* parent = nullptr);
    ~RadarCWView() override;

    bool isConnected() const;
    RadarCWUserSettings* userSettings() const;
    RadarDeviceCWConfig* guiConfig() const;
    RadarDeviceCWConfig* deviceConfig() const;
    DeviceInfo* deviceInfo() const;
    // Where newer firmware images are looked for; not owned, may be null.
    void setFirmwareSource(const IRadarFirmwareSource* source);
    // The image newer than the connected board's firmware, else empty.
    QString newFirmwareImage() const;
    RadarConstants::RadarType radarType() const { return m_radarType; }
    bool revertApplyAvailable() const { return m_revertApplyAvailable; }
    void setRevertApplyAvailable(bool available);
    bool isEmissionActive() const;
    bool isFrameAvailable() const { return m_frameAvailable; }

    Q_INVOKABLE bool applyDefaultConfig();
    Q_INVOKABLE bool applyGuiConfig();
    Q_INVOKABLE void revertConfig();
    Q_INVOKABLE bool saveConfig(QString filePath);
    Q_INVOKABLE bool loadConfig(QString filePath);
    Q_INVOKABLE bool startEmission();
    Q_INVOKABLE bool stopEmission();
    Q_INVOKABLE bool captureFrame();
    Q_INVOKABLE bool logOneFrame();
    // The pages pass the Constants.Chart value as a number.
    Q_INVOKABLE ISeriesChartData* getChartData(int chartType);
    Q_INVOKABLE QString suggestGeneralConfigFileName();
    Q_INVOKABLE void applyRangeSpectrumConfigurationRuntime();
    Q_INVOKABLE QString checkIfNewFirmwareIsAvailable();

signals:
    void isConnectedChanged();
    void newFirmwareImageChanged();
    void radarTypeChanged();
    void revertApplyAvailableChanged();
    void isEmissionActiveChanged();
    void isFrameAvailableChanged();
    void radarConfigurationUpdated();
    void chartsDataUpdated();
    void enqueueUserMessage(Constants::UserMessageType type, QString msg, QString details);

public slots:
    void changeRevertApplyAvailability();
    void onChartsDataUpdated(bool value);

private:
    void updateRadarType();

    IRadarCWCoordinator* m_coordinator;
    RadarCWConfig* m_config;
    RadarCWDataProcessing* m_processing;
    RadarConstants::RadarType m_radarType = RadarConstants::Unknown;
    bool m_revertApplyAvailable = false;
    bool m_frameAvailable = false;
    RadarFirmwareNotice* m_firmware = nullptr;
};
