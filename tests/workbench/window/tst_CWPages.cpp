// The CW mode's page in the workbench window, driven as a test engineer
// would on a simulated board: switched to CW, a setting typed and applied,
// the carrier switched on, a frame captured and logged to CSV, the carrier
// switched off. Any warning while the page lives fails the test.
#include "PageTestSupport.h"
#include "WindowRig.h"

#include "MessageLog.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>

namespace {

constexpr const char* kUuid = "1f3c-00c1";

QObject* cwView(WindowRig& rig)
{
    return rig.contextObject("radarCWView");
}

QObject* guiParams(WindowRig& rig)
{
    QObject* config = cwView(rig)->property("guiConfig").value<QObject*>();
    return config ? config->property("params").value<QObject*>() : nullptr;
}

// Connects the bench's board and switches the window to the CW mode; true
// once the page shows the values the board gave.
bool openCwPage(WindowRig& rig, const QString& chip)
{
    if (!rig.start(SimulatedHost::oneBoardBench(kUuid, chip, QStringLiteral("realtime"))).isEmpty())
        return false;
    if (!QTest::qWaitFor([&] { return rig.item("board_Radar") != nullptr; }) || !rig.click("connectButton"))
        return false;
    QQuickItem* mode = rig.item("modeSelector");
    if (!QTest::qWaitFor([&] { return mode->isEnabled(); }, 10000))
        return false;
    const QStringList modes = mode->property("model").toStringList();
    const int steps = modes.indexOf("CW") - mode->property("currentIndex").toInt();
    for (int i = 0; i < qAbs(steps); ++i)
        rig.key("modeSelector", steps > 0 ? Qt::Key_Down : Qt::Key_Up);
    return QTest::qWaitFor([&] { return rig.item("RadarCWModule") != nullptr; }, 10000)
        && QTest::qWaitFor([&] { return !rig.text("cw_rfCenterFrequency").isEmpty(); }, 10000)
        && QTest::qWaitFor([&] { return rig.item("cw_rx_1") != nullptr; }, 10000);
}

} // namespace

