#include "ModuleHost.h"
#include "WorkbenchRun.h"

#include "host/IModule.h"

#include <QLibrary>
#include <QPointer>
#include <QQmlContext>
#include <QQmlEngine>
#include <QTemporaryDir>
#include <QtTest>

class TestModuleHost : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    ModuleHost::Options options(const QString& module, const QString& settings) const
    {
        // No SDK path: the host takes the simulator next to the executables.
        return { module, QString(), m_dir.filePath(settings), QString() };
    }

private slots:
    void hostDrivesTheModuleInOrder()
    {
        {
            ModuleHost host;
            QCOMPARE(host.start(options(FAKE_MODULE_OK, "order.json")), QString());
            host.stop();
        }
        QLibrary library(FAKE_MODULE_OK);
        auto calls = reinterpret_cast<const char* (*)()>(library.resolve("fakeModuleCalls"));
        QVERIFY(calls);
        QCOMPARE(QString(calls()),
                 QString("initialise,registerTypes,initialiseResources,setupEngine,addConfiguration,shutdown,destroy"));
    }

    void moduleOfAnotherCoreVersionIsRefused()
    {
        ModuleHost host;
        const QString error = host.start(options(FAKE_MODULE_V2, "v2.json"));
        QVERIFY2(error.contains("was built for core version 2.0; this workbench provides 1.0"), qPrintable(error));
        QVERIFY(!host.module());
    }

    void libraryWithoutExportsIsRefused()
    {
        ModuleHost host;
        const QString error = host.start(options(NOT_A_MODULE, "none.json"));
        QVERIFY2(error.contains("does not export CoreVersion and CreateModule"), qPrintable(error));
    }

    void radarPublishesItsServicesAndReleasesOnShutdown()
    {
        QLibrary library(RADAR_MODULE);
        QVERIFY(library.load());
        auto createModule = reinterpret_cast<IModule* (*)()>(library.resolve("CreateModule"));
        std::unique_ptr<IModule> module(createModule());

        int stale = 0;
        ServiceRegistry registry;
        registry["class IRadarFirmwareSource"] = &stale;
        module->initialise(registry);
        module->registerTypes();
        module->initialiseResources();
        QQmlEngine engine;
        module->setupEngine(&engine);

        for (const char* key : { "class RangeSpectrumUserSettings", "class TimeDomainUserSettings",
                                 "class IRadarFirmwareSource" }) {
            QVERIFY2(registry.count(key) && registry.at(key), key);
        }
        QVERIFY(registry.at("class IRadarFirmwareSource") != &stale);
        QVERIFY(QFile::exists(":/json/config/defaultConfigKMR7A.json"));
        QVERIFY(QFile::exists(":/qml/Radar/qmldir"));

        QPointer<QObject> coordinator = engine.rootContext()->contextProperty("radarCoordinator").value<QObject*>();
        QVERIFY(coordinator);
        QCOMPARE(coordinator->property("userMode").toString(), QString("Standard"));
        auto* rangeSpectrum = static_cast<QObject*>(registry.at("class RangeSpectrumUserSettings"));

        module->shutdown();
        QVERIFY(coordinator.isNull());
        // The chart settings live until the module itself is destroyed.
        QVERIFY(rangeSpectrum->property("fftSize").isValid());
    }

    // --check names the module it loaded (the radar module's name and the
    // core version it was built for) and saves the settings file: one object
    // per side, which loads back cleanly.
    void checkCommandSavesOneRadarObject()
    {
        const QString settings = m_dir.filePath("settings.json");
        const WorkbenchRun run = runWorkbench({ "--check", "--settings", settings });
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.out, QString("Radar 1.0\n"));
        const QJsonObject saved = readJson(settings);
        QCOMPARE(saved.keys(), QStringList({ "radar", "workbench" }));
        const QJsonObject radar = saved.value("radar").toObject();
        QCOMPARE(radar.keys(), QStringList({ "common", "cw_mode", "flashing", "standard", "userMode" }));
        QCOMPARE(radar.value("userMode").toString(), QString("Standard"));
        QVERIFY(radar.value("common").toObject().contains("range_spectrum"));
        QVERIFY(radar.value("common").toObject().contains("time_domain"));

        ModuleHost again;
        QCOMPARE(again.start(options(RADAR_MODULE, "settings.json")), QString());
        QCOMPARE(again.settingsError(), QString());
    }

    void badSettingsFileIsReportedAndLeftAlone_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("message");
        QTest::newRow("wrong type") << QByteArray(R"({"radar": {"common": {"range_spectrum": 5}, "userMode": "Standard"}})")
                                    << "Field radar.common.range_spectrum is not an JSON object";
        QTest::newRow("missing key") << QByteArray(R"({"radar": {"userMode": "Standard"}})")
                                     << "Mandatory field radar.common is missing";
        QTest::newRow("not json") << QByteArray("{ radar") << "JSON parser error:";
    }

    void badSettingsFileIsReportedAndLeftAlone()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, message);
        const QString path = m_dir.filePath("bad.json");
        QVERIFY(writeFile(path, content));

        ModuleHost host;
        QCOMPARE(host.start(options(RADAR_MODULE, "bad.json")), QString());
        QVERIFY2(host.settingsError().contains(message), qPrintable(host.settingsError()));
        QVERIFY(!host.saveSettings());
        host.stop();
        QCOMPARE(readFile(path), content);
    }

    void listDevicesNamesEveryBoard_data()
    {
        QTest::addColumn<QByteArray>("bench");
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QString>("errText");
        QTest::newRow("default bench") << QByteArray()
                                       << QStringList { "Radar\t1f3c-0001\t512\tKMR7A" } << QString();
        QTest::newRow("two boards") << QByteArray(R"({ "boards": [
                { "uuid": "aa-01", "shield": 513, "chip": "KMR7C" },
                { "uuid": "bb-02", "shield": 768, "chip": "ZP7" } ] })")
                                    << QStringList { "Radar\taa-01\t513\tKMR7C", "Radar #2\tbb-02\t768\tZP7" }
                                    << QString();
        QTest::newRow("no board") << QByteArray(R"({ "boards": [] })") << QStringList()
                                  << "No radar board was found.\n";
    }

    void listDevicesNamesEveryBoard()
    {
        QFETCH(QByteArray, bench);
        QFETCH(QStringList, lines);
        QFETCH(QString, errText);
        QStringList arguments { "--list-devices", "--settings", m_dir.filePath("list.json") };
        if (!bench.isEmpty()) {
            QVERIFY(writeFile(m_dir.filePath("bench.json"), bench));
            arguments << "--bench" << m_dir.filePath("bench.json");
        }
        const WorkbenchRun run = runWorkbench(arguments);
        QVERIFY2(run.exitCode == 0, qPrintable(run.err));
        QCOMPARE(run.out.split('\n', Qt::SkipEmptyParts), lines);
        QCOMPARE(run.err, errText);
    }

    void badSettingsFileIsReportedByEveryCommand_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::newRow("check") << QStringList { "--check" } << 2;
        QTest::newRow("list-devices") << QStringList { "--list-devices" } << 0;
        QTest::newRow("headless") << QStringList { "--headless", "--frames", "2" } << 0;
    }

    void badSettingsFileIsReportedByEveryCommand()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        const QByteArray content = R"({"radar": {"userMode": "Standard"}})";
        const QString path = m_dir.filePath("every-command.json");
        QVERIFY(writeFile(path, content));
        const WorkbenchRun run = runWorkbench(arguments << "--settings" << path);
        QVERIFY2(run.exitCode == exitCode, qPrintable(run.err));
        QVERIFY2(run.err.contains("Settings file " + path + ": Mandatory field radar.common is missing\n"
                                  "The settings file is left unchanged; going on with the default settings."),
                 qPrintable(run.err));
        QCOMPARE(readFile(path), content);
    }

    void badBenchIsRefusedWithTheField()
    {
        const QString path = m_dir.filePath("bad-bench.json");
        QVERIFY(writeFile(path, R"({ "boards": [ { "uuid": "x", "shield": "wide" } ] })"));
        const WorkbenchRun run = runWorkbench({ "--list-devices", "--bench", path, "--settings", m_dir.filePath("b.json") });
        QVERIFY(run.exitCode != 0);
        QVERIFY(run.out.isEmpty());
        QVERIFY(run.err.contains("shield"));
    }
};

QTEST_MAIN(TestModuleHost)
#include "tst_ModuleHost.moc"
