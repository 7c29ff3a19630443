#pragma once

#include "frame/RadarEventCode.h"
#include "sdk/vrn.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>

class DeviceInfo;
class IZP7SController;
class ZP7SDeviceConfig;
class ZP7SUserSettings;

// The ZP7 mode's configuration while the module runs: the copy the board
// runs (deviceConfig), the copy the pages edit (guiConfig), one DeviceInfo
// shared by both, and the chart settings.
//
// Everything that reaches the board goes through a scratch copy first and
// is checked against the board's bounds, so a refused file, a value out of
// bounds or a failed SDK call changes neither copy. What the board accepted
// is read back and becomes both copies. Failures of the controller have
// been told by the device already; refusals of our own are told through
// triggerEvent with the reason as details.
//
// The edited copy's bounds follow its settings (onLimitsRecalcNeeded): the
// pulses of one frame must fit in the frame repetition time, so the
// highest frame rate offered is the lower of the board's and
// 1 / (samples x PRT).
//
// GUI thread only. The controller is not owned, must outlive this object
// and may be null (every board operation then fails).
class ZP7SConfig : public QObject
{
    Q_OBJECT
public:
    explicit ZP7SConfig(IZP7SController* controller, QObject* parent = nullptr);
    ZP7SConfig(IZP7SController* controller, std::unique_ptr<ZP7SUserSettings> userSettings,
               QObject* parent = nullptr);
    ~ZP7SConfig() override;

    void setController(IZP7SController* controller) { m_controller = controller; }

    ZP7SDeviceConfig* deviceConfig() const { return m_deviceConfig; } // what runs on the board
    ZP7SDeviceConfig* guiConfig() const { return m_guiConfig; }       // what the pages edit
    ZP7SUserSettings* userSettings() const { return m_userSettings.get(); }
    DeviceInfo* deviceInfo() const { return m_deviceInfo; }

    // After connect: device info, limits and the board's current settings
    // into both copies.
    bool loadFromDevice();
    // The board's bounds and defaults → board → both copies.
    bool applyDefaultConfig();
    // Edited copy → checked against the limits → board → both copies.
    bool applyGuiConfig();
    // A configuration file → checked → board → both copies. Another chip's
    // document, an FMCW document, malformed JSON or values outside the
    // limits are refused with triggerEvent and change nothing.
    bool applyConfigFile(const QString& path);
    // The edited copy as a configuration file, the extended document under
    // "device_configuration_extended".
    bool saveConfigFile(const QString& path);
    // Edited copy := device copy.
    void revert();
    // The board is gone: its information and bounds are forgotten.
    void clear();
    // Whether the two copies hold different settings.
    bool differs() const;

    // For "<base>.json" of a recording: the device copy's documents.
    QByteArray recordingDocument() const;
    // Playback: the recorded configuration becomes both copies, without a
    // board; false with the reason in `error`, changing nothing.
    bool loadRecordingDocument(const QByteArray& json, QString& error);
    // While true nothing is sent to a board.
    void setPlaybackActive(bool active) { m_playbackActive = active; }
    bool isPlaybackActive() const { return m_playbackActive; }

    // "<device>_Settings_<yyyyMMdd-HHmmss>.json" ("KMR24ZP7" without a board)
    QString suggestGeneralConfigFileName() const;
    // The chart settings changed while the board runs: adapted to the device
    // copy again, then deviceConfigurationRuntimeUpdated().
    void updateRangeSpectrumRuntime();

public slots:
    // The edited copy's bounds from the board's and its current settings;
    // a frame rate above the new highest one is pulled down to it.
    void onLimitsRecalcNeeded();

signals:
    void triggerEvent(RadarEventCode code, QString message, QString details);
    void deviceConfigUpdated(ZP7SDeviceConfig* config);
    void deviceConfigurationRuntimeUpdated();

private:
    // `source` → board → read back → both copies; nothing changes on failure.
    bool sendToBoard(const ZP7SDeviceConfig& source, const QString& failureMessage);
    // The accepted settings become the device copy and the edited copy.
    void takeAsRunning(const ZP7SDeviceConfig& accepted);
    void assignToGui(const ZP7SDeviceConfig& from);
    bool boardAvailable(const QString& failureMessage);
    void adaptChartSettings(ZP7SDeviceConfig& config);

    IZP7SController* m_controller;
    std::unique_ptr<ZP7SUserSettings> m_userSettings;
    DeviceInfo* m_deviceInfo;
    ZP7SDeviceConfig* m_deviceConfig;
    ZP7SDeviceConfig* m_guiConfig;
    // The board's own bounds; the edited copy's are derived from them.
    vrn_Corvix_Limits_t m_boardLimits;
    bool m_playbackActive = false;
    bool m_assigningGui = false;
};
