#include "core/JSONConfigurationArray.h"

#include "core/JSONElementConversion.h"

#include <QJsonArray>
#include <QJsonValue>
#include <QVariant>

template<typename T>
JSONConfigurationArray<T>::JSONConfigurationArray(QString name, Getter getter, Setter setter, Validator validator)
    : m_name(std::move(name))
    , m_setter(std::move(setter))
    , m_getter(std::move(getter))
    , m_validator(std::move(validator))
{
}

template<typename T>
void JSONConfigurationArray<T>::writeToJson(QJsonObject& parent)
{
    if (!m_getter)
        return;
    QJsonArray array;
    for (const auto& element : m_getter())
        array.append(QJsonValue(static_cast<double>(element)));
    parent.insert(m_name, array);
}

template<typename T>
void JSONConfigurationArray<T>::readFromJson(const QJsonObject& parent)
{
    if (!m_setter)
        return;
    using Element = typename T::value_type;
    T values;
    const QJsonArray array = parent.value(m_name).toArray();
    values.reserve(array.size());
    for (const QJsonValue& json : array) {
        Element element {};
        QString ignored;
        if (!JSONElementConversion::fromJson(json, element, ignored)) {
            QVariant variant = json.toVariant();
            element = variant.convert(qMetaTypeId<Element>()) ? variant.value<Element>() : Element {};
        }
        values.append(element);
    }
    m_setter(values);
}

template<typename T>
void JSONConfigurationArray<T>::validate(QString& error, const QJsonObject& parent, QStringList path)
{
    path.append(m_name);
    const QString joined = path.join(QLatin1Char('.'));
    if (!parent.contains(m_name)) {
        error = QStringLiteral("Mandatory field %1 is missing").arg(joined);
        return;
    }
    const QJsonValue value = parent.value(m_name);
    if (!value.isArray()) {
        error = QStringLiteral("Field %1 is not an JSON array").arg(joined);
        return;
    }
    using Element = typename T::value_type;
    T values;
    const QJsonArray array = value.toArray();
    values.reserve(array.size());
    for (const QJsonValue& json : array) {
        Element element {};
        QString conversionError;
        if (!JSONElementConversion::fromJson(json, element, conversionError)) {
            error = QStringLiteral("Field %1 type error: %2").arg(joined, conversionError);
            return;
        }
        values.append(element);
    }
    if (m_validator) {
        const QString validationError = m_validator(values);
        if (!validationError.isEmpty()) {
            error = QStringLiteral("Field %1 validation error: %2").arg(joined, validationError);
            return;
        }
    }
}

template class JSONConfigurationArray<QVector<qint32>>;
template class JSONConfigurationArray<QVector<float>>;
