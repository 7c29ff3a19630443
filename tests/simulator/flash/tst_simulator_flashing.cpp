#include "SimulatorSdk.h"

#include <flash/FlashRadarBaseboardKT4.h>

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <thread>

namespace {

const QString kBootloaderVendor = QStringLiteral("03EB");
const QString kBootloaderProduct = QStringLiteral("6124");

// Boards flash at once unless a test slows them down.
QByteArray bench(const QString& boards)
{
    return QStringLiteral(R"({ "boards": [ %1 ] })").arg(boards).toUtf8();
}

QString board(const QString& uuid, const QString& chip, const QString& extra = QString())
{
    return QStringLiteral(R"({ "uuid": "%1", "chip": "%2", "pacing": "unpaced", "flash_step_ms": 0,
        "usb_switch_ms": 0 %3 })")
        .arg(uuid, chip, extra);
}

void countChange(void* user)
{
    static_cast<std::atomic<int>*>(user)->fetch_add(1);
}

}  // namespace

// The flashing library's stand-in and the simulated SDK in one process: what
// the library does to a board shows in the SDK's device list and firmware info.
class SimulatorFlashingTest : public QObject
{
    Q_OBJECT

private:
    SimulatorSdk sdk;
    FlashRadarBaseboardKT4 library;
    QTemporaryDir dir;
    QStringList statuses;
    QList<QPair<QString, int>> progress;  // phase, percent

    QStringList ports(const QString& vendor, const QString& product)
    {
        QStringList names;
        for (const std::string& port : library.findComPorts(vendor.toStdString(), product.toStdString()))
            names << QString::fromStdString(port);
        return names;
    }

    QStringList bootloaderPorts() { return ports(kBootloaderVendor, kBootloaderProduct); }

    bool flash(const QString& image, QString& error)
    {
        statuses.clear();
        progress.clear();
        std::string message;
        const bool ok = library.flash("ttyVRN0", image.toStdString(), message);
        error = QString::fromStdString(message);
        return ok;
    }

    // The firmware version the SDK reports for an attached board.
    QString firmwareOf(const char* uuid, bool pulsedDoppler)
    {
        vrn_Firmware_Info_t info{};
        if (pulsedDoppler) {
            vrn_Corvix_Handle device = nullptr;
            if (sdk.vrn->corvix_create_by_uuid(uuid, &device) || sdk.vrn->corvix_get_firmware_info(device, &info))
                return QStringLiteral("<no firmware info>");
            sdk.vrn->corvix_destroy(device);
        } else {
            vrn_Device_Handle device = sdk.open(uuid);
            if (!device || sdk.vrn->device_get_firmware_info(device, &info))
                return QStringLiteral("<no firmware info>");
            sdk.vrn->device_destroy(device);
        }
        return QStringLiteral("%1.%2.%3").arg(info.version_major).arg(info.version_minor).arg(info.version_build);
    }

    // An image from the generator, damaged as a row asks.
    QString image(const QString& damage)
    {
        const QString path = dir.filePath(damage + QStringLiteral(".bin"));
        if (QProcess::execute(QStringLiteral(FIRMWARE_IMAGE_TOOL), {"--version", "2.7.1", "--size", "1000", path}))
            return QString();
        QFile file(path);
        file.open(QIODevice::ReadWrite);
        QByteArray bytes = file.readAll();
        if (damage == QLatin1String("magic"))
            bytes[0] = 'X';
        else if (damage == QLatin1String("truncated"))
            bytes.chop(10);
        else if (damage == QLatin1String("short"))
            bytes.truncate(12);
        else if (damage == QLatin1String("payload"))
            bytes[500] = char(bytes[500] ^ 0x40);
        file.resize(0);
        file.write(bytes);
        return path;
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(sdk.vrn && sdk.sim, qPrintable(sdk.loadError()));
        library.setStatusCallback([this](const std::string& text) { statuses << QString::fromStdString(text); });
        library.setProgressCallback([this](std::size_t done, std::size_t total) {
            progress.append({statuses.value(statuses.size() - 1), total ? int(done * 100 / total) : -1});
        });
    }

    void cleanup() { sdk.sim->set_change_callback(nullptr, nullptr); }

    void wholeFlashFromApplicationToTheNewVersion_data()
    {
        QTest::addColumn<QString>("chip");
        QTest::addColumn<QString>("product");
        QTest::newRow("KMR7A on 512") << "KMR7A" << "0251";
        QTest::newRow("KMR7B on 513") << "KMR7B" << "0252";
        QTest::newRow("ZP7 on 768") << "ZP7" << "0253";
    }

