#pragma once

#include <QStringList>
#include <QVector>

// Rows handed from a producer to a CSV logger: one QStringList per line,
// one string per column, already formatted. Producers format the numbers
// themselves so that the logger stays unaware of what it writes.
using CSVLoggerBuffer = QVector<QStringList>;
