// The series chart without a window: what it reads from the chart data, the
// ranges it chooses, the vertices it hands to the renderer and how item
// positions map to data.

#include "FakeSeriesData.h"
#include "SeriesChart.h"

#include <QSignalSpy>
#include <QtTest>

#include <cmath>
#include <limits>

using SeriesList = QVector<QPolygonF>;
Q_DECLARE_METATYPE(SeriesList)

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();
const double Inf = std::numeric_limits<double>::infinity();

QPolygonF ramp(int count, double slope = 1.0)
{
    QPolygonF points;
    for (int i = 0; i < count; ++i)
        points << QPointF(i, i * slope);
    return points;
}

void attach(SeriesChart& chart, FakeSeriesData& data)
{
    chart.setSize(QSizeF(200.0, 100.0));
    chart.setChartData(QVariant::fromValue<ISeriesChartData*>(&data));
}

}

class TestSeriesChart : public QObject
{
    Q_OBJECT
private slots:
    void autoScaleFollowsTheFiniteData_data()
    {
        QTest::addColumn<SeriesList>("series");
        QTest::addColumn<int>("points");
        QTest::addColumn<QRectF>("range"); // x, y = xMin, yMin; width, height = spans

        QTest::newRow("ramp: y with 5 % headroom") << SeriesList { ramp(11, 2.0) } << 11 << QRectF(0, -1, 10, 22);
        QTest::newRow("two series: their union")
            << SeriesList { ramp(3), points({ { -2, 5 }, { 4, -5 } }) } << 5 << QRectF(-2, -5.5, 6, 11);
        QTest::newRow("flat zero: one unit around it") << SeriesList { points({ { 0, 0 }, { 4, 0 } }) } << 2
                                                       << QRectF(0, -1, 4, 2);
        QTest::newRow("flat five: a tenth around it") << SeriesList { points({ { 0, 5 }, { 4, 5 } }) } << 2
                                                      << QRectF(0, 4.5, 4, 1);
        QTest::newRow("one point") << SeriesList { points({ { 3, 2 } }) } << 1 << QRectF(2.7, 1.8, 0.6, 0.4);
        QTest::newRow("NaN and infinities are skipped")
            << SeriesList { points({ { 0, 1 }, { 1, NaN }, { NaN, 50 }, { 2, Inf }, { 3, -Inf }, { 4, 3 } }) } << 2
            << QRectF(0, 0.9, 4, 2.2);
    }

    void autoScaleFollowsTheFiniteData()
    {
        QFETCH(SeriesList, series);
        QFETCH(int, points);
        QFETCH(QRectF, range);
        FakeSeriesData data;
        data.series = series;
        SeriesChart chart;
        attach(chart, data);

        QCOMPARE(chart.seriesCount(), series.size());
        QCOMPARE(chart.pointCount(), points);
        const QVector<double> shown { chart.xMin(), chart.xMax(), chart.yMin(), chart.yMax() };
        const QVector<double> expected { range.x(), range.right(), range.y(), range.bottom() };
        for (int i = 0; i < 4; ++i)
            QVERIFY2(qAbs(shown[i] - expected[i]) < 1e-9, qPrintable(QStringLiteral("%1 at %2").arg(shown[i]).arg(i)));
        for (int s = 0; s < series.size(); ++s) {
            for (const QPointF& vertex : chart.vertices(s))
                QVERIFY(qIsFinite(vertex.x()) && qIsFinite(vertex.y()));
        }
    }

    void fixedRangeHoldsAcrossRefreshes()
    {
        FakeSeriesData data;
        data.series = { ramp(11, 3.0) };
        SeriesChart chart;
        chart.setAutoScaleY(false);
        chart.setYMin(-100.0);
        chart.setYMax(0.0);
        attach(chart, data);
        data.series = { ramp(21, 3.0) };
        chart.refresh();

        QCOMPARE(chart.yMin(), -100.0);
        QCOMPARE(chart.yMax(), 0.0);
        QCOMPARE(chart.xMax(), 20.0);
        // Everything above the range lies above the item: pixel y below 0.
        QVERIFY(chart.vertices(0).back().y() < 0.0);

        chart.setAutoScaleY(true);
        QCOMPARE(chart.yMin(), -3.0);
        QCOMPARE(chart.yMax(), 63.0);
    }

