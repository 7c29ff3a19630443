// The workbench window driven as a person would, offscreen on the simulated
// SDK: boards connected by their buttons, a board unplugged by the bench's
// fault schedule, the user mode switched and back, a recording played and
// stepped, messages cleared, the window closed while it records.
#include "WindowRig.h"

#include "BoardList.h"
#include "MessageLog.h"
#include "RecordingCheck.h"

#include "frame/RadarEventCode.h"
#include "recording/RadarBinFile.h"
#include "recording/RecordingFiles.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace {

// One real-time KMR7A board looking at a single reflector, with an
// optional fault schedule.
constexpr double kReflectorRangeM = 4.0;

QString bench(const QString& faults = QString())
{
    return QStringLiteral(R"({ "boards": [ { "uuid": "1f3c-0001", "shield": 512, "chip": "KMR7A",
        "pacing": "realtime", "noise": 0.001, "seed": 7, "scene": { "targets": [
        { "kind": "reflector", "range_m": %2, "speed_m_s": 0.0, "angle_deg": 0.0, "rcs_m2": 5.0 } ] }%1 } ] })")
        .arg(faults.isEmpty() ? QString() : QStringLiteral(", \"faults\": ") + faults)
        .arg(kReflectorRangeM);
}

// Opens the window on `benchJson` and, with `connect`, connects the board
// and waits for its frames.
bool open(WindowRig& rig, const QString& benchJson = bench(), bool connect = true)
{
    if (!rig.start(benchJson).isEmpty() || !QTest::qWaitFor([&] { return rig.item("board_Radar") != nullptr; }))
        return false;
    return !connect
        || (rig.click("connectButton") && QTest::qWaitFor([&] { return rig.number("statusFrames") >= 2; }, 10000));
}

void recordTo(WindowRig& rig, const QString& name, quint32 frames, bool textCopy = false)
{
    RecordingUserSettings& settings = *rig.host().core().recordingUserSettings();
    settings.setRecordingPath(rig.directory());
    settings.setFileName(name);
    settings.setNumOfFrames(frames);
    settings.setTxtFile(textCopy);
    QMetaObject::invokeMethod(rig.view(), "startRecording");
}

// The workbench started without a display, with `arguments`.
void startWithoutDisplay(QProcess& workbench, const QStringList& arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : { "DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM" })
        environment.remove(name);
    workbench.setProcessEnvironment(environment);
    workbench.start(WORKBENCH, arguments);
}

// Frame numbers of a binary recording, in file order.
QVector<qint32> recordedFrameNumbers(const QString& binPath)
{
    RadarBinFile file;
    RadarRecordingHeader header;
    QVector<qint32> numbers;
    if (!file.open(binPath, QIODevice::ReadOnly) || !file.readHeader(header))
        return numbers;
    std::vector<RadarFrameRecord> rows;
    while (file.readFrames(1, header.samplesPerFrame, rows) && !rows.empty())
        numbers << rows.front().frameNumber;
    return numbers;
}

} // namespace

