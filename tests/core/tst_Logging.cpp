#include "core/CSVFile.h"
#include "core/CSVFileLogging.h"
#include "core/Logging.h"
#include "core/LoggingConfiguration.h"

#include <QBuffer>
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

// Free space is what the test says; with openFullDevice every write goes to
// /dev/full and fails as on a full disk.
class ScriptedLogging : public CSVFileLogging
{
public:
    qint64 freeBytes = 1000000000;
    bool openFullDevice = false;

protected:
    qint64 availableBytes(const QString&) const override { return freeBytes; }
    std::unique_ptr<QFile> openFile(const QString& path) override
    {
        return CSVFileLogging::openFile(openFullDevice ? QStringLiteral("/dev/full") : path);
    }
};

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

}

// Clearing the application's logs, and logging targets to CSV files.
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
        m_configuration = std::make_unique<LoggingConfiguration>();
        m_configuration->setLoggingPath(m_dir->path());
        m_configuration->setLoggingFileName("run");
        m_configuration->setIsCustomFileName(true);
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

    void rowsAreCommaSeparatedCrLfLinesWithoutQuoting_data()
    {
        QTest::addColumn<CSVLoggerBuffer>("rows");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("no rows") << CSVLoggerBuffer {} << QByteArray();
        QTest::newRow("empty row") << CSVLoggerBuffer { {} } << QByteArray("\r\n");
        QTest::newRow("comma splits the column") << CSVLoggerBuffer { { "a,b", "c" } } << QByteArray("a,b,c\r\n");
        QTest::newRow("no quoting") << CSVLoggerBuffer { { "\"x\"", "" } } << QByteArray("\"x\",\r\n");
        QTest::newRow("rows in order") << CSVLoggerBuffer { { "Tx1Rx1", "Tx1Rx3" }, { "0.5", "-2" } }
                                       << QByteArray("Tx1Rx1,Tx1Rx3\r\n0.5,-2\r\n");
    }

    void rowsAreCommaSeparatedCrLfLinesWithoutQuoting()
    {
        QFETCH(CSVLoggerBuffer, rows);
        QFETCH(QByteArray, expected);
        QBuffer buffer;
        QVERIFY(buffer.open(QIODevice::WriteOnly));
        CSVFile writer(&buffer);
        QVERIFY(writer.writeRows(rows));
        QCOMPARE(buffer.data(), expected); // flushed while the writer lives
    }

    void fileIsNamedByCustomNameOrTimestamp_data()
    {
        QTest::addColumn<bool>("custom");
        QTest::addColumn<QString>("pattern");
        QTest::newRow("custom") << true << "^my run\\.csv$";
        QTest::newRow("timestamp") << false << "^target_log_\\d{8}-\\d{6}\\.csv$";
    }

    void fileIsNamedByCustomNameOrTimestamp()
    {
        QFETCH(bool, custom);
        QFETCH(QString, pattern);
        m_configuration->setLoggingFileName("my run");
        m_configuration->setIsCustomFileName(custom);
        m_configuration->collectTimestamp();
        ScriptedLogging logging;
        QVERIFY(logging.startLogging(*m_configuration));
        logging.writeRows({ { "1", "2" } });
        logging.stopLogging();

        const QFileInfo file(logging.filePath());
        QCOMPARE(file.absolutePath(), m_dir->path());
        QVERIFY2(QRegularExpression(pattern).match(file.fileName()).hasMatch(), qPrintable(file.fileName()));
        QCOMPARE(readAll(file.filePath()), QByteArray("1,2\r\n"));
    }

    void loggingPathCreatesOneLevelAndFallsBackToDesktop_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("valid");
        QTest::newRow("one missing level") << "new" << true;
        QTest::newRow("two missing levels") << "a/b" << false;
        QTest::newRow("empty is the desktop") << "" << true;
    }

    void loggingPathCreatesOneLevelAndFallsBackToDesktop()
    {
        QFETCH(QString, path);
        QFETCH(bool, valid);
        const QString expectedPath = path.isEmpty() ? "Desktop" : path;
        // The desktop lies below HOME: point HOME into the temporary tree.
        const QByteArray home = qgetenv("HOME");
        qputenv("HOME", QFile::encodeName(m_dir->path()));
        m_configuration->setLoggingPath(path.isEmpty() ? QString() : m_dir->filePath(path));
        QSignalSpy changed(m_configuration.get(), &LoggingConfiguration::loggingPathChanged);
        const bool result = m_configuration->checkIfLoggingPathIsValid();
        qputenv("HOME", home);

        QCOMPARE(result, valid);
        QCOMPARE(m_configuration->loggingPath(), m_dir->filePath(expectedPath));
        QCOMPARE(QFileInfo(m_dir->filePath(expectedPath)).isDir(), valid);
        QCOMPARE(changed.count(), path.isEmpty() ? 1 : 0);
    }

    void failuresAreReportedOnceAndStopLogging_data()
    {
        QTest::addColumn<qint64>("freeBytes");
        QTest::addColumn<QString>("obstacle");
        QTest::addColumn<bool>("started");
        QTest::addColumn<QString>("message");
        const qint64 plenty = 1000000000;
        const QString space = "Not enough space to store data for logging!";
        QTest::newRow("exactly enough space") << qint64(10000000) << "" << true << "";
        QTest::newRow("one byte short") << qint64(9999999) << "" << false << space;
        QTest::newRow("space unknown") << qint64(-1) << "" << false << space;
        QTest::newRow("name taken by a directory") << plenty << "directory" << false
                                                   << "Cannot open file for csv logging!";
        QTest::newRow("full device") << plenty << "full" << true << "Cannot write data to csv file!";
    }

    void failuresAreReportedOnceAndStopLogging()
    {
        QFETCH(qint64, freeBytes);
        QFETCH(QString, obstacle);
        QFETCH(bool, started);
        QFETCH(QString, message);
        if (obstacle == "directory")
            QVERIFY(QDir().mkdir(m_configuration->logFilePath()));
        ScriptedLogging logging;
        logging.freeBytes = freeBytes;
        logging.openFullDevice = obstacle == "full";
        QSignalSpy errors(&logging, &CSVFileLogging::errorDetected);

        QCOMPARE(logging.startLogging(*m_configuration), started);
        logging.writeRows({ { "1" } });
        logging.writeRows({ { "2" } }); // after a failure: ignored, not reported again
        QCOMPARE(logging.isLogging(), message.isEmpty());
        QCOMPARE(QFileInfo(m_configuration->logFilePath()).isFile(), message.isEmpty());
        QList<QVariantList> expected;
        if (!message.isEmpty())
            expected.append({ message, QString() });
        QCOMPARE(errors, expected);
    }

    void shortSpaceWhileLoggingDropsRowsAndKeepsFile()
    {
        ScriptedLogging logging;
        QSignalSpy errors(&logging, &CSVFileLogging::errorDetected);
        QSignalSpy finished(&logging, &CSVFileLogging::finishedLogging);
        QVERIFY(logging.startLogging(*m_configuration));

        logging.writeRows({ { "kept", "1" } });
        logging.freeBytes = 5;
        logging.writeRows({ { "dropped" } });
        logging.writeRows({ { "dropped" } });
        QCOMPARE(errors.count(), 2); // repeated while space stays short
        QVERIFY(logging.isLogging());
        logging.freeBytes = CSVFileLogging::minimumFreeBytes;
        logging.writeRows({ { "kept", "2" } });
        logging.finishLogging();

        QCOMPARE(finished.count(), 1);
        QCOMPARE(readAll(m_configuration->logFilePath()), QByteArray("kept,1\r\nkept,2\r\n"));
    }

private:
    QStringList remaining() const { return QDir(m_dir->path()).entryList(QDir::Files, QDir::Name); }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<AgedLogging> m_logging;
    std::unique_ptr<LoggingConfiguration> m_configuration;
};

QTEST_GUILESS_MAIN(TestLogging)
#include "tst_Logging.moc"
