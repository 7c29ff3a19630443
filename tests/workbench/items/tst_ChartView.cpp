// The ChartView rendered offscreen with the software renderer: the series
// in their palette colours where the data puts them, axis tick labels, the
// legend, and the readout when the mouse hovers over a line.

#include "FakeSeriesData.h"
#include "SeriesChart.h"
#include "WorkbenchItems.h"

#include <QDir>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

const QColor Red(255, 0, 0);
const QColor Blue(0, 0, 255);

bool near(QRgb pixel, const QColor& color, int tolerance)
{
    return qAbs(qRed(pixel) - color.red()) <= tolerance && qAbs(qGreen(pixel) - color.green()) <= tolerance
        && qAbs(qBlue(pixel) - color.blue()) <= tolerance;
}

// Whether a pixel of `color` lies within `radius` pixels of `at`.
bool colorAround(const QImage& image, QPointF at, const QColor& color, int radius = 2)
{
    const QPoint centre = at.toPoint();
    for (int y = centre.y() - radius; y <= centre.y() + radius; ++y)
        for (int x = centre.x() - radius; x <= centre.x() + radius; ++x)
            if (image.rect().contains(x, y) && near(image.pixel(x, y), color, 70))
                return true;
    return false;
}

int countColor(const QImage& image, const QRect& area, const QColor& color)
{
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            count += near(image.pixel(x, y), color, 70) ? 1 : 0;
    return count;
}

// Every item below `root`: Repeater delegates have no QObject parent, so
// the item tree is walked.
QList<QQuickItem*> itemsBelow(QQuickItem* root)
{
    QList<QQuickItem*> items;
    for (QQuickItem* child : root->childItems())
        items << child << itemsBelow(child);
    return items;
}

QList<QQuickItem*> byName(QQuickItem* root, const QString& name)
{
    QList<QQuickItem*> found = itemsBelow(root);
    found.erase(std::remove_if(found.begin(), found.end(), [&](QQuickItem* item) { return item->objectName() != name; }),
                found.end());
    return found;
}

QStringList texts(QQuickItem* root)
{
    QStringList found;
    for (QQuickItem* item : itemsBelow(root))
        if (item->isVisible() && !item->property("text").toString().isEmpty())
            found << item->property("text").toString();
    return found;
}

}