class TestWorkbenchWindow : public QObject
{
    Q_OBJECT
private slots:
    void connectShowsFramesAndDisconnectStopsThem()
    {
        WindowRig rig;
        QVERIFY(open(rig, bench(), false));
        QVERIFY(rig.click("board_Radar"));
        QVERIFY(rig.click("connectButton"));
        QTRY_COMPARE(rig.workbench().boardList().connectedBoard(), QString("Radar"));
        QTRY_COMPARE(rig.item("board_Radar")->findChild<QQuickItem*>("boardState")->property("text").toString(),
                     QString("Connected"));
        QTRY_VERIFY_WITH_TIMEOUT(rig.number("statusFrames") >= 3, 10000);
        const qint64 early = rig.number("statusFrames");
        QTRY_VERIFY_WITH_TIMEOUT(rig.number("statusFrames") > early, 5000);
        QVERIFY(!rig.item("connectButton")->isEnabled());
        QVERIFY(rig.text("statusFifoOverflows").endsWith(" 0"));
        QVERIFY2(rig.text("statusDropped").endsWith(" 0"), qPrintable(rig.text("statusDropped")));
        // The board's first temperature reading comes within the monitor's
        // interval.
        QTRY_VERIFY_WITH_TIMEOUT(rig.text("statusTemperature").endsWith(QString::fromUtf8(" °C")), 8000);
        rig.keepPicture("connected");

        // The range spectrum peaks at the reflector, and hovering the peak
        // reads out its range.
        QQuickItem* chart = rig.seriesChart("rangeSpectrumChart");
        QTRY_VERIFY(rig.pointCount("rangeSpectrumChart") > 0);
        const QVariantMap peak = rig.peak("rangeSpectrumChart");
        QVERIFY(!peak.isEmpty());
        QTest::mouseMove(rig.window(), chart->mapToScene(QPointF(peak.value("itemX").toReal(), chart->height() / 2)).toPoint());
        QQuickItem* readout = rig.item("rangeSpectrumChart")->findChild<QQuickItem*>("hoverReadoutText");
        QTRY_VERIFY(readout && readout->isVisible());
        const QString reading = readout->property("text").toString();
        const double range = reading.section(QLatin1String("x: "), 1).section(QLatin1Char(' '), 0, 0).toDouble();
        QVERIFY2(qAbs(range - kReflectorRangeM) < 0.35, qPrintable(reading));

        QVERIFY(rig.click("disconnectButton"));
        QTRY_COMPARE(rig.workbench().boardList().connectedBoard(), QString());
        const qint64 stopped = rig.number("statusFrames");
        QTest::qWait(400);
        QCOMPARE(rig.number("statusFrames"), stopped);
        QVERIFY(rig.item("connectButton")->isEnabled());
    }

    void boardsFollowHotPlug_data()
    {
        QTest::addColumn<QString>("faults");
        QTest::addColumn<QStringList>("boardsAfter");
        // Pulled off the bus while streaming: the acquisition fails, which the
        // user is told, and the board leaves the list.
        QTest::newRow("unplugged while connected") << R"([ { "at_frame": 12, "kind": "unplug" } ])" << QStringList();
        // A second board plugged in while the first streams joins the list.
        QTest::newRow("plugged in") << QString() << QStringList { "Radar", "Radar #2" };
    }

    void boardsFollowHotPlug()
    {
        QFETCH(QString, faults);
        QFETCH(QStringList, boardsAfter);
        WindowRig rig;
        QVERIFY(open(rig, bench(faults)));
        if (faults.isEmpty())
            QCOMPARE(rig.simulator()->plug_board(R"({ "uuid": "2b2b-0002", "chip": "KMR7C" })"), nullptr);

        QTRY_COMPARE_WITH_TIMEOUT(rig.item("boardList")->property("count").toInt(), boardsAfter.size(), 10000);
        for (const QString& name : boardsAfter)
            QTRY_VERIFY(rig.item("board_" + name));
        if (boardsAfter.isEmpty())
            QVERIFY(!rig.item("board_Radar"));
        const bool error = !faults.isEmpty();
        QTRY_COMPARE(rig.workbench().messageLog().errorCount() > 0, error);
        QTRY_VERIFY(rig.item("messageList")->property("count").toInt() >= (error ? 1 : 0));
        rig.keepPicture(QTest::currentDataTag());
    }

