#pragma once

#include "fmcw/standard/IRadarConfiguration.h"
#include "fmcw/standard/RadarConfigurationBase.h"

#include <QByteArray>
#include <functional>
#include <memory>

struct Vrn;
class IRadarUserSettings;
class RadarConfigurationUtils;

// Owns the edited and the applied configuration of the standard mode.
//
// Applying sends the edited copy to the bound device (which refreshes its
// limits and reads back the chirp parameters), then copies it over the
// applied one; without a device (playback) the edited copy is taken as it
// stands. Reverting copies the applied copy back over the edited one.
// Copies go through the JSON trees, so exactly what a file would hold is
// carried over.
//
// Files: a saved configuration holds the configuration document at its top
// level (what the default files hold) plus the extended document under
// "device_configuration_extended". A user file must carry the connected
// chip's "json_version" type; an application default may carry any chip's
// type of the version table, since one default serves several chips. Only
// the application is taken from a user file's extended document: limits,
// device info and chirp parameters belong to the connected device.
//
// GUI thread only.
class RadarConfiguration : public IRadarConfiguration, public RadarConfigurationBase
{
    Q_OBJECT
public:
    static const QString kExtendedKey; // "device_configuration_extended"

    RadarConfiguration(const Vrn* vrn, IRadarUserSettings* userSettings, QObject* parent = nullptr);
    ~RadarConfiguration() override;

    bool applyDefaultConfiguration(RadarConstants::Application application) override;
    bool validateApplication() override;
    bool areMetricsOptimal(const QString& fileName, const QString& applicationName) override;
    void leaveApplication() override;
    void updateRangeSpectrumRuntime(RadarDeviceConfiguration* configuration) override;
    void updateRangeDopplerRuntime(RadarDeviceConfiguration* configuration) override;
    bool loadConfiguration(const QString& fileName, bool asApplicationDefault) override;
    bool saveConfiguration(const QString& fileName) override;
    RadarDeviceConfiguration* editedConfiguration() const override { return m_edited; }
    RadarDeviceConfiguration* appliedConfiguration() const override { return m_applied; }

    void bindDevice(RadarDevice* device) override;
    void releaseDevice() override;
    bool applyGuiConfiguration() override;
    bool revertConfiguration() override;
    bool isApplied() const override { return m_isApplied; }
    bool differs() const override;
    QString suggestGeneralConfigFileName() const override;
    QByteArray recordingDocument() override;
    bool loadRecordingDocument(const QByteArray& document, QString& error) override;
    bool isPlaybackActive() const override { return m_playbackActive; }
    void setPlaybackActive(bool active) override { m_playbackActive = active; }

    // Told after a default configuration was loaded into the edited copy.
    void setListener(std::function<void()> listener) { m_listener = std::move(listener); }

    // The comparison behind the view's "revertApplyAvailable".
    static bool configurationsDiffer(const RadarDeviceConfiguration& a, const RadarDeviceConfiguration& b);
    // Copies every persisted value of `from` into `to` through the trees.
    static void copyConfiguration(RadarDeviceConfiguration& from, RadarDeviceConfiguration& to);

private:
    // Loads `bytes` into `target` (a scratch copy); empty on success, else
    // the reason. Nothing of `target` changes on failure.
    QString loadDocument(const QByteArray& bytes, RadarDeviceConfiguration& target, bool asApplicationDefault);
    static QString resourcePath(const QString& fileName);
    void adaptRangeSpectrumSettings(const RadarDeviceConfiguration& configuration);
    void adaptRangeDopplerSettings(const RadarDeviceConfiguration& configuration);
    void notifyListener();
    // Edited → device (when bound) → applied, without the application
    // checks.
    bool applyEdited();

    const Vrn* m_vrn;
    IRadarUserSettings* m_userSettings;
    std::unique_ptr<RadarConfigurationUtils> m_utils;
    RadarDeviceConfiguration* m_edited;
    RadarDeviceConfiguration* m_applied;
    RadarDevice* m_device = nullptr;
    std::function<void()> m_listener;
    bool m_isApplied = false;
    bool m_playbackActive = false;
};