class TestCWPages : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { PageWarnings::install(); }
    void init() { PageWarnings::collected().clear(); }

    void cleanup()
    {
        QVERIFY2(PageWarnings::collected().isEmpty(), qPrintable(PageWarnings::collected().join(QLatin1Char('\n'))));
    }

    void emitCaptureLogAndStop()
    {
        WindowRig rig;
        QVERIFY(openCwPage(rig, QStringLiteral("KMR7A")));
        QObject* view = cwView(rig);
        QVERIFY(view);

        // A new carrier and the baseband test tone, applied: the device runs
        // them and the page shows them.
        QVERIFY(rig.type("cw_rfCenterFrequency", "61.25"));
        rig.key("cw_testSignalMode", Qt::Key_End);
        QTRY_COMPARE(rig.item("cw_testSignalMode")->property("currentText").toString(), QString("Baseband Test"));
        const uint dac = guiParams(rig)->property("dac").toUInt();
        rig.key("cw_dac", Qt::Key_Left);
        QCOMPARE(guiParams(rig)->property("dac").toUInt(), dac - 1);
        QCOMPARE(rig.text("cw_dac_value"), QString::number(dac - 1));
        QCOMPARE(rig.text("cw_rfCenterFrequency_message"), QString());
        QTRY_VERIFY(view->property("revertApplyAvailable").toBool());
        QVERIFY(rig.click("cwApplyButton"));
        QObject* applied = view->property("deviceConfig").value<QObject*>()->property("params").value<QObject*>();
        QTRY_COMPARE(qRound64(applied->property("rfCenterFrequency").toDouble() / 1e7), 6125);
        QTRY_VERIFY(!view->property("revertApplyAvailable").toBool());
        QCOMPARE(rig.text("cw_rfCenterFrequency"), QString("61.25"));

        // The CSV files go to the test's folder under a prefix of its own.
        const QString logs = rig.directory() + "/cw-logs";
        QVERIFY(QDir().mkpath(logs));
        QVERIFY(rig.click("cwCsvOptionsButton"));
        QTRY_VERIFY(rig.item("cw_loggingPath") && rig.item("cw_loggingPath")->isVisible());
        QVERIFY(rig.type("cw_loggingPath", logs));
        QVERIFY(rig.type("cw_loggingFileName", "bench_check"));
        QTRY_VERIFY(!rig.item("cw_loggingPath") || !rig.item("cw_loggingPath")->isVisible());

        QVERIFY(rig.click("cwEmissionButton"));
        QTRY_VERIFY(view->property("isEmissionActive").toBool());
        QTRY_COMPARE(rig.text("cwEmissionButton"), QString::fromUtf8("■ Stop emission"));
        QTRY_VERIFY(rig.simulator()->emission_time_ms(kUuid) > 0);

        QCOMPARE(rig.pointCount("cwTimeDomainChart"), 0);
        QVERIFY(rig.click("cwCaptureButton"));
        QTRY_VERIFY(rig.pointCount("cwTimeDomainChart") > 0);
        QTRY_VERIFY(rig.pointCount("cwSpectrumChart") > 0);
        // The tone stands out of the spectrum at its frequency.
        const double tone = applied->property("testSignalFrequency").toDouble();
        const double peak = rig.peak("cwSpectrumChart").value("x", qQNaN()).toDouble();
        QVERIFY2(qAbs(peak - tone) < 5000.0, qPrintable(QString("peak at %1 Hz, tone at %2 Hz").arg(peak).arg(tone)));
        // The board's readings while it emits.
        QTRY_VERIFY_WITH_TIMEOUT(rig.text("cwTemperature").endsWith(QString::fromUtf8(" °C")), 5000);
        QTRY_VERIFY_WITH_TIMEOUT(rig.text("cwTxPower").contains("dBm"), 5000);
        // The window's status line follows the mode's own monitor.
        QVERIFY2(rig.text("statusTemperature").endsWith(QString::fromUtf8(" °C")), qPrintable(rig.text("statusTemperature")));
        rig.keepPicture("cw-captured");

        QTRY_VERIFY(rig.item("cwLogButton")->isEnabled());
        QVERIFY(rig.click("cwLogButton"));
        QStringList files;
        QTRY_VERIFY((files = QDir(logs).entryList({ "bench_check_*.csv" }, QDir::Files)).size() == 1);
        QFile csv(QDir(logs).filePath(files.first()));
        QVERIFY(csv.open(QIODevice::ReadOnly | QIODevice::Text));
        const QStringList lines = QString::fromUtf8(csv.readAll()).split('\n', Qt::SkipEmptyParts);
        QVERIFY(lines.size() > 10);
        QCOMPARE(lines.first().trimmed(), QString("# Tavrin Workbench Radar"));
        QVERIFY2(lines.join('\n').contains("# Rf Center Frequency [GHz]: 61.25"), qPrintable(lines.mid(0, 14).join('\n')));
        // One column per enabled receiver in the data rows.
        const int receivers = view->property("deviceConfig").value<QObject*>()->property("rxAntennas").value<QObject*>()
                                  ->property("numberOfEnabled").toInt();
        QCOMPARE(lines.last().trimmed().split(',').size(), receivers);

        QVERIFY(rig.click("cwEmissionButton"));
        QTRY_VERIFY(!view->property("isEmissionActive").toBool());
        QCOMPARE(rig.text("cwEmissionState"), QString("Emission off"));
        const quint64 emitted = rig.simulator()->emission_time_ms(kUuid);
        QTest::qWait(300);
        QCOMPARE(rig.simulator()->emission_time_ms(kUuid), emitted);
        QCOMPARE(rig.workbench().messageLog().errorCount(), 0);
    }

    void typedValueIsJudged_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("message");
        QTest::newRow("odd samples") << "cw_rxNumSamples" << "7" << "Value must be an even number";
        QTest::newRow("too many samples") << "cw_rxNumSamples" << "4096" << "not in expected range";
        QTest::newRow("no samples") << "cw_rxNumSamples" << "" << "Value cannot be empty";
        // Typed in GHz, refused in GHz.
        QTest::newRow("carrier off the band") << "cw_rfCenterFrequency" << "70" << "[58.00 - 63.50] GHz";
        QTest::newRow("carrier not a number") << "cw_rfCenterFrequency" << "6o" << "Text must be valid number";
        QTest::newRow("duty cycle above 100") << "cw_dutyCycle" << "101" << "not in expected range";
        QTest::newRow("samples accepted") << "cw_rxNumSamples" << "300" << "";
        QTest::newRow("sampling rate accepted") << "cw_samplingRate" << "500" << "";
    }

    void typedValueIsJudged()
    {
        QFETCH(QString, field);
        QFETCH(QString, typed);
        QFETCH(QString, message);
        WindowRig rig;
        QVERIFY(openCwPage(rig, QStringLiteral("KMR7A")));
        QQuickItem* target = rig.item(field);
        QVERIFY(target);
        // The editable drop-down takes the keys in its text field.
        QQuickItem* input = target->property("editable").toBool() ? target->property("contentItem").value<QQuickItem*>()
                                                                  : target;
        input->forceActiveFocus();
        QMetaObject::invokeMethod(input, "selectAll");
        QTest::keyClick(rig.window(), Qt::Key_Backspace);
        for (const QChar character : typed)
            QTest::keyClick(rig.window(), character.toLatin1());

        const QString shown = rig.text(field + "_message");
        if (message.isEmpty()) {
            QCOMPARE(shown, QString());
            QVERIFY(rig.item("cwApplyButton")->isEnabled());
            const QString property = field.mid(3);
            const double stored = guiParams(rig)->property(qPrintable(property)).toDouble();
            QCOMPARE(stored, typed.toDouble() * (property == "samplingRate" ? 1000.0 : 1.0));
        } else {
            QVERIFY2(shown.contains(message), qPrintable(shown));
            QVERIFY(rig.item(field + "_message")->isVisible());
            QVERIFY(!rig.item("cwApplyButton")->isEnabled());
            rig.keepPicture(QStringLiteral("cw-typed-") + QTest::currentDataTag());
            // The defaults replace what was typed and let Apply go.
            QVERIFY(rig.click("cwDefaultsButton"));
            QTRY_COMPARE(rig.text(field + "_message"), QString());
            QVERIFY(rig.item("cwApplyButton")->isEnabled());
        }
    }

    void shownBoundsAreAccepted_data()
    {
        QTest::addColumn<QString>("field");
        // The device's limits arrive in Hz, some in single precision; the page
        // shows them rounded to its decimals.
        for (const char* field : { "cw_rfCenterFrequency", "cw_samplingRate", "cw_testSignalFrequency" })
            QTest::newRow(field) << field;
    }

    void shownBoundsAreAccepted()
    {
        QFETCH(QString, field);
        WindowRig rig;
        QVERIFY(openCwPage(rig, QStringLiteral("KMR7C")));
        for (int bound : { 0, 1 }) {
            // "[1.23 – 2000.00]"
            const QString shown = rig.text(field + "_range");
            const QStringList bounds = shown.mid(1, shown.size() - 2).split(QString::fromUtf8(" – "));
            QCOMPARE(bounds.size(), 2);
            QVERIFY(rig.type(field, bounds.at(bound)));
            QCOMPARE(rig.text(field + "_message"), QString());
            QVERIFY2(rig.click("cwApplyButton"), qPrintable(bounds.at(bound)));
            QTRY_VERIFY(!cwView(rig)->property("revertApplyAvailable").toBool());
            QCOMPARE(rig.text(field), bounds.at(bound));
        }
        QCOMPARE(rig.workbench().messageLog().errorCount(), 0);
    }

    void chipDecidesTheChoices_data()
    {
        QTest::addColumn<QString>("chip");
        QTest::addColumn<int>("modes");
        QTest::addColumn<int>("cutoffs");
        QTest::addColumn<bool>("antiAlias");
        QTest::newRow("KMR7A") << "KMR7A" << 2 << 4 << false;
        QTest::newRow("KMR7B") << "KMR7B" << 2 << 4 << false;
        QTest::newRow("KMR7C") << "KMR7C" << 5 << 5 << true;
    }

    void chipDecidesTheChoices()
    {
        QFETCH(QString, chip);
        QFETCH(int, modes);
        QFETCH(int, cutoffs);
        QFETCH(bool, antiAlias);
        WindowRig rig;
        QVERIFY(openCwPage(rig, chip));
        QTRY_COMPARE(rig.item("cw_testSignalMode")->property("count").toInt(), modes);
        QCOMPARE(rig.item("cw_basebandHpCutoffFreq")->property("count").toInt(), cutoffs);
        QCOMPARE(rig.item("cw_basebandAafCutoffFreq")->isVisible(), antiAlias);
        QCOMPARE(rig.item("cw_testSignalMode")->property("currentText").toString(), QString("Off"));

        // The last mode the chip offers reaches the edited configuration.
        rig.key("cw_testSignalMode", Qt::Key_End);
        const QStringList all { "Off", "Baseband Test", "Toggle TX Enable", "Toggle DAC Value", "RX Self Test" };
        QTRY_COMPARE(guiParams(rig)->property("testSignalMode").toString(), all.at(modes - 1));
        rig.keepPicture("cw-choices-" + chip);
    }

    void slowerAdcPullsTheSamplingRateDown()
    {
        WindowRig rig;
        QVERIFY(openCwPage(rig, QStringLiteral("KMR7A")));
        QObject* params = guiParams(rig);
        const quint32 before = params->property("samplingRate").toUInt();
        // 400 ns per conversion, the slowest sample time.
        rig.key("cw_adcSamplingTime", Qt::Key_End);
        QTRY_COMPARE(params->property("adcSamplingTime").toUInt(), 400u);
        QObject* limits = cwView(rig)->property("guiConfig").value<QObject*>()->property("limits").value<QObject*>();
        const quint32 maximum = limits->property("samplingRateMax").toUInt();
        QVERIFY2(maximum < before, qPrintable(QString::number(maximum)));
        QTRY_COMPARE(params->property("samplingRate").toUInt(), maximum);
        QCOMPARE(rig.text("cw_samplingRate"), QString::number(maximum / 1000.0, 'f', 2));

        // The panes scrolled to their end show the ADC's choices.
        auto* panes = rig.item("cwParameterScroll")->property("contentItem").value<QQuickItem*>();
        QVERIFY(panes);
        panes->setProperty("contentY", panes->property("contentHeight").toReal() - panes->height());
        rig.keepPicture("cw-adc");
    }

    void savedConfigurationLoadsBackThroughTheDialogs()
    {
        WindowRig rig;
        QVERIFY(openCwPage(rig, QStringLiteral("KMR7A")));
        QVERIFY(rig.type("cw_dutyCycle", "30"));
        QVERIFY(rig.click("cwSaveButton"));
        QFileDialog* save = shownFileDialog();
        QVERIFY(save);
        // The dialog proposes the configuration's name for the file.
        const QStringList proposed = save->selectedFiles();
        QCOMPARE(proposed.size(), 1);
        QVERIFY2(QFileInfo(proposed.first()).fileName().contains(QRegularExpression("^KMR7A_CW_Settings_[0-9]{8}-[0-9]{6}\\.json$")),
                 qPrintable(proposed.first()));
        const QString path = rig.directory() + "/cw-saved.json";
        QVERIFY(chooseFile(rig, save, path));
        QTRY_VERIFY(QFile::exists(path));

        QVERIFY(rig.type("cw_dutyCycle", "55"));
        QCOMPARE(guiParams(rig)->property("dutyCycle").toUInt(), 55u);
        QVERIFY(rig.click("cwLoadButton"));
        QVERIFY(chooseFile(rig, shownFileDialog(), path));
        QTRY_COMPARE(guiParams(rig)->property("dutyCycle").toUInt(), 30u);
        QCOMPARE(rig.text("cw_dutyCycle"), QString("30"));
        // Loaded, not yet applied.
        QVERIFY(rig.item("cwRevertButton")->isEnabled());
    }

    void csvOptionsRefuseWhatCannotBeWritten_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("prefix");
        QTest::addColumn<QString>("message");
        QTest::newRow("folder two levels missing") << "/missing-cw-folder/below" << "cw" << "Path is not valid";
        QTest::newRow("no prefix") << "" << " " << "The file-name prefix cannot be empty";
        QTest::newRow("prefix with a slash") << "" << "a/b" << "The file-name prefix cannot hold";
    }

    void csvOptionsRefuseWhatCannotBeWritten()
    {
        QFETCH(QString, folder);
        QFETCH(QString, prefix);
        QFETCH(QString, message);
        WindowRig rig;
        QVERIFY(openCwPage(rig, QStringLiteral("KMR7A")));
        QObject* logging = cwView(rig)->property("userSettings").value<QObject*>()->property("loggingConfiguration")
                               .value<QObject*>();
        const QString pathBefore = logging->property("loggingPath").toString();
        const QString prefixBefore = logging->property("loggingFileName").toString();

        QVERIFY(rig.click("cwCsvOptionsButton"));
        QTRY_VERIFY(rig.item("cw_loggingPath") && rig.item("cw_loggingPath")->isVisible());
        QVERIFY(rig.type("cw_loggingPath", folder.isEmpty() ? rig.directory() : folder));
        QVERIFY(rig.type("cw_loggingFileName", prefix));
        QTRY_VERIFY(rig.text("cwCsvOptionsMessage").startsWith(message));
        rig.keepPicture(QStringLiteral("cw-csv-") + QTest::currentDataTag());
        // The dialog stays open and the settings keep what they had.
        QVERIFY(rig.item("cw_loggingPath")->isVisible());
        QCOMPARE(logging->property("loggingPath").toString(), pathBefore);
        QCOMPARE(logging->property("loggingFileName").toString(), prefixBefore);
        QVERIFY(rig.click("cwCsvOptionsCancelButton"));
        QTRY_VERIFY(!rig.item("cw_loggingPath") || !rig.item("cw_loggingPath")->isVisible());
    }

    void emissionNeedsAnAppliedTxAntenna()
    {
        WindowRig rig;
        QVERIFY(openCwPage(rig, QStringLiteral("KMR7A")));
        QVERIFY(rig.item("cwEmissionButton")->isEnabled());
        QVERIFY(rig.click("cw_tx_1"));
        QTRY_VERIFY(!rig.item("cw_tx_1")->property("checked").toBool());
        // Only the applied antennas count.
        QVERIFY(rig.item("cwEmissionButton")->isEnabled());
        QVERIFY(rig.click("cwApplyButton"));
        QTRY_VERIFY(!rig.item("cwEmissionButton")->isEnabled());
        QCOMPARE(rig.text("cwEmissionState"), QString("No Tx antenna applied"));
        QCOMPARE(rig.simulator()->emission_time_ms(kUuid), quint64(0));
    }

    void unpluggedBoardEndsEmissionOnThePage()
    {
        WindowRig rig;
        QVERIFY(openCwPage(rig, QStringLiteral("KMR7A")));
        QObject* view = cwView(rig);
        QVERIFY(rig.click("cwEmissionButton"));
        QTRY_COMPARE(rig.text("cwEmissionState"), QString("Emitting continuously"));

        QCOMPARE(rig.simulator()->unplug_board(kUuid), nullptr);
        QTRY_VERIFY_WITH_TIMEOUT(!view->property("isConnected").toBool(), 10000);
        QTRY_COMPARE(rig.text("cwEmissionState"), QString("Emission off"));
        QVERIFY(!rig.item("cwEmissionButton")->isEnabled());
        QVERIFY(!rig.item("cwCaptureButton")->isEnabled());
        QVERIFY(!rig.item("cwApplyButton")->isEnabled());
        QTRY_VERIFY(rig.workbench().messageLog().count() > 0);
        rig.keepPicture("cw-unplugged");
        // The module tells of the loss in its log; the page itself may not warn.
        PageWarnings::keepPageWarnings();
    }
};

QTEST_MAIN(TestCWPages)
#include "tst_CWPages.moc"
