// The standard mode's pages as a person meets them: loaded from the module's
// embedded QML into the host's engine, in a window, on a simulated board;
// found by object name, typed into and clicked. Pictures of every tab go to
// $RADAR_PAGES_PICTURES when it is set.

#include "ModuleHost.h"
#include "SimulatedHost.h"
#include "WorkbenchItems.h"

#include "host/CoreUserSettings.h"

#include <QApplication>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

// Every warning while a page lives: binding errors, missing types and
// undefined values of the QML engine as much as what the module reports.
// A session on a healthy simulated board has none.
QStringList g_warnings;
// What the offscreen platform says whenever a dialog window shows.
const char* const kOffscreenDialogNotice = "This plugin does not support propagateSizeHints()";
QtMessageHandler g_previousHandler = nullptr;

void collectWarnings(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type != QtDebugMsg && type != QtInfoMsg && message != QLatin1String(kOffscreenDialogNotice))
        g_warnings.append(message);
    if (g_previousHandler)
        g_previousHandler(type, context, message);
}

bool hasSeveralColours(const QImage& image, const QRect& area)
{
    const QRgb first = image.pixel(area.topLeft());
    for (int y = area.top(); y <= area.bottom(); y += 3) {
        for (int x = area.left(); x <= area.right(); x += 3) {
            if (image.pixel(x, y) != first)
                return true;
        }
    }
    return false;
}

// Through the visual tree: the delegates of repeaters are children of the
// items they show in, not of the repeater's object.
QQuickItem* findItem(QQuickItem* root, const QString& name)
{
    if (root->objectName() == name)
        return root;
    for (QQuickItem* child : root->childItems()) {
        if (QQuickItem* found = findItem(child, name))
            return found;
    }
    return nullptr;
}

} // namespace

