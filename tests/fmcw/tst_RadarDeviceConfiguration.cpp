#include "FmcwTestSupport.h"

#include "core/JSONConfigurationFile.h"
#include "core/JSONConfigurationObject.h"
#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/MetricsLimits.h"
#include "fmcw/common/PresenceSensingConfig.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/common/RadarDeviceParameters.h"
#include "fmcw/common/SegmentationConfiguration.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QtTest>

namespace {

QJsonObject readResource(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

QJsonObject writeTree(const std::unique_ptr<JSONConfigurationObject>& root)
{
    QJsonObject top;
    root->writeChildren(top);
    return top;
}

QByteArray toBytes(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

vrn_Metrics_Limits_t deviceLimits()
{
    vrn_Metrics_Limits_t sdk {};
    sdk.sample_rate_Hz_min = 100000;
    sdk.sample_rate_Hz_max = 2000000;
    sdk.max_range_m_min = 0.84f;
    sdk.max_range_m_max = 19.27f;
    return sdk;
}

// Sets `value` at the dotted `path` below `object`.
void setPath(QJsonObject& object, QStringList path, const QJsonValue& value)
{
    const QString key = path.takeFirst();
    QJsonObject child = object.value(key).toObject();
    if (!path.isEmpty())
        setPath(child, path, value);
    object.insert(key, path.isEmpty() ? value : QJsonValue(child));
}

}

class TestRadarDeviceConfiguration : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { Q_INIT_RESOURCE(radar_configurations); }

    void defaultDocumentLoadsAndRoundTrips_data()
    {
        QTest::addColumn<QString>("file");
        for (const char* file : { "KMR7A", "PS_KMR7A", "Seg_KMR7A", "KMR7B", "KMR7C", "PS_KMR7C" })
            QTest::newRow(file) << QString(file);
    }

    void defaultDocumentLoadsAndRoundTrips()
    {
        QFETCH(QString, file);
        const QString type = file.right(5);
        const QJsonObject original = readResource(":/json/config/defaultConfig" + file + ".json");
        QCOMPARE(original.keys(), QStringList({ "device_config", "json_version" }));

        RadarDeviceConfiguration config;
        describeBoard(config, type);
        QCOMPARE(loadFromText(*config.configurationTree(), toBytes(original)), QString());
        QCOMPARE(config.fileVersion().check(type, "1.0"), QString());
        // Saved again, every value comes back as shipped except the maximum
        // range, which the setter floors to one decimal place.
        QJsonObject expected = original;
        setPath(expected, { "device_config", "fmcw_scene", "max_range_m" }, double(9.6f));
        const QJsonObject saved = writeTree(config.configurationTree());
        QCOMPARE(saved, expected);

        // From then on the document is stable byte for byte.
        RadarDeviceConfiguration reloaded;
        describeBoard(reloaded, type);
        QCOMPARE(loadFromText(*reloaded.configurationTree(), toBytes(saved)), QString());
        QCOMPARE(toBytes(writeTree(reloaded.configurationTree())), toBytes(saved));
    }

    void invalidSceneIsRejectedWithMessage_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<QString>("message");
        const QString rate = "Value %1 not in expected range: [1 - 2000000000]";
        QTest::newRow("sample rate 0") << "sample_rate_Hz" << QJsonValue(0) << rate.arg(0);
        QTest::newRow("sample rate too high") << "sample_rate_Hz" << QJsonValue(2000000001.0) << rate.arg(2000000001);
        QTest::newRow("range resolution tiny") << "range_resolution_m" << QJsonValue(0.00001)
                                               << "Value 1e-05 not in expected range: [0.0001 - 100]";
        QTest::newRow("centre frequency 0") << "center_frequency_Hz" << QJsonValue(0) << "Value must be greater than 0";
        QTest::newRow("rx empty") << "rx_antennas" << QJsonValue(QJsonArray()) << "Array is empty";
        QTest::newRow("rx 4 of 3") << "rx_antennas" << QJsonValue(QJsonArray { 1, 4 }) << "Invalid RX antenna index: 4";
        QTest::newRow("tx empty") << "tx_antennas" << QJsonValue(QJsonArray()) << "Array is empty";
        QTest::newRow("tx 2 of 1") << "tx_antennas" << QJsonValue(QJsonArray { 2 }) << "Invalid TX antenna index: 2";
    }

