#pragma once

// Reads the numpy/scipy reference files in data/ (written by
// data/make_reference.py): whitespace-separated lines whose first word says
// what they hold.

#include <QFile>
#include <QStringList>
#include <QVector>

#include <algorithm>
#include <cmath>

struct ReferenceLine {
    QString tag;
    QVector<double> values;
};

inline QVector<ReferenceLine> readReference(const QString& name)
{
    QVector<ReferenceLine> lines;
    QFile file(QStringLiteral(SIM_TEST_DATA "/") + name);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return lines;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const QStringList words = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        ReferenceLine parsed;
        int first = 0;
        if (!words.first().at(0).isDigit() && words.first().at(0) != QLatin1Char('-')) {
            parsed.tag = words.first();
            first = 1;
        }
        for (int i = first; i < words.size(); ++i)
            parsed.values.append(words.at(i).toDouble());
        lines.append(parsed);
    }
    return lines;
}

// Magnitude of a spectrum value in any of the three output scales.
inline double linearOf(double value, int scale)
{
    return scale == 0 ? value : std::pow(10.0, value / double(scale));
}

// Largest deviation between two spectra, measured in linear magnitude
// relative to the reference's peak, so that values far down in the floor do
// not dominate through the logarithm.
inline double worstRelativeError(const float* actual, const QVector<double>& expected, int scale)
{
    double peak = 0.0;
    for (double v : expected)
        peak = std::max(peak, linearOf(v, scale));
    double worst = 0.0;
    for (int i = 0; i < expected.size(); ++i)
        worst = std::max(worst, std::abs(linearOf(actual[i], scale) - linearOf(expected[i], scale)) / peak);
    return worst;
}
