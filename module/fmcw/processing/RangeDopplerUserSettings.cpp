#include "fmcw/processing/RangeDopplerUserSettings.h"

#include "common/ProcessingNameTables.h"
#include "core/JSONConfigurationObject.h"
#include "core/JSONConfigurationBinding.h"

#include <QtMath>

namespace {

// The shortest FFTs offered even for short chirps and few chirps: fewer
// bins make an unreadable map.
constexpr quint32 kMinimumFftSize = 256;
constexpr qint32 kDefaultColorThreshold = -90;

bool isPowerOfTwo(quint32 value)
{
    return value != 0 && (value & (value - 1)) == 0;
}

// Rounds a length that is not a power of two up to one, the only lengths
// the SDK's FFT takes; keeps a long enough power-of-two FFT.
void fitFftSize(PpfftConfig& fft, quint32 length)
{
    if (length == 0)
        return;
    if (!isPowerOfTwo(length))
        fft.setSize(qNextPowerOfTwo(length));
    else if (fft.size() < length)
        fft.setSize(length);
}

// The node of `fft` under its own key instead of "fft_config".
std::unique_ptr<JSONConfigurationObject> renamedNode(PpfftConfig& fft, const QString& name)
{
    auto node = std::make_unique<JSONConfigurationObject>(name);
    auto original = fft.configurationNode();
    node->addChildrenOf(*original);
    return node;
}

}

RangeDopplerUserSettings::RangeDopplerUserSettings(QObject* parent)
    : QObject(parent)
    , m_outputScale(QStringLiteral("SCALE_TYPE_DECIBEL_20LOG"))
{
    connect(&m_rangeFft, &PpfftConfig::sizeChanged, this, &RangeDopplerUserSettings::rangeFftSizeChanged);
    connect(&m_dopplerFft, &PpfftConfig::sizeChanged, this, &RangeDopplerUserSettings::dopplerFftSizeChanged);
    resetToDefault();
}

void RangeDopplerUserSettings::setCurrentRxIndex(int index)
{
    if (index == m_currentRxIndex)
        return;
    m_currentRxIndex = index;
    emit isCurrentRxIndexChanged();
}

void RangeDopplerUserSettings::setCurrentTxIndex(int index)
{
    if (index == m_currentTxIndex)
        return;
    m_currentTxIndex = index;
    emit isCurrentTxIndexChanged();
}

void RangeDopplerUserSettings::setColorThreshold(qint32 threshold)
{
    if (threshold == m_colorThreshold)
        return;
    m_colorThreshold = threshold;
    emit colorThresholdChanged();
}

void RangeDopplerUserSettings::updateDeviceParameters(quint32 samplesPerChirp, quint32 chirpsPerFrame)
{
    m_samplesPerChirp = samplesPerChirp;
    m_chirpsPerFrame = chirpsPerFrame;
    fitFftSize(m_rangeFft, samplesPerChirp);
    fitFftSize(m_dopplerFft, chirpsPerFrame);
    // Without a device yet the windows keep the length the defaults give.
    m_rangeFft.window()->setSize(samplesPerChirp != 0 ? samplesPerChirp : kMinimumFftSize);
    m_dopplerFft.window()->setSize(chirpsPerFrame != 0 ? chirpsPerFrame : kMinimumFftSize);
}

void RangeDopplerUserSettings::copyTo(vrn_RDM_Config_t& config) const
{
    config.spect_threshold = m_threshold;
    config.output_scale_type = ProcessingNameTables::scaleType(m_outputScale);
    m_rangeFft.copyTo(config.range_fft_config);
    m_dopplerFft.copyTo(config.doppler_fft_config);
}

std::unique_ptr<JSONConfigurationObject> RangeDopplerUserSettings::configurationNode()
{
    auto node = std::make_unique<JSONConfigurationObject>(QStringLiteral("range_doppler"));
    JSONConfigurationBinding::bindValue(*node, QStringLiteral("color_threshold"), this,
                                        &RangeDopplerUserSettings::colorThreshold,
                                        &RangeDopplerUserSettings::setColorThreshold);
    node->addChild(renamedNode(m_rangeFft, QStringLiteral("range_fft_config")));
    node->addChild(renamedNode(m_dopplerFft, QStringLiteral("doppler_fft_config")));
    return node;
}

void RangeDopplerUserSettings::resetToDefault()
{
    setColorThreshold(kDefaultColorThreshold);

    m_dopplerFft.setMeanRemoval(true);
    m_dopplerFft.setNormalizedWindow(true);
    m_dopplerFft.setSize(qMax(m_chirpsPerFrame, kMinimumFftSize));
    m_dopplerFft.setType(QStringLiteral("FFT_TYPE_C2C"));
    WindowConfig* dopplerWindow = m_dopplerFft.window();
    dopplerWindow->setAttenuationDB(100.0f);
    dopplerWindow->setScale(1.0f);
    dopplerWindow->setSize(m_chirpsPerFrame != 0 ? m_chirpsPerFrame : kMinimumFftSize);
    dopplerWindow->setType(QStringLiteral("Chebyshev"));

    m_rangeFft.setMeanRemoval(true);
    m_rangeFft.setNormalizedWindow(true);
    m_rangeFft.setSize(qMax(m_samplesPerChirp, kMinimumFftSize));
    m_rangeFft.setType(QStringLiteral("FFT_TYPE_R2C"));
    WindowConfig* rangeWindow = m_rangeFft.window();
    rangeWindow->setAttenuationDB(0.0f);
    rangeWindow->setScale(1.0f);
    rangeWindow->setSize(m_samplesPerChirp != 0 ? m_samplesPerChirp : kMinimumFftSize);
    rangeWindow->setType(QStringLiteral("Blackmann Harris"));

    m_outputScale = QStringLiteral("SCALE_TYPE_DECIBEL_20LOG");
    m_threshold = 1.0e-6f;
}

bool RangeDopplerUserSettings::checkOptimalSettings(quint32 rangeFftSize, quint32 dopplerFftSize) const
{
    auto fits = [](quint32 length, quint32 fftSize) {
        return length <= fftSize && quint64(fftSize) <= 4 * quint64(length);
    };
    return fits(m_samplesPerChirp, rangeFftSize) && fits(m_chirpsPerFrame, dopplerFftSize);
}

void RangeDopplerUserSettings::updateRxActiveIndexes(QVector<int> activeRx)
{
    m_activeRx = std::move(activeRx);
    if (!m_activeRx.isEmpty() && !m_activeRx.contains(m_currentRxIndex))
        setCurrentRxIndex(m_activeRx.first());
}

void RangeDopplerUserSettings::updateTxActiveIndexes(QVector<int> activeTx)
{
    m_activeTx = std::move(activeTx);
    if (!m_activeTx.isEmpty() && !m_activeTx.contains(m_currentTxIndex))
        setCurrentTxIndex(m_activeTx.first());
}

void RangeDopplerUserSettings::switchToAnotherAntenna()
{
    if (m_activeRx.isEmpty())
        return;
    const int rx = m_activeRx.indexOf(m_currentRxIndex);
    if (rx >= 0 && rx + 1 < m_activeRx.size()) {
        setCurrentRxIndex(m_activeRx.at(rx + 1));
        return;
    }
    setCurrentRxIndex(m_activeRx.first());
    if (m_activeTx.isEmpty())
        return;
    const int tx = m_activeTx.indexOf(m_currentTxIndex);
    setCurrentTxIndex(m_activeTx.at(tx >= 0 && tx + 1 < m_activeTx.size() ? tx + 1 : 0));
}
