// The pulsed-Doppler page in the workbench window, driven as a user would on
// a simulated ZP7 board: the target's speed read off the Doppler spectrum,
// the channel, power and gain applied and reverted, typed frame values
// judged, a few frames recorded and played back on the same page, and a
// failing board's message shown. Any warning while the page lives fails the
// test.
#include "PageTestSupport.h"
#include "WindowRig.h"

#include "BoardList.h"
#include "MessageLog.h"
#include "PlaybackControl.h"
#include "RecordingCheck.h"

#include "recording/RecordingFiles.h"
#include "host/CoreUserSettings.h"

#include <QFileInfo>

namespace {

constexpr const char* kUuid = "7d50-0007";
// The carrier's wavelength: a target's range rate v leaves its tone at
// -2 v / lambda.
constexpr double kWavelengthM = 299792458.0 / 24.125e9;

// One ZP7 board with one reflector 10 m away moving at `speed` (negative:
// closing in); it keeps its speed for the whole test.
QString zp7Bench(double speed, const QString& faults = QString())
{
    return QStringLiteral(R"({ "boards": [ { "uuid": "%1", "chip": "ZP7", "pacing": "realtime", "noise": 0.001,
        "seed": 3, "scene": { "targets": [ { "kind": "reflector", "range_m": 10.0, "speed_m_s": %2, "rcs_m2": 10.0,
        "min_range_m": 0.2, "max_range_m": 30.0 } ] }%3 } ] })")
        .arg(QLatin1String(kUuid))
        .arg(speed)
        .arg(faults.isEmpty() ? QString() : QStringLiteral(", \"faults\": ") + faults);
}

QObject* zp7View(WindowRig& rig)
{
    return rig.contextObject("zp7sView");
}

// The pulse or frame group ("pulseConfigParams", "frameParams") of the
// edited ("guiConfiguration") or running ("deviceConfiguration") configuration.
QObject* group(WindowRig& rig, const char* configuration, const char* name)
{
    QObject* config = zp7View(rig)->property(configuration).value<QObject*>();
    return config ? config->property(name).value<QObject*>() : nullptr;
}

// Connects the bench's board; true once the ZP7 page shows its charts.
bool openZp7Page(WindowRig& rig, const QString& bench)
{
    if (!rig.start(bench).isEmpty() || !zp7View(rig))
        return false;
    if (!QTest::qWaitFor([&] { return rig.workbench().boardList().count() > 0; }) || !rig.click("connectButton"))
        return false;
    return QTest::qWaitFor([&] { return rig.item("ZP7SModule") != nullptr; }, 10000)
        && QTest::qWaitFor([&] { return !rig.text("zp7_numOfSamples").isEmpty(); }, 10000);
}

} // namespace

