#include "common/ProcessingNameTables.h"
#include "common/RangeSpectrumUserSettings.h"
#include "common/TimeDomainUserSettings.h"
#include "core/JSONConfigurationFile.h"
#include "core/JSONConfigurationObject.h"

#include <QJsonDocument>
#include <QSignalSpy>
#include <QtTest>

// The settings of the range spectrum and time domain charts.
class TestChartUserSettings : public QObject
{
    Q_OBJECT
private slots:
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

QTEST_GUILESS_MAIN(TestChartUserSettings)
#include "tst_ChartUserSettings.moc"
