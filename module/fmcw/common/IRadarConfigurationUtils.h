#pragma once

#include "frame/RadarEventCode.h"
#include "sdk/vrn.h"

#include <QObject>
#include <QString>

class RadarDeviceBase;
class RadarDeviceConfiguration;
class SegmentationConfiguration;

// Where the configuration objects meet the SDK's records. Failures are
// reported through triggerEvent with code Error, or logged.
class IRadarConfigurationUtils : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~IRadarConfigurationUtils() override = default;

    // A frame with one channel per active (Rx, Tx) pair of the scene.
    virtual bool createFrame(const RadarDeviceConfiguration& config, vrn_Frame_R_t*& frame) = 0;
    // Hands the frame back to the SDK; `frame` is null afterwards.
    virtual void destroyFrame(vrn_Frame_R_t*& frame) = 0;
    // Zeroes every channel and leaves a channel count of 0.
    virtual void clearFrame(vrn_Frame_R_t*& frame) = 0;
    virtual float getChirpTime(RadarDeviceBase* const& device, const vrn_Device_Config_t& deviceConfig) = 0;
    // The scene translated by the SDK of `device`; the caller holds the
    // device's lock.
    virtual bool convertConfiguration(RadarDeviceBase* const& device, RadarDeviceConfiguration& config,
                                      vrn_Device_Config_t& out) = 0;
    virtual bool getDefaultSegmentationConfig(RadarDeviceBase* const& device, RadarDeviceConfiguration& config,
                                              SegmentationConfiguration& out) = 0;

signals:
    void triggerEvent(RadarEventCode code, QString message, QString details);
};
