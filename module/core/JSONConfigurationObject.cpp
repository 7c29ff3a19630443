#include "core/JSONConfigurationObject.h"

#include <QDebug>
#include <QJsonValue>

JSONConfigurationObject::JSONConfigurationObject(QString name)
    : m_name(std::move(name))
{
}

JSONConfigurationObject::~JSONConfigurationObject() = default;

void JSONConfigurationObject::writeToJson(QJsonObject& parent)
{
    const QJsonValue existing = parent.value(m_name);
    if (!existing.isNull() && !existing.isUndefined() && !existing.isObject()) {
        qWarning().noquote()
            << QStringLiteral("Json value with name '%1' is different type than Object. It will be overriden!")
                   .arg(m_name);
    }
    // Writing into the existing object rather than a fresh one lets two
    // sibling nodes with the same name share one JSON object.
    QJsonObject object = existing.toObject();
    writeChildren(object);
    parent.insert(m_name, object);
}

void JSONConfigurationObject::readFromJson(const QJsonObject& parent)
{
    readChildren(parent.value(m_name).toObject());
}

void JSONConfigurationObject::validate(QString& error, const QJsonObject& parent, QStringList path)
{
    path.append(m_name);
    if (!parent.contains(m_name)) {
        error = QStringLiteral("Mandatory field %1 is missing").arg(path.join(QLatin1Char('.')));
        return;
    }
    const QJsonValue value = parent.value(m_name);
    if (!value.isObject()) {
        error = QStringLiteral("Field %1 is not an JSON object").arg(path.join(QLatin1Char('.')));
        return;
    }
    error = validateChildren(error, value.toObject(), path);
}

void JSONConfigurationObject::writeChildren(QJsonObject& object)
{
    for (auto& child : m_children) {
        if (child)
            child->writeToJson(object);
    }
}

void JSONConfigurationObject::readChildren(const QJsonObject& object)
{
    for (auto& child : m_children) {
        if (child)
            child->readFromJson(object);
    }
}

QString JSONConfigurationObject::validateChildren(QString& error, const QJsonObject& object, QStringList path)
{
    for (auto& child : m_children) {
        if (!child)
            continue;
        child->validate(error, object, path);
        if (!error.isEmpty())
            return error;
    }
    return QString();
}

void JSONConfigurationObject::addChild(std::unique_ptr<IJSONConfigurationNode> node)
{
    m_children.push_back(std::move(node));
}

void JSONConfigurationObject::addChildrenOf(JSONConfigurationObject& other)
{
    m_children.reserve(m_children.size() + other.m_children.size());
    for (auto& child : other.m_children)
        m_children.push_back(std::move(child));
    other.m_children.clear();
}
