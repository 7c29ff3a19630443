#include "ChartSnapshot.h"

#include "common/ISeriesChartData.h"
#include "fmcw/processing/IRangeDopplerChartData.h"

#include <QDir>
#include <QFile>
#include <QPixmap>
#include <QSaveFile>
#include <QTextStream>

namespace {

ISeriesChartData* chartData(QObject* view, Constants::Chart chart)
{
    ISeriesChartData* data = nullptr;
    QMetaObject::invokeMethod(view, "getChartData", Qt::DirectConnection, Q_RETURN_ARG(ISeriesChartData*, data),
                              Q_ARG(int, int(chart)));
    return data;
}

bool writeSeries(ISeriesChartData& data, const QString& path)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return false;
    QTextStream stream(&file);
    stream.setRealNumberPrecision(9);
    stream << "series,x,y\n";
    for (quint32 series = 0; series < data.seriesCount(); ++series) {
        auto points = data.iterator(series);
        while (points && points->hasNext()) {
            const QPointF point = points->next();
            stream << series << ',' << point.x() << ',' << point.y() << '\n';
        }
    }
    stream.flush();
    return stream.status() == QTextStream::Ok && file.commit();
}

} // namespace

QStringList writeSeriesCharts(QObject* view, const QString& directory, const QList<SeriesChartFile>& charts,
                              QStringList& failures)
{
    QStringList written;
    const QDir dir(directory);
    for (const SeriesChartFile& entry : charts) {
        const QString path = dir.filePath(entry.fileName);
        ISeriesChartData* data = chartData(view, entry.chart);
        if (!data) {
            failures << QStringLiteral("%1 (no chart data)").arg(entry.fileName);
            continue;
        }
        if (writeSeries(*data, path))
            written << path;
        else
            failures << QStringLiteral("%1 (cannot write)").arg(entry.fileName);
    }
    return written;
}

QStringList writeChartSnapshot(QObject* view, const QString& directory, QString& error)
{
    if (!QDir().mkpath(directory)) {
        error = QStringLiteral("Cannot create the snapshot directory %1").arg(directory);
        return {};
    }
    const QDir dir(directory);
    QStringList failures;
    QStringList written = writeSeriesCharts(view, directory,
                                            { { Constants::Chart::TimeDomain, QStringLiteral("time_domain.csv") },
                                              { Constants::Chart::FrequencyDomain, QStringLiteral("range_spectrum.csv") },
                                              { Constants::Chart::PresenceSensing, QStringLiteral("presence.csv") } },
                                            failures);

    IRangeDopplerChartData* rangeDoppler = nullptr;
    QMetaObject::invokeMethod(view, "getRangeDopplerChartData", Qt::DirectConnection,
                              Q_RETURN_ARG(IRangeDopplerChartData*, rangeDoppler));
    QPixmap image;
    const QString imagePath = dir.filePath(QStringLiteral("range_doppler.png"));
    if (!rangeDoppler || !rangeDoppler->render(image))
        failures << QStringLiteral("range_doppler.png (no map yet)");
    else if (!image.save(imagePath, "PNG"))
        failures << QStringLiteral("range_doppler.png (cannot write)");
    else
        written << imagePath;

    if (!failures.isEmpty())
        error = QStringLiteral("Not saved: ") + failures.join(QStringLiteral(", "));
    return written;
}