    void invalidSceneIsRejectedWithMessage()
    {
        QFETCH(QString, key);
        QFETCH(QJsonValue, value);
        QFETCH(QString, message);
        QJsonObject document = readResource(":/json/config/defaultConfigKMR7A.json");
        setPath(document, { "device_config", "fmcw_scene", key }, value);

        RadarDeviceConfiguration config;
        describeBoard(config);
        QCOMPARE(loadFromText(*config.configurationTree(), toBytes(document)),
                 QString("Field device_config.fmcw_scene.%1 validation error: %2").arg(key, message));
        // Nothing of the rejected document was taken.
        QCOMPARE(config.metrics()->sampleRateHz(), 0u);
        QCOMPARE(config.metrics()->rx()->mask(), 0u);
    }

    void invalidApplicationSectionIsRejected_data()
    {
        QTest::addColumn<int>("application");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<QString>("message");
        const int ps = RadarConstants::PresenceSensing;
        const int seg = RadarConstants::Segmentation;
        const QString segments = "Array length must be in range [1-3]";
        QTest::newRow("ps min range") << ps << "min_detection_range_m" << QJsonValue(25)
                                      << "Value 25 not in expected range: [0.0001 - 20]";
        QTest::newRow("seg range") << seg << "max_detection_range_m" << QJsonValue(0.5)
                                   << "Value 0.5 not in expected range: [1 - 7]";
        QTest::newRow("seg no segments") << seg << "segments_degrees" << QJsonValue(QJsonArray()) << segments;
        QTest::newRow("seg four segments") << seg << "segments_degrees" << QJsonValue(QJsonArray { 10, 20, 30, 40 }) << segments;
        QTest::newRow("seg sensitivity") << seg << "detection_sensitivity" << QJsonValue("Huge") << "Invalid value: Huge";
        QTest::newRow("seg removal") << seg << "static_target_removal" << QJsonValue("high") << "Invalid value: high";
    }

    void invalidApplicationSectionIsRejected()
    {
        QFETCH(int, application);
        QFETCH(QString, key);
        QFETCH(QJsonValue, value);
        QFETCH(QString, message);
        // A valid section of the application's, saved, with one value replaced.
        RadarDeviceConfiguration config;
        describeBoard(config);
        config.setApplication(RadarConstants::Application(application));
        config.presenceSensing()->setMinDetectionRange(0.5f);
        config.presenceSensing()->setMaxDetectionRange(5.0f);
        config.segmentation()->setMaxDetectionRangeM(5.0f);
        config.segmentation()->setMaxNumTracks(5);
        config.segmentation()->setSegmentsDegrees({ 40.0f, 40.0f });
        const QString section = application == RadarConstants::PresenceSensing ? "presence_sensing" : "segmentation";
        QJsonObject document = readResource(":/json/config/defaultConfigSeg_KMR7A.json");
        document.insert(section, writeTree(config.configurationTree()).value(section));
        setPath(document, { section, key }, value);

        RadarDeviceConfiguration loaded;
        describeBoard(loaded);
        loaded.setApplication(RadarConstants::Application(application));
        QCOMPARE(loadFromText(*loaded.configurationTree(), toBytes(document)),
                 QString("Field %1.%2 validation error: %3").arg(section, key, message));
        QCOMPARE(loaded.metrics()->sampleRateHz(), 0u);
        QCOMPARE(loaded.segmentation()->maxNumTracks(), 0u);
    }

