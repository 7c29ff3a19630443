#pragma once

#include "sdk/vrn.h"

#include <QString>
#include <QStringList>

// The names the settings files and the pages use for FFT types, window types
// and output scales, and the SDK values behind them. A name that is not in a
// table logs a warning and maps to a safe fallback, so a hand-edited file
// still gives a working spectrum.
namespace ProcessingNameTables {

QStringList fftTypeNames();
QStringList windowTypeNames();
QStringList scaleTypeNames();

// Unknown names give VRN_FFT_TYPE_R2C.
vrn_FFT_Type_t fftType(const QString& name);
// Unknown names give VRN_WINDOW_BLACKMAN.
vrn_Window_Type_t windowType(const QString& name);
// Unknown names give VRN_SCALE_TYPE_DECIBEL_20LOG.
vrn_Scale_Type_t scaleType(const QString& name);

}
