// The host's own settings in the settings file: an older file without them
// loads with the defaults, a complete one is taken over, a wrong one is
// refused with the field's path and changes nothing.
#include "HostSettings.h"

#include "core/JSONConfigurationFile.h"
#include "core/JSONConfigurationObject.h"
#include "host/CoreUserSettings.h"

#include <QtTest>

class TestHostSettings : public QObject
{
    Q_OBJECT
private slots:
    void loadsWhatTheFileHolds_data()
    {
        const QByteArray recording = R"("recording": { "recordingPath": "/data", "fileName": "run", "numOfFrames": 50,
            "timeLimitOnRecording": true, "txtFile": true, "hours": 0, "minutes": 2, "seconds": 30, "milliseconds": 0 })";
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("error");
        QTest::addColumn<int>("refreshMs");
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<quint32>("minutes");
        QTest::addColumn<QString>("clearLimit");
        QTest::newRow("older file") << QByteArray(R"({ "radar": {} })") << QString() << 33 << "recording" << 0u
                                    << "1 week";
        QTest::newRow("complete") << (R"({ "workbench": { "minimumRefreshInterval": 80, )" + recording
                                      + R"(, "logs": { "clearLimit": "1 month", "autoClearLogs": false } } })")
                                  << QString() << 80 << "run" << 2u << "1 month";
        QTest::newRow("refresh out of range")
            << (R"({ "workbench": { "minimumRefreshInterval": 1, )" + recording
                + R"(, "logs": { "clearLimit": "1 month", "autoClearLogs": false } } })")
            << "Field workbench.minimumRefreshInterval validation error" << 33 << "recording" << 0u << "1 week";
        QTest::newRow("unknown age") << (R"({ "workbench": { "minimumRefreshInterval": 80, )" + recording
                                         + R"(, "logs": { "clearLimit": "1 year", "autoClearLogs": false } } })")
                                     << "Field workbench.logs.clearLimit validation error" << 33 << "recording" << 0u
                                     << "1 week";
        QTest::newRow("part missing") << QByteArray(R"({ "workbench": { "minimumRefreshInterval": 80 } })")
                                      << "Mandatory field workbench.recording is missing" << 33 << "recording" << 0u
                                      << "1 week";
    }

    void loadsWhatTheFileHolds()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, error);
        QFETCH(int, refreshMs);
        QFETCH(QString, fileName);
        QFETCH(quint32, minutes);
        QFETCH(QString, clearLimit);

        CoreUserSettings core;
        HostSettings settings(core);
        JSONConfigurationObject root(QStringLiteral("settings"));
        root.addChild(settings.configurationNode());
        const QString loaded = loadFromText(root, file);
        QVERIFY2(error.isEmpty() ? loaded.isEmpty() : loaded.startsWith(error), qPrintable(loaded));
        QCOMPARE(core.minimumRefreshInterval(), refreshMs);
        QCOMPARE(core.recordingUserSettings()->fileName(), fileName);
        QCOMPARE(core.recordingUserSettings()->minutes(), minutes);
        QCOMPARE(settings.logging().clearLimit(), clearLimit);

        // What was taken over is written back as it was read.
        QJsonObject written;
        root.writeChildren(written);
        const QJsonObject workbench = written.value("workbench").toObject();
        QCOMPARE(workbench.value("minimumRefreshInterval").toInt(), refreshMs);
        QCOMPARE(workbench.value("recording").toObject().value("fileName").toString(), fileName);
    }
};

QTEST_MAIN(TestHostSettings)
#include "tst_HostSettings.moc"
