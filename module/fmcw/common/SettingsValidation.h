#pragma once

#include <QString>

// Small helpers shared by the validators and setters of the FMCW settings
// classes, so that every range message reads the same.
namespace SettingsValidation {

// Empty when min <= value <= max, otherwise
// "Value <v> not in expected range: [<min> - <max>]" in base 10.
QString checkRange(quint64 value, quint64 min, quint64 max);
// Same for floats, written in the shortest general form ("0.0001", "150").
QString checkRange(float value, float min, float max);

// Cuts a range down to one decimal place (never rounds up). A value too
// large to scale stays as it is.
float floorToOneDecimal(float value);

// The tolerance every floating-point setting is compared with.
bool fuzzyEqual(double a, double b);

}
