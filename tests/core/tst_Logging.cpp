#include "core/Logging.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr qint64 day = 24 * 3600;

// Birth times cannot be set on a file: each file's age in seconds comes from
// the test, a negative age standing for a file system without birth times.
class AgedLogging : public Logging
{
public:
    QString directory;
    QMap<QString, qint64> ages;

protected:
    QString logDirectory() const override { return directory; }
    QDateTime birthTime(const QFileInfo& file) const override
    {
        const qint64 age = ages.value(file.fileName(), -1);
        return age < 0 ? QDateTime() : QDateTime::currentDateTime().addSecs(-age);
    }
};

}

class TestLogging : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        m_logging = std::make_unique<AgedLogging>();
        m_logging->directory = m_dir->path() + "/";
        // "README" is old but does not match "*.*"; "unknown.log" has no birth time.
        m_logging->ages = { { "hour.log", 3600 }, { "2days.log", 2 * day }, { "8days.log", 8 * day },
                            { "31days.csv", 31 * day }, { "README", 400 * day }, { "unknown.log", -1 } };
        for (const QString& name : m_logging->ages.keys()) {
            QFile file(m_dir->filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
    }

    void clearLogsRemovesFilesByAge_data()
    {
        QTest::addColumn<QString>("clearLimit");
        QTest::addColumn<bool>("clearAll");
        QTest::addColumn<QStringList>("expected");
        const QStringList all { "2days.log", "31days.csv", "8days.log", "README", "hour.log", "unknown.log" };
        QTest::newRow("clear all") << "bogus" << true << QStringList { "README" };
        QTest::newRow("1 day") << "1 day" << false << QStringList { "README", "hour.log", "unknown.log" };
        QTest::newRow("1 week") << "1 week" << false << QStringList { "2days.log", "README", "hour.log", "unknown.log" };
        QTest::newRow("1 month") << "1 month" << false
                                 << QStringList { "2days.log", "8days.log", "README", "hour.log", "unknown.log" };
        QTest::newRow("unknown limit") << "2 weeks" << false << all;
    }

    void clearLogsRemovesFilesByAge()
    {
        QFETCH(QString, clearLimit);
        QFETCH(bool, clearAll);
        QFETCH(QStringList, expected);
        m_logging->setClearLimit(clearLimit);
        if (clearLimit == "2 weeks")
            QTest::ignoreMessage(QtCriticalMsg, qPrintable("Invalid time range for clearing the logs: " + clearLimit));
        m_logging->clearLogs(clearAll);
        QCOMPARE(remaining(), expected);
    }

    void loadDefaultsSelectsOneWeekClearsAndSwitchesOn()
    {
        m_logging->setClearLimit("1 month");
        QSignalSpy limitChanged(m_logging.get(), &Logging::clearLimitChanged);
        QSignalSpy autoChanged(m_logging.get(), &Logging::autoClearLogsChanged);

        m_logging->loadDefaults();
        m_logging->loadDefaults();
        QCOMPARE(m_logging->clearLimit(), QString("1 week"));
        QVERIFY(m_logging->autoClearLogs());
        QCOMPARE(limitChanged.count(), 1);
        QCOMPARE(autoChanged.count(), 1);
        QCOMPARE(remaining(), (QStringList { "2days.log", "README", "hour.log", "unknown.log" }));

        // Switching on again still clears, by the limit in force then.
        m_logging->setClearLimit("1 day");
        m_logging->setAutoClearLogs(true);
        QCOMPARE(autoChanged.count(), 1);
        QCOMPARE(remaining(), (QStringList { "README", "hour.log", "unknown.log" }));
    }

private:
    QStringList remaining() const { return QDir(m_dir->path()).entryList(QDir::Files, QDir::Name); }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<AgedLogging> m_logging;
};

QTEST_GUILESS_MAIN(TestLogging)
#include "tst_Logging.moc"
