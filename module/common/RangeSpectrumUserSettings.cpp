#include "common/RangeSpectrumUserSettings.h"

#include "common/FloatSetting.h"
#include "common/ProcessingNameTables.h"
#include "core/JSONConfigurationObject.h"
#include "core/JSONConfigurationBinding.h"

#include <QtMath>

namespace {

// The shortest FFT offered even for short chirps: fewer bins make an
// unreadable spectrum.
constexpr quint32 kMinimumFftSize = 256;
const QString kScaleLinear = QStringLiteral("SCALE_TYPE_LINEAR");
const QString kScaleDecibel = QStringLiteral("SCALE_TYPE_DECIBEL_20LOG");

bool isPowerOfTwo(quint32 value)
{
    return value != 0 && (value & (value - 1)) == 0;
}

}

RangeSpectrumUserSettings::RangeSpectrumUserSettings(QObject* parent)
    : QObject(parent)
    , m_outputScale(kScaleDecibel)
{
    connect(&m_fftConfig, &PpfftConfig::sizeChanged, this, &RangeSpectrumUserSettings::fftSizeChanged);
    resetToDefault();
}

void RangeSpectrumUserSettings::setFftSize(quint32 size)
{
    m_fftConfig.setSize(size);
}

void RangeSpectrumUserSettings::setIsLinearFftMagnitude(bool linear)
{
    if (linear == m_isLinearFftMagnitude)
        return;
    m_isLinearFftMagnitude = linear;
    emit isLinearFftMagnitudeChanged();
}

void RangeSpectrumUserSettings::setAxisYMax(float axisYMax)
{
    if (FloatSetting::equal(axisYMax, m_axisYMax))
        return;
    m_axisYMax = axisYMax;
    emit axisYMaxChanged();
}

void RangeSpectrumUserSettings::setIsPolygonLineType(bool polygon)
{
    if (polygon == m_isPolygonLineType)
        return;
    m_isPolygonLineType = polygon;
    emit isPolygonLineTypeChanged();
}

void RangeSpectrumUserSettings::updateDeviceParameters(quint32 samplesPerChirp, quint32 chirpsPerFrame)
{
    m_samplesPerChirp = samplesPerChirp;
    m_chirpsPerFrame = chirpsPerFrame;

    if (isPowerOfTwo(samplesPerChirp)) {
        if (m_fftConfig.size() < samplesPerChirp)
            m_fftConfig.setSize(samplesPerChirp);
    } else if (samplesPerChirp != 0) {
        // The SDK's FFT needs a power of two; round the chirp up to one.
        m_fftConfig.setSize(qNextPowerOfTwo(samplesPerChirp));
    }
    // Without a chirp length (no device yet) the window keeps the length the
    // defaults give it.
    m_fftConfig.window()->setSize(samplesPerChirp != 0 ? samplesPerChirp : kMinimumFftSize);
    m_outputScale = m_isLinearFftMagnitude ? kScaleLinear : kScaleDecibel;
}

void RangeSpectrumUserSettings::copyTo(vrn_RS_Config_t& config) const
{
    config.spect_threshold = m_threshold;
    config.output_scale_type = ProcessingNameTables::scaleType(m_outputScale);
    m_fftConfig.copyTo(config.fft_config);
    config.num_of_chirps_per_frame = m_chirpsPerFrame;
}

std::unique_ptr<JSONConfigurationObject> RangeSpectrumUserSettings::configurationNode()
{
    auto node = std::make_unique<JSONConfigurationObject>(QStringLiteral("range_spectrum"));
    using JSONConfigurationBinding::bindValue;
    using S = RangeSpectrumUserSettings;
    bindValue(*node, QStringLiteral("is_linear_magnitude"), this, &S::isLinearFftMagnitude,
              &S::setIsLinearFftMagnitude);
    bindValue(*node, QStringLiteral("axis_y_max"), this, &S::axisYMax, &S::setAxisYMax);
    bindValue(*node, QStringLiteral("is_polygon_line_type"), this, &S::isPolygonLineType, &S::setIsPolygonLineType);
    node->addChild(m_fftConfig.configurationNode());
    return node;
}

void RangeSpectrumUserSettings::resetToDefault()
{
    m_fftConfig.setMeanRemoval(true);
    m_fftConfig.setNormalizedWindow(true);
    m_fftConfig.setSize(qMax(m_samplesPerChirp, kMinimumFftSize));
    m_fftConfig.setType(QStringLiteral("FFT_TYPE_R2C"));
    WindowConfig* window = m_fftConfig.window();
    window->setAttenuationDB(0.0f);
    window->setScale(1.0f);
    window->setSize(m_samplesPerChirp != 0 ? m_samplesPerChirp : kMinimumFftSize);
    window->setType(QStringLiteral("Blackmann Harris"));
    m_outputScale = kScaleDecibel;
    m_threshold = 1.0e-6f;
    setIsPolygonLineType(false);
    setIsLinearFftMagnitude(false);
    setAxisYMax(0.0f);
}

bool RangeSpectrumUserSettings::checkOptimalSettings(quint32 fftSize) const
{
    return m_samplesPerChirp <= fftSize && quint64(fftSize) <= 4 * quint64(m_samplesPerChirp);
}
