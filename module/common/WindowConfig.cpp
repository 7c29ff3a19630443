#include "common/WindowConfig.h"

#include "common/FloatSetting.h"
#include "common/ProcessingNameTables.h"
#include "core/JSONConfigurationObject.h"
#include "core/JSONConfigurationBinding.h"

WindowConfig::WindowConfig(QObject* parent)
    : QObject(parent)
    , m_type(QStringLiteral("Blackmann Harris"))
{
}

void WindowConfig::setType(const QString& type)
{
    if (type == m_type)
        return;
    m_type = type;
    emit typeChanged();
}

void WindowConfig::setSize(quint32 size)
{
    if (size == m_size)
        return;
    m_size = size;
    emit sizeChanged();
}

void WindowConfig::setAttenuationDB(float attenuationDB)
{
    if (FloatSetting::equal(attenuationDB, m_attenuationDB))
        return;
    m_attenuationDB = attenuationDB;
    emit attenuationDBChanged();
}

void WindowConfig::setScale(float scale)
{
    if (FloatSetting::equal(scale, m_scale))
        return;
    m_scale = scale;
    emit scaleChanged();
}

std::unique_ptr<JSONConfigurationObject> WindowConfig::configurationNode()
{
    auto node = std::make_unique<JSONConfigurationObject>(QStringLiteral("window_config"));
    // Unknown window names are accepted here on purpose: they fall back to a
    // default with a warning when handed to the SDK.
    using JSONConfigurationBinding::bindValue;
    bindValue(*node, QStringLiteral("type"), this, &WindowConfig::type, &WindowConfig::setType);
    bindValue(*node, QStringLiteral("size"), this, &WindowConfig::size, &WindowConfig::setSize);
    bindValue(*node, QStringLiteral("attenuation_db"), this, &WindowConfig::attenuationDB,
              &WindowConfig::setAttenuationDB);
    bindValue(*node, QStringLiteral("scale"), this, &WindowConfig::scale, &WindowConfig::setScale);
    return node;
}

void WindowConfig::copyTo(vrn_Window_Config_t& config) const
{
    config.type = ProcessingNameTables::windowType(m_type);
    config.size = m_size;
    config.scale = m_scale;
    config.attenuation_dB = m_attenuationDB;
}
