#include "FakeSubmoduleCoordinator.h"

#include "core/JSONConfigurationFile.h"
#include "core/JSONConfigurationObject.h"
#include "frame/RadarCoordinator.h"
#include "frame/UnavailableModeCoordinator.h"

#include <QSignalSpy>
#include <QtTest>

namespace {
const vrn_Device_Shield_Type_t fmcw = VRN_SHIELD_FMCW_512;
const vrn_Device_Shield_Type_t zp7 = VRN_SHIELD_ZP7_768;
const QString standard = QStringLiteral("Standard");
const QString cw = QStringLiteral("CW");
}

class TestRadarCoordinator : public QObject
{
    Q_OBJECT

private:
    // The coordinator as the module builds it: standard and CW for FMCW
    // boards, standard for the pulsed Doppler board.
    struct Bench {
        FakeSubmoduleCoordinator standardMode { { { fmcw, standard }, { VRN_SHIELD_FMCW_513, standard } } };
        FakeSubmoduleCoordinator cwMode { { { fmcw, cw } } };
        FakeSubmoduleCoordinator zp7Mode { { { zp7, standard } } };
        RadarCoordinator coordinator;
        Bench()
        {
            coordinator.registerSubmoduleCoordinator(&standardMode);
            coordinator.registerSubmoduleCoordinator(&zp7Mode);
            coordinator.registerSubmoduleCoordinator(&cwMode);
        }
    };

private slots:
    void initTestCase()
    {
        qRegisterMetaType<RadarEventCode>("RadarEventCode");
        qRegisterMetaType<QSet<QString>>("QSet<QString>");
    }

