#include "fmcw/common/SettingsValidation.h"

#include <cmath>

namespace {

const QString kRangeMessage = QStringLiteral("Value %1 not in expected range: [%2 - %3]");

QString shortest(float value)
{
    return QString::number(static_cast<double>(value), 'g');
}

}

namespace SettingsValidation {

QString checkRange(quint64 value, quint64 min, quint64 max)
{
    if (value >= min && value <= max)
        return QString();
    return kRangeMessage.arg(QString::number(value), QString::number(min), QString::number(max));
}

QString checkRange(float value, float min, float max)
{
    if (value >= min && value <= max)
        return QString();
    return kRangeMessage.arg(shortest(value), shortest(min), shortest(max));
}

float floorToOneDecimal(float value)
{
    // The product is taken in single precision on purpose: the limits the
    // SDK reports are floats, and the published limit must agree with what
    // this setter makes of the same number.
    const float scaled = value * 10.0f;
    if (std::isinf(scaled))
        return value;
    return std::floor(scaled) / 10.0f;
}

bool fuzzyEqual(double a, double b)
{
    return std::fabs(a - b) <= 0.001;
}

}
