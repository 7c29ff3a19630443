#pragma once

#include "host/Constants.h"

#include <QList>
#include <QString>

class QObject;

// One chart of a view and the CSV file its points go to.
struct SeriesChartFile {
    Constants::Chart chart;
    QString fileName;
};

// Writes the points the view's charts hold right now into `directory`, one
// CSV file per chart (columns series,x,y: one row per drawn point). Returns
// the files written; `failures` gets "FILE (why)" for each one not written.
QStringList writeSeriesCharts(QObject* view, const QString& directory, const QList<SeriesChartFile>& charts,
                              QStringList& failures);

// Writes what the standard-mode charts show right now into a directory:
// "time_domain.csv", "range_spectrum.csv" and "presence.csv" (columns
// series,x,y: one row per drawn point) and "range_doppler.png".
// Returns the files written and, in `error`, why a chart could not be saved.
QStringList writeChartSnapshot(QObject* view, const QString& directory, QString& error);
