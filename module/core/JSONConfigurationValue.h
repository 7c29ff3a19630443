#pragma once

#include "core/JSONConfigurationLeaf.h"

#include <QString>

// A leaf bound to one field of a live object, stored as a JSON boolean,
// number or text.
template<typename T>
class JSONConfigurationValue : public JSONConfigurationLeaf<T>
{
public:
    using JSONConfigurationLeaf<T>::JSONConfigurationLeaf;

    void writeToJson(QJsonObject& parent) override;
    // Never fails: a value that cannot be converted reads as T's default.
    // Callers validate the document first.
    void readFromJson(const QJsonObject& parent) override;
    void validate(QString& error, const QJsonObject& parent, QStringList path) override;
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
