#pragma once

#include <QString>

class QObject;

// Writes what the standard-mode charts show right now into a directory:
// "time_domain.csv", "range_spectrum.csv" and "presence.csv" (columns
// series,x,y: one row per drawn point) and "range_doppler.png".
// Returns the files written and, in `error`, why a chart could not be saved.
QStringList writeChartSnapshot(QObject* view, const QString& directory, QString& error);
