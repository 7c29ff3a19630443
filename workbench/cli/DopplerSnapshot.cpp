#include "DopplerSnapshot.h"

#include "ChartSnapshot.h"

#include "common/ISeriesChartData.h"
#include "host/Constants.h"

#include <QDir>
#include <QSaveFile>
#include <QTextStream>

#include <cmath>

namespace {

ISeriesChartData* spectrumOf(QObject* view)
{
    ISeriesChartData* data = nullptr;
    QMetaObject::invokeMethod(view, "getChartData", Qt::DirectConnection, Q_RETURN_ARG(ISeriesChartData*, data),
                              Q_ARG(int, int(Constants::Chart::FrequencyDomain)));
    return data;
}

double rangeRateOf(QObject* view, double frequencyHz)
{
    double rate = 0.0;
    QMetaObject::invokeMethod(view, "radialSpeed", Qt::DirectConnection, Q_RETURN_ARG(double, rate),
                              Q_ARG(double, frequencyHz));
    return rate;
}

// Static targets and what is left of the receiver's offset sit in the bins
// around 0 Hz; a moving target is the strongest echo beyond them.
bool isMoving(double frequencyHz, double binHz)
{
    return std::abs(frequencyHz) > 1.5 * binHz;
}

} // namespace

QStringList writeDopplerSnapshot(QObject* view, const QString& directory, DopplerPeak& peak, QString& error)
{
    if (!QDir().mkpath(directory)) {
        error = QStringLiteral("Cannot create the snapshot directory %1").arg(directory);
        return {};
    }
    QStringList failures;
    QStringList written = writeSeriesCharts(
        view, directory, { { Constants::Chart::TimeDomain, QStringLiteral("time_domain.csv") } }, failures);

    const QString path = QDir(directory).filePath(QStringLiteral("doppler_spectrum.csv"));
    ISeriesChartData* spectrum = spectrumOf(view);
    QSaveFile file(path);
    if (!spectrum) {
        failures << QStringLiteral("doppler_spectrum.csv (no chart data)");
    } else if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        failures << QStringLiteral("doppler_spectrum.csv (cannot write)");
    } else {
        QTextStream stream(&file);
        stream.setRealNumberPrecision(9);
        stream << "series,frequency_hz,range_rate_mps,magnitude_db\n";
        for (quint32 series = 0; series < spectrum->seriesCount(); ++series) {
            QVector<QPointF> points;
            for (auto it = spectrum->iterator(series); it && it->hasNext();)
                points.append(it->next());
            const double binHz = points.size() > 1 ? std::abs(points[1].x() - points[0].x()) : 0.0;
            for (const QPointF& point : points) {
                const double rate = rangeRateOf(view, point.x());
                stream << series << ',' << point.x() << ',' << rate << ',' << point.y() << '\n';
                if (isMoving(point.x(), binHz) && (!peak.found || point.y() > peak.magnitudeDb))
                    peak = DopplerPeak { true, point.x(), rate, point.y() };
            }
        }
        stream.flush();
        if (stream.status() == QTextStream::Ok && file.commit())
            written << path;
        else
            failures << QStringLiteral("doppler_spectrum.csv (cannot write)");
    }
    if (!failures.isEmpty())
        error = QStringLiteral("Not saved: ") + failures.join(QStringLiteral(", "));
    return written;
}
