#include "FakeCWConfigurator.h"

#include "fmcw/common/RadarAntennas.h"
#include "fmcw/cw/config/RadarCWChips.h"
#include "fmcw/cw/config/RadarCWParams.h"
#include "fmcw/cw/config/RadarDeviceCWConfig.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

// Every table value of `params` in its table, so that a conversion warns
// only for the value a test puts outside.
void setValidChoices(RadarCWParams& params)
{
    params.setTestSignalMode(QStringLiteral("Off"));
    params.setBasebandGainHighPass(18);
    params.setBasebandHpCutoffFreq(20);
    params.setBasebandAafCutoffFreq(600);
    params.setBasebandGainAmplifier(0);
    params.setAdcSamplingTime(50);
    params.setAdcNumOfConversions(QStringLiteral("No tracking"));
    params.setAdcOversamplingFactor(QStringLiteral("Off"));
}

// The SDK index field that carries the RadarCWParams property `property`.
quint32& indexField(vrn_CW_Config_t& config, const QByteArray& property)
{
    if (property == "testSignalMode")
        return config.test_signal.mode_index;
    if (property == "basebandGainHighPass")
        return config.baseband.gain_high_pass_index;
    if (property == "basebandHpCutoffFreq")
        return config.baseband.hp_cutoff_index;
    if (property == "basebandAafCutoffFreq")
        return config.baseband.aaf_cutoff_index;
    if (property == "basebandGainAmplifier")
        return config.baseband.gain_amplifier_index;
    if (property == "adcSamplingTime")
        return config.adc.sample_time_index;
    if (property == "adcNumOfConversions")
        return config.adc.tracking_conversions_index;
    return config.adc.oversampling_index;
}

}

class tst_RadarCWParams : public QObject
{
    Q_OBJECT

private slots:
    void tableValueConvertsBothWays_data()
    {
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<quint32>("index");

        const auto numbers = [](const char* property, std::initializer_list<quint32> values) {
            quint32 index = 0;
            for (quint32 value : values) {
                QTest::addRow("%s %u", property, value) << QByteArray(property) << QVariant(value) << index;
                ++index;
            }
        };
        const auto texts = [](const char* property, std::initializer_list<const char*> values) {
            quint32 index = 0;
            for (const char* value : values) {
                QTest::addRow("%s %s", property, value) << QByteArray(property) << QVariant(QString::fromLatin1(value))
                                                        << index;
                ++index;
            }
        };
        numbers("basebandGainAmplifier", { 0, 5, 10, 15, 20, 25, 30 });
        numbers("basebandGainHighPass", { 18, 30 });
        numbers("basebandHpCutoffFreq", { 20, 45, 70, 80, 160 });
        numbers("basebandAafCutoffFreq", { 600, 1000 });
        numbers("adcSamplingTime", { 50, 100, 200, 400 });
        texts("adcNumOfConversions", { "No tracking", "1 conversion", "3 conversions", "7 conversions" });
        texts("adcOversamplingFactor", { "Off", "2x", "4x", "8x" });
        texts("testSignalMode", { "Off", "Baseband Test", "Toggle TX Enable", "Toggle DAC Value", "RX Self Test" });
    }

    void tableValueConvertsBothWays()
    {
        QFETCH(QByteArray, property);
        QFETCH(QVariant, value);
        QFETCH(quint32, index);

        RadarDeviceCWConfig config(nullptr);
        setValidChoices(*config.params());
        QVERIFY(config.params()->setProperty(property, value));
        vrn_CW_Config_t record = config.toSdkConfig();
        QCOMPARE(indexField(record, property), index);

        RadarDeviceCWConfig back(nullptr);
        setValidChoices(*back.params());
        back.setFromSdkConfig(record);
        QCOMPARE(back.params()->property(property), value);
    }

