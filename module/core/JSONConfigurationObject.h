#pragma once

#include "core/IJSONConfigurationNode.h"

#include <memory>
#include <vector>

// An inner node: a named JSON object whose members are the child nodes.
class JSONConfigurationObject : public IJSONConfigurationNode
{
public:
    explicit JSONConfigurationObject(QString name);
    ~JSONConfigurationObject() override;

    void writeToJson(QJsonObject& parent) override;
    void readFromJson(const QJsonObject& parent) override;
    void validate(QString& error, const QJsonObject& parent, QStringList path) override;

    virtual void writeChildren(QJsonObject& object);
    virtual void readChildren(const QJsonObject& object);
    // Returns the first child's error in child order, or an empty text.
    virtual QString validateChildren(QString& error, const QJsonObject& object, QStringList path);

    const QString& name() const { return m_name; }

    void addChild(std::unique_ptr<IJSONConfigurationNode> node);
    // Moves all children of `other` behind our own, in their order.
    void addChildrenOf(JSONConfigurationObject& other);

private:
    QString m_name;
    std::vector<std::unique_ptr<IJSONConfigurationNode>> m_children;
};