    void userModeSwitchesAndBack()
    {
        WindowRig rig;
        QVERIFY(open(rig, bench(), false));
        QVERIFY(!rig.item("modeSelector")->isEnabled());
        QVERIFY(rig.click("connectButton"));
        QQuickItem* mode = rig.item("modeSelector");
        QTRY_VERIFY_WITH_TIMEOUT(mode->isEnabled(), 10000);
        QCOMPARE(mode->property("currentText").toString(), QString("Standard"));
        QVERIFY(rig.item("modulePage")->property("source").toString().contains("/Radar/RadarModule.qml"));

        // The CW mode takes the same board over and shows its page; going back
        // hands it to the standard mode, acquiring again.
        const QStringList modes = mode->property("model").toStringList();
        QVERIFY2(modes.contains("CW"), qPrintable(modes.join(',')));
        const bool cwBelow = modes.indexOf("CW") > modes.indexOf("Standard");
        rig.key("modeSelector", cwBelow ? Qt::Key_Down : Qt::Key_Up);
        QTRY_COMPARE(mode->property("currentText").toString(), QString("CW"));
        QTRY_VERIFY(rig.item("modulePage")->property("source").toString().contains("/RadarCW/"));
        QObject* cwView = rig.contextObject("radarCWView");
        QVERIFY(cwView);
        QTRY_VERIFY(cwView->property("isConnected").toBool());
        QVERIFY(rig.item("board_Radar"));
        QVERIFY(mode->isEnabled());
        rig.keepPicture("cw-mode");

        rig.key("modeSelector", cwBelow ? Qt::Key_Up : Qt::Key_Down);
        QTRY_COMPARE(mode->property("currentText").toString(), QString("Standard"));
        QTRY_COMPARE(rig.workbench().boardList().connectedBoard(), QString("Radar"));
        QTRY_VERIFY(rig.item("modulePage")->property("source").toString().contains("/Radar/RadarModule.qml"));
        const qint64 frames = rig.number("statusFrames");
        QTRY_VERIFY_WITH_TIMEOUT(rig.number("statusFrames") > frames, 5000);
    }

    void recordingPlaysAndSteps()
    {
        WindowRig rig;
        QVERIFY(open(rig));
        // A short recording of the board, made through the module's view.
        QSignalSpy ended(rig.view(), SIGNAL(isRecordingActiveChanged(bool)));
        recordTo(rig, "played", 6);
        QTRY_VERIFY(rig.text("statusRecording").contains("played.raw.bin"));
        QTRY_VERIFY_WITH_TIMEOUT(ended.count() >= 2, 10000);
        QVERIFY(rig.click("disconnectButton"));

        QVERIFY(rig.type("playbackFile", RecordingFiles::binPath(rig.directory() + "/played")));
        QTRY_COMPARE(rig.text("playbackPosition"), QString("Frame 0 of 6"));
        for (const char* position : { "Frame 1 of 6", "Frame 2 of 6" }) {
            QVERIFY(rig.click("playbackStepButton"));
            QTRY_COMPARE(rig.text("playbackPosition"), QString(position));
        }
        QTest::qWait(300);
        QCOMPARE(rig.text("playbackPosition"), QString("Frame 2 of 6"));
        rig.keepPicture("playback-stepped");
        QVERIFY(rig.click("playbackPlayButton"));
        QTRY_COMPARE_WITH_TIMEOUT(rig.text("playbackPosition"), QString("Frame 6 of 6"), 5000);
        QVERIFY(rig.click("playbackStopButton"));
        QTRY_COMPARE(rig.text("playbackPosition"), QString("No recording open"));
        QCOMPARE(rig.workbench().messageLog().errorCount(), 0);
    }

    void fileThatIsNoRecordingIsSaid_data()
    {
        QTest::addColumn<QByteArray>("bin");
        QTest::addColumn<QString>("message");
        QTest::newRow("missing configuration") << QByteArray() << "is not a recording";
        QTest::newRow("not a binary recording") << QByteArray("just some text, no frames") << "not supported";
    }

    void fileThatIsNoRecordingIsSaid()
    {
        QFETCH(QByteArray, bin);
        QFETCH(QString, message);
        WindowRig rig;
        QCOMPARE(rig.start(bench()), QString());
        const QString base = rig.directory() + "/odd";
        QFile binFile(RecordingFiles::binPath(base));
        QVERIFY(binFile.open(QIODevice::WriteOnly));
        binFile.write(bin.isEmpty() ? QByteArray("x") : bin);
        binFile.close();
        QFile json(RecordingFiles::jsonPath(base));
        QVERIFY(bin.isEmpty() || (json.open(QIODevice::WriteOnly) && json.write("{}") == 2));
        json.close();

        QVERIFY(rig.type("playbackFile", binFile.fileName()));
        QTRY_VERIFY(rig.workbench().messageLog().errorCount() > 0);
        const QString said = rig.workbench().messageLog().textAt(0);
        QVERIFY2(said.contains(message), qPrintable(said));
        QCOMPARE(rig.text("playbackPosition"), QString("No recording open"));
        QTRY_VERIFY(rig.item("messageList")->property("count").toInt() > 0);

        // The details open on a click.
        QTRY_VERIFY(rig.item("message_0"));
        QQuickItem* details = rig.item("message_0")->findChild<QQuickItem*>("messageDetails");
        QVERIFY(details && !details->isVisible());
        QVERIFY(rig.click("message_0"));
        QTRY_VERIFY(details->isVisible());
        QVERIFY(details->property("text").toString().contains("odd."));
        rig.keepPicture("message-details");

        QVERIFY(rig.click("clearMessagesButton"));
        QTRY_COMPARE(rig.item("messageList")->property("count").toInt(), 0);
        QVERIFY(!rig.item("clearMessagesButton")->isEnabled());
    }

