#include "fmcw/processing/RadarRangeDopplerChartData.h"

#include <QImage>
#include <QPixmap>
#include <QtTest>

#include <vector>

namespace {

// A map owned by the returned pointer, filled row by row from `values`.
SharedMatrix handMadeMap(uint32_t rows, uint32_t cols, const std::vector<float>& values)
{
    struct Storage {
        std::vector<float> values;
        vrn_Matrix_R_s matrix {};
    };
    auto storage = std::make_shared<Storage>();
    storage->values = values;
    storage->matrix = { rows, cols, cols, storage->values.data() };
    return SharedMatrix(storage, &storage->matrix);
}

QRgb tableColor(const RangeDopplerColorMap& map, int index)
{
    const quint8* rgb = map.color(index);
    return qRgb(rgb[0], rgb[1], rgb[2]);
}

}

class TestRadarRangeDopplerChartData : public QObject
{
    Q_OBJECT
private slots:
    void colorIndex_data()
    {
        QTest::addColumn<quint32>("threshold");
        QTest::addColumn<float>("value");
        QTest::addColumn<int>("index");

        QTest::newRow("0 dB is the top entry") << 90u << 0.0f << 255;
        QTest::newRow("-45 dB") << 90u << -45.0f << 128;
        QTest::newRow("-1 dB") << 90u << -1.0f << 253; // 255 - floor(2.83)
        QTest::newRow("-89 dB") << 90u << -89.0f << 3; // 255 - floor(252.17)
        QTest::newRow("-91 dB is below the scale") << 90u << -91.0f << 0;
        QTest::newRow("-30 dB on a 60 dB scale") << 60u << -30.0f << 128;
        QTest::newRow("not a number") << 90u << std::numeric_limits<float>::quiet_NaN() << 0;
    }

    void colorIndex()
    {
        QFETCH(quint32, threshold);
        QFETCH(float, value);
        QFETCH(int, index);
        RangeDopplerColorMap map;
        map.setThreshold(threshold);
        QCOMPARE(map.index(value), index);
    }

    void imageHasRangeZeroAtTheBottom()
    {
        // Two range bins (rows) × three speeds (columns): range bin 0 strong in
        // the middle column, range bin 1 at -45 dB on the left. The colours
        // follow the 90 dB scale the dimensions set, not the map's default.
        RadarRangeDopplerChartData data;
        data.setDimensions(3, 2, 90);
        data.setMap(handMadeMap(2, 3, { -100.0f, 0.0f, -100.0f, -45.0f, -100.0f, -100.0f }));

        QPixmap pixmap;
        QVERIFY(data.render(pixmap));
        const QImage image = pixmap.toImage();
        QCOMPARE(image.size(), QSize(3, 2));
        const RangeDopplerColorMap& map = data.colorMap();
        // The strongest return must not look like the noise floor.
        QVERIFY(tableColor(map, 255) != tableColor(map, 0) && tableColor(map, 128) != tableColor(map, 0));
        // Image row 1 (bottom) is range bin 0, row 0 (top) range bin 1.
        QCOMPARE(QVector<QRgb>({ image.pixel(0, 1), image.pixel(1, 1), image.pixel(2, 1), image.pixel(0, 0), image.pixel(1, 0) }),
                 QVector<QRgb>({ tableColor(map, 0), tableColor(map, 255), tableColor(map, 0), tableColor(map, 128),
                                 tableColor(map, 0) }));
    }

    void mapOfOtherSizeIsNotDrawn_data()
    {
        QTest::addColumn<quint32>("rows");
        QTest::addColumn<quint32>("cols");
        QTest::newRow("more rows") << 3u << 3u;
        QTest::newRow("fewer columns") << 2u << 2u;
        QTest::newRow("transposed") << 3u << 2u;
    }

    void mapOfOtherSizeIsNotDrawn()
    {
        QFETCH(quint32, rows);
        QFETCH(quint32, cols);
        RadarRangeDopplerChartData data;
        data.setDimensions(3, 2, 90);

        QPixmap pixmap;
        QVERIFY(!data.render(pixmap)); // no map yet
        data.setMap(handMadeMap(2, 3, std::vector<float>(6, 0.0f)));
        QVERIFY(data.render(pixmap));
        const qint64 shown = pixmap.cacheKey();

        data.setMap(handMadeMap(rows, cols, std::vector<float>(rows * cols, -10.0f)));
        QVERIFY(!data.render(pixmap));
        QCOMPARE(pixmap.cacheKey(), shown);
    }
};

QTEST_MAIN(TestRadarRangeDopplerChartData)
#include "tst_RadarRangeDopplerChartData.moc"
