#pragma once

#include "core/IJSONConfigurationNode.h"

#include <QString>

#include <functional>

// A leaf bound to one field of a live object through its getter, setter and
// validator. The validator returns an empty text for an acceptable value.
template<typename T>
class JSONConfigurationValue : public IJSONConfigurationNode
{
public:
    using Getter = std::function<T()>;
    using Setter = std::function<void(const T&)>;
    using Validator = std::function<QString(const T&)>;

    JSONConfigurationValue(QString name, Getter getter, Setter setter, Validator validator);

    void writeToJson(QJsonObject& parent) override;
    // Never fails: a value that cannot be converted reads as T's default.
    // Callers validate the document first.
    void readFromJson(const QJsonObject& parent) override;
    void validate(QString& error, const QJsonObject& parent, QStringList path) override;

private:
    QString m_name;
    Setter m_setter;
    Getter m_getter;
    Validator m_validator;
};

// The bodies live in the .cpp with one explicit instantiation per supported
// type, so that the users of this header do not compile them again.
extern template class JSONConfigurationValue<bool>;
extern template class JSONConfigurationValue<quint8>;
extern template class JSONConfigurationValue<quint16>;
extern template class JSONConfigurationValue<qint32>;
extern template class JSONConfigurationValue<quint32>;
extern template class JSONConfigurationValue<quint64>;
extern template class JSONConfigurationValue<float>;
extern template class JSONConfigurationValue<QString>;
