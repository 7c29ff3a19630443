#pragma once

#include "frame/RadarConstants.h"

#include <QString>
#include <QStringList>
#include <QVector>

// What differs between the chips in CW mode: the type name their
// configuration files carry and the baseband and test-signal choices their
// hardware has.
namespace RadarCWChips {

// The "json_version" version of every CW configuration file.
extern const QString kFileVersion; // "1.0"

// "KMR7A_CW", "KMR7B_CW", "KMR7C_CW"; empty for a chip without CW files.
QString configurationTypeName(RadarConstants::RadarType type);

// KMR7A and KMR7B have no adjustable anti-alias filter, a narrower choice
// of high-pass cut-offs and only the first two test-signal modes.
bool hasAntiAliasFilter(RadarConstants::RadarType type);
QStringList testSignalModes(RadarConstants::RadarType type);
QVector<quint32> highPassCutoffs(RadarConstants::RadarType type);

}
