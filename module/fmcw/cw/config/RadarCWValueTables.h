#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

// The choices of the CW parameters that the SDK takes as an index into a
// list of its own: the index is the position of the value in the list.
// Converting a value that is not in its list logs the table's warning and
// gives index 0; an index beyond the list gives the list's first value
// (with a warning), so that neither direction ever fails.
namespace RadarCWValueTables {

enum class NumericTable {
    GainAmplifier, // dB of the band-pass amplifier
    GainHighPass,  // dB of the high-pass filter
    HpCutoff,      // kHz, high-pass filter
    AafCutoff,     // kHz, anti-alias filter
    SamplingTime,  // ns of the ADC
};

enum class TextTable {
    TestSignalMode,
    AdcTracking,  // conversions of the ADC's tracking
    Oversampling, // oversampling factor of the ADC
};

const QVector<quint32>& values(NumericTable table);
const QStringList& names(TextTable table);

// The warning logged for a value outside `table`.
QString mismatchWarning(NumericTable table);
QString mismatchWarning(TextTable table);

quint32 toIndex(NumericTable table, quint32 value);
quint32 toIndex(TextTable table, const QString& name);
quint32 fromIndex(NumericTable table, quint32 index);
QString fromIndex(TextTable table, quint32 index);

}
