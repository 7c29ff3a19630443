#pragma once

#include "core/IJSONConfigurationNode.h"

#include <QString>
#include <QVector>

#include <functional>

// A leaf bound to a whole vector of numbers, stored as a JSON array.
template<typename T>
class JSONConfigurationArray : public IJSONConfigurationNode
{
public:
    using Getter = std::function<T()>;
    using Setter = std::function<void(const T&)>;
    using Validator = std::function<QString(const T&)>;

    JSONConfigurationArray(QString name, Getter getter, Setter setter, Validator validator);

    void writeToJson(QJsonObject& parent) override;
    // Never fails: elements that cannot be converted read as zero, a value
    // that is not an array reads as an empty vector.
    void readFromJson(const QJsonObject& parent) override;
    void validate(QString& error, const QJsonObject& parent, QStringList path) override;

private:
    QString m_name;
    Setter m_setter;
    Getter m_getter;
    Validator m_validator;
};

extern template class JSONConfigurationArray<QVector<qint32>>;
extern template class JSONConfigurationArray<QVector<float>>;
