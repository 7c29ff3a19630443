#include "common/RadarFrequencyDomainChartData.h"
#include "common/RadarPresenceSensingChartData.h"
#include "common/RadarTimeDomainChartData.h"

#include <QtTest>

#include <vector>

Q_DECLARE_METATYPE(QVector<QPointF>)

namespace {

constexpr uint32_t kChirps = 8;
constexpr uint32_t kSamples = 64;

// Sample (antenna a, chirp row r, sample s) holds a·10000 + r·100 + s, so
// every point tells where it came from.
float sampleValue(uint32_t antenna, uint32_t row, uint32_t sample)
{
    return float(antenna * 10000 + row * 100 + sample);
}

// A frame built by hand, owned by the returned pointer.
SharedFrame handMadeFrame(uint32_t antennas)
{
    struct Storage {
        std::vector<std::vector<float>> samples;
        std::vector<vrn_Matrix_R_s> matrices;
        std::vector<vrn_Matrix_R_s*> pointers;
        vrn_Frame_R_t frame {};
    };
    auto storage = std::make_shared<Storage>();
    storage->samples.resize(antennas, std::vector<float>(kChirps * kSamples));
    storage->matrices.resize(antennas);
    for (uint32_t a = 0; a < antennas; ++a) {
        for (uint32_t r = 0; r < kChirps; ++r)
            for (uint32_t s = 0; s < kSamples; ++s)
                storage->samples[a][r * kSamples + s] = sampleValue(a, r, s);
        storage->matrices[a] = { kChirps, kSamples, kSamples, storage->samples[a].data() };
        storage->pointers.push_back(&storage->matrices[a]);
    }
    storage->frame = { antennas, storage->pointers.data() };
    return SharedFrame(storage, &storage->frame);
}

QVector<QPointF> drain(ISeriesChartData::Iterator& iterator)
{
    QVector<QPointF> points;
    while (iterator.hasNext())
        points.append(iterator.next());
    return points;
}

QVector<QPointF> chirpSamples(uint32_t antenna, const QVector<qint32>& chirps)
{
    QVector<QPointF> points;
    for (qint32 chirp : chirps)
        for (uint32_t s = 0; s < kSamples; ++s)
            points.append(QPointF(points.size(), sampleValue(antenna, uint32_t(chirp - 1), s)));
    return points;
}

QVector<QPointF> markers(const QVector<double>& xs)
{
    QVector<QPointF> points;
    for (double x : xs)
        points.append(QPointF(x, 0.0));
    return points;
}

}

class TestRadarChartData : public QObject
{
    Q_OBJECT
private slots:
    void timeDomainSeries_data()
    {
        QTest::addColumn<bool>("withMarkers");
        QTest::addColumn<QVector<qint32>>("chirps");
        QTest::addColumn<quint32>("series");
        QTest::addColumn<bool>("hasIterator");
        QTest::addColumn<QVector<QPointF>>("expected");

        const QVector<qint32> twoAndFour { 2, 4 };
        QTest::newRow("chirps 2,4 antenna 0") << true << twoAndFour << 0u << true << chirpSamples(0, twoAndFour);
        QTest::newRow("chirps 2,4 antenna 2") << true << twoAndFour << 2u << true << chirpSamples(2, twoAndFour);
        QTest::newRow("chirps 2,4 marker at 64") << true << twoAndFour << 3u << true << markers({ 64 });
        QTest::newRow("list order is kept") << true << QVector<qint32> { 5, 1, 8 } << 1u << true
                                            << chirpSamples(1, { 5, 1, 8 });
        QTest::newRow("three chirps two markers") << true << QVector<qint32> { 5, 1, 8 } << 3u << true
                                                  << markers({ 64, 128 });
        QTest::newRow("one chirp no marker") << true << QVector<qint32> { 3 } << 3u << true << QVector<QPointF>();
        QTest::newRow("standard mode without list") << true << QVector<qint32>() << 0u << false << QVector<QPointF>();
        QTest::newRow("other modes show chirp 1") << false << QVector<qint32>() << 1u << true << chirpSamples(1, { 1 });
        QTest::newRow("series beyond the frame") << true << twoAndFour << 4u << false << QVector<QPointF>();
        QTest::newRow("chirp the frame lacks") << true << QVector<qint32> { 9 } << 0u << false << QVector<QPointF>();
        QTest::newRow("chirp 0 is not a chirp") << false << QVector<qint32> { 0 } << 0u << false << QVector<QPointF>();
    }

    void timeDomainSeries()
    {
        QFETCH(bool, withMarkers);
        QFETCH(QVector<qint32>, chirps);
        QFETCH(quint32, series);
        QFETCH(bool, hasIterator);
        QFETCH(QVector<QPointF>, expected);

        RadarTimeDomainChartData data(withMarkers);
        data.setSeriesCount(3);
        if (!chirps.isEmpty())
            data.setChirpList(std::make_shared<const QVector<qint32>>(chirps));
        data.update(handMadeFrame(3));

        QCOMPARE(data.seriesCount(), withMarkers ? 4u : 3u);
        auto iterator = data.iterator(series);
        QCOMPARE(bool(iterator), hasIterator);
        if (iterator)
            QCOMPARE(drain(*iterator), expected);
    }