class TestZP7Pages : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { PageWarnings::install(); }
    void init() { PageWarnings::collected().clear(); }
    void cleanup() { QVERIFY2(PageWarnings::collected().isEmpty(), qPrintable(PageWarnings::collected().join(QLatin1Char('\n')))); }

    void dopplerChartShowsTheTargetsSpeed_data()
    {
        QTest::addColumn<double>("speed");
        QTest::addColumn<QString>("direction");
        QTest::newRow("approaching") << -1.2 << "(approaching)";
        QTest::newRow("receding") << 1.2 << "(receding)";
    }

    void dopplerChartShowsTheTargetsSpeed()
    {
        QFETCH(double, speed);
        QFETCH(QString, direction);
        WindowRig rig;
        QVERIFY(openZp7Page(rig, zp7Bench(speed)));
        // The window follows the board's own view: its frames and temperature.
        QTRY_VERIFY_WITH_TIMEOUT(rig.number("statusFrames") >= 3, 10000);
        QTRY_VERIFY_WITH_TIMEOUT(rig.pointCount("zp7TimeDomainChart") > 0, 5000);
        QTRY_VERIFY_WITH_TIMEOUT(rig.pointCount("zp7DopplerChart") > 0, 5000);
        QCOMPARE(rig.text("zp7ShownChannel"), QString("Tx1Rx1"));

        // The echo stands out at its Doppler frequency, within two bins.
        QObject* frame = group(rig, "deviceConfiguration", "frameParams");
        const double prt = frame->property("pulseRepetitionTime").toDouble();
        const double bin = 1.0 / (prt * frame->property("numOfSamples").toDouble());
        const double expected = -2.0 * speed / kWavelengthM;
        const QVariantMap top = rig.peak("zp7DopplerChart");
        QVERIFY2(qAbs(top.value("x").toDouble() - expected) < 2 * bin,
                 qPrintable(QString("peak at %1 Hz, expected %2 Hz").arg(top.value("x").toDouble()).arg(expected)));

        // Under the mouse the peak reads as frequency and as the target's speed.
        QQuickItem* plot = rig.seriesChart("zp7DopplerChart");
        const QPointF at = plot->mapToScene(QPointF(top.value("itemX").toDouble(), plot->height() / 2));
        QTest::mouseMove(rig.window(), at.toPoint());
        QQuickItem* readout = rig.item("zp7DopplerChart")->findChild<QQuickItem*>("hoverReadoutText");
        QTRY_VERIFY(readout && readout->property("text").toString().contains(direction));
        const QString text = readout->property("text").toString();
        const double shownSpeed = text.section(QStringLiteral(" Hz"), 1).trimmed().section(' ', 0, 0).toDouble();
        QVERIFY2(text.contains(" Hz") && qAbs(shownSpeed - speed) < 2 * bin * kWavelengthM / 2, qPrintable(text));
        QTRY_VERIFY_WITH_TIMEOUT(rig.text("statusTemperature").endsWith(QString::fromUtf8(" °C")), 8000);
        rig.keepPicture(QStringLiteral("zp7-charts-") + QTest::currentDataTag());
        QCOMPARE(rig.workbench().messageLog().errorCount(), 0);
    }

    void pulseSettingsApplyRevertSaveAndLoad()
    {
        WindowRig rig;
        QVERIFY(openZp7Page(rig, zp7Bench(-1.0)));
        QVERIFY(rig.click("zp7ConfigurationTab"));
        QObject* edited = group(rig, "guiConfiguration", "pulseConfigParams");
        QObject* running = group(rig, "deviceConfiguration", "pulseConfigParams");
        QTRY_VERIFY(rig.item("zp7_channel_1")->property("checked").toBool());

        // The drop-down offers the board's gain steps, as the board names them.
        const QStringList steps { "3 / 10dB", "6 / 16dB", "12 / 22dB", "24 / 28dB", "48 / 34dB", "96 / 40dB",
                                  "192 / 46dB", "384 / 52dB" };
        QCOMPARE(rig.item("zp7_abbGain")->property("model").toStringList(), steps);

        // One pair at a time: the second button takes antenna 2 in both sets.
        QVERIFY(rig.click("zp7_channel_2"));
        QTRY_COMPARE(edited->property("channel").toInt(), 1);
        QVERIFY(!rig.item("zp7_channel_1")->property("checked").toBool());
        QVERIFY(rig.item("zp7_channel_2")->property("checked").toBool());
        rig.key("zp7_abbGain", Qt::Key_End);
        QTRY_COMPARE(edited->property("abbGain").toInt(), 384);
        QCOMPARE(rig.item("zp7_abbGain")->property("currentText").toString(), QString("384 / 52dB"));
        const int power = edited->property("txPowerLevel").toInt();
        rig.key("zp7_txPowerLevel", Qt::Key_Down);
        QTRY_COMPARE(edited->property("txPowerLevel").toInt(), power - 1);
        QVERIFY(rig.item("zp7RevertButton")->isEnabled());

        QVERIFY(rig.click("zp7ApplyButton"));
        QTRY_COMPARE(running->property("channel").toInt(), 1);
        QCOMPARE(running->property("abbGain").toInt(), 384);
        QCOMPARE(running->property("txPowerLevel").toInt(), power - 1);
        QTRY_VERIFY(!rig.item("zp7RevertButton")->isEnabled());
        QCOMPARE(rig.text("zp7ShownChannel"), QString("Tx2Rx2"));
        rig.keepPicture("zp7-configuration");

        // An edit not applied goes back to what the board runs.
        QVERIFY(rig.click("zp7_channel_1"));
        rig.key("zp7_abbGain", Qt::Key_Up);
        QTRY_COMPARE(edited->property("abbGain").toInt(), 192);
        QVERIFY(rig.click("zp7RevertButton"));
        QTRY_COMPARE(edited->property("channel").toInt(), 1);
        QCOMPARE(edited->property("abbGain").toInt(), 384);
        QTRY_VERIFY(rig.item("zp7_channel_2")->property("checked").toBool());
        QCOMPARE(rig.item("zp7_abbGain")->property("currentText").toString(), QString("384 / 52dB"));

        // Saved and loaded back through the file dialogs.
        const QString path = rig.directory() + "/zp7-saved.json";
        QVERIFY(rig.click("zp7SaveButton"));
        QVERIFY(chooseFile(rig, path));
        QTRY_VERIFY(QFile::exists(path));
        // Another gain, as a loaded file would bring one.
        QVERIFY(edited->setProperty("abbGain", 192));
        QTRY_COMPARE(rig.item("zp7_abbGain")->property("currentText").toString(), QString("192 / 46dB"));
        QVERIFY(rig.click("zp7LoadButton"));
        QVERIFY(chooseFile(rig, path));
        QTRY_COMPARE(edited->property("abbGain").toInt(), 384);
        QCOMPARE(rig.item("zp7_abbGain")->property("currentText").toString(), QString("384 / 52dB"));
        QCOMPARE(rig.workbench().messageLog().errorCount(), 0);
    }

    void chartSettingsReachTheDopplerChart()
    {
        WindowRig rig;
        QVERIFY(openZp7Page(rig, zp7Bench(-1.0)));
        QTRY_VERIFY_WITH_TIMEOUT(rig.pointCount("zp7DopplerChart") > 0, 5000);
        // In dB every bin lies below full scale.
        QVERIFY(rig.peak("zp7DopplerChart").value("y").toDouble() < 0);

        // The window's settings switch the shared spectrum to linear magnitudes:
        // the running ZP7 processing takes them over at once.
        QVERIFY(rig.click("settingsButton"));
        rig.key("rangeSpectrumScale", Qt::Key_Down);
        QTRY_COMPARE(rig.item("rangeSpectrumScale")->property("currentIndex").toInt(), 1);
        QVERIFY(rig.click("settingsButton"));
        QTRY_VERIFY_WITH_TIMEOUT(rig.peak("zp7DopplerChart").value("y").toDouble() > 0, 5000);
        QCOMPARE(rig.item("zp7DopplerChart")->findChild<QQuickItem*>("chartYTitle")->property("text").toString(),
                 QString("Magnitude"));
        QCOMPARE(rig.workbench().messageLog().errorCount(), 0);
    }

    void typedFrameValueIsJudged_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("message");
        // Stored when accepted; never stored when refused.
        QTest::addColumn<double>("stored");
        QTest::newRow("too few samples") << "zp7_numOfSamples" << "8" << "not in expected range" << 8.0;
        QTest::newRow("half a sample") << "zp7_numOfSamples" << "64.5" << "whole number" << 64.5;
        QTest::newRow("pulses too close") << "zp7_pulseRepetitionTime" << "20" << "µs" << 20e-6;
        QTest::newRow("rate not a number") << "zp7_frameRepetitionRate" << "1o" << "valid number" << 0.0;
        QTest::newRow("samples accepted") << "zp7_numOfSamples" << "160" << "" << 160.0;
        QTest::newRow("PRT typed in µs") << "zp7_pulseRepetitionTime" << "250" << "" << 250e-6;
        QTest::newRow("rate accepted") << "zp7_frameRepetitionRate" << "5.5" << "" << 5.5;
    }

    void typedFrameValueIsJudged()
    {
        QFETCH(QString, field);
        QFETCH(QString, typed);
        QFETCH(QString, message);
        QFETCH(double, stored);
        WindowRig rig;
        QVERIFY(openZp7Page(rig, zp7Bench(-1.0)));
        QVERIFY(rig.click("zp7ConfigurationTab"));
        QObject* edited = group(rig, "guiConfiguration", "frameParams");
        QVERIFY(rig.type(field, typed));

        const QString shown = rig.text(field + "_message");
        if (message.isEmpty()) {
            QCOMPARE(shown, QString());
            QCOMPARE(float(edited->property(qPrintable(field.mid(4))).toDouble()), float(stored));
            QVERIFY(rig.click("zp7ApplyButton"));
            QTRY_COMPARE(float(group(rig, "deviceConfiguration", "frameParams")->property(qPrintable(field.mid(4)))
                                   .toDouble()),
                         float(stored));
        } else {
            QVERIFY2(shown.contains(message), qPrintable(shown));
            QVERIFY(!rig.item("zp7ApplyButton")->isEnabled());
            QVERIFY(float(edited->property(qPrintable(field.mid(4))).toDouble()) != float(stored));
            rig.keepPicture(QStringLiteral("zp7-typed-") + QTest::currentDataTag());
            // The defaults replace what was typed and let Apply go.
            QVERIFY(rig.click("zp7DefaultsButton"));
            QTRY_COMPARE(rig.text(field + "_message"), QString());
            QVERIFY(rig.item("zp7ApplyButton")->isEnabled());
        }
    }

    void recordedFramesPlayBackOnThePage()
    {
        WindowRig rig;
        QVERIFY(openZp7Page(rig, zp7Bench(-1.0)));
        RecordingUserSettings& settings = *rig.host().core().recordingUserSettings();
        settings.setRecordingPath(rig.directory());
        settings.setFileName("zp7");
        settings.setNumOfFrames(5);
        QVERIFY(rig.click("zp7RecordingTab"));
        QTRY_VERIFY(rig.item("zp7RecordButton")->isEnabled());
        QVERIFY(rig.click("zp7RecordButton"));
        QTRY_VERIFY(rig.text("statusRecording").contains("zp7.raw.bin"));
        QCOMPARE(rig.text("zp7RecordButton"), QString::fromUtf8("■ Stop recording"));
        rig.keepPicture("zp7-recording");
        // The frame limit ends it.
        QTRY_COMPARE_WITH_TIMEOUT(rig.text("zp7RecordButton"), QString::fromUtf8("● Start recording"), 10000);
        QVERIFY(QFileInfo(RecordingFiles::binPath(rig.directory() + "/zp7")).size() > 0);

        QVERIFY(rig.click("zp7DeviceTab"));
        QVERIFY(!rig.text("zp7DeviceChip").isEmpty() && rig.text("zp7DeviceChip") != QString::fromUtf8("–"));
        QTRY_VERIFY_WITH_TIMEOUT(rig.text("zp7DeviceTemperature").endsWith(QString::fromUtf8(" °C")), 8000);
        rig.keepPicture("zp7-device");

        // The recording plays on the ZP7 page, by its own playback, which
        // takes the acquisition over from the board.
        QVERIFY(rig.type("playbackFile", RecordingFiles::binPath(rig.directory() + "/zp7")));
        QTRY_COMPARE(rig.text("playbackPosition"), QString("Frame 0 of 5"));
        QVERIFY(!zp7View(rig)->property("isConnected").toBool());
        QCOMPARE(rig.workbench().playbackControl().playbackName(), QString("ZP7"));
        QTRY_VERIFY(rig.item("ZP7SModule"));
        QVERIFY(rig.click("zp7ChartsTab"));
        QVERIFY(rig.click("playbackPlayButton"));
        // The recorded frames reach the charts while they play.
        QTRY_VERIFY_WITH_TIMEOUT(rig.pointCount("zp7DopplerChart") > 0, 5000);
        QTRY_COMPARE_WITH_TIMEOUT(rig.text("playbackPosition"), QString("Frame 5 of 5"), 5000);
        QCOMPARE(rig.number("statusFrames"), 5);
        QCOMPARE(rig.workbench().messageLog().errorCount(), 0);
    }

    void closingEndsTheRecordingAndWaitsForItsTextCopy()
    {
        WindowRig rig;
        QVERIFY(openZp7Page(rig, zp7Bench(-1.0)));
        RecordingUserSettings& settings = *rig.host().core().recordingUserSettings();
        settings.setRecordingPath(rig.directory());
        settings.setFileName("closed");
        settings.setNumOfFrames(100000);
        settings.setTxtFile(true);
        QVERIFY(rig.click("zp7RecordingTab"));
        QTRY_VERIFY(rig.item("zp7RecordButton")->isEnabled());
        QVERIFY(rig.click("zp7RecordButton"));
        QTRY_VERIFY_WITH_TIMEOUT(rig.number("statusFrames") >= 4, 10000);

        // The window ends the ZP7 recording, lets the board go and closes once
        // the text copy is written.
        rig.window()->close();
        QVERIFY(!rig.workbench().closingReason().isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(!rig.window()->isVisible(), 20000);
        QVERIFY(!zp7View(rig)->property("isRecordingActive").toBool());
        QCOMPARE(rig.workbench().boardList().connectedBoard(), QString());
        const QString base = rig.directory() + "/closed";
        QCOMPARE(RecordingCheck::checkTextCopy(RecordingFiles::binPath(base), RecordingFiles::txtPath(base)), QString());
    }

    void failingBoardIsToldOnThePage()
    {
        WindowRig rig;
        QVERIFY(openZp7Page(rig, zp7Bench(-1.0, R"([ { "at_frame": 3, "status": "0x1100d", "count": 0 } ])")));
        QTRY_VERIFY_WITH_TIMEOUT(rig.text("zp7NoticeText").contains("Fetching next frame failed"), 10000);
        QVERIFY(rig.item("zp7Notice")->isVisible());
        QVERIFY(rig.workbench().messageLog().count() > 0);
        rig.keepPicture("zp7-fetch-failed");
        QVERIFY(rig.click("zp7NoticeClose"));
        QTRY_VERIFY(!rig.item("zp7Notice")->isVisible());
        // The module logs the failure itself; the page may not warn.
        PageWarnings::keepPageWarnings();
    }
};

QTEST_MAIN(TestZP7Pages)
#include "tst_ZP7Pages.moc"
