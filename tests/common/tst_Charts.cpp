#include "common/RadarFrequencyDomainChartData.h"
#include "common/RadarPresenceSensingChartData.h"
#include "common/RadarTimeDomainChartData.h"
#include "common/ProcessingNameTables.h"
#include "common/RangeSpectrumUserSettings.h"
#include "common/TimeDomainUserSettings.h"
#include "core/JSONConfigurationFile.h"
#include "core/JSONConfigurationObject.h"

#include <QJsonDocument>
#include <QSignalSpy>
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

// What the charts show, and the settings of the range spectrum and time
// domain charts.
class TestCharts : public QObject
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

    void deviceParameterUpdate_data()
    {
        QTest::addColumn<quint32>("fftSize");
        QTest::addColumn<quint32>("samplesPerChirp");
        QTest::addColumn<quint32>("expectedFftSize");

        QTest::newRow("128 keeps 256") << 256u << 128u << 256u;
        QTest::newRow("300 from 256 gives 512") << 256u << 300u << 512u;
        QTest::newRow("300 from 2048 gives 512") << 2048u << 300u << 512u;
        QTest::newRow("512 with 256 gives 512") << 256u << 512u << 512u;
        QTest::newRow("512 keeps 2048") << 2048u << 512u << 2048u;
    }

    void deviceParameterUpdate()
    {
        QFETCH(quint32, fftSize);
        QFETCH(quint32, samplesPerChirp);
        QFETCH(quint32, expectedFftSize);

        RangeSpectrumUserSettings settings;
        settings.setFftSize(fftSize);
        QSignalSpy sizeSpy(&settings, &RangeSpectrumUserSettings::fftSizeChanged);
        settings.updateDeviceParameters(samplesPerChirp, 32);

        QCOMPARE(settings.fftSize(), expectedFftSize);
        QCOMPARE(sizeSpy.count(), fftSize == expectedFftSize ? 0 : 1);
        QCOMPARE(settings.fftConfig()->window()->size(), samplesPerChirp);
        QCOMPARE(settings.chirpsPerFrame(), 32u);
    }

    void linearMagnitudeSwitchesScaleAtNextUpdate()
    {
        RangeSpectrumUserSettings settings;
        settings.setIsLinearFftMagnitude(true);
        QCOMPARE(settings.outputScale(), QString("SCALE_TYPE_DECIBEL_20LOG"));
        settings.updateDeviceParameters(128, 16);
        QCOMPARE(settings.outputScale(), QString("SCALE_TYPE_LINEAR"));

        vrn_RS_Config_t config {};
        settings.copyTo(config);
        QCOMPARE(config.output_scale_type, VRN_SCALE_TYPE_LINEAR);
    }

    void checkOptimalSettings_data()
    {
        QTest::addColumn<quint32>("fftSize");
        QTest::addColumn<bool>("optimal");
        QTest::newRow("64 is too short") << 64u << false;
        QTest::newRow("128 covers the chirp") << 128u << true;
        QTest::newRow("512 is four times") << 512u << true;
        QTest::newRow("1024 pads too much") << 1024u << false;
    }

    void checkOptimalSettings()
    {
        QFETCH(quint32, fftSize);
        QFETCH(bool, optimal);
        RangeSpectrumUserSettings settings;
        settings.updateDeviceParameters(128, 16);
        QCOMPARE(settings.checkOptimalSettings(fftSize), optimal);
    }

    void nameTableHits_data()
    {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("value");
        QTest::newRow("R2C") << "fft" << "FFT_TYPE_R2C" << 1;
        QTest::newRow("Hamming") << "window" << "Hamming" << 0;
        QTest::newRow("Blackmann Harris") << "window" << "Blackmann Harris" << 2;
        QTest::newRow("Blackman") << "window" << "Blackman" << 4;
        QTest::newRow("linear") << "scale" << "SCALE_TYPE_LINEAR" << 0;
        QTest::newRow("10log") << "scale" << "SCALE_TYPE_DECIBEL_10LOG" << 10;
    }

    void nameTableHits()
    {
        QFETCH(QString, table);
        QFETCH(QString, name);
        QFETCH(int, value);
        const QStringList names = table == "fft"      ? ProcessingNameTables::fftTypeNames()
                                  : table == "window" ? ProcessingNameTables::windowTypeNames()
                                                      : ProcessingNameTables::scaleTypeNames();
        QVERIFY(names.contains(name));
        QCOMPARE(table == "fft"      ? int(ProcessingNameTables::fftType(name))
                 : table == "window" ? int(ProcessingNameTables::windowType(name))
                                     : int(ProcessingNameTables::scaleType(name)),
                 value);
    }

    void nameTableMissesFallBackWithWarning()
    {
        RangeSpectrumUserSettings settings;
        settings.fftConfig()->setType("FFT_TYPE_SPLIT");
        settings.fftConfig()->window()->setType("Kaiser");

        QTest::ignoreMessage(QtWarningMsg, "Current fft type from configuration does not fit into any defined type by SDK");
        QTest::ignoreMessage(QtWarningMsg, "Current window type from configuration does not fit into any defined type by SDK");
        vrn_RS_Config_t config {};
        settings.copyTo(config);
        QCOMPARE(config.fft_config.fft_type, VRN_FFT_TYPE_R2C);
        QCOMPARE(config.fft_config.window_config.type, VRN_WINDOW_BLACKMAN);

        QTest::ignoreMessage(QtWarningMsg,
                             "Current output scale type from configuration does not fit into any defined type by SDK");
        QCOMPARE(ProcessingNameTables::scaleType("SCALE_TYPE_CUBIC"), VRN_SCALE_TYPE_DECIBEL_20LOG);
    }

    void floatChangesBelowToleranceAreNotAnnounced()
    {
        RangeSpectrumUserSettings settings;
        QSignalSpy spy(&settings, &RangeSpectrumUserSettings::axisYMaxChanged);
        settings.setAxisYMax(0.0005f);
        QCOMPARE(spy.count(), 0);
        QCOMPARE(settings.axisYMax(), 0.0f);
        settings.setAxisYMax(-40.0f);
        settings.setAxisYMax(-40.0f);
        QCOMPARE(spy.count(), 1);

        QSignalSpy polygonSpy(&settings, &RangeSpectrumUserSettings::isPolygonLineTypeChanged);
        settings.setIsPolygonLineType(false);
        QCOMPARE(polygonSpy.count(), 0);
        settings.resetToDefault();
        QCOMPARE(spy.count(), 2);
        QCOMPARE(settings.axisYMax(), 0.0f);
    }

    void rangeSpectrumJsonRoundTrip()
    {
        RangeSpectrumUserSettings saved;
        saved.setIsLinearFftMagnitude(true);
        saved.setAxisYMax(-12.5f);
        saved.setIsPolygonLineType(true);
        saved.setFftSize(1024);
        saved.fftConfig()->setType("FFT_TYPE_C2C");
        saved.fftConfig()->setNormalizedWindow(false);
        saved.fftConfig()->window()->setType("Hamming");
        saved.fftConfig()->window()->setSize(300);
        saved.fftConfig()->window()->setAttenuationDB(-80.0f);

        JSONConfigurationObject savedRoot("root");
        savedRoot.addChild(saved.configurationNode());
        QJsonObject top;
        savedRoot.writeChildren(top);
        const QJsonObject window = top["range_spectrum"].toObject()["fft_config"].toObject()["window_config"].toObject();
        QCOMPARE(window.keys(), (QStringList { "attenuation_db", "scale", "size", "type" }));
        QCOMPARE(top["range_spectrum"].toObject().keys(),
                 (QStringList { "axis_y_max", "fft_config", "is_linear_magnitude", "is_polygon_line_type" }));

        // Loaded into fresh settings and saved again, every value set above
        // comes back unchanged.
        RangeSpectrumUserSettings loaded;
        JSONConfigurationObject loadedRoot("root");
        loadedRoot.addChild(loaded.configurationNode());
        QCOMPARE(loadFromText(loadedRoot, QJsonDocument(top).toJson()), QString());
        QCOMPARE(loaded.fftSize(), 1024u);
        QJsonObject resaved;
        loadedRoot.writeChildren(resaved);
        QCOMPARE(resaved, top);
    }

    void timeDomainJsonRoundTripAndReset()
    {
        TimeDomainUserSettings settings;
        JSONConfigurationObject root("root");
        root.addChild(settings.configurationNode());
        QCOMPARE(loadFromText(root, R"({"time_domain": {"axis_y_min": -0.5, "axis_y_max": 0.75}})"), QString());
        QCOMPARE(settings.axisYMin(), -0.5f);
        QCOMPARE(settings.axisYMax(), 0.75f);
        QCOMPARE(loadFromText(root, R"({"time_domain": {"axis_y_min": -0.5}})"),
                 QString("Mandatory field time_domain.axis_y_max is missing"));

        QJsonObject top;
        root.writeChildren(top);
        QCOMPARE(top["time_domain"].toObject()["axis_y_max"].toDouble(), 0.75);

        QSignalSpy minSpy(&settings, &TimeDomainUserSettings::axisYMinChanged);
        QSignalSpy maxSpy(&settings, &TimeDomainUserSettings::axisYMaxChanged);
        settings.resetToDefault();
        QCOMPARE(settings.axisYMin(), 0.0f);
        QCOMPARE(settings.axisYMax(), 1.0f);
        QCOMPARE(minSpy.count(), 1);
        QCOMPARE(maxSpy.count(), 1);
        settings.resetToDefault();
        QCOMPARE(minSpy.count(), 1);
    }
};

QTEST_GUILESS_MAIN(TestCharts)
#include "tst_Charts.moc"
