// The painted chart items rendered into an image without a window: what the
// polar chart draws where, when it announces its radius, and how the
// range-Doppler image fills its rectangle.

#include "fmcw/processing/IRangeDopplerChartData.h"
#include "fmcw/standard/items/PixmapImage.h"
#include "fmcw/standard/items/PolarChart.h"
#include "fmcw/standard/items/RangeDopplerColorBar.h"
#include "fmcw/processing/RangeDopplerColorMap.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>

namespace {

const QColor White(255, 255, 255);
const QColor FanFill(225, 225, 225);

QImage render(QQuickPaintedItem& item, int width, int height)
{
    item.setSize(QSizeF(width, height));
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    item.paint(&painter);
    painter.end();
    return image;
}

// Screen angle in degrees clockwise from straight up, radius in pixels.
QPoint polarPoint(const PolarChart& chart, double degrees, double radius)
{
    const double radians = degrees * M_PI / 180.0;
    return QPoint(qRound(chart.centre().x() + std::sin(radians) * radius),
                  qRound(chart.centre().y() - std::cos(radians) * radius));
}

bool anyPixelDrawn(const QImage& image, const QRect& area)
{
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (qAlpha(image.pixel(x, y)) != 0)
                return true;
    return false;
}

RadarTrackedObjects oneTarget(quint32 id, float distance, float angle)
{
    return std::make_shared<const QVector<RadarTrackedObject>>(
        QVector<RadarTrackedObject> { RadarTrackedObject { id, distance, angle, 0.0f } });
}

// Hands out a fixed image, or none when it has no map.
class FixedImageData : public IRangeDopplerChartData
{
public:
    explicit FixedImageData(QImage image) : m_image(std::move(image)) {}
    void setDimensions(quint32, quint32, quint32) override {}
    void setMap(SharedMatrix) override {}
    bool render(QPixmap& pixmap) override
    {
        if (m_image.isNull())
            return false;
        pixmap = QPixmap::fromImage(m_image);
        return true;
    }

private:
    QImage m_image;
};

} // namespace

class TestPaintedChartItems : public QObject
{
    Q_OBJECT

private slots:
    void fanIsWhiteOnlyWhereSegmented_data()
    {
        // The default fan spans -90° to 90° with spokes every 15° and rings at
        // fifths of the radius; samples lie between spokes and between rings.
        QTest::addColumn<QVector<float>>("widths");
        QTest::addColumn<double>("angle");
        QTest::addColumn<QColor>("expected");
        QTest::newRow("no segments, ahead") << QVector<float> {} << 7.5 << White;
        QTest::newRow("no segments, far left") << QVector<float> {} << -82.5 << White;
        QTest::newRow("segmented sector") << QVector<float> { 20.0f, 20.0f } << 7.5 << White;
        QTest::newRow("right of the segments") << QVector<float> { 20.0f, 20.0f } << 52.5 << FanFill;
        QTest::newRow("left of the segments") << QVector<float> { 20.0f, 20.0f } << -37.5 << FanFill;
        QTest::newRow("wide segments reach left") << QVector<float> { 50.0f, 50.0f } << -37.5 << White;
    }

    void fanIsWhiteOnlyWhereSegmented()
    {
        QFETCH(QVector<float>, widths);
        QFETCH(double, angle);
        QFETCH(QColor, expected);
        PolarChart chart;
        chart.setSegments(widths);
        const QImage image = render(chart, 800, 300);
        QVERIFY(chart.pixelRadius() > 100);
        QCOMPARE(image.pixelColor(polarPoint(chart, angle, 0.5 * chart.pixelRadius())), expected);
        // The fan is centred and leaves the top-left corner to the legend,
        // which lists the segments only.
        QVERIFY(polarPoint(chart, -90.0, chart.pixelRadius()).x() > 120);
        const int lineHeight = QFontMetrics(chart.legendFont()).height();
        QCOMPARE(anyPixelDrawn(image, QRect(0, 0, 120, 10 + lineHeight)), !widths.isEmpty());
        // The chord closes the fan along the centre's row: nothing below it.
        QCOMPARE(qAlpha(image.pixel(chart.centre().toPoint() + QPoint(-chart.pixelRadius() / 2, 8))), 0);
    }

    void highlightsFollowTheList_data()
    {
        QTest::addColumn<QVector<int>>("highlights");
        QTest::addColumn<bool>("leftHighlighted");
        QTest::addColumn<bool>("rightHighlighted");
        QTest::addColumn<bool>("beyondTheList");
        QTest::newRow("right") << QVector<int> { 0, 1 } << false << true << false;
        QTest::newRow("left, any non-zero") << QVector<int> { 7, 0 } << true << false << false;
        QTest::newRow("shorter list") << QVector<int> { 1 } << true << false << false;
        QTest::newRow("index beyond the list") << QVector<int> { 1, 1, 1 } << true << true << true;
    }