    void valueOutsideTableSendsIndexZeroWithWarning_data()
    {
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("what");

        QTest::newRow("gain high pass") << QByteArray("basebandGainHighPass") << QVariant(20u) << "gain high pass";
        QTest::newRow("high pass cutoff") << QByteArray("basebandHpCutoffFreq") << QVariant(100u) << "high pass cutoff";
        QTest::newRow("aaf cutoff") << QByteArray("basebandAafCutoffFreq") << QVariant(800u) << "aaf cutoff";
        QTest::newRow("mode") << QByteArray("testSignalMode") << QVariant(QStringLiteral("Sweep")) << "mode";
        QTest::newRow("adc tracking") << QByteArray("adcNumOfConversions") << QVariant(QStringLiteral("2 conversions"))
                                      << "adc tracking";
        QTest::newRow("sampling time") << QByteArray("adcSamplingTime") << QVariant(75u) << "sampling time";
        QTest::newRow("oversampling") << QByteArray("adcOversamplingFactor") << QVariant(QStringLiteral("16x"))
                                      << "oversampling";
    }

    void valueOutsideTableSendsIndexZeroWithWarning()
    {
        QFETCH(QByteArray, property);
        QFETCH(QVariant, value);
        QFETCH(QString, what);

        RadarDeviceCWConfig config(nullptr);
        setValidChoices(*config.params());
        QVERIFY(config.params()->setProperty(property, value));
        QTest::ignoreMessage(
            QtWarningMsg,
            qPrintable(QStringLiteral("Current %1 value from configuration does not fit into any value defined by SDK")
                           .arg(what)));
        vrn_CW_Config_t record = config.toSdkConfig();
        QCOMPARE(indexField(record, property), 0u);
    }

    void writerSignalsOwnChangeThenAggregates_data()
    {
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("bindsSamplingRate");

        QTest::newRow("rfCenterFrequency") << QByteArray("rfCenterFrequency") << QVariant(61.0e9f) << false;
        QTest::newRow("testSignalMode") << QByteArray("testSignalMode") << QVariant(QStringLiteral("RX Self Test"))
                                        << false;
        QTest::newRow("basebandGainAmplifier") << QByteArray("basebandGainAmplifier") << QVariant(25u) << false;
        QTest::newRow("adcSamplingTime") << QByteArray("adcSamplingTime") << QVariant(400u) << true;
        QTest::newRow("adcDoubleMSB") << QByteArray("adcDoubleMSB") << QVariant(true) << true;
    }

    void writerSignalsOwnChangeThenAggregates()
    {
        QFETCH(QByteArray, property);
        QFETCH(QVariant, value);
        QFETCH(bool, bindsSamplingRate);

        RadarCWParams params;
        const QMetaProperty meta = params.metaObject()->property(params.metaObject()->indexOfProperty(property));
        QSignalSpy own(&params, QByteArray("2" + meta.notifySignal().methodSignature()).constData());
        QSignalSpy gui(&params, &RadarCWParams::guiParamChanged);
        QSignalSpy adc(&params, &RadarCWParams::adcParamsChanged);
        int ownSeenByGui = -1;
        connect(&params, &RadarCWParams::guiParamChanged, this, [&] { ownSeenByGui = own.count(); });

        QVERIFY(params.setProperty(property, value));
        QCOMPARE(own.count(), 1);
        QCOMPARE(gui.count(), 1);
        QCOMPARE(ownSeenByGui, 1);
        QCOMPARE(adc.count(), bindsSamplingRate ? 1 : 0);
        QCOMPARE(params.property(property), value);

        // The same value again is no change: nothing at all is announced.
        QVERIFY(params.setProperty(property, value));
        QCOMPARE(own.count(), 1);
        QCOMPARE(gui.count(), 1);
        QCOMPARE(adc.count(), bindsSamplingRate ? 1 : 0);
    }

