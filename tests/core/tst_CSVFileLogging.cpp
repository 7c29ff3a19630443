#include "core/CSVFile.h"
#include "core/CSVFileLogging.h"
#include "core/LoggingConfiguration.h"

#include <QBuffer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

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

class TestCSVFileLogging : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        m_configuration = std::make_unique<LoggingConfiguration>();
        m_configuration->setLoggingPath(m_dir->path());
        m_configuration->setLoggingFileName("run");
        m_configuration->setIsCustomFileName(true);
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
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<LoggingConfiguration> m_configuration;
};

QTEST_GUILESS_MAIN(TestCSVFileLogging)
#include "tst_CSVFileLogging.moc"