    void coordinatorEventIsShownOnce_data()
    {
        QTest::addColumn<bool>("connected");
        // Without a board the event is all there is to show.
        QTest::newRow("no board") << false;
        // The standard mode turns the event into a user message of its own:
        // the same thing, shown once.
        QTest::newRow("board connected") << true;
    }

    void coordinatorEventIsShownOnce()
    {
        QFETCH(bool, connected);
        WindowRig rig;
        QVERIFY(open(rig, bench(), connected));
        QVERIFY(QMetaObject::invokeMethod(rig.contextObject("radarCoordinator"), "triggerEvent",
                                          Q_ARG(RadarEventCode, RadarEventCode::Notice),
                                          Q_ARG(QString, "Firmware image path is not valid"),
                                          Q_ARG(QString, "/nowhere/firmware")));
        // Other messages (a newer firmware image for the board) may come too;
        // this event must be among them exactly once.
        MessageLog& messages = rig.workbench().messageLog();
        const auto rowsOfEvent = [&messages] {
            QList<int> rows;
            for (int row = 0; row < messages.count(); ++row) {
                if (messages.textAt(row) == QLatin1String("Firmware image path is not valid\n/nowhere/firmware"))
                    rows << row;
            }
            return rows;
        };
        QTRY_COMPARE(rowsOfEvent().size(), 1);
        QTest::qWait(50);
        QCOMPARE(rowsOfEvent().size(), 1);
        const QModelIndex index = messages.index(rowsOfEvent().first());
        QCOMPARE(messages.data(index, MessageLog::TypeRole).toInt(), int(Constants::Warning));
        QVERIFY(messages.data(index, MessageLog::SourceRole).toString().contains("notice"));
    }

    void closingWhileRecordingKeepsEveryFrame_data()
    {
        QTest::addColumn<bool>("textCopy");
        QTest::newRow("binary only") << false;
        // The window waits for the text copy before it goes.
        QTest::newRow("with text copy") << true;
    }

    void closingWhileRecordingKeepsEveryFrame()
    {
        QFETCH(bool, textCopy);
        WindowRig rig;
        QVERIFY(open(rig));
        QSignalSpy frames(rig.view(), SIGNAL(frameNumberChanged(int)));
        recordTo(rig, "closed", 100000, textCopy);
        QTRY_VERIFY(rig.view()->property("isRecordingActive").toBool());
        // Frames told of before the recorder took over are not the file's.
        frames.clear();
        QTRY_VERIFY_WITH_TIMEOUT(frames.count() >= 8, 10000);

        rig.window()->close();
        const QString base = rig.directory() + "/closed";
        if (textCopy) {
            QVERIFY(!rig.workbench().closingReason().isEmpty());
            QTRY_VERIFY_WITH_TIMEOUT(!rig.window()->isVisible(), 20000);
            QCOMPARE(RecordingCheck::checkTextCopy(RecordingFiles::binPath(base), RecordingFiles::txtPath(base)),
                     QString());
        }
        QVERIFY(!rig.window()->isVisible());
        int lastShown = 0;
        for (const QList<QVariant>& frame : qAsConst(frames))
            lastShown = qMax(lastShown, frame.value(0).toInt());
        QVERIFY(!rig.view()->property("isRecordingActive").toBool());
        QCOMPARE(rig.workbench().boardList().connectedBoard(), QString());

        // Every frame from the first recorded one on, without a gap, up to at
        // least the last one the window had been told of (the view counts
        // frames, the file numbers them from 0).
        const QVector<qint32> recorded = recordedFrameNumbers(RecordingFiles::binPath(base));
        QVERIFY(recorded.size() >= 8);
        for (int i = 1; i < recorded.size(); ++i)
            QCOMPARE(recorded.at(i), recorded.at(i - 1) + 1);
        QVERIFY2(recorded.last() + 1 >= lastShown,
                 qPrintable(QString("%1 < %2").arg(recorded.last() + 1).arg(lastShown)));
        // The settings were saved on the way out.
        QCOMPARE(savedWorkbenchSettings(rig).value("recording").toObject().value("fileName").toString(),
                 QString("closed"));
    }