    void highlightsFollowTheList()
    {
        QFETCH(QVector<int>, highlights);
        QFETCH(bool, leftHighlighted);
        QFETCH(bool, rightHighlighted);
        QFETCH(bool, beyondTheList);
        PolarChart chart;
        chart.setSegments({ 20.0f, 20.0f });
        if (beyondTheList)
            QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("Segment highlight index 2 is beyond"));
        chart.setSegmentHighlights(highlights);
        QCOMPARE(chart.segments().at(0).highlighted, leftHighlighted);
        QCOMPARE(chart.segments().at(1).highlighted, rightHighlighted);
        const QImage image = render(chart, 600, 300);
        // S1 lies left of straight ahead, S2 right of it.
        QCOMPARE(image.pixelColor(polarPoint(chart, -10.0, 0.5 * chart.pixelRadius())) != White, leftHighlighted);
        QCOMPARE(image.pixelColor(polarPoint(chart, 10.0, 0.5 * chart.pixelRadius())) != White, rightHighlighted);
    }

    void targetColourFromLowBits_data()
    {
        QTest::addColumn<quint32>("id");
        QTest::addColumn<bool>("visible");
        QTest::addColumn<QColor>("expected");
        QTest::newRow("0 black") << 0u << true << QColor(0, 0, 0);
        QTest::newRow("1 red") << 1u << true << QColor(150, 0, 0);
        QTest::newRow("2 green") << 2u << true << QColor(0, 150, 0);
        QTest::newRow("4 blue") << 4u << true << QColor(0, 0, 150);
        QTest::newRow("7 grey") << 7u << true << QColor(150, 150, 150);
        QTest::newRow("9 red like 1") << 9u << true << QColor(150, 0, 0);
        QTest::newRow("hidden") << 1u << false << White;
    }

    void targetColourFromLowBits()
    {
        QFETCH(quint32, id);
        QFETCH(bool, visible);
        QFETCH(QColor, expected);
        PolarChart chart;
        chart.setTargetsVisible(visible);
        QFont small = chart.targetFont();
        small.setPixelSize(6);
        chart.setTargetFont(small);
        chart.setTargets(oneTarget(id, 2.5f, 30.0f));
        const QImage image = render(chart, 600, 300);
        // Half of the default 5 m, 30° right; sampled inside the marker but
        // clear of its number.
        const QPoint marker = polarPoint(chart, 30.0, 0.5 * chart.pixelRadius());
        QCOMPARE(image.pixelColor(marker + QPoint(0, 7)), expected);
        QCOMPARE(image.pixelColor(marker + QPoint(-7, 0)), expected);
    }

    void radiusAnnouncedOnlyOnChange_data()
    {
        QTest::addColumn<QSize>("first");
        QTest::addColumn<QSize>("second");
        QTest::addColumn<int>("announcements");
        QTest::newRow("same size repainted") << QSize(600, 200) << QSize(600, 200) << 0;
        QTest::newRow("taller while the height limits") << QSize(600, 200) << QSize(600, 300) << 1;
        QTest::newRow("wider while the height limits") << QSize(600, 200) << QSize(700, 200) << 0;
        QTest::newRow("narrower while the width limits") << QSize(300, 600) << QSize(250, 600) << 1;
    }

    void radiusAnnouncedOnlyOnChange()
    {
        QFETCH(QSize, first);
        QFETCH(QSize, second);
        QFETCH(int, announcements);
        PolarChart chart;
        render(chart, first.width(), first.height());
        const int firstRadius = chart.pixelRadius();
        QSignalSpy spy(&chart, &PolarChart::pixelRadiusChanged);
        render(chart, second.width(), second.height());
        QCOMPARE(spy.count(), announcements);
        QCOMPARE(chart.pixelRadius() != firstRadius, announcements == 1);
        render(chart, second.width(), second.height());
        QCOMPARE(spy.count(), announcements);
    }

    void oneLabelPerDistanceTick_data()
    {
        QTest::addColumn<int>("ticks");
        QTest::addColumn<QVector<bool>>("labelAtQuarter");
        QTest::newRow("one tick, outer ring only") << 1 << QVector<bool> { false, false, false, true };
        QTest::newRow("two ticks") << 2 << QVector<bool> { false, true, false, true };
        QTest::newRow("four ticks") << 4 << QVector<bool> { true, true, true, true };
    }

    void oneLabelPerDistanceTick()
    {
        QFETCH(int, ticks);
        QFETCH(QVector<bool>, labelAtQuarter);
        PolarChart chart;
        chart.setDistanceTicks(ticks);
        // The rightmost spoke at 90° lays the distance axis along the centre's
        // row, its labels just below it.
        QCOMPARE(chart.angleRightTickCount() * chart.angleTick(), 90.0);
        const QImage image = render(chart, 600, 400);
        const int tickHeight = QFontMetrics(chart.axisTickFont()).height();
        const QPoint centre = chart.centre().toPoint();
        for (int quarter = 1; quarter <= 4; ++quarter) {
            const int x = centre.x() + quarter * chart.pixelRadius() / 4;
            // The left half of a label centred on its tick, clear of the tick
            // line and of the "90°" label beyond the outer ring.
            const QRect area(x - 6, centre.y() + 8, 5, tickHeight - 3);
            QVERIFY2(anyPixelDrawn(image, area) == labelAtQuarter.at(quarter - 1),
                     qPrintable(QStringLiteral("quarter %1").arg(quarter)));
        }
    }

    void pixmapFillsTheItem_data()
    {
        QTest::addColumn<bool>("withData");
        QTest::addColumn<bool>("withMap");
        QTest::addColumn<QSize>("size");
        QTest::newRow("no data") << false << false << QSize(100, 60);
        QTest::newRow("data without a map") << true << false << QSize(100, 60);
        QTest::newRow("stretched wide") << true << true << QSize(100, 60);
        QTest::newRow("stretched tall") << true << true << QSize(40, 120);
    }

    void pixmapFillsTheItem()
    {
        QFETCH(bool, withData);
        QFETCH(bool, withMap);
        QFETCH(QSize, size);
        const QColor colours[4] = { Qt::red, Qt::green, Qt::blue, Qt::yellow };
        QImage map;
        if (withMap) {
            map = QImage(2, 2, QImage::Format_ARGB32);
            for (int i = 0; i < 4; ++i)
                map.setPixelColor(i % 2, i / 2, colours[i]);
        }
        FixedImageData data(map);
        PixmapImage item;
        QSignalSpy changes(&item, &PixmapImage::dataChanged);
        if (withData) {
            QVERIFY(item.setProperty("data", QVariant::fromValue<IRangeDopplerChartData*>(&data)));
            item.setData(&data); // the same item again is no change
        }
        QCOMPARE(changes.count(), withData ? 1 : 0);
        const QImage image = render(item, size.width(), size.height());
        if (!withMap) {
            QVERIFY(!anyPixelDrawn(image, image.rect()));
            return;
        }
        // Each source pixel covers a quarter of the item, up to its edges, with
        // its own colour only: both corners of each quarter.
        const int w = size.width() / 2;
        const int h = size.height() / 2;
        for (int i = 0; i < 4; ++i) {
            const QPoint quarter((i % 2) * w, (i / 2) * h);
            QCOMPARE(image.pixelColor(quarter), colours[i]);
            QCOMPARE(image.pixelColor(quarter + QPoint(w - 1, h - 1)), colours[i]);
        }
    }

    void colourBarShowsTheImageColoursFromZeroDbDown_data()
    {
        QTest::addColumn<int>("height");
        QTest::addColumn<float>("valueDb");
        QTest::addColumn<double>("fromTop");
        QTest::newRow("0 dB at the top") << 256 << 0.0f << 0.0;
        QTest::newRow("-90 dB at the bottom") << 256 << -90.0f << 255.0 / 256.0;
        QTest::newRow("-30 dB on a taller bar") << 512 << -30.0f << 85.0 / 256.0;
    }

    void colourBarShowsTheImageColoursFromZeroDbDown()
    {
        QFETCH(int, height);
        QFETCH(float, valueDb);
        QFETCH(double, fromTop);
        RangeDopplerColorBar bar;
        const QImage image = render(bar, 12, height);
        const RangeDopplerColorMap colours;
        const quint8* rgb = colours.colorOf(valueDb);
        const int row = int(fromTop * height);
        QCOMPARE(image.pixelColor(6, row), QColor(rgb[0], rgb[1], rgb[2]));
        QCOMPARE(image.pixelColor(0, row + height / 256 - 1), QColor(rgb[0], rgb[1], rgb[2]));
    }
};

QTEST_MAIN(TestPaintedChartItems)
#include "tst_PaintedChartItems.moc"
