// The flasher panel driven as a user would, offscreen on simulated
// baseboards: the list follows boards in normal and in bootloader mode as
// they are plugged and unplugged, Flash writes the shipped image with the
// progress and messages shown, a failing job ends in its status, and the
// device tab points at the newer image until the board runs it.
#include "PageTestSupport.h"
#include "WindowRig.h"

#include "BoardList.h"
#include "MessageLog.h"

#include <QFile>

namespace {

const QString kFlasher = QStringLiteral("flasher_ttyVRN0 (Radar)");

// A baseboard on ttyVRN0 flashed at a pace the panel can be watched at,
// with an optional flashing fault, and one waiting in its bootloader.
QString bench(const QString& flashFaults = QString(), bool withBootloaderBoard = false)
{
    const QString faults = flashFaults.isEmpty() ? QString() : QStringLiteral(", \"flash_faults\": ") + flashFaults;
    const QString second = withBootloaderBoard
        ? QStringLiteral(R"(, { "uuid": "2b2b-0002", "port": "ttyVRN1", "mode": "bootloader" })")
        : QString();
    return QStringLiteral(R"({ "boards": [ { "uuid": "1f3c-0001", "shield": 512, "chip": "KMR7A", "port": "ttyVRN0",
        "pacing": "realtime", "flash_step_ms": 15, "usb_switch_ms": 200%1 }%2 ] })")
        .arg(faults, second);
}

QString state(WindowRig& rig, const QString& flasher)
{
    QQuickItem* row = rig.item(flasher);
    QQuickItem* label = row ? row->findChild<QQuickItem*>(QStringLiteral("flasherState")) : nullptr;
    return label ? label->property("text").toString() : QString();
}

bool logHas(MessageLog& log, const QString& text)
{
    for (int row = 0; row < log.count(); ++row) {
        if (log.textAt(row).contains(text))
            return true;
    }
    return false;
}

} // namespace

class TestFlasherPanel : public QObject
{
    Q_OBJECT
private slots:
    void listFollowsBaseboards()
    {
        WindowRig rig;
        QCOMPARE(rig.start(bench(QString(), true)), QString());
        QVERIFY(rig.click("flashersButton"));
        QQuickItem* list = rig.item("flasherList");
        QTRY_COMPARE_WITH_TIMEOUT(list->property("count").toInt(), 2, 10000);
        QCOMPARE(state(rig, kFlasher), QString("NOT_STARTED"));
        QCOMPARE(state(rig, "flasher_ttyVRN1 (Radar)"), QString("NOT_STARTED"));
        QVERIFY(rig.text("flasherImage").endsWith("/firmware/radar/RadarBaseboardKT4_v2.6.0.bin"));

        QCOMPARE(rig.simulator()->unplug_board("1f3c-0001"), nullptr);
        QTRY_COMPARE_WITH_TIMEOUT(list->property("count").toInt(), 1, 10000);
        QVERIFY(!rig.item(kFlasher));
        QCOMPARE(rig.simulator()->plug_board(R"({ "uuid": "3c3c-0003", "port": "ttyVRN5", "mode": "bootloader" })"),
                 nullptr);
        QTRY_VERIFY_WITH_TIMEOUT(rig.item("flasher_ttyVRN5 (Radar)"), 10000);
        QCOMPARE(list->property("count").toInt(), 2);
    }

    void flashWritesTheNewerImage()
    {
        WindowRig rig;
        QCOMPARE(rig.start(bench(QString(), true)), QString());
        QTRY_VERIFY(rig.item("board_Radar"));
        QVERIFY(rig.click("connectButton"));
        QTRY_COMPARE(rig.workbench().boardList().connectedBoard(), QString("Radar"));
        QVERIFY(rig.click("deviceTab"));
        QTRY_VERIFY(rig.item("deviceFirmwareNotice")->isVisible());
        QVERIFY2(rig.text("deviceFirmwareNotice").contains("RadarBaseboardKT4_v2.6.0.bin"),
                 qPrintable(rig.text("deviceFirmwareNotice")));
        rig.keepPicture("device-notice");

        QVERIFY(rig.click("flashersButton"));
        QTRY_VERIFY_WITH_TIMEOUT(rig.item(kFlasher), 10000);
        QTRY_VERIFY(rig.item("flashButton")->isEnabled());
        QVERIFY(rig.click("flashButton"));
        // The open board is let go of before its bootloader takes it off the list.
        QCOMPARE(rig.workbench().boardList().connectedBoard(), QString());
        QVERIFY(logHas(rig.workbench().messageLog(), "Radar was disconnected for flashing"));
        QTRY_VERIFY_WITH_TIMEOUT(rig.item("flasherProgress")->property("value").toDouble() >= 40, 20000);
        QCOMPARE(state(rig, kFlasher), QString("FLASHING"));
        QVERIFY(!rig.item("flashButton")->isEnabled());
        rig.keepPicture("flasher-running");
        // Closing waits for the job; the user may also keep the window open.
        QVERIFY(!rig.workbench().finishSession());
        QTRY_VERIFY(rig.item("keepOpenButton") && rig.item("keepOpenButton")->isVisible());
        rig.keepPicture("flasher-closing");
        QVERIFY(rig.click("keepOpenButton"));
        QCOMPARE(rig.workbench().closingReason(), QString());
        // Out of sight the job is still shown in the tool bar.
        QVERIFY(rig.click("flashersButton"));
        QCOMPARE(rig.text("flashersButton"), QString::fromUtf8("Flashers: flashing…"));
        // The board that ran 2.5.1 has gone: no notice for it.
        QVERIFY(!rig.item("deviceFirmwareNotice")->isVisible());
        rig.keepPicture("flasher-out-of-sight");
        QVERIFY(rig.click("flashersButton"));

        QTRY_COMPARE_WITH_TIMEOUT(state(rig, kFlasher), QString("FINISHED_SUCCESS"), 30000);
        QCOMPARE(rig.item("flasherProgress")->property("value").toDouble(), 100.0);
        const QStringList messages = rig.item(kFlasher)->property("messages").toStringList();
        QVERIFY2(messages.contains("BOOTLOADER: 0 Activating the bootloader") && messages.contains("VERIFY: 100")
                     && messages.last() == "EXIT: successful",
                 qPrintable(messages.join('\n')));
        QCOMPARE(rig.item("flasherMessages")->property("count").toInt(), messages.size());
        QVERIFY(rig.item("flashButton")->isEnabled());
        rig.keepPicture("flasher-finished");

        // Connected again, the board runs the image's version: no notice.
        QVERIFY(rig.click("flashersButton"));
        QTRY_VERIFY_WITH_TIMEOUT(rig.item("connectButton")->isEnabled(), 10000);
        QVERIFY(rig.click("connectButton"));
        QTRY_VERIFY_WITH_TIMEOUT(rig.text("deviceFirmware").contains("2.6.0"), 10000);
        QVERIFY(!rig.item("deviceFirmwareNotice")->isVisible());
    }

