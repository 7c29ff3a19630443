// The CW parameter model: its tables both ways, its change signals, the
// typed-field checks, and the configuration object's files and apply.

#include "FakeCWConfigurator.h"
#include "FmcwTestSupport.h"

#include "fmcw/common/RadarAntennas.h"
#include "fmcw/cw/config/RadarCWConfig.h"
#include "fmcw/cw/config/RadarCWParams.h"
#include "fmcw/cw/config/RadarDeviceCWConfig.h"
#include "fmcw/cw/config/RadarCWUserSettings.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>

namespace {

// The defaults of FakeCWConfigurator, saved for a KMR7A board.
const char kSavedDefaults[] = R"({
    "cw_scene": {
        "cw_scene": {
            "adc": {
                "double_msb": true,
                "num_of_conversions": "3 conversions",
                "oversampling_factor": "2x",
                "sampling_time": 100
            },
            "baseband": {
                "aaf_cutoff_frequency": 1000,
                "cutoff_frequency": 80,
                "gain_amplifier": 25,
                "gain_hp": 30
            },
            "center_frequency_Hz": 60500000768,
            "dac": 90,
            "duty_cycle": 100,
            "rx_num_samples": 128,
            "sampling_rate": 1000000,
            "test_signal": {
                "frequency": 100000,
                "mode": "Baseband Test"
            }
        },
        "rx_antennas": [
            1,
            3
        ],
        "tx_antennas": [
            1
        ]
    },
    "json_version": {
        "type": "KMR7A_CW",
        "version": "1.0"
    }
}
)";

// kSavedDefaults with one value replaced: `path` is a "/"-separated key path.
QByteArray savedWith(const QStringList& path, const QJsonValue& value)
{
    std::function<QJsonObject(QJsonObject, int)> replace = [&](QJsonObject object, int level) {
        const QString& key = path.at(level);
        object.insert(key,
                      level + 1 == path.size() ? value : QJsonValue(replace(object.value(key).toObject(), level + 1)));
        return object;
    };
    return QJsonDocument(replace(QJsonDocument::fromJson(kSavedDefaults).object(), 0)).toJson();
}

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
quint32& indexField(vrn_CW_Config_t& c, const QByteArray& property)
{
    using Field = quint32& (*)(vrn_CW_Config_t&);
    static const QHash<QByteArray, Field> fields {
        { "testSignalMode", [](vrn_CW_Config_t& c) -> quint32& { return c.test_signal.mode_index; } },
        { "basebandGainHighPass", [](vrn_CW_Config_t& c) -> quint32& { return c.baseband.gain_high_pass_index; } },
        { "basebandHpCutoffFreq", [](vrn_CW_Config_t& c) -> quint32& { return c.baseband.hp_cutoff_index; } },
        { "basebandAafCutoffFreq", [](vrn_CW_Config_t& c) -> quint32& { return c.baseband.aaf_cutoff_index; } },
        { "basebandGainAmplifier", [](vrn_CW_Config_t& c) -> quint32& { return c.baseband.gain_amplifier_index; } },
        { "adcSamplingTime", [](vrn_CW_Config_t& c) -> quint32& { return c.adc.sample_time_index; } },
        { "adcNumOfConversions", [](vrn_CW_Config_t& c) -> quint32& { return c.adc.tracking_conversions_index; } },
        { "adcOversamplingFactor", [](vrn_CW_Config_t& c) -> quint32& { return c.adc.oversampling_index; } },
    };
    return fields.value(property)(c);
}

}