    void verticesPerSeries_data()
    {
        QTest::addColumn<QPolygonF>("points");
        QTest::addColumn<bool>("stepped");
        QTest::addColumn<bool>("stateHistory");
        QTest::addColumn<int>("vertices");
        QTest::addColumn<bool>("exact");

        QTest::newRow("line: one vertex per point") << ramp(50) << false << false << 50 << true;
        QTest::newRow("stepped: across, then up or down") << ramp(50) << true << false << 99 << true;
        QTest::newRow("state history: steps by itself") << ramp(50) << false << true << 99 << true;
        QTest::newRow("one point: a short dash") << ramp(1) << false << false << 2 << true;
        QTest::newRow("no points: nothing") << QPolygonF() << false << false << 0 << true;
        // 200 columns and the right edge.
        QTest::newRow("more points than columns: two per column at most") << ramp(5000) << false << false << 402
                                                                          << false;
    }

    void verticesPerSeries()
    {
        QFETCH(QPolygonF, points);
        QFETCH(bool, stepped);
        QFETCH(bool, stateHistory);
        QFETCH(int, vertices);
        QFETCH(bool, exact);
        FakeSeriesData data;
        data.series = { points };
        data.stateHistory = stateHistory;
        SeriesChart chart;
        chart.setStepped(stepped);
        attach(chart, data);

        QCOMPARE(chart.drawsSteps(), stepped || stateHistory);
        const int count = int(chart.vertices(0).size());
        if (exact)
            QCOMPARE(count, vertices);
        else
            QVERIFY2(count <= vertices && count >= vertices / 2, qPrintable(QStringLiteral("%1 vertices").arg(count)));
        if (stepped || stateHistory) {
            // Each step goes across at the old level before it changes level.
            const std::vector<QPointF>& v = chart.vertices(0);
            QCOMPARE(v[1].y(), v[0].y());
            QCOMPARE(v[1].x(), v[2].x());
        }
    }

    void thinnedSeriesKeepsItsPeak()
    {
        QPolygonF points;
        for (int i = 0; i < 10000; ++i)
            points << QPointF(i, i == 6789 ? 100.0 : (i == 1234 ? -100.0 : std::sin(i * 0.01)));
        FakeSeriesData data;
        data.series = { points };
        SeriesChart chart;
        attach(chart, data);

        const std::vector<QPointF>& vertices = chart.vertices(0);
        QVERIFY(vertices.size() <= 402);
        double top = Inf;
        double bottom = -Inf;
        for (const QPointF& vertex : vertices) {
            top = qMin(top, vertex.y());
            bottom = qMax(bottom, vertex.y());
        }
        // 100 and -100 just inside the headroom of a 100 px high plot spanning
        // -110 .. 110.
        QVERIFY2(qAbs(top - 10.0 / 220.0 * 100.0) < 0.01, qPrintable(QString::number(top)));
        QVERIFY2(qAbs(bottom - (100.0 - 10.0 / 220.0 * 100.0)) < 0.01, qPrintable(QString::number(bottom)));
    }

    void positionsMapToData()
    {
        FakeSeriesData data;
        data.series = { points({ { 0, 0 }, { 2, 40 }, { 4, 100 } }) };
        SeriesChart chart;
        chart.setAutoScaleX(false);
        chart.setAutoScaleY(false);
        chart.setXMin(0.0);
        chart.setXMax(10.0);
        chart.setYMin(0.0);
        chart.setYMax(100.0);
        attach(chart, data);

        QCOMPARE(chart.valueAt(100.0, 50.0), QPointF(5.0, 50.0));
        QCOMPARE(chart.valueAt(0.0, 100.0), QPointF(0.0, 0.0));
        QCOMPARE(chart.vertices(0)[1], QPointF(40.0, 60.0));

        const QVariantMap hit = chart.nearest(47.0);
        QCOMPARE(QVariantList({ hit.value("series").toInt(), hit.value("x").toDouble(), hit.value("y").toDouble(),
                                hit.value("itemX").toDouble(), hit.value("itemY").toDouble() }),
                 QVariantList({ 0, 2.0, 40.0, 40.0, 60.0 }));
        QVERIFY2(hit.value("text").toString().startsWith("x: 2"), qPrintable(hit.value("text").toString()));
        QCOMPARE(chart.nearest(500.0).value("x").toDouble(), 4.0);
    }

