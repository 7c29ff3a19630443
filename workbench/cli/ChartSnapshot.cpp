#include "ChartSnapshot.h"

#include "common/ISeriesChartData.h"
#include "fmcw/processing/IRangeDopplerChartData.h"
#include "host/Constants.h"

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

QStringList writeChartSnapshot(QObject* view, const QString& directory, QString& error)
{
    QStringList written;
    if (!QDir().mkpath(directory)) {
        error = QStringLiteral("Cannot create the snapshot directory %1").arg(directory);
        return written;
    }
    const QDir dir(directory);
    const struct {
        Constants::Chart chart;
        const char* file;
    } series[] = { { Constants::Chart::TimeDomain, "time_domain.csv" },
                   { Constants::Chart::FrequencyDomain, "range_spectrum.csv" },
                   { Constants::Chart::PresenceSensing, "presence.csv" } };
    QStringList failures;
    for (const auto& entry : series) {
        const QString path = dir.filePath(QString::fromLatin1(entry.file));
        ISeriesChartData* data = chartData(view, entry.chart);
        if (!data) {
            failures << QStringLiteral("%1 (no chart data)").arg(entry.file);
            continue;
        }
        if (writeSeries(*data, path))
            written << path;
        else
            failures << QStringLiteral("%1 (cannot write)").arg(entry.file);
    }

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
