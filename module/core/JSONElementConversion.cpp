#include "core/JSONElementConversion.h"

#include <cmath>
#include <limits>

namespace {

const QString kIntegerExpected = QStringLiteral("Integer expected");

// Truncates toward zero and wraps into the integer type the way a plain C
// conversion through a 64-bit integer would. Numbers beyond the 64-bit range
// are clamped first because converting them would be undefined behaviour.
template<typename T>
T truncateToInteger(double number)
{
    const double truncated = std::trunc(number);
    constexpr double kInt64Limit = 9223372036854775808.0; // 2^63
    qint64 wide = 0;
    if (truncated >= kInt64Limit)
        wide = std::numeric_limits<qint64>::max();
    else if (truncated < -kInt64Limit)
        wide = std::numeric_limits<qint64>::min();
    else
        wide = static_cast<qint64>(truncated);
    return static_cast<T>(wide);
}

template<typename T>
bool integerFromJson(const QJsonValue& value, T& out, QString& error)
{
    if (!value.isDouble()) {
        error = kIntegerExpected;
        return false;
    }
    out = truncateToInteger<T>(value.toDouble());
    return true;
}

}

namespace JSONElementConversion {

bool fromJson(const QJsonValue& value, bool& out, QString& error)
{
    if (!value.isBool()) {
        error = QStringLiteral("Boolean expected");
        return false;
    }
    out = value.toBool();
    return true;
}

bool fromJson(const QJsonValue& value, quint8& out, QString& error)
{
    return integerFromJson(value, out, error);
}

bool fromJson(const QJsonValue& value, quint16& out, QString& error)
{
    return integerFromJson(value, out, error);
}

bool fromJson(const QJsonValue& value, qint32& out, QString& error)
{
    return integerFromJson(value, out, error);
}

bool fromJson(const QJsonValue& value, quint32& out, QString& error)
{
    return integerFromJson(value, out, error);
}

bool fromJson(const QJsonValue& value, quint64& out, QString& error)
{
    if (!value.isDouble()) {
        error = kIntegerExpected;
        return false;
    }
    const double number = std::trunc(value.toDouble());
    constexpr double kTopBit = 9223372036854775808.0; // 2^63
    constexpr double kUInt64Limit = 18446744073709551616.0; // 2^64
    if (number >= kUInt64Limit) {
        out = std::numeric_limits<quint64>::max();
    } else if (number >= kTopBit) {
        // A double at or above 2^63 does not fit the signed range the
        // conversion goes through; take the low part and set the top bit.
        out = static_cast<quint64>(static_cast<qint64>(number - kTopBit)) | (quint64(1) << 63);
    } else {
        out = truncateToInteger<quint64>(number);
    }
    return true;
}

bool fromJson(const QJsonValue& value, float& out, QString& error)
{
    if (!value.isDouble()) {
        error = QStringLiteral("Float expected");
        return false;
    }
    out = static_cast<float>(value.toDouble());
    return true;
}

bool fromJson(const QJsonValue& value, QString& out, QString& error)
{
    if (!value.isString()) {
        error = QStringLiteral("String expected");
        return false;
    }
    out = value.toString();
    return true;
}

}
