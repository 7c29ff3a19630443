#pragma once

#include <QObject>

// Enumerations shared by the configuration model, the SDK conversion and the
// QML pages ("cpp.RadarConstants" 1.0); nothing here can be instantiated.
namespace RadarConstants {
Q_NAMESPACE

enum Application { None = 0, PresenceSensing = 1, Segmentation = 2 };
Q_ENUM_NS(Application)

enum Level { High = 0, Med = 1, Low = 2 };
Q_ENUM_NS(Level)

enum ModulationTypeEnumDef { DOPPLER = 0, FMCW = 1 };
Q_ENUM_NS(ModulationTypeEnumDef)

enum DataFormatEnumDef { DATA_REAL = 0, DATA_COMPLEX = 1, DATA_COMPLEX_INTERLEAVED = 2 };
Q_ENUM_NS(DataFormatEnumDef)

enum ChirpShapeEnumDef { UP_CHIRP = 0, DOWN_CHIRP = 1, UP_DOWN_CHIRP = 2, DOWN_UP_CHIRP = 3 };
Q_ENUM_NS(ChirpShapeEnumDef)

enum RadarType { Unknown = 0, KMR7B = 1, KMR7A = 2, KMR7C = 3 };
Q_ENUM_NS(RadarType)
}
