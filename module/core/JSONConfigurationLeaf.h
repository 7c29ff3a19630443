#pragma once

#include "core/IJSONConfigurationNode.h"

#include <QString>

#include <functional>

// What every leaf bound to a live object shares, whatever it stores: its key,
// the object's getter and setter, and a validator that returns an empty text
// for an acceptable value (or is empty itself to accept every value).
template<typename T>
class JSONConfigurationLeaf : public IJSONConfigurationNode
{
public:
    using Getter = std::function<T()>;
    using Setter = std::function<void(const T&)>;
    using Validator = std::function<QString(const T&)>;

    JSONConfigurationLeaf(QString name, Getter getter, Setter setter, Validator validator)
        : m_name(std::move(name))
        , m_setter(std::move(setter))
        , m_getter(std::move(getter))
        , m_validator(std::move(validator))
    {
    }

protected:
    // False, with the message in `error`, when `parent` lacks this leaf's key;
    // `joined` is the leaf's dotted path.
    bool isPresent(QString& error, const QJsonObject& parent, const QString& joined) const
    {
        if (parent.contains(m_name))
            return true;
        error = QStringLiteral("Mandatory field %1 is missing").arg(joined);
        return false;
    }

    // Puts the validator's objection to `value`, if any, in `error`.
    void checkValue(QString& error, const QString& joined, const T& value) const
    {
        if (!m_validator)
            return;
        const QString validationError = m_validator(value);
        if (!validationError.isEmpty())
            error = QStringLiteral("Field %1 validation error: %2").arg(joined, validationError);
    }

    QString m_name;
    Setter m_setter;
    Getter m_getter;
    Validator m_validator;
};