class tst_RadarCWConfig : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_board = std::make_unique<FakeCWConfigurator>();
        m_config = std::make_unique<RadarCWConfig>(m_board.get(),
                                                   std::make_unique<RadarCWUserSettings>(nullptr, nullptr));
        describeBoard(*m_config->deviceInfo());
        QVERIFY(m_config->loadDefaultConfig());
    }

    void cleanup()
    {
        m_config.reset();
        m_board.reset();
        m_dir.reset();
    }

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

    void samplingRateFollowsAdcBounds_data()
    {
        QTest::addColumn<quint32>("startTimeNs");
        QTest::addColumn<quint32>("startRate");
        QTest::addColumn<quint32>("newTimeNs");
        QTest::addColumn<quint32>("expectedRate");

        // The fake's bounds: 50 ns [500 k, 4 M], 100 ns [250 k, 2 M], 200 ns [125 k, 1 M], 400 ns [62.5 k, 500 k].
        QTest::newRow("slower ADC pulls the rate down") << 50u << 3000000u << 200u << 1000000u;
        QTest::newRow("faster ADC pulls the rate up") << 400u << 100000u << 50u << 500000u;
        QTest::newRow("rate inside stays") << 100u << 400000u << 200u << 400000u;
    }

    void samplingRateFollowsAdcBounds()
    {
        QFETCH(quint32, startTimeNs);
        QFETCH(quint32, startRate);
        QFETCH(quint32, newTimeNs);
        QFETCH(quint32, expectedRate);

        RadarCWParams& params = *m_config->guiConfig()->params();
        params.setAdcSamplingTime(startTimeNs);
        params.setSamplingRate(startRate);
        params.setAdcSamplingTime(newTimeNs);

        const quint32 shift = quint32(QVector<quint32>({ 50, 100, 200, 400 }).indexOf(newTimeNs));
        QCOMPARE(m_config->guiConfig()->limits()->samplingRateMin(), 500000u >> shift);
        QCOMPARE(m_config->guiConfig()->limits()->samplingRateMax(), 4000000u >> shift);
        QCOMPARE(params.samplingRate(), expectedRate);
    }

    void savedFileHasTheFileLayoutAndLoadsBack()
    {
        const QString path = m_dir->filePath(QStringLiteral("saved.json"));
        QVERIFY(m_config->saveConfig(path));
        QFile saved(path);
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QCOMPARE(QString(saved.readAll()).split('\n'), QString(kSavedDefaults).split('\n'));

        RadarDeviceCWConfig original(m_config->deviceInfo());
        original.assign(*m_config->guiConfig());
        m_config->guiConfig()->params()->setDac(1);
        m_config->guiConfig()->rxAntennas()->setMask(0b010);
        QVERIFY(m_config->loadConfig(path));
        QVERIFY(m_config->guiConfig()->sameSettings(original));
        // Every value goes back to the board as the board gave it.
        const vrn_CW_Config_t back = m_config->guiConfig()->toSdkConfig();
        QCOMPARE(QByteArray(reinterpret_cast<const char*>(&back), sizeof back),
                 QByteArray(reinterpret_cast<const char*>(&m_board->defaults), sizeof back));
    }

    void refusedFileChangesNothing_data()
    {
        QTest::addColumn<QString>("chip");
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("details");

        const QString cannotLoad = QStringLiteral("Cannot load configuration");
        const QString field = QStringLiteral("Field cw_scene.%1 validation error: %2");
        QTest::newRow("another chip's file") << "KMR7A" << savedWith({ "json_version", "type" }, "KMR7C_CW") << cannotLoad
                                             << "Invalid json type";
        QTest::newRow("standard-mode file")
            << "KMR7A" << QByteArray(R"({"device_config": {"fmcw_scene": {}}, "json_version": {"type": "KMR7A", "version": "1.0"}})")
            << cannotLoad << "Invalid json type";
        QTest::newRow("other version") << "KMR7A" << savedWith({ "json_version", "version" }, "2.0") << cannotLoad
                                       << "Invalid json version";
        QTest::newRow("malformed") << "KMR7A" << QByteArray(kSavedDefaults).left(200) << cannotLoad
                                   << "JSON parser error: unterminated object";
        QTest::newRow("negative number") << "KMR7A" << savedWith({ "cw_scene", "cw_scene", "baseband", "gain_hp" }, -18)
                                         << cannotLoad << field.arg("cw_scene.baseband.gain_hp", "Value must be greater or equal 0");
        QTest::newRow("dac above the board's limit") << "KMR7A" << savedWith({ "cw_scene", "cw_scene", "dac" }, 5000) << cannotLoad
                                                     << field.arg("cw_scene.dac", "Value 5000 not in expected range: [0 - 4095]");
        QTest::newRow("receiver the board lacks") << "KMR7A" << savedWith({ "cw_scene", "rx_antennas" }, QJsonArray({ 1, 4 }))
                                                  << cannotLoad << field.arg("rx_antennas", "Invalid RX antenna index: 4");
        QTest::newRow("unknown chip") << "KMR9" << QByteArray(kSavedDefaults) << "Unknown radar device" << QString();
    }

    void refusedFileChangesNothing()
    {
        QFETCH(QString, chip);
        QFETCH(QByteArray, file);
        QFETCH(QString, message);
        QFETCH(QString, details);

        m_config->deviceInfo()->setDeviceName(chip);
        m_config->guiConfig()->params()->setDac(12);
        RadarDeviceCWConfig before(m_config->deviceInfo());
        before.assign(*m_config->guiConfig());
        const QString path = writeFile(file);
        QSignalSpy events(m_config.get(), &RadarCWConfig::triggerEvent);
        QSignalSpy edits(m_config->guiConfig()->params(), &RadarCWParams::guiParamChanged);

        QVERIFY(!m_config->loadConfig(path));
        QCOMPARE(eventsOf(events), QVector<RadarEvent>({ { RadarEventCode::Error, message, details.isNull() ? path : details } }));
        QCOMPARE(edits.count(), 0);
        QVERIFY(m_config->guiConfig()->sameSettings(before));
    }

    void gainAmplifierSevenFromFileAppliesIndexZero()
    {
        const QString path = writeFile(savedWith({ "cw_scene", "cw_scene", "baseband", "gain_amplifier" }, 7));
        QVERIFY(m_config->loadConfig(path));
        QCOMPARE(m_config->guiConfig()->params()->basebandGainAmplifier(), 7u);

        m_board->device.baseband.gain_amplifier_index = 6;
        QTest::ignoreMessage(
            QtWarningMsg, "Current gain amplifier value from configuration does not fit into any value defined by SDK");
        QVERIFY(m_config->applyGuiConfig());
        QCOMPARE(m_board->device.baseband.gain_amplifier_index, 0u);
        // The pages show what the board took.
        QCOMPARE(m_config->guiConfig()->params()->basebandGainAmplifier(), 0u);
    }

    void applyShowsWhatTheDeviceAccepted()
    {
        m_config->guiConfig()->params()->setSamplingRate(1234567);
        m_config->guiConfig()->txAntennas()->setMask(0);
        m_board->acceptedSamplingRate = 1200000;
        QVERIFY(m_config->differs());
        QSignalSpy updated(m_config.get(), &RadarCWConfig::deviceConfigUpdated);

        QVERIFY(m_config->applyGuiConfig());
        QCOMPARE(updated.count(), 1);
        QCOMPARE(updated.at(0).at(0).value<RadarDeviceCWConfig*>(), m_config->deviceConfig());
        QCOMPARE(m_config->deviceConfig()->params()->samplingRate(), 1200000u);
        QCOMPARE(m_config->guiConfig()->params()->samplingRate(), 1200000u);
        QCOMPARE(m_config->deviceConfig()->txAntennas()->mask(), 0u);
        QVERIFY(!m_config->differs());

        m_config->guiConfig()->params()->setDutyCycle(40);
        QVERIFY(m_config->differs());
        m_config->revertConfig();
        QCOMPARE(m_config->guiConfig()->params()->dutyCycle(), 100u);
        QVERIFY(!m_config->differs());
    }

    void failedApplyKeepsDeviceConfiguration_data()
    {
        QTest::addColumn<bool>("failSet");
        QTest::newRow("device refuses the settings") << true;
        QTest::newRow("device cannot be read back") << false;
    }

    void failedApplyKeepsDeviceConfiguration()
    {
        QFETCH(bool, failSet);
        QVERIFY(m_config->applyGuiConfig());
        m_config->guiConfig()->params()->setDac(200);
        m_config->guiConfig()->rxAntennas()->setMask(0b111);
        m_board->failSet = failSet;
        m_board->failGet = !failSet;
        QSignalSpy events(m_config.get(), &RadarCWConfig::triggerEvent);
        QSignalSpy updated(m_config.get(), &RadarCWConfig::deviceConfigUpdated);

        QVERIFY(!m_config->applyGuiConfig());
        QCOMPARE(textsOf(events), QStringList { "Cannot apply config for CW " });
        QCOMPARE(updated.count(), 0);
        QCOMPARE(m_config->deviceConfig()->params()->dac(), 90u);
        QCOMPARE(m_config->deviceConfig()->rxAntennas()->mask(), 0b101u);
        QCOMPARE(m_config->guiConfig()->params()->dac(), 200u);
    }

    void failedDefaultsChangeNothing()
    {
        m_config->guiConfig()->params()->setDac(7);
        m_board->failDefaults = true;
        QSignalSpy events(m_config.get(), &RadarCWConfig::triggerEvent);
        QVERIFY(!m_config->loadDefaultConfig());
        QCOMPARE(textsOf(events), QStringList { "Cannot load default config for CW " });
        QCOMPARE(m_config->guiConfig()->params()->dac(), 7u);
    }

private:
    QString writeFile(const QByteArray& bytes)
    {
        const QString path = m_dir->filePath(QStringLiteral("cw.json"));
        QFile file(path);
        file.open(QIODevice::WriteOnly | QIODevice::Truncate);
        file.write(bytes);
        return path;
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<FakeCWConfigurator> m_board;
    std::unique_ptr<RadarCWConfig> m_config;
};

QTEST_GUILESS_MAIN(tst_RadarCWConfig)
#include "tst_RadarCWConfig.moc"
