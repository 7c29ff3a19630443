#pragma once

#include "fmcw/common/IRadarConfigurationUtils.h"

class PresenceSensingConfig;
class RadarDeviceParameters;

class RadarConfigurationUtils : public IRadarConfigurationUtils
{
    Q_OBJECT
public:
    // `segmentationUserDefaults` is handed to every segmentation conversion:
    // when set, the SDK's defaults replace the user's segmentation settings
    // too, otherwise only the chirp values derived from the scene.
    RadarConfigurationUtils(const Vrn* vrn, bool segmentationUserDefaults, QObject* parent = nullptr);

    bool createFrame(const RadarDeviceConfiguration& config, vrn_Frame_R_t*& frame) override;
    void destroyFrame(vrn_Frame_R_t*& frame) override;
    void clearFrame(vrn_Frame_R_t*& frame) override;
    float getChirpTime(RadarDeviceBase* const& device, const vrn_Device_Config_t& deviceConfig) override;
    bool convertConfiguration(RadarDeviceBase* const& device, RadarDeviceConfiguration& config,
                              vrn_Device_Config_t& out) override;
    bool getDefaultSegmentationConfig(RadarDeviceBase* const& device, RadarDeviceConfiguration& config,
                                      SegmentationConfiguration& out) override;

    void parseDeviceConfig(RadarDeviceParameters* parameters, vrn_Device_Config_t& config);
    // Fills `out` from the objects alone, without asking the device.
    void setupSdkDeviceConfiguration(RadarDeviceConfiguration& config, vrn_Device_Config_t& out);
    void fillDefaultPresenceSensing(RadarDeviceConfiguration& config);
    void fillPresenceSensingRecord(RadarDeviceConfiguration& config, vrn_PresenceSensing_Config_t& out);

    // The SDK's reason for the last failed metrics translation; empty after
    // a translation that succeeded.
    QString lastTranslationError() const { return m_lastTranslationError; }

    static float bandwidth(const RadarDeviceParameters& parameters);
    static int activeAntennaCount(quint32 mask);
    // The scene with the maximum range raised to what the SDK accepts.
    static vrn_Metrics_t sdkMetrics(const RadarDeviceConfiguration& config);

private:
    const Vrn* m_vrn;
    bool m_segmentationUserDefaults;
    QString m_lastTranslationError;
};
