#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

// The analog baseband gain steps of the pulsed-Doppler chip.
//
// The board knows eight gain steps; each is named by its linear factor
// (3, 6, 12, ..., 384) and the chip's documentation gives the matching
// gain in dB (10 dB plus 6 dB per doubling). The factor is also the number
// the SDK takes and reports in "abb_gain_index" and bounds with
// abb_gain_index_min / abb_gain_index_max, so `abbGain` of the pulse
// parameters, the JSON value and the SDK record all hold the same number
// and no translation table sits between the drop-down and the board. The
// drop-down offers the steps that lie within the board's bounds only.
namespace ZP7SGainTable {

constexpr int kStepCount = 8;

// The linear factor of step `index` (0..7); 0 for any other index.
quint16 valueAt(int index);
// The gain of step `index` in dB; 0 for any other index.
int gainDbAt(int index);
// The step whose factor is `value`, or -1 when `value` is no step.
int indexOf(quint16 value);
bool isStep(quint16 value);

// "3 / 10dB", "6 / 16dB", ..., "384 / 52dB".
QString labelAt(int index);
QStringList labels();

// The steps within [min, max], ascending: what the drop-down offers.
QVector<quint16> valuesWithin(quint16 min, quint16 max);
QStringList labelsWithin(quint16 min, quint16 max);

}