    void failedJobShowsItsStatus_data()
    {
        QTest::addColumn<QString>("faults");
        QTest::addColumn<QByteArray>("image");
        QTest::addColumn<QString>("status");
        QTest::addColumn<QString>("message");
        QTest::newRow("bootloader refused") << R"([ { "kind": "activation_fails", "count": 0 } ])" << QByteArray()
                                            << "BOOTLOADER_FAILURE" << "did not acknowledge the bootloader command";
        // The user's own image, picked in the file dialog, is written; a damaged
        // one is refused.
        QTest::newRow("damaged image") << QString() << QByteArray("RBK4").append(60, '\x07') << "FLASHING_FAILURE"
                                       << "Image check failed";
    }

    void failedJobShowsItsStatus()
    {
        QFETCH(QString, faults);
        QFETCH(QByteArray, image);
        QFETCH(QString, status);
        QFETCH(QString, message);

        WindowRig rig;
        QCOMPARE(rig.start(bench(faults)), QString());
        QVERIFY(rig.click("flashersButton"));
        QTRY_VERIFY_WITH_TIMEOUT(rig.item(kFlasher), 10000);
        if (!image.isEmpty()) {
            const QString path = QDir(rig.directory()).filePath("damaged.bin");
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(image) == image.size());
            file.close();
            QVERIFY(rig.click("flasherChooseImage"));
            QVERIFY(chooseFile(rig, path));
            QCOMPARE(rig.text("flasherImage"), path);
        }
        QVERIFY(rig.click("flashButton"));
        // Closing waits for the job, then happens by itself.
        QVERIFY(!rig.workbench().finishSession());
        QVERIFY(rig.workbench().closingWaitsForFlashing());
        QTRY_COMPARE_WITH_TIMEOUT(state(rig, kFlasher), status, 30000);
        QTRY_VERIFY(!rig.window()->isVisible());
        QVERIFY2(rig.text("flasherStatus").startsWith(status + ": "), qPrintable(rig.text("flasherStatus")));
        QVERIFY2(rig.text("flasherMessage").contains(message), qPrintable(rig.text("flasherMessage")));
        QCOMPARE(rig.item("flasherResult")->property("outcome").toString(), QString("failure"));
        QVERIFY(logHas(rig.workbench().messageLog(), "Flashing ttyVRN0 (Radar) failed: " + status));
        // The board stays listed and may be flashed again.
        QVERIFY(rig.item("flashButton")->isEnabled());
    }

    void otherModesNameTheNewerImage_data()
    {
        QTest::addColumn<QString>("chip");
        QTest::addColumn<QString>("mode");
        QTest::addColumn<QString>("tab");
        QTest::addColumn<QString>("notice");
        QTest::newRow("pulsed Doppler") << "ZP7" << QString() << "zp7DeviceTab" << "zp7DeviceFirmwareNotice";
        QTest::newRow("CW") << "KMR7A" << "CW" << QString() << "cwFirmwareNotice";
    }

    void otherModesNameTheNewerImage()
    {
        QFETCH(QString, chip);
        QFETCH(QString, mode);
        QFETCH(QString, tab);
        QFETCH(QString, notice);

        WindowRig rig;
        QCOMPARE(rig.start(QStringLiteral(R"({ "boards": [ { "uuid": "5e5e-0005", "chip": "%1" } ] })").arg(chip)),
                 QString());
        QTRY_VERIFY(rig.item("board_Radar"));
        QVERIFY(rig.click("connectButton"));
        QTRY_COMPARE(rig.workbench().boardList().connectedBoard(), QString("Radar"));
        if (!mode.isEmpty())
            rig.workbench().boardList().selectMode(mode);
        if (!tab.isEmpty())
            QTRY_VERIFY(rig.click(tab));
        QTRY_VERIFY_WITH_TIMEOUT(rig.item(notice) && rig.item(notice)->isVisible(), 10000);
        QVERIFY2(rig.text(notice).contains("RadarBaseboardKT4_v2.6.0.bin"), qPrintable(rig.text(notice)));
        rig.keepPicture(QStringLiteral("notice-") + QTest::currentDataTag());
    }
};

QTEST_MAIN(TestFlasherPanel)
#include "tst_FlasherPanel.moc"