    void wholeFlashFromApplicationToTheNewVersion()
    {
        QFETCH(QString, chip);
        QFETCH(QString, product);
        QVERIFY(!sdk.sim->load_bench_json(bench(board("w-1", chip))));
        const bool zp7 = chip == QLatin1String("ZP7");
        QCOMPARE(firmwareOf("w-1", zp7), QStringLiteral("2.5.1"));
        QCOMPARE(ports("2F5A", product), QStringList {"ttyVRN0"});

        std::string message;
        QVERIFY(library.activateBootloader(product.toStdString(), "ttyVRN0", message));
        QCOMPARE(sdk.listedUuids(), QStringList());
        QCOMPARE(ports("2F5A", product), QStringList());
        QCOMPARE(bootloaderPorts(), QStringList {"ttyVRN0"});

        QString error;
        QVERIFY2(flash(QStringLiteral(FIRMWARE_IMAGE), error), qPrintable(error));
        QCOMPARE(statuses.size(), 4);
        QVERIFY(statuses[0].startsWith("Erase") && statuses[0].contains("erase"));
        QVERIFY(statuses[1].startsWith("Write"));
        QVERIFY(statuses[2].startsWith("Verify"));
        QVERIFY(statuses[3].startsWith("Reset") && statuses[3].contains("reset"));
        QCOMPARE(progress.last(), qMakePair(statuses[2], 100));

        QCOMPARE(ports("2F5A", product), QStringList {"ttyVRN0"});
        QCOMPARE(bootloaderPorts(), QStringList());
        QCOMPARE(sdk.listedUuids(), QStringList {"w-1"});
        QCOMPARE(firmwareOf("w-1", zp7), QStringLiteral("2.6.0"));
    }

    void deviceListFollowsBootloaderMode()
    {
        QVERIFY(!sdk.sim->load_bench_json(
            bench(board("d-1", "KMR7A", R"(, "usb_switch_ms": 300)") + "," + board("d-2", "KMR7C"))));
        std::atomic<int> changes {0};
        sdk.sim->set_change_callback(countChange, &changes);
        vrn_Device_Handle open = sdk.open("d-1");
        QVERIFY(open);

        std::string message;
        QVERIFY(library.activateBootloader("0251", "ttyVRN0", message));
        QCOMPARE(changes.load(), 1);
        QCOMPARE(sdk.listedUuids(), QStringList {"d-2"});
        vrn_Firmware_Info_t info{};
        QVERIFY(sdk.vrn->device_get_firmware_info(open, &info));  // the open handle lost its board
        sdk.vrn->device_destroy(open);
        QCOMPARE(bootloaderPorts(), QStringList());  // still switching
        QTRY_COMPARE_WITH_TIMEOUT(bootloaderPorts(), QStringList {"ttyVRN0"}, 2000);

        QString error;
        QVERIFY2(flash(QStringLiteral(FIRMWARE_IMAGE), error), qPrintable(error));
        QCOMPARE(changes.load(), 2);
        QCOMPARE(sdk.listedUuids(), (QStringList {"d-1", "d-2"}));
    }

    void flashingFaults_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<bool>("activates");
        QTest::addColumn<QString>("failure");
        QTest::addColumn<QStringList>("bootloaderAfter");
        QTest::addColumn<bool>("listedAfter");

