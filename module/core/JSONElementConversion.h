#pragma once

#include <QJsonValue>
#include <QString>

// Strict conversion of one JSON value into the C++ type of a settings leaf,
// shared by the value and array leaves. Each `fromJson` returns false and
// sets `error` to the expected kind when the JSON type does not fit; no range
// check is made, ranges belong to the leaves' validators.
namespace JSONElementConversion {

bool fromJson(const QJsonValue& value, bool& out, QString& error);
bool fromJson(const QJsonValue& value, quint8& out, QString& error);
bool fromJson(const QJsonValue& value, quint16& out, QString& error);
bool fromJson(const QJsonValue& value, qint32& out, QString& error);
bool fromJson(const QJsonValue& value, quint32& out, QString& error);
bool fromJson(const QJsonValue& value, quint64& out, QString& error);
bool fromJson(const QJsonValue& value, float& out, QString& error);
bool fromJson(const QJsonValue& value, QString& out, QString& error);

}
