#pragma once

#include "frame/RadarConstants.h"
#include "sdk/vrn.h"

#include <QObject>
#include <QVector>

#include <memory>

class JSONConfigurationObject;

// Settings of the segmentation application ("segmentation"). The chirp
// values at the top come from the SDK's defaults for the current scene and
// are not saved; the rest is the user's.
class SegmentationConfiguration : public QObject
{
    Q_OBJECT
    Q_PROPERTY(quint32 numSamplesPerChirp READ numSamplesPerChirp NOTIFY numSamplesPerChirpChanged)
    Q_PROPERTY(quint32 numChirpsPerFrame READ numChirpsPerFrame NOTIFY numChirpsPerFrameChanged)
    Q_PROPERTY(float bandwidthHz READ bandwidthHz NOTIFY bandwidthHzChanged)
    Q_PROPERTY(float chirpRepetitionTimeS READ chirpRepetitionTimeS NOTIFY chirpRepetitionTimeSChanged)
    Q_PROPERTY(float centerFrequencyHz READ centerFrequencyHz NOTIFY centerFrequencyHzChanged)
    Q_PROPERTY(float maxDetectionRangeM READ maxDetectionRangeM WRITE setMaxDetectionRangeM NOTIFY maxDetectionRangeMChanged)
    Q_PROPERTY(bool enableHysteresis READ enableHysteresis WRITE setEnableHysteresis NOTIFY enableHysteresisChanged)
    Q_PROPERTY(quint32 maxNumTracks READ maxNumTracks WRITE setMaxNumTracks NOTIFY maxNumTracksChanged)
    Q_PROPERTY(QVector<float> segmentsDegrees READ segmentsDegrees WRITE setSegmentsDegrees NOTIFY segmentsDegreesChanged)
    Q_PROPERTY(RadarConstants::Level detectionSensitivity READ detectionSensitivity WRITE setDetectionSensitivity NOTIFY detectionSensitivityChanged)
    Q_PROPERTY(RadarConstants::Level staticTargetRemoval READ staticTargetRemoval WRITE setStaticTargetRemoval NOTIFY staticTargetRemovalChanged)
public:
    explicit SegmentationConfiguration(QObject* parent = nullptr);

    quint32 numSamplesPerChirp() const { return m_numSamplesPerChirp; }
    quint32 numChirpsPerFrame() const { return m_numChirpsPerFrame; }
    float bandwidthHz() const { return m_bandwidthHz; }
    float chirpRepetitionTimeS() const { return m_chirpRepetitionTimeS; }
    float centerFrequencyHz() const { return m_centerFrequencyHz; }

    float maxDetectionRangeM() const { return m_maxDetectionRangeM; }
    void setMaxDetectionRangeM(float value);
    bool enableHysteresis() const { return m_enableHysteresis; }
    void setEnableHysteresis(bool value);
    quint32 maxNumTracks() const { return m_maxNumTracks; }
    void setMaxNumTracks(quint32 value);
    QVector<float> segmentsDegrees() const { return m_segmentsDegrees; }
    void setSegmentsDegrees(const QVector<float>& value);
    RadarConstants::Level detectionSensitivity() const { return m_detectionSensitivity; }
    void setDetectionSensitivity(RadarConstants::Level value);
    RadarConstants::Level staticTargetRemoval() const { return m_staticTargetRemoval; }
    void setStaticTargetRemoval(RadarConstants::Level value);

    // New entries of a longer list are 0 until set.
    Q_INVOKABLE void setSegmentListSize(int size);
    Q_INVOKABLE void setSegment(int index, float value);

    // Takes the SDK's segmentation record. The user's settings are taken too
    // only when `includeUserSettings` is set; otherwise just the derived
    // chirp values are refreshed.
    void setFromSdk(const vrn_Segmentation_Config_t& config, bool includeUserSettings);
    vrn_Segmentation_Config_t toSdk() const;

    // Compares the saved (user) settings only, floats exactly.
    bool sameSettings(const SegmentationConfiguration& other) const;

    // The rule of the setting whose QML property is `property`, the same the
    // "segmentation" validators apply: empty when `value` meets it. For
    // "segmentsDegrees" `value` is one entry of the list.
    static QString checkValue(const QString& property, double value);

    std::unique_ptr<JSONConfigurationObject> configurationNode();

signals:
    void numSamplesPerChirpChanged();
    void numChirpsPerFrameChanged();
    void bandwidthHzChanged();
    void chirpRepetitionTimeSChanged();
    void centerFrequencyHzChanged();
    void maxDetectionRangeMChanged();
    void enableHysteresisChanged();
    void maxNumTracksChanged();
    void segmentsDegreesChanged();
    void detectionSensitivityChanged();
    void staticTargetRemovalChanged();
    void guiParamChanged();

private:
    quint32 m_numSamplesPerChirp = 0;
    quint32 m_numChirpsPerFrame = 0;
    float m_bandwidthHz = 0.0f;
    float m_chirpRepetitionTimeS = 0.0f;
    float m_centerFrequencyHz = 0.0f;
    float m_maxDetectionRangeM = 0.0f;
    bool m_enableHysteresis = false;
    quint32 m_maxNumTracks = 0;
    QVector<float> m_segmentsDegrees;
    RadarConstants::Level m_detectionSensitivity = RadarConstants::High;
    RadarConstants::Level m_staticTargetRemoval = RadarConstants::High;
};
