#include "FakeCWConfigurator.h"

#include "fmcw/common/RadarAntennas.h"
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
        QTest::addColumn<QString>("outside"); // what the warning names of a value outside the table

        const auto numbers = [](const char* property, std::initializer_list<quint32> values) {
            quint32 index = 0;
            for (quint32 value : values) {
                QTest::addRow("%s %u", property, value) << QByteArray(property) << QVariant(value) << index << QString();
                ++index;
            }
        };
        const auto texts = [](const char* property, std::initializer_list<const char*> values) {
            quint32 index = 0;
            for (const char* value : values) {
                QTest::addRow("%s %s", property, value) << QByteArray(property) << QVariant(QString::fromLatin1(value))
                                                        << index << QString();
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
        // Outside the table: index 0 goes to the SDK, with a warning.
        const auto outside = [](const char* property, const QVariant& value, const char* what) {
            QTest::addRow("%s outside", property) << QByteArray(property) << value << 0u << QString(what);
        };
        outside("basebandGainHighPass", 20u, "gain high pass");
        outside("basebandHpCutoffFreq", 100u, "high pass cutoff");
        outside("basebandAafCutoffFreq", 800u, "aaf cutoff");
        outside("testSignalMode", QStringLiteral("Sweep"), "mode");
        outside("adcNumOfConversions", QStringLiteral("2 conversions"), "adc tracking");
        outside("adcSamplingTime", 75u, "sampling time");
        outside("adcOversamplingFactor", QStringLiteral("16x"), "oversampling");
    }

    void tableValueConvertsBothWays()
    {
        QFETCH(QByteArray, property);
        QFETCH(QVariant, value);
        QFETCH(quint32, index);
        QFETCH(QString, outside);

        RadarDeviceCWConfig config(nullptr);
        setValidChoices(*config.params());
        QVERIFY(config.params()->setProperty(property, value));
        if (!outside.isEmpty())
            QTest::ignoreMessage(QtWarningMsg, qPrintable(QStringLiteral("Current %1 value from configuration does not "
                                                                         "fit into any value defined by SDK").arg(outside)));
        vrn_CW_Config_t record = config.toSdkConfig();
        QCOMPARE(indexField(record, property), index);
        if (!outside.isEmpty())
            return;

        RadarDeviceCWConfig back(nullptr);
        setValidChoices(*back.params());
        back.setFromSdkConfig(record);
        QCOMPARE(back.params()->property(property), value);
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
};

QTEST_GUILESS_MAIN(tst_RadarCWParams)
#include "tst_RadarCWParams.moc"
