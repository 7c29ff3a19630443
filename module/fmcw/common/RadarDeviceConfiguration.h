#pragma once

#include "core/JSONVersion.h"
#include "frame/RadarConstants.h"

#include <QObject>
#include <QString>

#include <memory>

class DeviceInfo;
class IRecalcConfigurationHandler;
class JSONConfigurationObject;
class MathAxis;
class Metrics;
class MetricsLimits;
class PresenceSensingConfig;
class RadarDeviceParameters;
class SegmentationConfiguration;

// Everything that configures the FMCW standard mode of one device, as the
// pages edit it and as it is saved. The JSON trees are built on demand over
// the live objects and must not outlive this configuration.
class RadarDeviceConfiguration : public QObject
{
    Q_OBJECT
    Q_PROPERTY(RadarConstants::Application application READ application WRITE setApplication NOTIFY applicationChanged)
    Q_PROPERTY(RadarDeviceParameters* parameters READ parameters CONSTANT)
    Q_PROPERTY(Metrics* metrics READ metrics CONSTANT)
    Q_PROPERTY(MetricsLimits* limits READ limits CONSTANT)
    Q_PROPERTY(PresenceSensingConfig* presencesensing READ presenceSensing CONSTANT)
    Q_PROPERTY(SegmentationConfiguration* segmentation READ segmentation CONSTANT)
    Q_PROPERTY(DeviceInfo* deviceInfo READ deviceInfo CONSTANT)
    Q_PROPERTY(MathAxis* dopplerRangeAxis READ dopplerRangeAxis CONSTANT)
    Q_PROPERTY(MathAxis* dopplerSpeedAxis READ dopplerSpeedAxis CONSTANT)
    Q_PROPERTY(MathAxis* frequencyDomainAxis READ frequencyDomainAxis CONSTANT)
    Q_PROPERTY(bool optimalAppConfig READ optimalAppConfig WRITE setOptimalAppConfig NOTIFY optimalAppConfigChanged)
public:
    static const QString kVersion;       // "1.0"
    static const QString kExtendedSuffix; // "_Extended"

    explicit RadarDeviceConfiguration(QObject* parent = nullptr);
    ~RadarDeviceConfiguration() override;

    RadarConstants::Application application() const { return m_application; }
    void setApplication(RadarConstants::Application application);

    RadarDeviceParameters* parameters() const { return m_parameters; }
    Metrics* metrics() const { return m_metrics; }
    MetricsLimits* limits() const { return m_limits; }
    PresenceSensingConfig* presenceSensing() const { return m_presenceSensing; }
    SegmentationConfiguration* segmentation() const { return m_segmentation; }
    DeviceInfo* deviceInfo() const { return m_deviceInfo; }
    MathAxis* dopplerRangeAxis() const { return m_dopplerRangeAxis; }
    MathAxis* dopplerSpeedAxis() const { return m_dopplerSpeedAxis; }
    MathAxis* frequencyDomainAxis() const { return m_frequencyDomainAxis; }

    bool optimalAppConfig() const { return m_optimalAppConfig; }
    void setOptimalAppConfig(bool optimal);

    RadarConstants::RadarType radarType() const;

    // Who recomputes the device parameters when the pages ask for it; not
    // owned, may be null.
    void setRecalcHandler(IRecalcConfigurationHandler* handler) { m_recalcHandler = handler; }
    Q_INVOKABLE bool recalcConfig();

    // What a page shows at a field while the user types: why `text` cannot
    // be stored in `field`, or an empty text when it can. `field` is
    // "<object>.<property>" in the QML names ("metrics.maxRangeM",
    // "presencesensing.minDetectionRange", "segmentation.maxNumTracks";
    // "segmentation.segmentsDegrees" checks one entry). A scene value is
    // held to the device's limits first, then to the rule the
    // configuration files are validated with.
    Q_INVOKABLE QString validateField(const QString& field, const QString& text) const;

    // The configuration file proper, root "device_configuration": the scene
    // under "device_config", the section of the current application, and
    // "json_version" stamped with the chip's name.
    std::unique_ptr<JSONConfigurationObject> configurationTree();
    // The extended document, root "device_configuration_extended": limits,
    // device info, device parameters and the application by name.
    std::unique_ptr<JSONConfigurationObject> extendedConfigurationTree();

    // The stamps written by the trees; after a load they hold what the
    // document said, for the caller to check.
    const JSONVersion& fileVersion() const { return m_fileVersion; }
    const JSONVersion& extendedFileVersion() const { return m_extendedFileVersion; }

    // The embedded default document (":/json/config/...") for an
    // application on a chip.
    static QString defaultConfigurationResource(RadarConstants::Application application,
                                                RadarConstants::RadarType radarType);

signals:
    void applicationChanged();
    void optimalAppConfigChanged();

private:
    RadarConstants::Application m_application = RadarConstants::None;
    RadarDeviceParameters* m_parameters;
    Metrics* m_metrics;
    MetricsLimits* m_limits;
    PresenceSensingConfig* m_presenceSensing;
    SegmentationConfiguration* m_segmentation;
    DeviceInfo* m_deviceInfo;
    MathAxis* m_dopplerRangeAxis;
    MathAxis* m_dopplerSpeedAxis;
    MathAxis* m_frequencyDomainAxis;
    bool m_optimalAppConfig = false;
    IRecalcConfigurationHandler* m_recalcHandler = nullptr;
    JSONVersion m_fileVersion;
    JSONVersion m_extendedFileVersion;
};