        QTest::newRow("activation fails") << R"(, "flash_faults": [ { "kind": "activation_fails" } ])" << false
                                          << "did not acknowledge the bootloader command" << QStringList()
                                          << true;
        QTest::newRow("never in bootloader") << R"(, "flash_faults": [ { "kind": "no_bootloader" } ])" << true
                                             << QString() << QStringList() << true;
        QTest::newRow("write fails at 40 %")
            << R"(, "flash_faults": [ { "kind": "write_fails", "at_percent": 40 } ])" << true << "Write failed at 40 %"
            << QStringList {"ttyVRN0"} << false;
        QTest::newRow("never comes back") << R"(, "flash_faults": [ { "kind": "no_return" } ])" << true << QString()
                                          << QStringList {"ttyVRN0"} << false;
        QTest::newRow("starts in bootloader") << R"(, "mode": "bootloader")" << true << QString()
                                              << QStringList() << true;
    }

    void flashingFaults()
    {
        QFETCH(QString, keys);
        QFETCH(bool, activates);
        QFETCH(QString, failure);
        QFETCH(QStringList, bootloaderAfter);
        QFETCH(bool, listedAfter);
        QVERIFY(!sdk.sim->load_bench_json(bench(board("f-1", "KMR7A", keys))));
        const bool startsThere = keys.contains("\"mode\"");
        QCOMPARE(sdk.listedUuids().isEmpty(), startsThere);

        // A first attempt meets the fault; each fault is scheduled once, so a
        // second attempt goes through.
        for (int attempt = 0; attempt < 2; ++attempt) {
            std::string message;
            if (bootloaderPorts().isEmpty())
                QCOMPARE(library.activateBootloader("0251", "ttyVRN0", message), attempt > 0 || activates);
            QString error;
            const bool flashed = !bootloaderPorts().isEmpty() && flash(QStringLiteral(FIRMWARE_IMAGE), error);
            error += QString::fromStdString(message);
            if (attempt == 0) {
                QVERIFY2(error.contains(failure), qPrintable(error));
                if (failure.startsWith("Write")) {
                    QVERIFY(!flashed);
                    QVERIFY(!progress.isEmpty() && progress.last().first.startsWith("Write"));
                    QVERIFY(progress.last().second < 40);
                }
                QCOMPARE(bootloaderPorts(), bootloaderAfter);
                QCOMPARE(sdk.listedUuids().contains("f-1"), listedAfter);
            } else {
                QVERIFY2(flashed, qPrintable(error));
            }
        }
        QCOMPARE(sdk.listedUuids(), QStringList {"f-1"});
        QCOMPARE(firmwareOf("f-1", false), QStringLiteral("2.6.0"));
    }

    void damagedImageFailsAndLeavesTheBootloader_data()
    {
        QTest::addColumn<QString>("damage");
        QTest::addColumn<QString>("failure");
        QTest::newRow("bad magic") << "magic" << "Image check failed: the image does not start with \"RBK4\"";
        QTest::newRow("truncated") << "truncated" << "announces 1000 payload bytes, the image holds 990";
        QTest::newRow("shorter than the header") << "short" << "fewer than its 20-byte header";
        QTest::newRow("payload changed") << "payload" << "Verify failed: the written payload's CRC-32";
        QTest::newRow("missing file") << "missing" << "Cannot open the firmware image";
    }

    void damagedImageFailsAndLeavesTheBootloader()
    {
        QFETCH(QString, damage);
        QFETCH(QString, failure);
        QVERIFY(!sdk.sim->load_bench_json(bench(board("i-1", "KMR7A", R"(, "mode": "bootloader")"))));
        QString path = image(damage);
        QVERIFY(!path.isEmpty());
        if (damage == QLatin1String("missing"))
            QFile::remove(path);
        QString error;
        QVERIFY(!flash(path, error));
        QVERIFY2(error.contains(failure), qPrintable(error));
        QCOMPARE(bootloaderPorts(), QStringList {"ttyVRN0"});
        QCOMPARE(sdk.listedUuids(), QStringList());

        QVERIFY2(flash(image("intact"), error), qPrintable(error));
        QCOMPARE(firmwareOf("i-1", false), QStringLiteral("2.7.1"));
    }

    void paceIsSetThroughTheControlTable()
    {
        QVERIFY(!sdk.sim->load_bench_json(bench(board("p-1", "KMR7A", R"(, "mode": "bootloader")"))));
        QVERIFY(!sdk.sim->set_flash_pace(nullptr, 5, 0));
        QElapsedTimer clock;
        clock.start();
        QString error;
        QVERIFY2(flash(QStringLiteral(FIRMWARE_IMAGE), error), qPrintable(error));
        // 10 erase, 50 write and 50 verify steps of 5 ms at least.
        QVERIFY(clock.elapsed() >= 550);
        QCOMPARE(progress.size(), 110);
        QVERIFY(sdk.sim->set_flash_pace("nobody", 0, 0));
    }

    void boardUnpluggedWhileFlashingEndsTheFlashAtOnce()
    {
        QVERIFY(!sdk.sim->load_bench_json(bench(board("u-1", "KMR7A", R"(, "mode": "bootloader")"))));
        QVERIFY(!sdk.sim->set_flash_pace("u-1", 1000, 0));
        QElapsedTimer clock;
        clock.start();
        std::string message;
        std::thread flashing([&] { library.flash("ttyVRN0", FIRMWARE_IMAGE, message); });
        QTest::qWait(100);
        QVERIFY(!sdk.sim->unplug_board("u-1"));
        flashing.join();
        // The first erase step alone would take a second.
        QVERIFY(clock.elapsed() < 900);
        QCOMPARE(QString::fromStdString(message), "The baseboard on ttyVRN0 was unplugged while flashing");
        QCOMPARE(bootloaderPorts(), QStringList());
    }

    void imageLayout()
    {
        const QString payload = dir.filePath("check.txt");
        QFile text(payload);
        QVERIFY(text.open(QIODevice::WriteOnly));
        text.write("123456789");
        text.close();
        const QString path = dir.filePath("RadarBaseboardKT4_v3.1.4.bin");
        QCOMPARE(QProcess::execute(FIRMWARE_IMAGE_TOOL, {"--version", "3.1.4", "--payload", payload, path}), 0);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        // magic, 3.1.4, reserved 0, length 9, the CRC-32 check value 0xCBF43926, the payload
        QCOMPARE(file.readAll().toHex(), QByteArray("52424b340300010004000000090000002639f4cb313233343536373839"));
    }

    void hotPluggedBoardTakesAFreePort()
    {
        QVERIFY(!sdk.sim->load_bench_json(bench(board("h-1", "KMR7A"))));
        QVERIFY(!sdk.sim->plug_board(R"({ "uuid": "h-2", "chip": "ZP7", "mode": "bootloader" })"));
        QCOMPARE(bootloaderPorts(), QStringList {"ttyVRN1"});
        QCOMPARE(sdk.listedUuids(), QStringList {"h-1"});
        QVERIFY(!sdk.sim->unplug_board("h-2"));
        QCOMPARE(bootloaderPorts(), QStringList());
    }
};

QTEST_GUILESS_MAIN(SimulatorFlashingTest)
#include "tst_simulator_flashing.moc"