class TestChartView : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        // Offscreen there is no OpenGL here: ask for the software renderer. On a
        // display (the OpenGL run under a virtual X server) the default stays.
        if (QGuiApplication::platformName() == QLatin1String("offscreen"))
            QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
        registerWorkbenchItems({ Red, Blue });
    }

    void cleanup()
    {
        m_view = nullptr;
        m_chart = nullptr;
        m_window.reset();
        m_engine.reset();
    }

    void drawsTheSeriesWithAxesAndLegend()
    {
        FakeSeriesData data;
        QPolygonF wave;
        for (int i = 0; i <= 200; ++i)
            wave << QPointF(i * 0.05, std::sin(i * 0.05));
        data.series = { wave, points({ { 0.0, -0.5 }, { 10.0, -0.5 } }) };
        QVERIFY(show(data));

        const QImage image = rendered();
        QCOMPARE(image.size(), QSize(640, 400));
        QVERIFY(image.save(picturePath(QStringLiteral("tst_ChartView"))));
        QCOMPARE(m_chart->drawnSeriesCount(), 2);

        // The wave's crest and trough and the flat line where the data puts them.
        for (double x : { 0.5, 1.5707963, 4.712389, 8.0 })
            QVERIFY2(colorAround(image, scenePoint(x, std::sin(x)), Red), qPrintable(QStringLiteral("x = %1").arg(x)));
        QVERIFY(colorAround(image, scenePoint(6.0, -0.5), Blue));
        // Nothing red outside the plot but the legend's swatch.
        const QRectF plot = m_chart->mapRectToScene(QRectF(0, 0, m_chart->width(), m_chart->height()));
        QVERIFY(countColor(image, QRect(0, int(plot.bottom()) + 2, 640, 400 - int(plot.bottom()) - 2), Red) == 0);

        // Round tick values, increasing along each axis.
        for (const char* name : { "xTickLabel", "yTickLabel" }) {
            const QList<QQuickItem*> labels = byName(m_view, name);
            QVERIFY2(labels.size() >= 3, name);
            double previous = -1e300;
            for (QQuickItem* label : labels) {
                bool number = false;
                const double value = label->property("text").toString().toDouble(&number);
                QVERIFY2(number, qPrintable(label->property("text").toString()));
                QVERIFY(value > previous);
                previous = value;
            }
            QCOMPARE(labels.first()->property("text").toString(), QString::fromLatin1(name[0] == 'x' ? "0" : "-1.0"));
        }
        const QStringList shown = texts(m_view);
        for (const char* text : { "Rx1", "Rx2", "Range spectrum", "Range (m)", "Magnitude (dB)" })
            QVERIFY2(shown.contains(text), text);
    }

    void hoverReadsOutThePointUnderTheMouse()
    {
        FakeSeriesData data;
        data.series = { points({ { 0, 0 }, { 1, 10 }, { 2, 20 }, { 3, 30 }, { 4, 40 } }) };
        QVERIFY(show(data));
        QQuickItem* readout = byName(m_view, "hoverReadout").value(0);
        QQuickItem* text = byName(m_view, "hoverReadoutText").value(0);
        QVERIFY(readout && text);
        QCOMPARE(readout->property("visible").toBool(), false);

        // Just right of x = 2 on the line.
        const QPointF at = m_chart->mapToScene(QPointF(m_chart->width() * 0.52, m_chart->height() / 2));
        QTest::mouseMove(m_window.get(), at.toPoint());
        QTRY_COMPARE(readout->property("visible").toBool(), true);
        QVERIFY(rendered().save(picturePath(QStringLiteral("tst_ChartView-hover"))));
        QVERIFY2(QRegularExpression("^x: 2\\.00 y: 20\\.0+$").match(text->property("text").toString()).hasMatch(),
                 qPrintable(text->property("text").toString()));

        // New data under a resting mouse updates the readout.
        data.series = { points({ { 0, 0 }, { 2, -7 }, { 4, 0 } }) };
        m_chart->refresh();
        QVERIFY2(QRegularExpression("^x: 2\\.00 y: -7\\.0+$").match(text->property("text").toString()).hasMatch(),
                 qPrintable(text->property("text").toString()));
    }

    void emptyDataDrawsNothingAndGridLinesAddedLaterStayInThePlot()
    {
        FakeSeriesData data;
        data.series = { QPolygonF(), QPolygonF() };
        QVERIFY(show(data));
        QImage image = rendered();
        QCOMPARE(image.size(), QSize(640, 400));
        QCOMPARE(m_chart->seriesCount(), 2);
        QCOMPARE(m_chart->drawnSeriesCount(), 0);
        const QRect plot = m_chart->mapRectToScene(QRectF(0, 0, m_chart->width(), m_chart->height())).toRect();
        QCOMPARE(countColor(image, plot, Red), 0);
        QCOMPARE(countColor(image, plot, Blue), 0);
        // Axes are still labelled.
        QVERIFY(byName(m_view, "xTickLabel").size() >= 2);

        data.series = { points({ { 0, 0 }, { 10, 1 } }) };
        m_chart->refresh();
        QVERIFY(!rendered().isNull());
        const int before = m_chart->yTicks().size();
        // A wider range: more ticks, so grid lines are added to a scene graph
        // that was already rendered.
        data.series = { points({ { 0, 0 }, { 10, 7 } }) };
        m_chart->refresh();
        QVERIFY(m_chart->yTicks().size() > before);
        image = rendered();
        QCOMPARE(image.size(), QSize(640, 400));
        // Left of the y axis title nothing is drawn at all.
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < 2; ++x)
                QVERIFY2(image.pixel(x, y) == qRgb(255, 255, 255), qPrintable(QStringLiteral("%1,%2").arg(x).arg(y)));
        QVERIFY(countColor(image, m_chart->mapRectToScene(QRectF(0, 0, m_chart->width(), m_chart->height())).toRect(),
                           m_chart->gridColor())
                > 0);
    }

    void markersAreLinesAcrossThePlot()
    {
        FakeSeriesData data;
        data.series = { points({ { 0, 0.4 }, { 64, 0.4 } }), points({ { 16, 0 }, { 48, 0 } }) };
        QVERIFY(show(data));
        m_chart->setMarkerSeries(1);
        const QImage image = rendered();
        QCOMPARE(image.size(), QSize(640, 400));
        // Top to bottom, whatever the marker series' own y values.
        for (double x : { 16.0, 48.0 }) {
            for (double y : { 0.9, 0.1 }) {
                const double value = m_chart->yMin() + y * (m_chart->yMax() - m_chart->yMin());
                QVERIFY2(colorAround(image, scenePoint(x, value), Blue, 1), qPrintable(QString::number(x)));
            }
        }
        QCOMPARE(m_chart->drawnSeriesCount(), 1);
    }

