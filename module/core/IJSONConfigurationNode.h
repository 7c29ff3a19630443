#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

// One node of a settings tree. A node stores no value of its own: it knows
// its key and reads, writes and checks the live object it is bound to, so the
// same tree serves loading, saving and validation.
class IJSONConfigurationNode
{
public:
    virtual ~IJSONConfigurationNode() = default;

    virtual void writeToJson(QJsonObject& parent) = 0;
    virtual void readFromJson(const QJsonObject& parent) = 0;
    // Leaves `error` empty when `parent` holds an acceptable value for this
    // node. `path` holds the keys from the root down to `parent`; it is taken
    // by value because each node appends its own key for its messages only.
    virtual void validate(QString& error, const QJsonObject& parent, QStringList path) = 0;
};
