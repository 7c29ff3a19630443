// The standard mode's pages as a person meets them: in the workbench's
// window on a simulated board, found by object name, typed into and
// clicked. Any warning while a page lives fails the test; pictures of every
// tab go to $WORKBENCH_WINDOW_PICTURES when it is set.

#include "PageTestSupport.h"
#include "WindowRig.h"

#include "BoardList.h"

#include "host/CoreUserSettings.h"

#include <QSignalSpy>

#include <memory>

namespace {

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

} // namespace

class TestRadarPages : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        // What an offscreen window gets without a GPU; asked for so that the
        // test does not depend on the machine.
        QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
        PageWarnings::install();
    }

    // The board connected from the window's list, on its page once the charts run.
    void init()
    {
        PageWarnings::collected().clear();
        m_rig = std::make_unique<WindowRig>();
        const QString scene = QStringLiteral(R"({ "targets": [
            { "kind": "reflector", "range_m": 3.0, "speed_m_s": 0.5, "angle_deg": 0.0, "rcs_m2": 5.0 } ] })");
        QCOMPARE(m_rig->start(SimulatedHost::oneBoardBench(QStringLiteral("1f3c-0002"), QStringLiteral("KMR7A"),
                                                           QStringLiteral("realtime"), scene)),
                 QString());
        QSignalSpy refreshes(view(), SIGNAL(chartsDataUpdated()));
        QVERIFY(m_rig->workbench().boardList().connectBoard(QStringLiteral("Radar")));
        QTRY_VERIFY_WITH_TIMEOUT(!refreshes.isEmpty(), 10000);
        QVERIFY(item("chartsTab"));
    }

    void cleanup()
    {
        m_rig.reset();
        QVERIFY2(PageWarnings::collected().isEmpty(), qPrintable(PageWarnings::collected().join(QLatin1Char('\n'))));
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
        showTab(tab);
        QQuickItem* shown = item(content);
        QVERIFY(shown);
        QTRY_VERIFY(shown->isVisible());
        // A few refreshes so the charts, once shown, hold data.
        QSignalSpy refreshes(view(), SIGNAL(chartsDataUpdated()));
        QTRY_VERIFY_WITH_TIMEOUT(refreshes.count() >= (tab == QLatin1String("chartsTab") ? 2 : 0), 10000);
        QTest::qWait(50);

        const QImage picture = m_rig->picture();
        QCOMPARE(picture.size(), m_rig->window()->size());
        const QRectF area = shown->mapRectToScene(QRectF(0, 0, shown->width(), shown->height()));
        QVERIFY2(hasSeveralColours(picture, area.toRect().intersected(picture.rect())),
                 qPrintable(content + QStringLiteral(" shows nothing")));
        m_rig->keepPicture(tab);
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
        QVERIFY(m_rig->type("metric_maxRangeM", text));

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
        m_rig->keepPicture(QStringLiteral("configuration-typed-") + QTest::currentDataTag());
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

        click("rx_1");
        QVERIFY(enabled(0));
        QVERIFY(rx1->property("checked").toBool());
        click("rx_1");
        QVERIFY(!enabled(0));
        // The scene keeps one receiver: unchecking the last one leaves it on,
        // and the box shows so.
        click("rx_3");
        QVERIFY(enabled(2));
        QVERIFY(rx3->property("checked").toBool());
        QVERIFY(!item("revertButton")->isEnabled());
    }

    void savedConfigurationLoadsBackThroughTheDialogs()
    {
        showTab("configurationTab");
        click("saveConfigButton");
        QFileDialog* save = shownFileDialog();
        QVERIFY(save);
        // The dialog proposes the module's name for the file.
        const QStringList proposed = save->selectedFiles();
        QCOMPARE(proposed.size(), 1);
        const QRegularExpression proposal(QStringLiteral("^KMR7A_Settings_[0-9]{8}-[0-9]{6}\\.json$"));
        QVERIFY2(QFileInfo(proposed.first()).fileName().contains(proposal), qPrintable(proposed.first()));
        const QString path = filePath(QStringLiteral("saved.json"));
        QVERIFY(chooseFile(*m_rig, save, path));
        QTRY_VERIFY(QFile::exists(path));

        // An applied change reaches the device; acquisition runs on at the
        // new frame time.
        QObject* applied = viewObject("deviceConfiguration.metrics");
        QQuickItem* revert = item("revertButton");
        QVERIFY(revert && !revert->isEnabled());
        QVERIFY(m_rig->type("metric_frameRepetitionTimeS", QStringLiteral("0.2")));
        QTRY_VERIFY(revert->isEnabled());
        QSignalSpy numbers(view(), SIGNAL(frameNumberChanged(int)));
        click("applyButton");
        QCOMPARE(applied->property("frameRepetitionTimeS").toFloat(), 0.2f);
        QVERIFY(!revert->isEnabled());
        QTRY_VERIFY_WITH_TIMEOUT(numbers.count() >= 3, 5000);
        QVERIFY(view()->property("isActive").toBool());

        click("loadConfigButton");
        QFileDialog* load = shownFileDialog();
        QVERIFY(load);
        QVERIFY(chooseFile(*m_rig, load, path));
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
        QTRY_VERIFY_WITH_TIMEOUT(text("deviceTemperature").endsWith(QStringLiteral(" °C")), 8000);
        m_rig->keepPicture(QStringLiteral("deviceTab"));
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
        QTest::mouseMove(m_rig->window(), at.toPoint());
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
        QQuickItem* shown = item(chart);
        QVERIFY(shown && !shown->isVisible());

        showTab("configurationTab");
        click("applicationSelector");
        for (int i = 0; i < application; ++i)
            QTest::keyClick(m_rig->window(), Qt::Key_Down);
        QTest::keyClick(m_rig->window(), Qt::Key_Return);
        QObject* edited = viewObject("guiConfiguration");
        QTRY_COMPARE(edited->property("application").toInt(), application);
        QVERIFY(item("revertButton")->isEnabled());
        click("applyButton");
        QObject* applied = viewObject("deviceConfiguration");
        QCOMPARE(applied->property("application").toInt(), application);
        QVERIFY(view()->property("isActive").toBool());
        // The application's own settings are on the page now.
        QQuickItem* field = item(setting);
        QVERIFY(field);
        QTRY_VERIFY(field->isVisible());
        QVERIFY(!field->property("text").toString().isEmpty());
        m_rig->keepPicture(QStringLiteral("configuration-") + QString::fromLatin1(QTest::currentDataTag()));

        showTab("chartsTab");
        QVERIFY(shown->isVisible());
        QSignalSpy refreshes(view(), SIGNAL(chartsDataUpdated()));
        QTRY_VERIFY_WITH_TIMEOUT(refreshes.count() >= 10, 10000);
        if (application == 1)
            QVERIFY(shown->findChild<QObject*>("seriesChart")->property("pointCount").toInt() > 1);
        else
            QVERIFY(shown->property("pixelRadius").toInt() > 50);
        m_rig->keepPicture(QStringLiteral("charts-") + QString::fromLatin1(QTest::currentDataTag()));
    }

    void recordButtonStartsAndStopsARecording()
    {
        RecordingUserSettings& settings = *m_rig->host().core().recordingUserSettings();
        settings.setRecordingPath(m_rig->directory());
        settings.setFileName(QStringLiteral("by-button"));
        settings.setNumOfFrames(0);
        settings.setTxtFile(true);
        showTab("recordingTab");
        QQuickItem* file = item("recordingFile");
        QVERIFY(file);
        QCOMPARE(file->property("text").toString(), filePath(QStringLiteral("by-button.raw.bin")));
        QCOMPARE(text("recordingLimit"), QStringLiteral("none: records until stopped"));
        settings.setTimeLimitOnRecording(true);
        settings.setDuration(0, 0, 3, 0);
        // Three seconds at the applied 0.1 s per frame.
        QCOMPARE(text("recordingLimit"), QStringLiteral("by time: 30 frames at the applied frame rate"));
        settings.setTimeLimitOnRecording(false);

        click("recordButton");
        QVERIFY(view()->property("isRecordingActive").toBool());
        QSignalSpy numbers(view(), SIGNAL(frameNumberChanged(int)));
        QTRY_VERIFY_WITH_TIMEOUT(numbers.count() >= 5, 5000);
        m_rig->keepPicture(QStringLiteral("recording-active"));
        click("recordButton");
        QVERIFY(!view()->property("isRecordingActive").toBool());
        QVERIFY(QFileInfo(filePath(QStringLiteral("by-button.raw.bin"))).size() > 0);
        QVERIFY(QFile::exists(filePath(QStringLiteral("by-button.json"))));

        // The text copy follows the recording, its progress on the bar.
        QTRY_VERIFY_WITH_TIMEOUT(!view()->property("isParsingActive").toBool(), 10000);
        QCOMPARE(item("txtProgress")->property("value").toDouble(), 100.0);
        QCOMPARE(text("txtProgressText"), QStringLiteral("Text copy written"));
        QVERIFY(QFileInfo(filePath(QStringLiteral("by-button.raw.txt"))).size() > 0);
    }

private:
    QQuickItem* item(const QString& name) const { return m_rig->item(name); }
    QString text(const QString& name) const { return m_rig->text(name); }
    QObject* view() const { return m_rig->view(); }
    QString filePath(const QString& name) const { return QDir(m_rig->directory()).filePath(name); }

    void click(const QString& name) { QVERIFY2(m_rig->click(name), qPrintable(name + QStringLiteral(" cannot be clicked"))); }

    void showTab(const QString& name)
    {
        click(name);
        // The tab's page is shown once the layout has run.
        QTest::qWait(100);
    }

    // An object below the view by its dotted path of properties.
    QObject* viewObject(const char* path) const
    {
        QObject* object = view();
        for (const QString& name : QString::fromLatin1(path).split(QLatin1Char('.')))
            object = object ? object->property(qPrintable(name)).value<QObject*>() : nullptr;
        return object;
    }

    std::unique_ptr<WindowRig> m_rig;
};

QTEST_MAIN(TestRadarPages)
#include "tst_RadarPages.moc"