    void extendedDocumentRoundTrips()
    {
        RadarDeviceConfiguration config;
        describeBoard(config);
        config.setApplication(RadarConstants::Segmentation);
        config.deviceInfo()->setDeviceFirmwareNumber("v2.5.1");
        config.deviceInfo()->setMaxRfFrequencyHz(61500000000ull);
        config.deviceInfo()->setDeviceTxPower({ 4.5f });
        config.parameters()->setNumSamplesPerChirp(128);
        config.parameters()->setMimoMode("tdm");
        config.parameters()->setUpperFrequencyHz(61000000000ull);
        vrn_Metrics_Limits_t limits {};
        limits.if_gain_dB_max = 60;
        limits.frame_repetition_time_s_min = 0.02f;
        config.limits()->setFromSdk(limits);

        const QJsonObject saved = writeTree(config.extendedConfigurationTree());
        QCOMPARE(saved.keys(), QStringList({ "application", "device_info", "json_version", "metrics_limits",
                                             "radar_device_parameters" }));
        QCOMPARE(saved.value("application").toString(), QString("Segmentation"));
        QCOMPARE(saved.value("json_version").toObject().value("type").toString(), QString("KMR7A_Extended"));

        // Loaded into a fresh configuration, everything set above is saved
        // again unchanged.
        RadarDeviceConfiguration loaded;
        QCOMPARE(loadFromText(*loaded.extendedConfigurationTree(), toBytes(saved)), QString());
        QCOMPARE(loaded.application(), RadarConstants::Segmentation);
        QCOMPARE(writeTree(loaded.extendedConfigurationTree()), saved);
        QCOMPARE(loaded.extendedFileVersion().check("KMR7A_Extended", "1.0"), QString());

        // An unknown MIMO mode refuses the whole document.
        QJsonObject document = saved;
        setPath(document, { "radar_device_parameters", "mimo_mode" }, "fdm");
        RadarDeviceConfiguration refused;
        QCOMPARE(loadFromText(*refused.extendedConfigurationTree(), toBytes(document)),
                 QString("Field radar_device_parameters.mimo_mode validation error: Invalid value"));
        QCOMPARE(refused.application(), RadarConstants::None);
    }

    void defaultResourceChoice_data()
    {
        QTest::addColumn<int>("application");
        QTest::addColumn<int>("radarType");
        QTest::addColumn<QString>("resource");
        using namespace RadarConstants;
        QTest::newRow("PS on 7C") << int(PresenceSensing) << int(KMR7C) << "PS_KMR7C";
        QTest::newRow("PS on 7B") << int(PresenceSensing) << int(KMR7B) << "PS_KMR7A";
        QTest::newRow("PS on unknown") << int(PresenceSensing) << int(Unknown) << "PS_KMR7A";
        QTest::newRow("Seg on 7C") << int(Segmentation) << int(KMR7C) << "Seg_KMR7A";
        QTest::newRow("None on 7B") << int(None) << int(KMR7B) << "KMR7B";
        QTest::newRow("None on 7C") << int(None) << int(KMR7C) << "KMR7C";
        QTest::newRow("None on unknown") << int(None) << int(Unknown) << "KMR7A";
    }

    void defaultResourceChoice()
    {
        QFETCH(int, application);
        QFETCH(int, radarType);
        QFETCH(QString, resource);
        const QString path = RadarDeviceConfiguration::defaultConfigurationResource(
            RadarConstants::Application(application), RadarConstants::RadarType(radarType));
        QCOMPARE(path, ":/json/config/defaultConfig" + resource + ".json");
        QVERIFY(QFile::exists(path));
    }