    void settingsPageEditsAreSaved()
    {
        WindowRig rig;
        QCOMPARE(rig.start(bench()), QString());
        QVERIFY(rig.click("settingsButton"));
        QTRY_VERIFY(rig.item("settingsPage")->isVisible());
        QVERIFY(!rig.item("modulePage")->isVisible());

        QVERIFY(rig.type("recordingNameField", "field-test"));
        QTRY_COMPARE(rig.host().core().recordingUserSettings()->fileName(), QString("field-test"));
        rig.key("refreshIntervalField", Qt::Key_Up);
        QTRY_COMPARE(rig.host().core().minimumRefreshInterval(), 43);
        QVERIFY(rig.click("autoClearLogsBox"));
        QTRY_VERIFY(rig.host().host().hostSettings().logging().autoClearLogs());

        // Saved without closing, shortly after the edits.
        QTRY_COMPARE_WITH_TIMEOUT(savedWorkbenchSettings(rig).value("minimumRefreshInterval").toInt(), 43, 5000);
        const QJsonObject saved = savedWorkbenchSettings(rig);
        QCOMPARE(saved.value("recording").toObject().value("fileName").toString(), QString("field-test"));
        QCOMPARE(saved.value("logs").toObject().value("autoClearLogs").toBool(), true);
        rig.keepPicture("settings");
    }

    void screenshotCommandSavesTheWindow()
    {
        QTemporaryDir dir;
        QFile benchFile(dir.filePath("bench.json"));
        QVERIFY(benchFile.open(QIODevice::WriteOnly) && benchFile.write(bench().toUtf8()) > 0);
        benchFile.close();
        const QString png = dir.filePath("window.png");
        QProcess workbench;
        startWithoutDisplay(workbench, { "--screenshot", png, "--frames", "5", "--bench", benchFile.fileName(),
                                         "--settings", dir.filePath("settings.json") });
        QVERIFY(workbench.waitForFinished(60000));
        QVERIFY2(workbench.exitCode() == 0, workbench.readAllStandardError().constData());
        QImage picture(png);
        QCOMPARE(picture.size(), QSize(1440, 900));
        // Not blank: the window's frame, panels and charts in many colours.
        QSet<QRgb> colours;
        for (int y = 0; y < picture.height(); y += 7)
            for (int x = 0; x < picture.width(); x += 7)
                colours.insert(picture.pixel(x, y));
        QVERIFY2(colours.size() > 20, qPrintable(QString::number(colours.size())));
    }

    void windowWithoutDisplayNamesTheAlternatives()
    {
        QProcess workbench;
        startWithoutDisplay(workbench, {});
        QVERIFY(workbench.waitForFinished(30000));
        QCOMPARE(workbench.exitCode(), 3);
        const QString err = QString::fromUtf8(workbench.readAllStandardError());
        QVERIFY2(err.contains("No display") && err.contains("--headless") && err.contains("--screenshot"), qPrintable(err));
    }

private:
    static QJsonObject savedWorkbenchSettings(WindowRig& rig)
    {
        QFile file(rig.directory() + "/settings.json");
        return file.open(QIODevice::ReadOnly)
            ? QJsonDocument::fromJson(file.readAll()).object().value("workbench").toObject()
            : QJsonObject();
    }
};

QTEST_MAIN(TestWorkbenchWindow)
#include "tst_WorkbenchWindow.moc"
