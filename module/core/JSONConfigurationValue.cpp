#include "core/JSONConfigurationValue.h"

#include "core/JSONElementConversion.h"

#include <QJsonValue>
#include <QVariant>

namespace {

QJsonValue toJson(bool value) { return QJsonValue(value); }
QJsonValue toJson(quint8 value) { return QJsonValue(static_cast<int>(value)); }
QJsonValue toJson(quint16 value) { return QJsonValue(static_cast<int>(value)); }
QJsonValue toJson(qint32 value) { return QJsonValue(value); }
QJsonValue toJson(quint32 value) { return QJsonValue(static_cast<qint64>(value)); }
// JSON numbers are doubles: values beyond 2^53 lose their lowest bits.
QJsonValue toJson(quint64 value) { return QJsonValue(static_cast<double>(value)); }
QJsonValue toJson(float value) { return QJsonValue(static_cast<double>(value)); }
QJsonValue toJson(const QString& value) { return QJsonValue(value); }

}

template<typename T>
void JSONConfigurationValue<T>::writeToJson(QJsonObject& parent)
{
    if (!this->m_getter)
        return;
    parent.insert(this->m_name, toJson(this->m_getter()));
}

template<typename T>
void JSONConfigurationValue<T>::readFromJson(const QJsonObject& parent)
{
    if (!this->m_setter)
        return;
    const QJsonValue json = parent.value(this->m_name);
    T value {};
    QString ignored;
    // The strict conversion comes first so that reading agrees with what
    // validation accepted (a variant would round 3.9 to 4, not truncate it).
    if (!JSONElementConversion::fromJson(json, value, ignored)) {
        QVariant variant = json.toVariant();
        if (variant.convert(qMetaTypeId<T>()))
            value = variant.value<T>();
        else
            value = T {};
    }
    this->m_setter(value);
}

template<typename T>
void JSONConfigurationValue<T>::validate(QString& error, const QJsonObject& parent, QStringList path)
{
    path.append(this->m_name);
    const QString joined = path.join(QLatin1Char('.'));
    if (!this->isPresent(error, parent, joined))
        return;
    T value {};
    QString conversionError;
    if (!JSONElementConversion::fromJson(parent.value(this->m_name), value, conversionError)) {
        error = QStringLiteral("Field %1 type error: %2").arg(joined, conversionError);
        return;
    }
    this->checkValue(error, joined, value);
}

template class JSONConfigurationValue<bool>;
template class JSONConfigurationValue<quint8>;
template class JSONConfigurationValue<quint16>;
template class JSONConfigurationValue<qint32>;
template class JSONConfigurationValue<quint32>;
template class JSONConfigurationValue<quint64>;
template class JSONConfigurationValue<float>;
template class JSONConfigurationValue<QString>;
