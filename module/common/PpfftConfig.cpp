#include "common/PpfftConfig.h"

#include "common/ProcessingNameTables.h"
#include "core/JSONConfigurationObject.h"
#include "core/JSONConfigurationBinding.h"

PpfftConfig::PpfftConfig(QObject* parent)
    : QObject(parent)
    , m_type(QStringLiteral("FFT_TYPE_R2C"))
{
}

void PpfftConfig::setType(const QString& type)
{
    if (type == m_type)
        return;
    m_type = type;
    emit typeChanged();
}

void PpfftConfig::setSize(quint32 size)
{
    if (size == m_size)
        return;
    m_size = size;
    emit sizeChanged();
}

void PpfftConfig::setMeanRemoval(bool enabled)
{
    if (enabled == m_meanRemoval)
        return;
    m_meanRemoval = enabled;
    emit meanRemovalEnabledChanged();
}

void PpfftConfig::setNormalizedWindow(bool normalized)
{
    if (normalized == m_normalizedWindow)
        return;
    m_normalizedWindow = normalized;
    emit isNormalizedWindowChanged();
}

std::unique_ptr<JSONConfigurationObject> PpfftConfig::configurationNode()
{
    auto node = std::make_unique<JSONConfigurationObject>(QStringLiteral("fft_config"));
    using JSONConfigurationBinding::bindValue;
    bindValue(*node, QStringLiteral("type"), this, &PpfftConfig::type, &PpfftConfig::setType);
    bindValue(*node, QStringLiteral("size"), this, &PpfftConfig::size, &PpfftConfig::setSize);
    bindValue(*node, QStringLiteral("mean_removal_enabled"), this, &PpfftConfig::meanRemoval,
              &PpfftConfig::setMeanRemoval);
    bindValue(*node, QStringLiteral("is_normalized_window"), this, &PpfftConfig::normalizedWindow,
              &PpfftConfig::setNormalizedWindow);
    node->addChild(m_window.configurationNode());
    return node;
}

void PpfftConfig::copyTo(vrn_PPFFT_Config_t& config) const
{
    config.fft_type = ProcessingNameTables::fftType(m_type);
    config.fft_size = m_size;
    config.mean_removal_enabled = m_meanRemoval ? 1 : 0;
    config.is_normalized_window = m_normalizedWindow ? 1 : 0;
    m_window.copyTo(config.window_config);
}
