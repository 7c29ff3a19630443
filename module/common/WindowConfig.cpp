#include "common/WindowConfig.h"

#include "common/FloatSetting.h"
#include "common/ProcessingNameTables.h"
#include "core/JSONConfigurationObject.h"
#include "core/JSONConfigurationValue.h"

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
    node->addChild(std::make_unique<JSONConfigurationValue<QString>>(
        QStringLiteral("type"), [this] { return m_type; }, [this](const QString& v) { setType(v); },
        [](const QString&) { return QString(); }));
    node->addChild(std::make_unique<JSONConfigurationValue<quint32>>(
        QStringLiteral("size"), [this] { return m_size; }, [this](const quint32& v) { setSize(v); },
        [](const quint32&) { return QString(); }));
    node->addChild(std::make_unique<JSONConfigurationValue<float>>(
        QStringLiteral("attenuation_db"), [this] { return m_attenuationDB; },
        [this](const float& v) { setAttenuationDB(v); }, [](const float&) { return QString(); }));
    node->addChild(std::make_unique<JSONConfigurationValue<float>>(
        QStringLiteral("scale"), [this] { return m_scale; }, [this](const float& v) { setScale(v); },
        [](const float&) { return QString(); }));
    return node;
}

void WindowConfig::copyTo(vrn_Window_Config_t& config) const
{
    config.type = ProcessingNameTables::windowType(m_type);
    config.size = m_size;
    config.scale = m_scale;
    config.attenuation_dB = m_attenuationDB;
}