    void radarTypeFromDeviceName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("type");
        QTest::newRow("7C") << "KMR7C" << int(RadarConstants::KMR7C);
        QTest::newRow("lower case") << "kmr7a" << int(RadarConstants::Unknown);
        QTest::newRow("longer") << "KMR7A2" << int(RadarConstants::Unknown);
        QTest::newRow("empty") << "" << int(RadarConstants::Unknown);
    }

    void radarTypeFromDeviceName()
    {
        QFETCH(QString, name);
        QFETCH(int, type);
        RadarDeviceConfiguration config;
        config.deviceInfo()->setDeviceName(name);
        QCOMPARE(int(config.radarType()), type);
    }

    void maxRangeIsFloored_data()
    {
        QTest::addColumn<float>("value");
        QTest::addColumn<float>("stored");
        QTest::newRow("0.84") << 0.84f << 0.8f;
        QTest::newRow("largest float") << std::numeric_limits<float>::max() << std::numeric_limits<float>::max();
    }

    void maxRangeIsFloored()
    {
        QFETCH(float, value);
        QFETCH(float, stored);
        Metrics metrics;
        metrics.setMaxRangeM(value);
        QCOMPARE(metrics.maxRangeM(), stored);
    }

    void derivedValuesDoNotCountAsEdits()
    {
        Metrics metrics;
        QSignalSpy edits(&metrics, &Metrics::guiParamChanged);
        QSignalSpy sampleRate(&metrics, &Metrics::sampleRateHzChanged);
        metrics.setSampleRateHz(2000000);
        metrics.setCenterFrequencyHz(61e9f);
        QCOMPARE(sampleRate.count(), 1);
        QCOMPARE(edits.count(), 0);
        metrics.setTxPowerLevel(20);
        metrics.setTxPowerLevel(20);
        metrics.rx()->setMask(0b0010);
        QCOMPARE(edits.count(), 2);
    }

    void antennaMasksAreSanitised_data()
    {
        QTest::addColumn<bool>("transmit");
        QTest::addColumn<quint32>("requested");
        QTest::addColumn<quint32>("expected");
        // Each from antenna 1 alone.
        QTest::newRow("tx adds second") << true << 0b0011u << 0b0010u;
        QTest::newRow("tx none") << true << 0u << 0b0001u;
        QTest::newRow("tx single") << true << 0b0100u << 0b0100u;
        QTest::newRow("rx none") << false << 0u << 0b0100u;
        QTest::newRow("rx several") << false << 0b1011u << 0b1011u;
    }

    void antennaMasksAreSanitised()
    {
        QFETCH(bool, transmit);
        QFETCH(quint32, requested);
        QFETCH(quint32, expected);
        Metrics metrics;
        RadarAntennas* antennas = transmit ? metrics.tx() : metrics.rx();
        antennas->setMask(0b0001);
        QCOMPARE(antennas->mask(), 0b0001u);
        antennas->setMask(requested);
        QCOMPARE(antennas->mask(), expected);
    }

    void antennaListAndMask()
    {
        Metrics metrics;
        QSignalSpy changed(metrics.rx(), &RadarAntennas::antennasChanged);
        metrics.rx()->setActiveAntennas({ 1, 3 });
        QCOMPARE(metrics.rx()->mask(), 0b0101u);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0).at(0).value<QVector<int>>(), QVector<int>({ 1, 3 }));
        QVERIFY(metrics.rx()->isActive(2) && !metrics.rx()->isActive(1) && !metrics.rx()->isActive(4));
        QCOMPARE(metrics.rx()->getNumberOfEnabled(), 2);
        metrics.rx()->setEnabled(3, true);
        QCOMPARE(metrics.rx()->activeAntennas(), QVector<int>({ 1, 3, 4 }));
        // Switching the only transmitter off keeps antenna 1 on.
        metrics.tx()->setActiveAntennas({ 2 });
        metrics.tx()->setEnabled(1, false);
        QCOMPARE(metrics.tx()->mask(), 0b0001u);
    }

    void limitsFromSdkFloorTheMaximumRange()
    {
        MetricsLimits limits;
        vrn_Metrics_Limits_t sdk = deviceLimits();
        sdk.frame_repetition_time_s_min = 0.01f;
        QSignalSpy range(&limits, &MetricsLimits::maxRangeMLimitChanged);
        QSignalSpy ifGain(&limits, &MetricsLimits::ifGainDbLimitChanged);
        limits.setFromSdk(sdk);
        QCOMPARE(limits.maxRangeMMin(), 0.8f);
        QCOMPARE(limits.maxRangeMMax(), 19.2f);
        QCOMPARE(limits.exactMaxRangeMMin(), 0.84f);
        QCOMPARE(limits.sampleRateHzMax(), 2000000u);
        QCOMPARE(limits.frameRepetitionTimeSMin(), 0.01f);
        QVERIFY(range.count() > 0);
        // The IF gain pair 0..0 differs from the unbounded start only in its
        // maximum.
        QCOMPARE(ifGain.count(), 1);
        range.clear();
        limits.setFromSdk(sdk);
        QCOMPARE(range.count(), 0);
    }

    void typedFieldValueIsJudgedLikeTheFiles_data()
    {
        QTest::addColumn<bool>("useDeviceLimits");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("message");
        const QString range = QStringLiteral("Value %1 not in expected range: [%2 - %3]");
        QTest::newRow("max range within") << false << "metrics.maxRangeM" << "9.6" << "";
        QTest::newRow("max range 150") << false << "metrics.maxRangeM" << "150" << range.arg("150", "0.0001", "100");
        QTest::newRow("max range beyond device") << true << "metrics.maxRangeM" << "25" << range.arg("25", "0.8", "19.2");
        QTest::newRow("device limits first") << true << "metrics.maxRangeM" << "150" << range.arg("150", "0.8", "19.2");
        QTest::newRow("frame time 0") << false << "metrics.frameRepetitionTimeS" << "0" << range.arg("0", "0.0001", "100");
        QTest::newRow("sample rate beyond device") << true << "metrics.sampleRateHz" << "3000000"
                                                   << range.arg("3000000", "100000", "2000000");
        QTest::newRow("sample rate fraction") << false << "metrics.sampleRateHz" << "1.5" << "Value 1.5 is not a whole number";
        QTest::newRow("if gain negative") << false << "metrics.ifGainDB" << "-3" << "Value -3 must not be negative";
        QTest::newRow("tx power 101") << false << "metrics.txPowerLevel" << " 101 " << range.arg("101", "1", "100");
        QTest::newRow("centre frequency 0") << false << "metrics.centerFrequencyHz" << "0" << "Value must be greater than 0";
        QTest::newRow("not a number") << false << "metrics.maxSpeedMs" << "fast" << "Value fast is not a number";
        QTest::newRow("empty") << false << "metrics.maxSpeedMs" << "  " << "A value is required";
        QTest::newRow("presence range 21") << false << "presencesensing.maxDetectionRange" << "21"
                                           << range.arg("21", "0.0001", "20");
        QTest::newRow("segmentation range 8") << false << "segmentation.maxDetectionRangeM" << "8" << range.arg("8", "1", "7");
        QTest::newRow("tracks 51") << false << "segmentation.maxNumTracks" << "51" << range.arg("51", "1", "50");
        QTest::newRow("segment 121") << false << "segmentation.segmentsDegrees" << "121" << range.arg("121", "1", "120");
        QTest::newRow("segment 40") << false << "segmentation.segmentsDegrees" << "40" << "";
        QTest::newRow("unknown field") << false << "metrics.colour" << "1" << "Unknown field metrics.colour";
    }

    void typedFieldValueIsJudgedLikeTheFiles()
    {
        QFETCH(bool, useDeviceLimits);
        QFETCH(QString, field);
        QFETCH(QString, text);
        QFETCH(QString, message);
        RadarDeviceConfiguration config;
        if (useDeviceLimits)
            config.limits()->setFromSdk(deviceLimits());
        if (message.startsWith("Unknown"))
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("unknown field"));
        QCOMPARE(config.validateField(field, text), message);
    }
};

QTEST_GUILESS_MAIN(TestRadarDeviceConfiguration)
#include "tst_RadarDeviceConfiguration.moc"