    void timeDomainClearForgetsEverything()
    {
        RadarTimeDomainChartData data(false);
        data.setSeriesCount(2);
        data.update(handMadeFrame(2));
        QVERIFY(data.iterator(0));

        data.update(SharedFrame());
        QVERIFY(!data.iterator(0));

        data.update(handMadeFrame(2));
        data.setChirpList(std::make_shared<const QVector<qint32>>(QVector<qint32> { 2 }));
        data.clear();
        QCOMPARE(data.seriesCount(), 0u);
        QVERIFY(!data.iterator(0));
    }

    void frequencyDomainSeries_data()
    {
        QTest::addColumn<double>("min");
        QTest::addColumn<double>("step");
        QTest::addColumn<quint32>("series");
        QTest::addColumn<QVector<QPointF>>("expected");

        QTest::newRow("first spectrum") << 0.0 << 0.5 << 0u
                                        << QVector<QPointF> { { 0.0, 1.0 }, { 0.5, 2.0 }, { 1.0, 3.0 } };
        QTest::newRow("second spectrum, offset axis") << 2.0 << 0.25 << 1u
                                                      << QVector<QPointF> { { 2.0, -4.0 }, { 2.25, -5.0 } };
    }

    void frequencyDomainSeries()
    {
        QFETCH(double, min);
        QFETCH(double, step);
        QFETCH(quint32, series);
        QFETCH(QVector<QPointF>, expected);

        static float first[] = { 1.0f, 2.0f, 3.0f };
        static float second[] = { -4.0f, -5.0f };
        auto wrap = [](float* values, uint32_t len) {
            auto vector = std::make_shared<vrn_Vector_R_s>(vrn_Vector_R_s { len, values });
            return SharedVector(vector);
        };
        RadarFrequencyDomainChartData data;
        data.setAxis(min, step);
        data.update({ wrap(first, 3), wrap(second, 2) });

        QCOMPARE(data.seriesCount(), 2u);
        auto iterator = data.iterator(series);
        QVERIFY(iterator);
        QCOMPARE(drain(*iterator), expected);
        QVERIFY(!data.iterator(2));
    }

    void frequencyDomainNewConfigurationDropsOldSpectra()
    {
        static float values[] = { 1.0f };
        RadarFrequencyDomainChartData data;
        data.setSeriesCount(1);
        data.update({ SharedVector(std::make_shared<vrn_Vector_R_s>(vrn_Vector_R_s { 1, values })) });
        data.setSeriesCount(1);
        QCOMPARE(data.seriesCount(), 1u);
        data.setSeriesCount(3);
        QCOMPARE(data.seriesCount(), 0u);
        QVERIFY(!data.iterator(0));
    }

    void presenceHistory_data()
    {
        QTest::addColumn<int>("capacity");
        QTest::addColumn<QVector<QPointF>>("appended");
        QTest::addColumn<QVector<QPointF>>("expected");

        QTest::newRow("first point starts at 0")
            << 10 << QVector<QPointF> { { 3.2, 1.0 } } << QVector<QPointF> { { 0.0, 1.0 }, { 3.2, 1.0 } };
        QTest::newRow("later points follow")
            << 10 << QVector<QPointF> { { 1.0, 0.0 }, { 1.5, 1.0 } }
            << QVector<QPointF> { { 0.0, 0.0 }, { 1.0, 0.0 }, { 1.5, 1.0 } };
        QTest::newRow("exactly full")
            << 3 << QVector<QPointF> { { 1.0, 0.0 }, { 2.0, 1.0 } }
            << QVector<QPointF> { { 0.0, 0.0 }, { 1.0, 0.0 }, { 2.0, 1.0 } };
        QTest::newRow("wrapped stays in time order")
            << 4 << QVector<QPointF> { { 1, 1 }, { 2, 0 }, { 3, 1 }, { 4, 0 }, { 5, 1 } }
            << QVector<QPointF> { { 2, 0 }, { 3, 1 }, { 4, 0 }, { 5, 1 } };
        QTest::newRow("nothing appended") << 4 << QVector<QPointF>() << QVector<QPointF>();
        QTest::newRow("no capacity keeps nothing") << 0 << QVector<QPointF> { { 1, 1 } } << QVector<QPointF>();
    }

    void presenceHistory()
    {
        QFETCH(int, capacity);
        QFETCH(QVector<QPointF>, appended);
        QFETCH(QVector<QPointF>, expected);

        RadarPresenceSensingChartData data;
        data.setCapacity(capacity);
        for (const QPointF& point : appended)
            data.append(point.x(), point.y());

        QVERIFY(data.isStateHistory());
        QCOMPARE(data.seriesCount(), 1u);
        auto iterator = data.iterator(0);
        QCOMPARE(bool(iterator), !expected.isEmpty());
        if (iterator)
            QCOMPARE(drain(*iterator), expected);
        if (!expected.isEmpty())
            QCOMPARE(data.lastPoint(), expected.last());
    }

    void presenceCapacityDiscardsPoints()
    {
        RadarPresenceSensingChartData data;
        data.setCapacity(5);
        data.append(1.0, 1.0);
        auto before = data.iterator(0);
        data.setCapacity(61);
        QCOMPARE(data.capacity(), 61);
        QVERIFY(!data.iterator(0));
        // An iterator taken earlier reads its own snapshot.
        QVERIFY(before);
        QCOMPARE(drain(*before).size(), 2);

        data.append(2.0, 0.0);
        data.clear();
        QVERIFY(!data.iterator(0));
    }
};

QTEST_GUILESS_MAIN(TestRadarChartData)
#include "tst_RadarChartData.moc"
