#include "flashing/SdkRadarFlasher.h"

#include <QSignalSpy>
#include <QtTest>

// The flashing library's status and progress reports as the user sees them.
class TestSdkRadarFlasher : public QObject
{
    Q_OBJECT

private slots:
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

QTEST_GUILESS_MAIN(TestSdkRadarFlasher)
#include "tst_SdkRadarFlasher.moc"
