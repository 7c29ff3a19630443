#include "FakeZP7SController.h"

#include "common/MathAxis.h"
#include "fmcw/common/RadarAntennas.h"
#include "zp7/config/ZP7SConfig.h"
#include "zp7/config/ZP7SDeviceConfig.h"
#include "zp7/config/ZP7SFrameParams.h"
#include "zp7/config/ZP7SLimits.h"
#include "zp7/config/ZP7SPulseConfigParams.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QByteArray zp7Document(const QString& type, int samples, int gain, float prt = 1e-3f, float rate = 2.0f,
                       const QString& extendedType = QString())
{
    const QJsonObject frame { { "num_of_samples", samples },
                              { "frame_repetition_rate", rate },
                              { "pulse_repetition_time", prt } };
    const QJsonObject pulse { { "rx_antennas", QJsonArray { 1 } },
                              { "tx_antennas", QJsonArray { 1 } },
                              { "tx_power_level", 3 },
                              { "abb_gain_index", gain } };
    QJsonObject top { { "device_config", QJsonObject { { "frame_params", frame }, { "pulse_params", pulse } } },
                      { "json_version", QJsonObject { { "type", type }, { "version", "1.0" } } } };
    if (!extendedType.isEmpty())
        top.insert("device_configuration_extended",
                   QJsonObject { { "json_version", QJsonObject { { "type", extendedType }, { "version", "1.0" } } } });
    return QJsonDocument(top).toJson();
}

QString writeFile(const QTemporaryDir& dir, const QByteArray& bytes)
{
    const QString path = dir.filePath(QStringLiteral("config.json"));
    QFile file(path);
    file.open(QIODevice::WriteOnly | QIODevice::Truncate);
    file.write(bytes);
    return path;
}

// Message and details of every triggerEvent, joined by " | ".
QStringList events(const QSignalSpy& spy)
{
    QStringList texts;
    for (const QList<QVariant>& event : spy)
        texts << event.at(1).toString() + QStringLiteral(" | ") + event.at(2).toString();
    return texts;
}

}

class tst_ZP7SConfig : public QObject
{
    Q_OBJECT
private slots:
    void loadFromDeviceFillsBothCopiesOrNothing_data()
    {
        QTest::addColumn<int>("failing");
        QTest::newRow("board answers") << int(FakeZP7SController::None);
        QTest::newRow("no device info") << int(FakeZP7SController::Info);
        QTest::newRow("no limits") << int(FakeZP7SController::Limits);
        QTest::newRow("no config") << int(FakeZP7SController::GetConfig);
    }

    void loadFromDeviceFillsBothCopiesOrNothing()
    {
        QFETCH(int, failing);
        FakeZP7SController board;
        board.failing = FakeZP7SController::Call(failing);
        ZP7SConfig config(&board);
        QSignalSpy updated(&config, &ZP7SConfig::deviceConfigUpdated);
        const bool loaded = failing == FakeZP7SController::None;
        QCOMPARE(config.loadFromDevice(), loaded);
        QCOMPARE(updated.count(), loaded ? 1 : 0);
        for (ZP7SDeviceConfig* copy : { config.deviceConfig(), config.guiConfig() }) {
            QCOMPARE(int(copy->frameParams()->numOfSamples()), loaded ? 64 : 0);
            QCOMPARE(copy->frameParams()->frameRepetitionRate(), loaded ? 2.0f : 0.0f);
            QCOMPARE(copy->channel(), loaded ? 1 : -1);
            QCOMPARE(int(copy->pulseConfigParams()->abbGain()), loaded ? 12 : 0);
            QCOMPARE(int(copy->limits()->maxNumOfSamples()), loaded ? 2048 : 65535);
        }
        QCOMPARE(config.deviceInfo()->deviceName(), loaded ? QStringLiteral("ZP7") : QString());
        // The spectrum spans one PRF (1 kHz) around zero.
        QVERIFY(qAbs(config.deviceConfig()->frequencyDomainAxis()->max() - (loaded ? 500.0 : 0.0)) < 1e-3);
    }

