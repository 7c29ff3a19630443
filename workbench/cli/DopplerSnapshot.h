#pragma once

#include <QString>
#include <QStringList>

class QObject;

// The strongest moving echo of a Doppler spectrum: its frequency and the
// range rate the view reads from it (negative while the target closes in).
struct DopplerPeak {
    bool found = false;
    double frequencyHz = 0.0;
    double rangeRateMps = 0.0;
    double magnitudeDb = 0.0;
};

// Writes what the pulsed-Doppler charts show right now into a directory:
// "time_domain.csv" (I and Q, columns series,x,y) and
// "doppler_spectrum.csv" (columns series,frequency_hz,range_rate_mps,
// magnitude_db). Returns the files written; `error` says what could not be
// saved and `peak` gets the strongest echo away from 0 Hz.
QStringList writeDopplerSnapshot(QObject* view, const QString& directory, DopplerPeak& peak, QString& error);
