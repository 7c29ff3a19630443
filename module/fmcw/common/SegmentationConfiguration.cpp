#include "fmcw/common/SegmentationConfiguration.h"

#include "core/JSONConfigurationBinding.h"
#include "fmcw/common/SettingsValidation.h"

#include <QDebug>
#include <QMetaEnum>

#include <algorithm>

namespace {

template<typename T, typename Signal>
void store(SegmentationConfiguration* config, T& member, const T& value, Signal signal)
{
    if (member == value)
        return;
    member = value;
    emit(config->*signal)();
    emit config->guiParamChanged();
}

// The derived values are not user edits: no guiParamChanged for them.
template<typename T, typename Signal>
void storeDerived(SegmentationConfiguration* config, T& member, const T& value, Signal signal)
{
    if (member == value)
        return;
    member = value;
    emit(config->*signal)();
}

QString checkLevel(const QString& value)
{
    bool ok = false;
    QMetaEnum::fromType<RadarConstants::Level>().keyToValue(value.toLatin1().constData(), &ok);
    return ok ? QString() : QStringLiteral("Invalid value: %1").arg(value);
}

QString checkDetectionRange(float value)
{
    return SettingsValidation::checkRange(value, 1.0f, 7.0f);
}

QString checkTrackCount(quint64 value)
{
    return SettingsValidation::checkRange(value, 1, 50);
}

QString checkSegment(float degrees)
{
    return SettingsValidation::checkRange(degrees, 1.0f, 120.0f);
}

RadarConstants::Level levelFromName(const QString& name)
{
    bool ok = false;
    const int value = QMetaEnum::fromType<RadarConstants::Level>().keyToValue(name.toLatin1().constData(), &ok);
    if (!ok) {
        qWarning() << "Unknown segmentation level" << name;
        return RadarConstants::High;
    }
    return static_cast<RadarConstants::Level>(value);
}

QString levelName(RadarConstants::Level level)
{
    return QString::fromLatin1(QMetaEnum::fromType<RadarConstants::Level>().valueToKey(level));
}

RadarConstants::Level levelFromSdk(vrn_Level_t level)
{
    switch (level) {
    case VRN_LEVEL_MED:
        return RadarConstants::Med;
    case VRN_LEVEL_LOW:
        return RadarConstants::Low;
    case VRN_LEVEL_HIGH:
        return RadarConstants::High;
    default:
        qWarning() << "Segmentation level from SDK does not fit any level:" << int(level);
        return RadarConstants::High;
    }
}

vrn_Level_t levelToSdk(RadarConstants::Level level)
{
    switch (level) {
    case RadarConstants::Med:
        return VRN_LEVEL_MED;
    case RadarConstants::Low:
        return VRN_LEVEL_LOW;
    case RadarConstants::High:
        break;
    }
    return VRN_LEVEL_HIGH;
}

}

SegmentationConfiguration::SegmentationConfiguration(QObject* parent)
    : QObject(parent)
{
}

void SegmentationConfiguration::setMaxDetectionRangeM(float value)
{
    store(this, m_maxDetectionRangeM, value, &SegmentationConfiguration::maxDetectionRangeMChanged);
}

void SegmentationConfiguration::setEnableHysteresis(bool value)
{
    store(this, m_enableHysteresis, value, &SegmentationConfiguration::enableHysteresisChanged);
}

void SegmentationConfiguration::setMaxNumTracks(quint32 value)
{
    store(this, m_maxNumTracks, value, &SegmentationConfiguration::maxNumTracksChanged);
}

void SegmentationConfiguration::setSegmentsDegrees(const QVector<float>& value)
{
    store(this, m_segmentsDegrees, value, &SegmentationConfiguration::segmentsDegreesChanged);
}

void SegmentationConfiguration::setDetectionSensitivity(RadarConstants::Level value)
{
    store(this, m_detectionSensitivity, value, &SegmentationConfiguration::detectionSensitivityChanged);
}

void SegmentationConfiguration::setStaticTargetRemoval(RadarConstants::Level value)
{
    store(this, m_staticTargetRemoval, value, &SegmentationConfiguration::staticTargetRemovalChanged);
}

void SegmentationConfiguration::setSegmentListSize(int size)
{
    if (size < 0)
        return;
    QVector<float> segments = m_segmentsDegrees;
    segments.resize(size);
    setSegmentsDegrees(segments);
}

void SegmentationConfiguration::setSegment(int index, float value)
{
    if (index < 0 || index >= m_segmentsDegrees.size())
        return;
    QVector<float> segments = m_segmentsDegrees;
    segments[index] = value;
    setSegmentsDegrees(segments);
}

