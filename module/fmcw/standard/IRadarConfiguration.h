#pragma once

#include "frame/RadarConstants.h"
#include "frame/RadarEventCode.h"

#include <QObject>
#include <QString>

class RadarDevice;
class RadarDeviceConfiguration;

// The standard mode's configuration while the module runs: the edited copy
// the pages bind to and the applied copy the device and the pipeline run.
class IRadarConfiguration : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~IRadarConfiguration() override = default;

    virtual bool applyDefaultConfiguration(RadarConstants::Application application) = 0;
    virtual bool validateApplication() = 0;
    virtual bool areMetricsOptimal(const QString& fileName, const QString& applicationName) = 0;
    virtual void leaveApplication() = 0;
    virtual void updateRangeSpectrumRuntime(RadarDeviceConfiguration* configuration) = 0;
    virtual void updateRangeDopplerRuntime(RadarDeviceConfiguration* configuration) = 0;
    virtual bool loadConfiguration(const QString& fileName, bool asApplicationDefault) = 0;
    virtual bool saveConfiguration(const QString& fileName) = 0;
    virtual RadarDeviceConfiguration* editedConfiguration() const = 0;
    virtual RadarDeviceConfiguration* appliedConfiguration() const = 0;

    // Binds an opened device (null releases it): fills the device info of
    // both copies and lets the pages recalculate through it.
    virtual void bindDevice(RadarDevice* device) = 0;
    virtual void releaseDevice() = 0;
    // Edited → device → applied; false leaves the applied copy unchanged.
    virtual bool applyGuiConfiguration() = 0;
    // Applied → edited.
    virtual bool revertConfiguration() = 0;
    // True once a configuration went through applyGuiConfiguration since the
    // last bind.
    virtual bool isApplied() const = 0;
    virtual bool differs() const = 0;
    virtual QString suggestGeneralConfigFileName() const = 0;
    // The document written beside a recording, and its counterpart that
    // makes it the running configuration without a device.
    virtual QByteArray recordingDocument() = 0;
    virtual bool loadRecordingDocument(const QByteArray& document, QString& error) = 0;
    virtual bool isPlaybackActive() const = 0;
    virtual void setPlaybackActive(bool active) = 0;

signals:
    void triggerEvent(RadarEventCode code, QString message, QString details);
    void deviceConfigurationUpdated(RadarDeviceConfiguration* configuration);
    void deviceConfigurationRuntimeUpdated();
};
