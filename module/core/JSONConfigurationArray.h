#pragma once

#include "core/JSONConfigurationLeaf.h"

#include <QString>
#include <QVector>

// A leaf bound to a whole vector of numbers, stored as a JSON array.
template<typename T>
class JSONConfigurationArray : public JSONConfigurationLeaf<T>
{
public:
    using JSONConfigurationLeaf<T>::JSONConfigurationLeaf;

    void writeToJson(QJsonObject& parent) override;
    // Never fails: elements that cannot be converted read as zero, a value
    // that is not an array reads as an empty vector.
    void readFromJson(const QJsonObject& parent) override;
    void validate(QString& error, const QJsonObject& parent, QStringList path) override;
};

extern template class JSONConfigurationArray<QVector<qint32>>;
extern template class JSONConfigurationArray<QVector<float>>;