    void nearestPrefersTheSeriesUnderThePointer()
    {
        FakeSeriesData data;
        data.series = { points({ { 0, 10 }, { 10, 10 } }), points({ { 0, 90 }, { 10, 90 } }) };
        SeriesChart chart;
        chart.setAutoScaleY(false);
        chart.setYMin(0.0);
        chart.setYMax(100.0);
        attach(chart, data);

        // Pixel y 15 is value 85: the upper series; pixel y 85 the lower one.
        QCOMPARE(chart.nearest(190.0, 15.0).value("series").toInt(), 1);
        QCOMPARE(chart.nearest(190.0, 85.0).value("series").toInt(), 0);

        FakeSeriesData empty;
        chart.setChartData(QVariant::fromValue<ISeriesChartData*>(&empty));
        QVERIFY(chart.nearest(100.0, 50.0).isEmpty());
    }

    void refreshReadsChangedData()
    {
        FakeSeriesData data;
        data.series = { ramp(10) };
        SeriesChart chart;
        attach(chart, data);
        QSignalSpy refreshed(&chart, &SeriesChart::refreshed);
        QSignalSpy ranges(&chart, &SeriesChart::rangeChanged);

        data.series = { ramp(20), ramp(5) };
        chart.refresh();
        QCOMPARE(refreshed.count(), 1);
        QCOMPARE(ranges.count(), 1);
        QCOMPARE(chart.seriesCount(), 2);
        QCOMPARE(chart.pointCount(), 25);
        QCOMPARE(chart.xMax(), 19.0);
        QCOMPARE(int(chart.vertices(1).size()), 5);

        // Nothing to show leaves the axes where they were.
        data.series = { QPolygonF(), QPolygonF() };
        chart.refresh();
        QCOMPARE(chart.seriesCount(), 2);
        QCOMPARE(chart.pointCount(), 0);
        QCOMPARE(chart.xMax(), 19.0);
        QVERIFY(chart.vertices(0).empty());
    }

    void markerSeriesStaysOutOfRangesAndReadout()
    {
        FakeSeriesData data;
        data.series = { points({ { 0, 0.4 }, { 60, 0.6 } }), points({ { 20, 0 }, { 40, 0 } }) };
        SeriesChart chart;
        chart.setMarkerSeries(1);
        attach(chart, data);

        QCOMPARE(chart.pointCount(), 4);
        QVERIFY(qAbs(chart.yMin() - 0.39) < 1e-9 && qAbs(chart.yMax() - 0.61) < 1e-9);
        QVERIFY(chart.vertices(1).empty());
        // Right on the marker at x = 20, the readout still names the samples.
        QCOMPARE(chart.nearest(chart.width() / 3.0, 99.0).value("series").toInt(), 0);

        chart.setMarkerSeries(-1);
        QCOMPARE(chart.yMin(), -0.03);
    }

    void chartDataOfAnotherTypeShowsNothing()
    {
        FakeSeriesData data;
        data.series = { ramp(10) };
        SeriesChart chart;
        attach(chart, data);
        QCOMPARE(chart.seriesCount(), 1);

        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("chart data of type int instead of ISeriesChartData"));
        chart.setChartData(QVariant(42));
        QCOMPARE(chart.seriesCount(), 0);
        chart.setChartData(QVariant());
        QCOMPARE(chart.seriesCount(), 0);
    }
};

QTEST_MAIN(TestSeriesChart)
#include "tst_SeriesChart.moc"
