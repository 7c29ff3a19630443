#pragma once

#include "frame/RadarEventCode.h"

#include <QObject>
#include <QString>

#include <memory>

class DeviceInfo;
class IRadarCWConfigurator;
class RadarCWUserSettings;
class RadarDeviceCWConfig;

// CW mode's configuration while the module runs: the copy the pages edit
// (guiConfig) and the copy the device runs (deviceConfig), over one shared
// DeviceInfo that the owner fills for the connected board.
//
// Applying sends the edited copy to the device, reads back what it
// accepted and makes that both the device copy and what the pages show.
// Loading a file or the defaults goes through a scratch copy first, so a
// refused document or a failed query changes nothing. Whenever an ADC
// setting of the edited copy changes, its sampling-rate bounds are asked
// for again and the sampling rate is pulled inside them.
//
// GUI thread only. The configurator (the CW controller) is not owned and
// must outlive this object; it may be null, and every device operation then
// fails.
class RadarCWConfig : public QObject
{
    Q_OBJECT
public:
    RadarCWConfig(IRadarCWConfigurator* configurator, std::unique_ptr<RadarCWUserSettings> userSettings,
                  QObject* parent = nullptr);
    ~RadarCWConfig() override;

    void setConfigurator(IRadarCWConfigurator* configurator) { m_configurator = configurator; }

    DeviceInfo* deviceInfo() const { return m_deviceInfo; }
    RadarCWUserSettings* userSettings() const { return m_userSettings.get(); }
    RadarDeviceCWConfig* guiConfig() const { return m_guiConfig; }
    RadarDeviceCWConfig* deviceConfig() const { return m_deviceConfig; }

    // The "json_version" type of the connected chip's files; empty for a
    // chip without CW files.
    QString configurationTypeName() const;

    // Asks the device for its bounds (both copies) and recomputes the
    // sampling-rate bounds of the edited copy. False when the device did
    // not answer; the bounds then stay as they were.
    bool updateLimits();
    // The device's defaults into the edited copy (bounds refreshed first).
    bool loadDefaultConfig();
    // A file of the connected chip into the edited copy; anything else is
    // refused whole.
    bool loadConfig(const QString& filePath);
    // The edited copy, stamped with the connected chip's type name.
    bool saveConfig(const QString& filePath);
    // Edited → device → both copies; false leaves the device copy as it was.
    bool applyGuiConfig();
    // Device copy → edited copy.
    void revertConfig();
    // Whether the two copies hold different settings (revert / apply make
    // sense).
    bool differs() const;
    // "<chip>_CW_Settings_<yyyyMMdd-HHmmss>.json"
    QString suggestGeneralConfigFileName() const;
    // The chart settings changed while the device runs: they are adapted to
    // the device copy again and deviceConfigurationRuntimeUpdated() tells
    // the processing.
    void updateRangeSpectrumRuntime();

public slots:
    void onGuiAdcParamsChanged();

signals:
    void triggerEvent(RadarEventCode code, QString message, QString details);
    void deviceConfigUpdated(RadarDeviceCWConfig* config);
    void deviceConfigurationRuntimeUpdated();

private:
    // The board's bounds into both copies, without the sampling rate's.
    bool fetchLimits();
    // The chart settings follow the samples the device now delivers.
    void adaptRangeSpectrumSettings(const RadarDeviceCWConfig& config);
    // Copies a whole configuration into the edited copy, then asks for the
    // sampling-rate bounds once instead of once per ADC value copied.
    void assignToGui(const RadarDeviceCWConfig& from);

    IRadarCWConfigurator* m_configurator;
    DeviceInfo* m_deviceInfo;
    std::unique_ptr<RadarCWUserSettings> m_userSettings;
    RadarDeviceCWConfig* m_guiConfig;
    RadarDeviceCWConfig* m_deviceConfig;
    // Loads and read-backs land here first, so that a failure leaves the
    // other two untouched.
    RadarDeviceCWConfig* m_scratchConfig;
    bool m_assigningGui = false;
};