private:
    bool show(FakeSeriesData& data);
    QImage rendered();

    QPointF scenePoint(double x, double y) const
    {
        const SeriesChart& c = *m_chart;
        return c.mapToScene(QPointF((x - c.xMin()) / (c.xMax() - c.xMin()) * c.width(),
                                    (c.yMax() - y) / (c.yMax() - c.yMin()) * c.height()));
    }

    static QString picturePath(const QString& name)
    {
        return QDir::current().filePath(name + QLatin1Char('-') + QGuiApplication::platformName() + ".png");
    }

    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    QQuickItem* m_view = nullptr;
    SeriesChart* m_chart = nullptr;
};

bool TestChartView::show(FakeSeriesData& data)
{
    m_engine = std::make_unique<QQmlEngine>();
    m_engine->rootContext()->setContextProperty("testData", QVariant::fromValue<ISeriesChartData*>(&data));
    QQmlComponent component(m_engine.get());
    component.setData(R"qml(
        import QtQuick 2.15
        import Workbench 1.0
        ChartView {
            objectName: "view"
            chartData: testData
            title: "Range spectrum"
            xTitle: "Range (m)"
            yTitle: "Magnitude (dB)"
            legend: ["Rx1", "Rx2"]
        })qml",
                      QUrl());
    m_view = qobject_cast<QQuickItem*>(component.create());
    if (!m_view) {
        qWarning() << component.errorString();
        return false;
    }
    m_window = std::make_unique<QQuickWindow>();
    m_window->resize(640, 400);
    m_window->setColor(Qt::white);
    m_view->setParentItem(m_window->contentItem());
    m_view->setParent(m_window.get());
    m_view->setSize(QSizeF(640, 400));
    m_chart = m_view->findChild<SeriesChart*>("seriesChart");
    m_window->show();
    return m_chart && QTest::qWaitForWindowExposed(m_window.get());
}

// The window's next frame. QQuickWindow::grabWindow() answers an empty image
// with the software renderer on the offscreen platform; there the offscreen
// screen hands out what was flushed to it.
QImage TestChartView::rendered()
{
    if (m_window->rendererInterface()->graphicsApi() != QSGRendererInterface::Software)
        return m_window->grabWindow();
    QSignalSpy swapped(m_window.get(), &QQuickWindow::frameSwapped);
    m_window->update();
    if (!swapped.wait(5000))
        return QImage();
    return m_window->screen()->grabWindow(m_window->winId()).toImage();
}

QTEST_MAIN(TestChartView)
#include "tst_ChartView.moc"