class TestRadarPages : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        // What an offscreen window gets without a GPU; asked for so that the
        // test does not depend on the machine.
        QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
        registerWorkbenchItems(CoreUserSettings().palette());
        g_previousHandler = qInstallMessageHandler(collectWarnings);
    }

    void init()
    {
        g_warnings.clear();
        m_sim = std::make_unique<SimulatedHost>();
        const QString scene = QStringLiteral(R"({ "targets": [
            { "kind": "reflector", "range_m": 3.0, "speed_m_s": 0.5, "angle_deg": 0.0, "rcs_m2": 5.0 } ] })");
        const QString directory = m_dir.filePath(QString::fromLatin1(QTest::currentTestFunction()));
        QVERIFY(QDir().mkpath(directory));
        const QString error
            = m_sim->start(SimulatedHost::oneBoardBench(QStringLiteral("1f3c-0002"), QStringLiteral("KMR7A"),
                                                        QStringLiteral("realtime"), scene),
                           directory);
        QVERIFY2(error.isEmpty(), qPrintable(error));

        QQmlEngine* engine = m_sim->host().engine();
        engine->addImportPath(QStringLiteral("qrc:/qml"));
        m_window = std::make_unique<QQuickWindow>();
        m_window->resize(1280, 800);
        QQmlComponent component(engine, QUrl(QStringLiteral("qrc:/qml/Radar/RadarModule.qml")));
        QObject* created = component.create();
        QVERIFY2(created, qPrintable(component.errorString()));
        m_page = qobject_cast<QQuickItem*>(created);
        QVERIFY(m_page);
        m_page->setParentItem(m_window->contentItem());
        m_page->setSize(QSizeF(1280, 800));
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));

        const QString connected = m_sim->connectFirstBoard();
        QVERIFY2(connected.isEmpty(), qPrintable(connected));
        QSignalSpy refreshes(view(), SIGNAL(chartsDataUpdated()));
        QTRY_VERIFY_WITH_TIMEOUT(refreshes.count() >= 3, 10000);
    }

    void cleanup()
    {
        delete m_page;
        m_page = nullptr;
        m_window.reset();
        m_sim.reset();
        QVERIFY2(g_warnings.isEmpty(), qPrintable(g_warnings.join(QLatin1Char('\n'))));
    }

    void everyTabShowsItsContent_data()
    {
        QTest::addColumn<QString>("tab");
        QTest::addColumn<QString>("content");
        QTest::newRow("charts") << "chartsTab" << "rangeDopplerImage";
        QTest::newRow("configuration") << "configurationTab" << "metric_maxRangeM";
        QTest::newRow("recording") << "recordingTab" << "recordButton";
        QTest::newRow("device") << "deviceTab" << "deviceChip";
    }

    void everyTabShowsItsContent()
    {
        QFETCH(QString, tab);
        QFETCH(QString, content);
        showTab(qPrintable(tab));
        QQuickItem* shown = item(qPrintable(content));
        QVERIFY(shown);
        QTRY_VERIFY(shown->isVisible());
        // A few refreshes so the charts hold data.
        QSignalSpy refreshes(view(), SIGNAL(chartsDataUpdated()));
        QTRY_VERIFY_WITH_TIMEOUT(refreshes.count() >= 2, 10000);
        QTest::qWait(50);

        const QImage picture = rendered();
        QCOMPARE(picture.size(), QSize(1280, 800));
        const QRectF area = shown->mapRectToScene(QRectF(0, 0, shown->width(), shown->height()));
        QVERIFY2(hasSeveralColours(picture, area.toRect().intersected(picture.rect())),
                 qPrintable(content + QStringLiteral(" shows nothing")));
        savePicture(tab);
    }

    void typedMetricIsJudgedByTheModule_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("messageStart");
        QTest::newRow("beyond the device") << "150" << "Value 150 not in expected range: [";
        QTest::newRow("within") << "5" << "";
    }

    void typedMetricIsJudgedByTheModule()
    {
        QFETCH(QString, text);
        QFETCH(QString, messageStart);
        showTab("configurationTab");
        QQuickItem* apply = item("applyButton");
        QVERIFY(apply);
        QVERIFY(apply->isEnabled());
        typeInto(item("metric_maxRangeM"), text);

        QQuickItem* message = item("metric_maxRangeM_message");
        QVERIFY(message);
        const QString shown = message->property("text").toString();
        QObject* edited = viewObject("guiConfiguration");
        QString expected;
        QVERIFY(QMetaObject::invokeMethod(edited, "validateField", Q_RETURN_ARG(QString, expected),
                                          Q_ARG(QString, QStringLiteral("metrics.maxRangeM")), Q_ARG(QString, text)));
        QCOMPARE(shown, expected);
        QVERIFY2(messageStart.isEmpty() ? shown.isEmpty() : shown.startsWith(messageStart), qPrintable(shown));
        QCOMPARE(message->isVisible(), !shown.isEmpty());
        QCOMPARE(apply->isEnabled(), shown.isEmpty());
        savePicture(QStringLiteral("configuration-typed-")
                    + QString::fromLatin1(QTest::currentDataTag()).replace(' ', '-'));
        if (shown.isEmpty()) {
            QObject* metrics = edited->property("metrics").value<QObject*>();
            QCOMPARE(metrics->property("maxRangeM").toFloat(), 5.0f);
        }
    }

    void antennaBoxesShowWhatTheSceneKeeps()
    {
        showTab("configurationTab");
        QObject* rx = viewObject("guiConfiguration.metrics.rx");
        const auto enabled = [rx](int position) {
            bool answer = false;
            QMetaObject::invokeMethod(rx, "getEnabled", Q_RETURN_ARG(bool, answer), Q_ARG(int, position));
            return answer;
        };
        QQuickItem* rx1 = item("rx_1");
        QQuickItem* rx3 = item("rx_3");
        QVERIFY(rx1 && rx3 && !enabled(0) && enabled(2));
        QVERIFY(!rx1->property("checked").toBool() && rx3->property("checked").toBool());

        click(rx1);
        QVERIFY(enabled(0));
        QVERIFY(rx1->property("checked").toBool());
        click(rx1);
        QVERIFY(!enabled(0));
        // The scene keeps one receiver: unchecking the last one leaves it on,
        // and the box shows so.
        click(rx3);
        QVERIFY(enabled(2));
        QVERIFY(rx3->property("checked").toBool());
        QVERIFY(!item("revertButton")->isEnabled());
    }

    void savedConfigurationLoadsBackThroughTheDialogs()
    {
        showTab("configurationTab");
        click(item("saveConfigButton"));
        QFileDialog* save = openDialog();
        QVERIFY(save);
        // The dialog proposes the module's name for the file.
        const QStringList proposed = save->selectedFiles();
        QCOMPARE(proposed.size(), 1);
        const QRegularExpression proposal(QStringLiteral("^KMR7A_Settings_[0-9]{8}-[0-9]{6}\\.json$"));
        QVERIFY2(QFileInfo(proposed.first()).fileName().contains(proposal), qPrintable(proposed.first()));
        const QString path = m_dir.filePath(QStringLiteral("saved.json"));
        chooseFile(save, path);
        QTRY_VERIFY(QFile::exists(path));

        // An applied change reaches the device; acquisition runs on at the
        // new frame time.
        QObject* applied = viewObject("deviceConfiguration.metrics");
        QQuickItem* revert = item("revertButton");
        QVERIFY(revert && !revert->isEnabled());
        typeInto(item("metric_frameRepetitionTimeS"), QStringLiteral("0.2"));
        QTRY_VERIFY(revert->isEnabled());
        QSignalSpy numbers(view(), SIGNAL(frameNumberChanged(int)));
        click(item("applyButton"));
        QCOMPARE(applied->property("frameRepetitionTimeS").toFloat(), 0.2f);
        QVERIFY(!revert->isEnabled());
        QTRY_VERIFY_WITH_TIMEOUT(numbers.count() >= 3, 5000);
        QVERIFY(view()->property("isActive").toBool());

        click(item("loadConfigButton"));
        QFileDialog* load = openDialog();
        QVERIFY(load);
        chooseFile(load, path);
        QTRY_COMPARE(applied->property("frameRepetitionTimeS").toFloat(), 0.1f);
        QCOMPARE(text("metric_frameRepetitionTimeS"), QStringLiteral("0.1"));
    }

    void deviceTabShowsTheBoardsReadings()
    {
        showTab("deviceTab");
        QCOMPARE(text("deviceChip"), QStringLiteral("KMR7A"));
        QVERIFY(text("deviceFirmware").contains(QLatin1String("KMR7A")));
        // One power per transmitter once the configuration runs; the
        // temperature with the monitor's first reading.
        QVERIFY2(text("deviceTxPower").contains(QRegularExpression("^Tx1: -?[0-9.]+ dBm$")),
                 qPrintable(text("deviceTxPower")));
        QTRY_VERIFY_WITH_TIMEOUT(text("deviceTemperature").endsWith(QStringLiteral(" °C")),
                                 8000);
        savePicture(QStringLiteral("deviceTab"));
    }

    void hoverOverTheImageReadsRangeAndSpeed()
    {
        QQuickItem* image = item("rangeDopplerImage");
        QVERIFY(image && image->isVisible());
        QObject* applied = viewObject("deviceConfiguration");
        QObject* range = applied->property("dopplerRangeAxis").value<QObject*>();
        QObject* speed = applied->property("dopplerSpeedAxis").value<QObject*>();
        const double rangeMin = range->property("min").toDouble();
        const double rangeMax = range->property("max").toDouble();
        const double speedMin = speed->property("min").toDouble();
        const double speedMax = speed->property("max").toDouble();
        QVERIFY(rangeMax > rangeMin && speedMax > speedMin);

        // A quarter from the top (range grows upwards), three quarters across.
        const QPointF at = image->mapToScene(QPointF(image->width() * 0.75, image->height() * 0.25));
        QTest::mouseMove(m_window.get(), at.toPoint());
        QQuickItem* readout = item("rangeDopplerReadoutText");
        QTRY_VERIFY(readout->isVisible());
        const QString shown = readout->property("text").toString();
        const QRegularExpressionMatch numbers
            = QRegularExpression(QStringLiteral("^range: (-?[0-9.]+) m  speed: (-?[0-9.]+) m/s$")).match(shown);
        QVERIFY2(numbers.hasMatch(), qPrintable(shown));
        // Within a pixel of the position, and the rounding of the text.
        QVERIFY(qAbs(numbers.captured(1).toDouble() - (rangeMin + 0.75 * (rangeMax - rangeMin)))
                <= (rangeMax - rangeMin) / image->height() + 0.006);
        QVERIFY(qAbs(numbers.captured(2).toDouble() - (speedMin + 0.75 * (speedMax - speedMin)))
                <= (speedMax - speedMin) / image->width() + 0.006);
    }

    void chartsFollowTheAppliedApplication_data()
    {
        QTest::addColumn<int>("application");
        QTest::addColumn<QString>("chart");
        QTest::addColumn<QString>("setting");
        QTest::newRow("PresenceSensing") << 1 << "presenceChart" << "presence_maxDetectionRange";
        QTest::newRow("Segmentation") << 2 << "polarChart" << "segment_1";
    }

    void chartsFollowTheAppliedApplication()
    {
        QFETCH(int, application);
        QFETCH(QString, chart);
        QFETCH(QString, setting);
        QQuickItem* shown = item(qPrintable(chart));
        QVERIFY(shown && !shown->isVisible());

        showTab("configurationTab");
        QQuickItem* selector = item("applicationSelector");
        click(selector);
        for (int i = 0; i < application; ++i)
            QTest::keyClick(m_window.get(), Qt::Key_Down);
        QTest::keyClick(m_window.get(), Qt::Key_Return);
        QObject* edited = viewObject("guiConfiguration");
        QTRY_COMPARE(edited->property("application").toInt(), application);
        QVERIFY(item("revertButton")->isEnabled());
        click(item("applyButton"));
        QObject* applied = viewObject("deviceConfiguration");
        QCOMPARE(applied->property("application").toInt(), application);
        QVERIFY(view()->property("isActive").toBool());
        // The application's own settings are on the page now.
        QQuickItem* field = item(qPrintable(setting));
        QVERIFY(field);
        QTRY_VERIFY(field->isVisible());
        QVERIFY(!field->property("text").toString().isEmpty());
        savePicture(QStringLiteral("configuration-") + QString::fromLatin1(QTest::currentDataTag()));

        showTab("chartsTab");
        QVERIFY(shown->isVisible());
        QSignalSpy refreshes(view(), SIGNAL(chartsDataUpdated()));
        QTRY_VERIFY_WITH_TIMEOUT(refreshes.count() >= 10, 10000);
        if (application == 1)
            QVERIFY(shown->findChild<QObject*>("seriesChart")->property("pointCount").toInt() > 1);
        else
            QVERIFY(shown->property("pixelRadius").toInt() > 50);
        savePicture(QStringLiteral("charts-") + QString::fromLatin1(QTest::currentDataTag()));
    }

    void recordButtonStartsAndStopsARecording()
    {
        RecordingUserSettings& settings = *m_sim->core().recordingUserSettings();
        settings.setRecordingPath(m_dir.path());
        settings.setFileName(QStringLiteral("by-button"));
        settings.setNumOfFrames(0);
        settings.setTxtFile(true);
        showTab("recordingTab");
        QQuickItem* file = item("recordingFile");
        QVERIFY(file);
        QCOMPARE(file->property("text").toString(), m_dir.filePath(QStringLiteral("by-button.raw.bin")));
        QCOMPARE(text("recordingLimit"), QStringLiteral("none: records until stopped"));
        settings.setTimeLimitOnRecording(true);
        settings.setDuration(0, 0, 3, 0);
        // Three seconds at the applied 0.1 s per frame.
        QCOMPARE(text("recordingLimit"),
                 QStringLiteral("by time: 30 frames at the applied frame rate"));
        settings.setTimeLimitOnRecording(false);

        QQuickItem* button = item("recordButton");
        click(button);
        QVERIFY(view()->property("isRecordingActive").toBool());
        QSignalSpy numbers(view(), SIGNAL(frameNumberChanged(int)));
        QTRY_VERIFY_WITH_TIMEOUT(numbers.count() >= 5, 5000);
        savePicture(QStringLiteral("recording-active"));
        click(button);
        QVERIFY(!view()->property("isRecordingActive").toBool());
        QVERIFY(QFileInfo(m_dir.filePath(QStringLiteral("by-button.raw.bin"))).size() > 0);
        QVERIFY(QFile::exists(m_dir.filePath(QStringLiteral("by-button.json"))));

        // The text copy follows the recording, its progress on the bar.
        QTRY_VERIFY_WITH_TIMEOUT(!view()->property("isParsingActive").toBool(), 10000);
        QCOMPARE(item("txtProgress")->property("value").toDouble(), 100.0);
        QCOMPARE(text("txtProgressText"), QStringLiteral("Text copy written"));
        QVERIFY(QFileInfo(m_dir.filePath(QStringLiteral("by-button.raw.txt"))).size() > 0);
    }

