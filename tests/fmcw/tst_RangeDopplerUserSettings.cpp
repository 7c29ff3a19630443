#include "core/JSONConfigurationObject.h"
#include "fmcw/processing/RangeDopplerUserSettings.h"

#include <QJsonDocument>
#include <QSignalSpy>
#include <QtTest>

class TestRangeDopplerUserSettings : public QObject
{
    Q_OBJECT
private slots:
    void deviceParameterUpdate_data()
    {
        QTest::addColumn<quint32>("rangeFft");
        QTest::addColumn<quint32>("dopplerFft");
        QTest::addColumn<quint32>("samples");
        QTest::addColumn<quint32>("chirps");
        QTest::addColumn<quint32>("expectedRangeFft");
        QTest::addColumn<quint32>("expectedDopplerFft");

        QTest::newRow("64 x 32 keeps the defaults") << 256u << 256u << 64u << 32u << 256u << 256u;
        QTest::newRow("300 chirps give 512") << 256u << 256u << 64u << 300u << 256u << 512u;
        QTest::newRow("300 chirps shrink 2048 to 512") << 256u << 2048u << 64u << 300u << 256u << 512u;
        QTest::newRow("512 samples raise 256") << 256u << 256u << 512u << 32u << 512u << 256u;
        QTest::newRow("long FFTs are kept") << 1024u << 1024u << 512u << 128u << 1024u << 1024u;
        QTest::newRow("200 samples give 256") << 1024u << 256u << 200u << 64u << 256u << 256u;
    }

    void deviceParameterUpdate()
    {
        QFETCH(quint32, rangeFft);
        QFETCH(quint32, dopplerFft);
        QFETCH(quint32, samples);
        QFETCH(quint32, chirps);
        QFETCH(quint32, expectedRangeFft);
        QFETCH(quint32, expectedDopplerFft);

        RangeDopplerUserSettings settings;
        settings.setRangeFftSize(rangeFft);
        settings.setDopplerFftSize(dopplerFft);
        QSignalSpy dopplerSpy(&settings, &RangeDopplerUserSettings::dopplerFftSizeChanged);
        settings.updateDeviceParameters(samples, chirps);

        QCOMPARE(std::make_pair(settings.rangeFftSize(), settings.dopplerFftSize()),
                 std::make_pair(expectedRangeFft, expectedDopplerFft));
        QCOMPARE(dopplerSpy.count(), dopplerFft == expectedDopplerFft ? 0 : 1);
        QCOMPARE(std::make_tuple(settings.rangeFft()->window()->size(), settings.dopplerFft()->window()->size(),
                                 settings.samplesPerChirp(), settings.chirpsPerFrame()),
                 std::make_tuple(samples, chirps, samples, chirps));
    }

    void resetFollowsTheDevice()
    {
        RangeDopplerUserSettings settings;
        settings.updateDeviceParameters(512, 64);
        settings.setDopplerFftSize(2048);
        settings.setColorThreshold(-60);
        settings.rangeFft()->window()->setType("Hamming");
        settings.dopplerFft()->setMeanRemoval(false);
        QSignalSpy thresholdSpy(&settings, &RangeDopplerUserSettings::colorThresholdChanged);
        settings.resetToDefault();
        QCOMPARE(std::make_tuple(settings.rangeFftSize(), settings.dopplerFftSize(), settings.rangeFft()->window()->size(),
                                 settings.dopplerFft()->window()->size(), settings.colorThreshold()),
                 std::make_tuple(512u, 256u, 512u, 64u, -90));
        QCOMPARE(thresholdSpy.count(), 1);
        // Everything else is back to what new settings hold (which the
        // calculator's test checks as the SDK receives it).
        RangeDopplerUserSettings fresh;
        fresh.updateDeviceParameters(512, 64);
        QJsonObject reset, expected;
        settings.configurationNode()->writeToJson(reset);
        fresh.configurationNode()->writeToJson(expected);
        QCOMPARE(reset, expected);
    }

    void checkOptimalSettings_data()
    {
        QTest::addColumn<quint32>("rangeFft");
        QTest::addColumn<quint32>("dopplerFft");
        QTest::addColumn<bool>("optimal");

        QTest::newRow("both cover without excess") << 128u << 64u << true;
        QTest::newRow("four times is still fine") << 512u << 256u << true;
        QTest::newRow("range too short") << 64u << 64u << false;
        QTest::newRow("doppler padded too much") << 128u << 512u << false;
    }

    void checkOptimalSettings()
    {
        QFETCH(quint32, rangeFft);
        QFETCH(quint32, dopplerFft);
        QFETCH(bool, optimal);
        RangeDopplerUserSettings settings;
        settings.updateDeviceParameters(128, 64);
        QCOMPARE(settings.checkOptimalSettings(rangeFft, dopplerFft), optimal);
    }

    void antennaSwitching_data()
    {
        QTest::addColumn<QVector<int>>("rx");
        QTest::addColumn<QVector<int>>("tx");
        QTest::addColumn<QVector<int>>("expectedRxTx"); // pairs after each switch

        QTest::newRow("three receivers, one transmitter")
            << QVector<int> { 0, 1, 2 } << QVector<int> { 0 } << QVector<int> { 1, 0, 2, 0, 0, 0 };
        QTest::newRow("two receivers, two transmitters")
            << QVector<int> { 0, 2 } << QVector<int> { 0, 1 } << QVector<int> { 2, 0, 0, 1, 2, 1, 0, 0 };
        QTest::newRow("one virtual antenna stays") << QVector<int> { 1 } << QVector<int> { 0 } << QVector<int> { 1, 0 };
    }

    void antennaSwitching()
    {
        QFETCH(QVector<int>, rx);
        QFETCH(QVector<int>, tx);
        QFETCH(QVector<int>, expectedRxTx);

        RangeDopplerUserSettings settings;
        settings.updateRxActiveIndexes(rx);
        settings.updateTxActiveIndexes(tx);
        QVector<int> shown;
        while (shown.size() < expectedRxTx.size()) {
            settings.switchToAnotherAntenna();
            shown << settings.currentRxIndex() << settings.currentTxIndex();
        }
        QCOMPARE(shown, expectedRxTx);
    }

    void jsonRoundTrip()
    {
        RangeDopplerUserSettings source;
        source.setColorThreshold(-70);
        source.setDopplerFftSize(512);
        source.rangeFft()->window()->setType("Hamming");
        QJsonObject saved;
        source.configurationNode()->writeToJson(saved);

        const QJsonObject node = saved.value("range_doppler").toObject();
        QCOMPARE(node.value("color_threshold").toInt(), -70);
        QCOMPARE(node.value("doppler_fft_config").toObject().value("size").toInt(), 512);
        QCOMPARE(node.value("range_fft_config").toObject().value("window_config").toObject().value("type").toString(),
                 QString("Hamming"));
        QVERIFY(!node.contains("fft_config"));

        RangeDopplerUserSettings target;
        auto tree = target.configurationNode();
        QString error;
        tree->validate(error, saved, {});
        QVERIFY2(error.isEmpty(), qPrintable(error));
        tree->readFromJson(saved);
        QCOMPARE(std::make_tuple(target.colorThreshold(), target.dopplerFftSize(), target.rangeFft()->window()->type()),
                 std::make_tuple(-70, 512u, QString("Hamming")));
    }
};

QTEST_GUILESS_MAIN(TestRangeDopplerUserSettings)
#include "tst_RangeDopplerUserSettings.moc"