    void refusedFilesChangeNothing_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("reason");
        const QString zp7 = QStringLiteral("KMR24ZP7");
        QTest::newRow("another chip") << zp7Document("KMR24ZP8", 128, 48) << "\"KMR24ZP8\" is not a \"KMR24ZP7\"";
        QTest::newRow("FMCW document") << zp7Document("KMR7A", 128, 48) << "\"KMR7A\" is an FMCW configuration";
        QTest::newRow("FMCW extended") << zp7Document(zp7, 128, 48, 1e-3f, 2.0f, "KMR7C_Extended")
                                       << "\"KMR7C_Extended\" is an FMCW configuration";
        QTest::newRow("malformed") << QByteArray("{ \"device_config\": ") << "JSON parser error";
        QTest::newRow("samples outside") << zp7Document(zp7, 4096, 48)
                                         << "num_of_samples validation error: Value 4096 not in expected range: "
                                            "[16 - 2048]";
        QTest::newRow("gain not a step") << zp7Document(zp7, 128, 7) << "abb_gain_index validation error";
        QTest::newRow("PRT outside") << zp7Document(zp7, 128, 48, 50e-6f) << "pulse_repetition_time validation";
        QTest::newRow("frame too short") << zp7Document(zp7, 2048, 48, 1e-3f, 10.0f)
                                         << "Frame repetition rate outside the device's limits";
    }

    void refusedFilesChangeNothing()
    {
        QFETCH(QByteArray, document);
        QFETCH(QString, reason);
        FakeZP7SController board;
        ZP7SConfig config(&board);
        QVERIFY(config.loadFromDevice());
        QTemporaryDir dir;
        QSignalSpy events(&config, &ZP7SConfig::triggerEvent);
        QSignalSpy updated(&config, &ZP7SConfig::deviceConfigUpdated);
        QVERIFY(!config.applyConfigFile(writeFile(dir, document)));
        QCOMPARE(events.count(), 1);
        QVERIFY2(::events(events).first().contains(reason), qPrintable(::events(events).first()));
        QCOMPARE(board.setCalls, 0);
        QCOMPARE(updated.count(), 0);
        QCOMPARE(int(config.guiConfig()->frameParams()->numOfSamples()), 64);
        QCOMPARE(int(config.deviceConfig()->pulseConfigParams()->abbGain()), 12);
    }

    void fileRoundTripThroughBothDocuments()
    {
        FakeZP7SController board;
        ZP7SConfig config(&board);
        QVERIFY(config.loadFromDevice());
        ZP7SDeviceConfig* gui = config.guiConfig();
        gui->pulseConfigParams()->selectChannel(0);
        gui->pulseConfigParams()->setTxPowerLevel(5);
        gui->pulseConfigParams()->setAbbGain(192);
        gui->frameParams()->setNumOfSamples(256);
        gui->frameParams()->setPulseRepetitionTime(200e-6f);
        gui->frameParams()->setFrameRepetitionRate(4.0f);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("saved.json"));
        QVERIFY(config.saveConfigFile(path));

        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QJsonObject top = QJsonDocument::fromJson(file.readAll()).object();
        const QJsonObject params = top["device_config"].toObject();
        QCOMPARE(params["frame_params"].toObject().keys(),
                 QStringList({ "frame_repetition_rate", "num_of_samples", "pulse_repetition_time" }));
        const QJsonObject pulse = params["pulse_params"].toObject();
        QCOMPARE(pulse.keys(), QStringList({ "abb_gain_index", "rx_antennas", "tx_antennas", "tx_power_level" }));
        QCOMPARE(pulse["abb_gain_index"].toInt(), 192);
        QCOMPARE(pulse["tx_antennas"].toArray(), QJsonArray({ 1 }));
        QCOMPARE(top["json_version"].toObject()["type"].toString(), QStringLiteral("KMR24ZP7"));
        const QJsonObject extended = top["device_configuration_extended"].toObject();
        QCOMPARE(extended["json_version"].toObject()["type"].toString(), QStringLiteral("KMR24ZP7_Extended"));
        QCOMPARE(extended["device_info"].toObject()["device_name"].toString(), QStringLiteral("ZP7"));

        config.revert();
        QVERIFY(!config.differs());
        QVERIFY(config.applyConfigFile(path));
        QCOMPARE(int(board.pulse.channel), 0);
        QCOMPARE(int(board.pulse.abb_gain_index), 192);
        QCOMPARE(int(board.frame.num_samples), 256);
        QCOMPARE(board.frame.frame_repetition_time_s, 0.25f);
        QCOMPARE(config.deviceConfig()->frameParams()->pulseRepetitionTime(), 200e-6f);
        QVERIFY(!config.differs());

        // A recording's document plays back without a board.
        ZP7SConfig player(nullptr);
        player.setPlaybackActive(true);
        QString error;
        QVERIFY2(player.loadRecordingDocument(config.recordingDocument(), error), qPrintable(error));
        QVERIFY(player.deviceConfig()->sameSettings(*config.deviceConfig()));
        QCOMPARE(player.deviceInfo()->deviceName(), QStringLiteral("ZP7"));
        QByteArray fmcw = config.recordingDocument();
        fmcw.replace("KMR24ZP7", "KMR7A");
        QVERIFY(!player.loadRecordingDocument(fmcw, error));
        QVERIFY2(error.contains(QStringLiteral("FMCW")), qPrintable(error));
        QCOMPARE(player.deviceConfig()->frameParams()->numOfSamples(), quint16(256));
    }

    void applyRefusalsKeepTheRunningCopy_data()
    {
        QTest::addColumn<QString>("edit");
        QTest::addColumn<int>("setCalls");
        QTest::addColumn<QString>("event"); // empty: the device tells
        QTest::newRow("samples outside") << "samples" << 0 << "Number of samples outside the device's limits";
        QTest::newRow("Rx1 with Tx2") << "channel" << 0 << "Invalid channel settings";
        QTest::newRow("board refuses") << "refuse" << 1 << QString();
        QTest::newRow("playback") << "playback" << 0 << "nothing is sent to a board";
        QTest::newRow("board gone") << "unplug" << 0 << "No ZP7 board is connected";
    }

    void applyRefusalsKeepTheRunningCopy()
    {
        QFETCH(QString, edit);
        QFETCH(int, setCalls);
        QFETCH(QString, event);
        FakeZP7SController board;
        ZP7SConfig config(&board);
        QVERIFY(config.loadFromDevice());
        ZP7SDeviceConfig* gui = config.guiConfig();
        gui->pulseConfigParams()->setAbbGain(96);
        if (edit == QLatin1String("samples"))
            gui->frameParams()->setNumOfSamples(4000);
        if (edit == QLatin1String("channel")) {
            gui->pulseConfigParams()->selectChannel(1);
            gui->pulseConfigParams()->rxAntennas()->setMask(1);
            QTest::ignoreMessage(QtCriticalMsg, "Invalid channel settings");
        }
        board.failing = edit == QLatin1String("refuse") ? FakeZP7SController::SetConfig : FakeZP7SController::None;
        board.connected = edit != QLatin1String("unplug");
        config.setPlaybackActive(edit == QLatin1String("playback"));
        QSignalSpy events(&config, &ZP7SConfig::triggerEvent);
        QVERIFY(!config.applyGuiConfig());
        QCOMPARE(board.setCalls, setCalls);
        QCOMPARE(events.count(), event.isEmpty() ? 0 : 1);
        if (!event.isEmpty())
            QVERIFY2(::events(events).first().contains(event), qPrintable(::events(events).first()));
        QCOMPARE(int(config.deviceConfig()->pulseConfigParams()->abbGain()), 12);
        QCOMPARE(int(board.pulse.abb_gain_index), 12);
        QVERIFY(config.differs());
        config.revert();
        QVERIFY(!config.differs());
    }

    void guiBoundsFollowTheFrame()
    {
        FakeZP7SController board;
        ZP7SConfig config(&board);
        QVERIFY(config.loadFromDevice());
        ZP7SDeviceConfig* gui = config.guiConfig();
        // 64 pulses of 1 ms: a frame lasts at least 64 ms.
        QCOMPARE(gui->limits()->minFrameRepetitionTimeS(), 0.064f);
        QCOMPARE(gui->frameParams()->frameRepetitionRate(), 2.0f);
        gui->frameParams()->setNumOfSamples(1024);
        QCOMPARE(gui->limits()->minFrameRepetitionTimeS(), 1.024f);
        QCOMPARE(gui->frameParams()->frameRepetitionRate(), 1.0f / 1.024f);
        QCOMPARE(config.deviceConfig()->limits()->minFrameRepetitionTimeS(), 0.01f);
        QVERIFY(config.applyGuiConfig());
        QCOMPARE(int(board.frame.num_samples), 1024);
        QVERIFY(config.applyDefaultConfig());
        QCOMPARE(int(board.frame.num_samples), 128);
        QCOMPARE(config.guiConfig()->channel(), 0);
        QCOMPARE(gui->limits()->minFrameRepetitionTimeS(), 0.064f);
    }
};

QTEST_GUILESS_MAIN(tst_ZP7SConfig)
#include "tst_ZP7SConfig.moc"
