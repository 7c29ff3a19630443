#include "core/JSONVersion.h"

#include "core/JSONConfigurationObject.h"
#include "core/JSONConfigurationValue.h"

JSONVersion::JSONVersion(QString type, QString version)
    : m_version(std::move(version))
    , m_type(std::move(type))
{
}

std::unique_ptr<JSONConfigurationObject> JSONVersion::configurationNode()
{
    auto node = std::make_unique<JSONConfigurationObject>(QStringLiteral("json_version"));
    const auto acceptAny = [](const QString&) { return QString(); };
    node->addChild(std::make_unique<JSONConfigurationValue<QString>>(
        QStringLiteral("version"), [this] { return m_version; },
        [this](const QString& value) { m_version = value; }, acceptAny));
    node->addChild(std::make_unique<JSONConfigurationValue<QString>>(
        QStringLiteral("type"), [this] { return m_type; },
        [this](const QString& value) { m_type = value; }, acceptAny));
    return node;
}

QString JSONVersion::check(const QString& type, const QString& version) const
{
    if (type != m_type)
        return QStringLiteral("Invalid json type");
    if (version != m_version)
        return QStringLiteral("Invalid json version");
    return QString();
}