void SegmentationConfiguration::setFromSdk(const vrn_Segmentation_Config_t& config, bool includeUserSettings)
{
    using S = SegmentationConfiguration;
    storeDerived(this, m_numSamplesPerChirp, config.num_samples_per_chirp, &S::numSamplesPerChirpChanged);
    storeDerived(this, m_numChirpsPerFrame, config.num_chirps_per_frame, &S::numChirpsPerFrameChanged);
    storeDerived(this, m_bandwidthHz, config.bandwidth_Hz, &S::bandwidthHzChanged);
    storeDerived(this, m_chirpRepetitionTimeS, config.chirp_repetition_time_s, &S::chirpRepetitionTimeSChanged);
    storeDerived(this, m_centerFrequencyHz, config.center_frequency_Hz, &S::centerFrequencyHzChanged);
    if (!includeUserSettings)
        return;
    setMaxDetectionRangeM(config.max_detection_range_m);
    setEnableHysteresis(config.enable_hysteresis != 0);
    setMaxNumTracks(config.max_num_tracks);
    const quint32 count = std::min<quint32>(config.num_segments, VRN_SEGMENTATION_MAX_SEGMENTS);
    setSegmentsDegrees(QVector<float>(config.segments_degrees, config.segments_degrees + count));
    setDetectionSensitivity(levelFromSdk(config.detection_sensitivity));
    setStaticTargetRemoval(levelFromSdk(config.static_target_removal));
}

vrn_Segmentation_Config_t SegmentationConfiguration::toSdk() const
{
    vrn_Segmentation_Config_t config {};
    config.num_samples_per_chirp = m_numSamplesPerChirp;
    config.num_chirps_per_frame = m_numChirpsPerFrame;
    config.bandwidth_Hz = m_bandwidthHz;
    config.chirp_repetition_time_s = m_chirpRepetitionTimeS;
    config.center_frequency_Hz = m_centerFrequencyHz;
    config.max_detection_range_m = m_maxDetectionRangeM;
    config.enable_hysteresis = m_enableHysteresis ? 1 : 0;
    config.max_num_tracks = m_maxNumTracks;
    const int count = std::min<int>(m_segmentsDegrees.size(), VRN_SEGMENTATION_MAX_SEGMENTS);
    config.num_segments = static_cast<uint32_t>(count);
    std::copy(m_segmentsDegrees.begin(), m_segmentsDegrees.begin() + count, config.segments_degrees);
    config.detection_sensitivity = levelToSdk(m_detectionSensitivity);
    config.static_target_removal = levelToSdk(m_staticTargetRemoval);
    return config;
}

bool SegmentationConfiguration::sameSettings(const SegmentationConfiguration& other) const
{
    return m_maxDetectionRangeM == other.m_maxDetectionRangeM && m_enableHysteresis == other.m_enableHysteresis
        && m_maxNumTracks == other.m_maxNumTracks && m_segmentsDegrees == other.m_segmentsDegrees
        && m_detectionSensitivity == other.m_detectionSensitivity
        && m_staticTargetRemoval == other.m_staticTargetRemoval;
}

QString SegmentationConfiguration::checkValue(const QString& property, double value)
{
    if (property == QLatin1String("maxDetectionRangeM"))
        return checkDetectionRange(float(value));
    if (property == QLatin1String("maxNumTracks"))
        return checkTrackCount(quint64(value));
    if (property == QLatin1String("segmentsDegrees"))
        return checkSegment(float(value));
    return QString();
}

std::unique_ptr<JSONConfigurationObject> SegmentationConfiguration::configurationNode()
{
    auto node = std::make_unique<JSONConfigurationObject>(QStringLiteral("segmentation"));
    node->addChild(std::make_unique<JSONConfigurationValue<QString>>(
        QStringLiteral("detection_sensitivity"), [this] { return levelName(m_detectionSensitivity); },
        [this](const QString& value) { setDetectionSensitivity(levelFromName(value)); }, checkLevel));
    using JSONConfigurationBinding::bindValue;
    using S = SegmentationConfiguration;
    bindValue(*node, QStringLiteral("enable_hysteresis"), this, &S::enableHysteresis, &S::setEnableHysteresis);
    bindValue(*node, QStringLiteral("max_detection_range_m"), this, &S::maxDetectionRangeM, &S::setMaxDetectionRangeM,
              [](const float& value) { return checkDetectionRange(value); });
    bindValue(*node, QStringLiteral("max_num_tracks"), this, &S::maxNumTracks, &S::setMaxNumTracks,
              [](const quint32& value) { return checkTrackCount(value); });
    JSONConfigurationBinding::bindArray(
        *node, QStringLiteral("segments_degrees"), this, &S::segmentsDegrees, &S::setSegmentsDegrees,
        [](const QVector<float>& value) {
            if (value.isEmpty() || value.size() > VRN_SEGMENTATION_MAX_SEGMENTS)
                return QStringLiteral("Array length must be in range [1-3]");
            for (float degrees : value) {
                const QString error = checkSegment(degrees);
                if (!error.isEmpty())
                    return error;
            }
            return QString();
        });
    node->addChild(std::make_unique<JSONConfigurationValue<QString>>(
        QStringLiteral("static_target_removal"), [this] { return levelName(m_staticTargetRemoval); },
        [this](const QString& value) { setStaticTargetRemoval(levelFromName(value)); }, checkLevel));
    return node;
}