    void sdkRecordRoundTripKeepsEveryValue()
    {
        FakeCWConfigurator board;
        DeviceInfo info;
        describeBoard(info);
        RadarDeviceCWConfig config(&info);
        config.setFromSdkConfig(board.defaults);

        const RadarCWParams& params = *config.params();
        QCOMPARE(params.rfCenterFrequency(), 60.5e9f);
        QCOMPARE(params.testSignalMode(), QStringLiteral("Baseband Test"));
        QCOMPARE(params.adcNumOfConversions(), QStringLiteral("3 conversions"));
        QCOMPARE(params.adcSamplingTime(), 100u);
        QCOMPARE(params.basebandGainAmplifier(), 25u);
        QCOMPARE(params.basebandHpCutoffFreq(), 80u);
        QCOMPARE(config.rxAntennas()->activeAntennas(), QVector<int>({ 1, 3 }));

        const vrn_CW_Config_t back = config.toSdkConfig();
        QCOMPARE(QByteArray(reinterpret_cast<const char*>(&back), sizeof back),
                 QByteArray(reinterpret_cast<const char*>(&board.defaults), sizeof back));
    }

    void typedFieldIsCheckedAsThePagesNeed_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("message");

        QTest::newRow("empty") << "rxNumSamples" << " " << "Value cannot be empty";
        QTest::newRow("not a number") << "rxNumSamples" << "12a" << "Text must be valid number";
        QTest::newRow("below 2") << "rxNumSamples" << "0" << "Value 0 not in expected range: [2 - 4094]";
        QTest::newRow("above 4094") << "rxNumSamples" << "4096" << "Value 4096 not in expected range: [2 - 4094]";
        QTest::newRow("odd") << "rxNumSamples" << "127" << "Value must be an even number";
        QTest::newRow("even") << "params.rxNumSamples" << "4094" << "";
        QTest::newRow("negative dac") << "dac" << "-1" << "Value must be greater or equal 0";
        QTest::newRow("dac above the board") << "dac" << "4096" << "Value 4096 not in expected range: [0 - 4095]";
        QTest::newRow("duty cycle above 100") << "dutyCycle" << "101" << "Value 101 not in expected range: [0 - 100]";
        QTest::newRow("carrier inside") << "rfCenterFrequency" << "60e9" << "";
    }

    void typedFieldIsCheckedAsThePagesNeed()
    {
        QFETCH(QString, field);
        QFETCH(QString, text);
        QFETCH(QString, message);

        FakeCWConfigurator board;
        RadarDeviceCWConfig config(nullptr);
        QVERIFY(board.getLimits(*config.limits()));
        QCOMPARE(config.validateField(field, text), message);
    }

    void chipOffersItsOwnChoices_data()
    {
        QTest::addColumn<RadarConstants::RadarType>("chip");
        QTest::addColumn<int>("modes");
        QTest::addColumn<quint32>("highestCutoff");
        QTest::addColumn<bool>("antiAlias");
        QTest::addColumn<QString>("typeName");

        QTest::newRow("KMR7A") << RadarConstants::KMR7A << 2 << 80u << false << "KMR7A_CW";
        QTest::newRow("KMR7C") << RadarConstants::KMR7C << 5 << 160u << true << "KMR7C_CW";
        QTest::newRow("unknown") << RadarConstants::Unknown << 5 << 160u << true << "";
    }

    void chipOffersItsOwnChoices()
    {
        QFETCH(RadarConstants::RadarType, chip);
        QFETCH(int, modes);
        QFETCH(quint32, highestCutoff);
        QFETCH(bool, antiAlias);
        QFETCH(QString, typeName);

        QCOMPARE(RadarCWChips::testSignalModes(chip).size(), modes);
        QCOMPARE(RadarCWChips::highPassCutoffs(chip).last(), highestCutoff);
        QCOMPARE(RadarCWChips::hasAntiAliasFilter(chip), antiAlias);
        QCOMPARE(RadarCWChips::configurationTypeName(chip), typeName);
    }
};

QTEST_GUILESS_MAIN(tst_RadarCWParams)
#include "tst_RadarCWParams.moc"