private:
    QQuickItem* item(const char* name) const
    {
        if (QQuickItem* found = m_page->findChild<QQuickItem*>(QLatin1String(name)))
            return found;
        return findItem(m_page, QLatin1String(name));
    }

    void click(QQuickItem* target)
    {
        QVERIFY(target && target->isVisible());
        const QPointF centre = target->mapToScene(QPointF(target->width() / 2, target->height() / 2));
        QTest::mouseClick(m_window.get(), Qt::LeftButton, Qt::NoModifier, centre.toPoint());
    }

    void showTab(const char* name)
    {
        click(item(name));
        // The tab's page is shown once the layout has run.
        QTest::qWait(100);
    }

    void typeInto(QQuickItem* field, const QString& text)
    {
        QVERIFY(field);
        click(field);
        QVERIFY(field->hasActiveFocus());
        QTest::keyClick(m_window.get(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(m_window.get(), Qt::Key_Backspace);
        for (const QChar character : text)
            QTest::keyClick(m_window.get(), character.toLatin1());
    }

    // The window's next frame as the offscreen screen received it: grabWindow()
    // answers an empty image with the software renderer there.
    QImage rendered()
    {
        QSignalSpy swapped(m_window.get(), &QQuickWindow::frameSwapped);
        m_window->update();
        return swapped.wait(5000) ? m_window->screen()->grabWindow(m_window->winId()).toImage() : QImage();
    }

    void savePicture(const QString& name)
    {
        const QString folder = qEnvironmentVariable("RADAR_PAGES_PICTURES");
        if (!folder.isEmpty())
            QVERIFY(rendered().save(QDir(folder).filePath(name + QStringLiteral(".png"))));
    }

    // The file dialog the page opened, once it shows.
    QFileDialog* openDialog()
    {
        QFileDialog* dialog = nullptr;
        const bool shown = QTest::qWaitFor([&dialog] {
            for (QWidget* widget : QApplication::topLevelWidgets()) {
                if (auto candidate = qobject_cast<QFileDialog*>(widget); candidate && candidate->isVisible())
                    dialog = candidate;
            }
            return dialog != nullptr;
        });
        return shown ? dialog : nullptr;
    }

    // Types the file's path into the dialog and confirms it.
    void chooseFile(QFileDialog* dialog, const QString& path)
    {
        auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        QVERIFY(name);
        name->setText(path);
        QTest::keyClick(name, Qt::Key_Return);
        QTRY_VERIFY(!dialog->isVisible());
        // The page's window takes the keyboard again.
        m_window->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    QObject* view() const { return m_sim->view(); }
    QString text(const char* name) const { return item(name)->property("text").toString(); }
    // An object below the view by its dotted path of properties.
    QObject* viewObject(const char* path) const
    {
        QObject* object = view();
        for (const QString& name : QString::fromLatin1(path).split(QLatin1Char('.')))
            object = object ? object->property(qPrintable(name)).value<QObject*>() : nullptr;
        return object;
    }

    QTemporaryDir m_dir;
    std::unique_ptr<SimulatedHost> m_sim;
    std::unique_ptr<QQuickWindow> m_window;
    QQuickItem* m_page = nullptr;
};

QTEST_MAIN(TestRadarPages)
#include "tst_RadarPages.moc"
