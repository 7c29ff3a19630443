#include "FakeFlashLibrary.h"

#include "flashing/RadarFlasher.h"
#include "flashing/SdkRadarFlasher.h"

#include <QSignalSpy>
#include <QTemporaryFile>
#include <QtTest>

using namespace std::chrono_literals;

class TestRadarFlasher : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<FakeBoards> m_boards;
    std::unique_ptr<QTemporaryFile> m_image;
    QStringList m_messages;
    int m_libraries = 0;

    std::unique_ptr<RadarFlasher> makeFlasher(RadarFlasherTiming timing = { 10s, 0ms, 100ms })
    {
        auto flasher = std::make_unique<RadarFlasher>(
            QStringLiteral("ttyVRN0"), QStringLiteral("0251"), RadarBaseboardIdentity {}, nullptr,
            [this] {
                ++m_libraries;
                return std::make_unique<FakeFlashLibrary>(*m_boards);
            },
            timing);
        connect(flasher.get(), &IFlasher::messageChanged, this,
                [this, f = flasher.get()] { m_messages << f->message(); });
        return flasher;
    }

    static bool ended(const RadarFlasher& flasher)
    {
        return flasher.status() != FlasherStatus::NOT_STARTED && !flasher.isBusy();
    }

private slots:
    void init()
    {
        m_boards = std::make_unique<FakeBoards>();
        m_image = std::make_unique<QTemporaryFile>();
        QVERIFY(m_image->open());
        m_image->write("RBK4");
        m_image->flush();
        m_messages.clear();
        m_libraries = 0;
    }

    void jobEndsInItsStatus_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<int>("status");
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<int>("activations");
        const QString activating = QStringLiteral("BOOTLOADER: 0 Activating the bootloader");
        const QString inBootloader = QStringLiteral("BOOTLOADER: 100 ttyVRN0");
        const QString failure = QStringLiteral("EXIT: failure");

        QTest::newRow("normal mode to success")
            << "" << int(FlasherStatus::FINISHED_SUCCESS)
            << QStringList { activating, inBootloader, "EXIT: successful" } << 1;
        QTest::newRow("already in bootloader skips activation")
            << "in bootloader" << int(FlasherStatus::FINISHED_SUCCESS)
            << QStringList { inBootloader, "EXIT: successful" } << 0;
        QTest::newRow("board not attached")
            << "absent" << int(FlasherStatus::NO_DEVICE) << QStringList { activating, "ERROR: DEVICE NOT FOUND" } << 0;
        QTest::newRow("activation fails")
            << "activation" << int(FlasherStatus::BOOTLOADER_FAILURE)
            << QStringList { activating, "ERROR: no answer", failure } << 1;
        QTest::newRow("bootloader never shows")
            << "no bootloader" << int(FlasherStatus::NO_DEVICE)
            << QStringList { activating, "ERROR: DEVICE NOT FOUND" } << 1;
        QTest::newRow("writing fails")
            << "write" << int(FlasherStatus::FLASHING_FAILURE)
            << QStringList { activating, inBootloader, "ERROR: verify failed", failure } << 1;
        QTest::newRow("board never comes back")
            << "never returns" << int(FlasherStatus::FINISHED_FAILURE)
            << QStringList { activating, inBootloader,
                             "ERROR: The board did not come back on ttyVRN0 in normal mode within 0.1 s after flashing",
                             failure }
            << 1;
    }

    void jobEndsInItsStatus()
    {
        QFETCH(QString, fault);
        QFETCH(int, status);
        QFETCH(QStringList, messages);
        QFETCH(int, activations);
        if (fault == "in bootloader")
            m_boards->bootloader.insert("ttyVRN0");
        else if (fault != "absent")
            m_boards->attach("ttyVRN0");
        if (fault == "activation")
            m_boards->activationError = "no answer";
        m_boards->bootloaderNeverShows = fault == "no bootloader";
        if (fault == "write")
            m_boards->flashError = "verify failed";
        m_boards->neverReturns = fault == "never returns";

        auto flasher = makeFlasher();
        QSignalSpy finished(flasher.get(), &IFlasher::finished);
        flasher->flash(m_image->fileName());
        QCOMPARE(flasher->status(), FlasherStatus::STARTED);
        QVERIFY(finished.wait(5000));
        QCOMPARE(int(flasher->status()), status);
        QCOMPARE(m_messages, messages);
        QCOMPARE(m_boards->calls.filter("activate 0251 ttyVRN0").size(), activations);
        if (fault == "no bootloader")
            QCOMPARE(m_boards->sleeps, 25);
    }

    void missingImageTouchesNoBoard()
    {
        m_boards->attach("ttyVRN0");
        auto flasher = makeFlasher();
        QSignalSpy finished(flasher.get(), &IFlasher::finished);
        flasher->flash(QStringLiteral("/nonexistent/RadarBaseboardKT4_v9.9.9.bin"));
        QVERIFY(finished.wait(5000));
        QCOMPARE(flasher->status(), FlasherStatus::FINISHED_FAILURE);
        QVERIFY(m_messages.first().contains("/nonexistent/RadarBaseboardKT4_v9.9.9.bin"));
        QVERIFY(m_boards->calls.isEmpty());
    }

    void secondRequestWhileFlashingIsIgnored()
    {
        QSemaphore gate;
        m_boards->flashGate = &gate;
        m_boards->attach("ttyVRN0");
        auto flasher = makeFlasher();
        QSignalSpy finished(flasher.get(), &IFlasher::finished);
        flasher->flash(m_image->fileName());
        QTRY_COMPARE(flasher->status(), FlasherStatus::FLASHING);
        QTRY_COMPARE(flasher->progress(), 50);
        flasher->flash(m_image->fileName());
        QCOMPARE(flasher->status(), FlasherStatus::FLASHING);
        QCOMPARE(flasher->progress(), 50);
        gate.release();
        QVERIFY(finished.wait(5000));
        QCOMPARE(flasher->status(), FlasherStatus::FINISHED_SUCCESS);
        QCOMPARE(m_libraries, 1);
        QCOMPARE(m_boards->calls.filter("flash").size(), 1);
    }

    void jobPastItsTimeLimitTimesOut()
    {
        QSemaphore gate;
        m_boards->flashGate = &gate;
        m_boards->attach("ttyVRN0");
        auto flasher = makeFlasher({ 300ms, 0ms, 100ms });
        QSignalSpy finished(flasher.get(), &IFlasher::finished);
        flasher->flash(m_image->fileName());
        QVERIFY(finished.wait(5000));
        QCOMPARE(flasher->status(), FlasherStatus::TIMEOUT);
        QCOMPARE(flasher->message(), QStringLiteral("ERROR: Time exceeded during flash. Aborting..."));

        // The job stuck in the library ends later without a word.
        gate.release();
        QTest::qWait(200);
        QCOMPARE(flasher->status(), FlasherStatus::TIMEOUT);
        QCOMPARE(finished.count(), 1);

        // The board is in normal mode again and can be flashed anew.
        flasher->flash(m_image->fileName());
        QCOMPARE(flasher->status(), FlasherStatus::STARTED);
        gate.release();
        QTRY_COMPARE_WITH_TIMEOUT(flasher->status(), FlasherStatus::FINISHED_SUCCESS, 5000);
    }

    void libraryReportsBecomeProgressAndMessages_data()
    {
        QTest::addColumn<QString>("phase");
        QTest::addColumn<int>("done");
        QTest::addColumn<int>("total");
        QTest::addColumn<QVariantList>("progress");
        QTest::addColumn<QStringList>("messages");
        QTest::newRow("verify 30 of 60") << "Verify" << 30 << 60 << QVariantList { 75 } << QStringList { "VERIFY: 50" };
        QTest::newRow("write 30 of 60") << "Write" << 30 << 60 << QVariantList { 25 } << QStringList { "WRITE: 50" };
        QTest::newRow("write done") << "Write" << 7 << 7 << QVariantList { 50 } << QStringList { "WRITE: 100" };
        QTest::newRow("verify 1 of 3 rounds down") << "Verify" << 1 << 3 << QVariantList { 66 }
                                                   << QStringList { "VERIFY: 33" };
        QTest::newRow("no total is ignored") << "Verify" << 5 << 0 << QVariantList {} << QStringList {};
        QTest::newRow("erase") << "Erase" << 1 << 2 << QVariantList {} << QStringList { "ERASE: Erase" };
        QTest::newRow("reset") << "Reset board" << 1 << 2 << QVariantList {} << QStringList { "RESET: Reset board" };
    }

    void libraryReportsBecomeProgressAndMessages()
    {
        QFETCH(QString, phase);
        QFETCH(int, done);
        QFETCH(int, total);
        QFETCH(QVariantList, progress);
        QFETCH(QStringList, messages);
        SdkRadarFlasher sdk;
        QSignalSpy progressSpy(&sdk, &ISdkRadarFlasher::updateProgress);
        QStringList seen;
        connect(&sdk, &ISdkRadarFlasher::updateMessage, this, [&seen](const QString& m) { seen << m; });
        sdk.onLibraryStatus(phase.toStdString());
        sdk.onLibraryProgress(std::size_t(done), std::size_t(total));
        QVariantList values;
        for (const auto& args : progressSpy)
            values << args.first();
        QCOMPARE(values, progress);
        QCOMPARE(seen, messages);
    }
};

QTEST_GUILESS_MAIN(TestRadarFlasher)
#include "tst_RadarFlasher.moc"
