#include "core/JSONConfigurationArray.h"

#include "core/JSONElementConversion.h"

#include <QJsonArray>
#include <QJsonValue>
#include <QVariant>

template<typename T>
void JSONConfigurationArray<T>::writeToJson(QJsonObject& parent)
{
    if (!this->m_getter)
        return;
    QJsonArray array;
    for (const auto& element : this->m_getter())
        array.append(QJsonValue(static_cast<double>(element)));
    parent.insert(this->m_name, array);
}

template<typename T>
void JSONConfigurationArray<T>::readFromJson(const QJsonObject& parent)
{
    if (!this->m_setter)
        return;
    using Element = typename T::value_type;
    T values;
    const QJsonArray array = parent.value(this->m_name).toArray();
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
    this->m_setter(values);
}

template<typename T>
void JSONConfigurationArray<T>::validate(QString& error, const QJsonObject& parent, QStringList path)
{
    path.append(this->m_name);
    const QString joined = path.join(QLatin1Char('.'));
    if (!this->isPresent(error, parent, joined))
        return;
    const QJsonValue value = parent.value(this->m_name);
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
    this->checkValue(error, joined, values);
}

template class JSONConfigurationArray<QVector<qint32>>;
template class JSONConfigurationArray<QVector<float>>;