    void connectRoutesByTypeAndMode_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("expectedCoordinator");
        QTest::newRow("fmcw 512") << int(fmcw) << "standard";
        QTest::newRow("fmcw 513") << int(VRN_SHIELD_FMCW_513) << "standard";
        QTest::newRow("zp7") << int(zp7) << "zp7";
    }

    void connectRoutesByTypeAndMode()
    {
        QFETCH(int, type);
        QFETCH(QString, expectedCoordinator);
        Bench bench;
        QSignalSpy modes(&bench.coordinator, &RadarCoordinator::userModesChanged);

        QVERIFY(bench.coordinator.connectDevice("uuid-1", vrn_Device_Shield_Type_t(type)));

        auto* expected = expectedCoordinator == "zp7" ? &bench.zp7Mode : &bench.standardMode;
        QCOMPARE(expected->calls, QStringList { "connect uuid-1" });
        QVERIFY(bench.coordinator.isConnected());
        QVERIFY(bench.coordinator.isDeviceConnected("uuid-1"));
        QVERIFY(!bench.coordinator.isDeviceConnected("uuid-2"));
        QCOMPARE(modes.count(), 1);
        const auto announced = modes.first().first().value<QSet<QString>>();
        QCOMPARE(announced, type == int(fmcw) ? QSet<QString>({ standard, cw }) : QSet<QString>({ standard }));

        // Choosing the mode in use keeps the board.
        QSignalSpy changed(&bench.coordinator, &RadarCoordinator::userModeChanged);
        bench.coordinator.setUserMode(standard);
        QCOMPARE(expected->calls, QStringList { "connect uuid-1" });
        QCOMPARE(changed.count(), 0);
        QVERIFY(bench.coordinator.isDeviceConnected("uuid-1"));
    }

    void connectFallsBackToStandardBeforeConnecting()
    {
        Bench bench;
        // Choose CW with an FMCW board, let it go, then connect a ZP7 board
        // which has no CW mode.
        QVERIFY(bench.coordinator.connectDevice("fmcw-1", fmcw));
        bench.coordinator.setUserMode(cw);
        QCOMPARE(bench.coordinator.userMode(), cw);
        bench.coordinator.disconnectDevice();
        QVERIFY(!bench.coordinator.isConnected());

        QStringList order;
        connect(&bench.coordinator, &RadarCoordinator::userModeChanged, [&](const QString& mode) {
            order << "mode " + mode << bench.zp7Mode.calls;
        });
        QVERIFY(bench.coordinator.connectDevice("zp7-1", zp7));
        QCOMPARE(bench.coordinator.userMode(), standard);
        // The mode changed before the ZP7 coordinator was asked to connect.
        QCOMPARE(order, QStringList { "mode Standard" });
        QCOMPARE(bench.zp7Mode.calls, QStringList { "connect zp7-1" });
    }

    void withoutBoardNothingConnectsAndTheModeStays()
    {
        Bench bench;
        QCOMPARE(bench.coordinator.userModes(), QStringList({ cw, standard })); // each mode once
        QSignalSpy changed(&bench.coordinator, &RadarCoordinator::userModeChanged);
        bench.coordinator.setUserMode(cw);
        QCOMPARE(bench.coordinator.userMode(), standard);
        QCOMPARE(changed.count(), 0);

        QVERIFY(!bench.coordinator.connectDevice("odd", VRN_SHIELD_FMCW_514)); // no standard mode for the type
        QVERIFY(!bench.coordinator.isConnected());
        QVERIFY(bench.standardMode.calls.isEmpty());
    }

    void refusedBoardCanBeTriedUnderAnotherMode_data()
    {
        QTest::addColumn<bool>("connectFirst");
        QTest::addColumn<QString>("refusingMode");
        QTest::addColumn<QString>("retryMode");
        QTest::addColumn<QVector<bool>>("announcedAtRefusal");
        QTest::newRow("refused at connect, tried as CW") << false << standard << cw << QVector<bool> {};
        QTest::newRow("switch to CW refused, back to Standard") << true << cw << standard << QVector<bool> { false };
        QTest::newRow("switch to a mode without coordinator") << true << QStringLiteral("ZP7") << standard
                                                               << QVector<bool> { false };
    }

    void refusedBoardCanBeTriedUnderAnotherMode()
    {
        QFETCH(bool, connectFirst);
        QFETCH(QString, refusingMode);
        QFETCH(QString, retryMode);
        QFETCH(QVector<bool>, announcedAtRefusal);
        Bench bench;
        if (connectFirst)
            QVERIFY(bench.coordinator.connectDevice("fmcw-1", fmcw));
        QSignalSpy connected(&bench.coordinator, &RadarCoordinator::isConnectedChanged);
        QSignalSpy modes(&bench.coordinator, &RadarCoordinator::userModesChanged);
        QSignalSpy rescans(&bench.coordinator, &RadarCoordinator::triggerDetectDevices);
        auto announced = [&connected] {
            QVector<bool> states;
            for (const auto& arguments : connected)
                states << arguments.first().toBool();
            return states;
        };
        bench.standardMode.refuse = refusingMode == standard;
        bench.cwMode.refuse = refusingMode == cw;

        if (connectFirst)
            bench.coordinator.setUserMode(refusingMode);
        else
            QVERIFY(!bench.coordinator.connectDevice("fmcw-1", fmcw));

        // The board is let go, said so, and listed again by a rescan.
        QVERIFY(!bench.coordinator.isConnected());
        QVERIFY(!bench.coordinator.isDeviceConnected("fmcw-1"));
        QCOMPARE(announced(), announcedAtRefusal);
        QCOMPARE(rescans.count(), connectFirst ? 1 : 0);
        for (const auto& arguments : modes)
            QVERIFY(!arguments.first().value<QSet<QString>>().isEmpty());

        // Another mode takes the same board.
        bench.coordinator.setUserMode(retryMode);
        QCOMPARE(bench.coordinator.userMode(), retryMode);
        auto& retried = retryMode == cw ? bench.cwMode : bench.standardMode;
        QVERIFY(retried.isConnected());
        QCOMPARE(retried.deviceUuid(), QStringLiteral("fmcw-1"));
        QVERIFY(bench.coordinator.isDeviceConnected("fmcw-1"));
        QCOMPARE(announced(), announcedAtRefusal + QVector<bool> { true });
        bench.coordinator.startAcquisition();
        QVERIFY(bench.coordinator.isAcquisitionActive());
    }

    void secondBoardStaysActive_data()
    {
        QTest::addColumn<bool>("releasesHeldBoard");
        QTest::newRow("mode keeps the held board until told") << false;
        QTest::newRow("mode lets the held board go first") << true;
    }

    void secondBoardStaysActive()
    {
        QFETCH(bool, releasesHeldBoard);
        Bench bench;
        bench.standardMode.releasesHeldBoard = releasesHeldBoard;
        QVERIFY(bench.coordinator.connectDevice("uuid-1", fmcw));
        QSignalSpy connected(&bench.coordinator, &RadarCoordinator::isConnectedChanged);

        QVERIFY(bench.coordinator.connectDevice("uuid-2", fmcw));

        QVERIFY(bench.coordinator.isConnected());
        QVERIFY(bench.coordinator.isDeviceConnected("uuid-2"));
        QVERIFY(!bench.coordinator.isDeviceConnected("uuid-1"));
        if (!connected.isEmpty())
            QCOMPARE(connected.last().first().toBool(), true);
        bench.coordinator.startAcquisition();
        QVERIFY(bench.standardMode.isAcquisitionActive());
        QVERIFY(bench.coordinator.isAcquisitionActive());
    }

    void boardBeingOpenedCountsAsConnected_data()
    {
        QTest::addColumn<bool>("refuse");
        QTest::newRow("opened") << false;
        QTest::newRow("refused") << true;
    }

    void boardBeingOpenedCountsAsConnected()
    {
        QFETCH(bool, refuse);
        Bench bench;
        bench.standardMode.refuse = refuse;
        // What a rescan on the detection thread would see meanwhile.
        QStringList seen;
        bench.standardMode.whileConnecting = [&](const QString& uuid) {
            if (bench.coordinator.isDeviceConnected(uuid))
                seen << uuid;
            if (bench.coordinator.isDeviceConnected("other"))
                seen << "other";
        };

        QCOMPARE(bench.coordinator.connectDevice("uuid-1", fmcw), !refuse);

        QCOMPARE(seen, QStringList { "uuid-1" });
        QCOMPARE(bench.coordinator.isDeviceConnected("uuid-1"), !refuse);
    }

    void submoduleDisconnectionRescans()
    {
        Bench bench;
        QVERIFY(bench.coordinator.connectDevice("uuid-1", fmcw));
        QSignalSpy modes(&bench.coordinator, &RadarCoordinator::userModesChanged);
        QSignalSpy rescans(&bench.coordinator, &RadarCoordinator::triggerDetectDevices);
        QSignalSpy connected(&bench.coordinator, &RadarCoordinator::isConnectedChanged);
        // What the detection thread would see when the rescan starts.
        QVector<bool> connectedAtRescan;
        connect(&bench.coordinator, &RadarCoordinator::triggerDetectDevices,
                [&] { connectedAtRescan << bench.coordinator.isDeviceConnected("uuid-1"); });

        // The board goes away on its own (e.g. unplugged).
        bench.standardMode.disconnectDevice();

        QCOMPARE(connectedAtRescan, QVector<bool> { false });

        QCOMPARE(modes.count(), 1);
        QVERIFY(modes.first().first().value<QSet<QString>>().isEmpty());
        QCOMPARE(rescans.count(), 1);
        QCOMPARE(connected.count(), 1);
        QCOMPARE(connected.first().first().toBool(), false);
        QVERIFY(!bench.coordinator.isDeviceConnected("uuid-1"));
        // No longer active: operations reach nobody.
        bench.coordinator.startAcquisition();
        QVERIFY(!bench.standardMode.isAcquisitionActive());
    }

    void eventsAndAcquisitionReachOnlyTheActiveMode()
    {
        Bench bench;
        QVERIFY(bench.coordinator.connectDevice("uuid-1", fmcw));
        QSignalSpy acquisition(&bench.coordinator, &RadarCoordinator::isAcquisitionActiveChanged);

        emit bench.coordinator.triggerEvent(RadarEventCode::Notice, "hello", "");
        bench.coordinator.startAcquisition();

        QCOMPARE(bench.standardMode.events, QStringList { "1 hello" });
        QVERIFY(bench.cwMode.events.isEmpty());
        QVERIFY(bench.coordinator.isAcquisitionActive());
        QCOMPARE(acquisition.count(), 1);
        QCOMPARE(acquisition.first().first().toBool(), true);

        bench.coordinator.setUserMode(cw);
        emit bench.coordinator.triggerEvent(RadarEventCode::Error, "again", "");
        QCOMPARE(bench.standardMode.events, QStringList { "1 hello" });
        QCOMPARE(bench.cwMode.events, QStringList { "0 again" });
    }

    void lastRegisteredCoordinatorWins()
    {
        FakeSubmoduleCoordinator first { { { fmcw, standard } } };
        FakeSubmoduleCoordinator second { { { fmcw, standard } } };
        RadarCoordinator coordinator;
        coordinator.registerSubmoduleCoordinator(&first);
        coordinator.registerSubmoduleCoordinator(&second);
        QVERIFY(coordinator.connectDevice("uuid", fmcw));
        QVERIFY(first.calls.isEmpty());
        QCOMPARE(second.calls, QStringList { "connect uuid" });
    }

    void userModeIsPersistedUnderRadar()
    {
        Bench bench;
        QVERIFY(bench.coordinator.connectDevice("uuid", fmcw));
        bench.coordinator.setUserMode(cw);

        JSONConfigurationObject root("root");
        root.addChild(bench.coordinator.configurationNode());
        QTemporaryDir dir;
        const QString path = dir.filePath("settings.json");
        QVERIFY(saveToFile(root, path));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QJsonObject saved = QJsonDocument::fromJson(file.readAll()).object();
        QCOMPARE(saved.value("radar").toObject().value("userMode").toString(), cw);

        // Loading switches the mode back through the same rules as the user.
        QVERIFY(loadFromText(root, R"({"radar": {"userMode": "Standard"}})").isEmpty());
        QCOMPARE(bench.coordinator.userMode(), standard);
        QCOMPARE(loadFromText(root, R"({"radar": {"userMode": ""}})"),
                 QString("Field radar.userMode validation error: User mode must not be empty"));
    }

    void modeNotInThisBuildRefusesBoardsButOffersTheMode()
    {
        UnavailableModeCoordinator pulsed { { { zp7, standard } } };
        RadarCoordinator coordinator;
        coordinator.registerSubmoduleCoordinator(&pulsed);
        QSignalSpy connected(&coordinator, &RadarCoordinator::isConnectedChanged);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^Standard mode cannot open zp7-1 of type 768"));

        QVERIFY(!coordinator.connectDevice("zp7-1", zp7));
        QCOMPARE(coordinator.userModes(), QStringList { standard });
        QVERIFY(!coordinator.isConnected());
        QVERIFY(!coordinator.isDeviceConnected("zp7-1"));
        QCOMPARE(connected.count(), 0);
    }
};

QTEST_GUILESS_MAIN(TestRadarCoordinator)
#include "tst_RadarCoordinator.moc"
