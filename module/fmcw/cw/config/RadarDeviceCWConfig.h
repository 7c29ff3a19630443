#pragma once

#include "core/JSONVersion.h"
#include "frame/RadarConstants.h"
#include "sdk/vrn.h"

#include <QObject>
#include <QString>

#include <memory>

class DeviceInfo;
class JSONConfigurationObject;
class MathAxis;
class RadarAntennas;
class RadarCWParams;
class RadarCWParamsLimits;

// Everything that configures CW mode on one device: the parameters, their
// limits, the receive and transmit antennas, and the axis of the spectrum
// chart. Built over a DeviceInfo shared with the other configurations of
// the mode (not owned; it must outlive this object and may be null).
class RadarDeviceCWConfig : public QObject
{
    Q_OBJECT
    Q_PROPERTY(MathAxis* frequencyDomainAxis READ frequencyDomainAxis CONSTANT)
    Q_PROPERTY(RadarCWParams* params READ params CONSTANT)
    Q_PROPERTY(RadarCWParamsLimits* limits READ limits CONSTANT)
    Q_PROPERTY(RadarAntennas* rxAntennas READ rxAntennas CONSTANT)
    Q_PROPERTY(RadarAntennas* txAntennas READ txAntennas CONSTANT)
public:
    explicit RadarDeviceCWConfig(DeviceInfo* deviceInfo, QObject* parent = nullptr);
    ~RadarDeviceCWConfig() override;

    MathAxis* frequencyDomainAxis() const { return m_frequencyDomainAxis; }
    RadarCWParams* params() const { return m_params; }
    RadarCWParamsLimits* limits() const { return m_limits; }
    RadarAntennas* rxAntennas() const { return m_rxAntennas; }
    RadarAntennas* txAntennas() const { return m_txAntennas; }
    DeviceInfo* deviceInfo() const { return m_deviceInfo; }

    // Unknown without a DeviceInfo.
    RadarConstants::RadarType radarType() const;

    // The whole CW record of the SDK (parameters and masks) and back.
    vrn_CW_Config_t toSdkConfig() const;
    void setFromSdkConfig(const vrn_CW_Config_t& config);

    // Parameters, limits, antennas and axis, through the setters.
    void assign(const RadarDeviceCWConfig& other);
    // Parameters and antennas: what a file or the device would hold.
    bool sameSettings(const RadarDeviceCWConfig& other) const;

    // What a page shows at a field while the user types: why `text` cannot
    // be stored in `field` (a RadarCWParams property name), or an empty
    // text when it can. "rxNumSamples" must be an even whole number from
    // 2 to 4094 within the device's bounds; the other numbers must lie
    // within the device's bounds.
    Q_INVOKABLE QString validateField(const QString& field, const QString& text) const;

    // The file tree, root "cw_configuration" (its name is not written):
    // "cw_scene" { "cw_scene" {parameters}, "rx_antennas", "tx_antennas" }
    // and "json_version" stamped with `typeName`. After a load
    // fileVersion() holds what the document said. The tree must not
    // outlive this object.
    std::unique_ptr<JSONConfigurationObject> configurationTree(const QString& typeName);
    // Only the "json_version" node, to check a document's kind before its
    // values are looked at.
    std::unique_ptr<JSONConfigurationObject> versionTree();
    const JSONVersion& fileVersion() const { return m_fileVersion; }

private:
    DeviceInfo* m_deviceInfo;
    MathAxis* m_frequencyDomainAxis;
    RadarCWParams* m_params;
    RadarCWParamsLimits* m_limits;
    RadarAntennas* m_rxAntennas;
    RadarAntennas* m_txAntennas;
    JSONVersion m_fileVersion;
};
