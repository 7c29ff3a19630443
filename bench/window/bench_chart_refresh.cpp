// The standard mode's charts in a window, refreshed from the module's own
// pipeline on the simulated board in real time: time domain and range
// spectrum (ChartView over the module's series chart data) and the
// range-Doppler image (the module's PixmapImage). For each refresh:
//
//   GUI thread: from the start of the refresh the page runs on
//               "chartsDataUpdated" to the end of the scene graph's
//               synchronisation (chart data read, geometry and image built),
//               less the time the thread sat idle in between waiting for
//               the frame to be scheduled;
//   render:     from the end of that synchronisation to the frame's swap.
//
// The basic render loop keeps both on the GUI thread, so both are measured
// on one clock. Offscreen, with OpenGL when the platform can create a
// context and the software renderer otherwise.
//
// Targets for the GUI thread, median: at most 3 ms for the default frame,
// at most 12 ms for the large frame (3 Rx x 256 chirps x 512 samples).
//
// Usage: bench_chart_refresh [--samples N] [--png DIR]

#include "DeviceListing.h"
#include "ModuleHost.h"
#include "SeriesChart.h"
#include "WorkbenchItems.h"

#include "host/CoreUserSettings.h"
#include "host/IDevice.h"

#include "WindowBenchSupport.h"

#include <QAbstractEventDispatcher>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QMetaMethod>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QPixmap>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

namespace {


// The first refreshes build nodes, textures and glyph caches once.
constexpr int kWarmUp = 5;

const char* const kScene = R"qml(
import QtQuick 2.15
import Radar 1.0
import Workbench 1.0

Rectangle {
    width: 1280
    height: 800
    color: "white"

    // What the charts page does on radarView.chartsDataUpdated.
    function refreshCharts() {
        timeDomain.refresh()
        rangeSpectrum.refresh()
        rangeDoppler.update()
    }

    ChartView {
        id: timeDomain
        objectName: "timeDomainChart"
        x: 0; y: 0; width: 640; height: 400
        title: "Time domain"
        xTitle: "Sample"
        yTitle: "Amplitude (full scale)"
        legend: ["Rx1", "Rx2", "Rx3"]
        chartData: radarView.getChartData(0)
    }
    ChartView {
        id: rangeSpectrum
        objectName: "rangeSpectrumChart"
        x: 640; y: 0; width: 640; height: 400
        title: "Range spectrum"
        xTitle: "Range (m)"
        yTitle: "Magnitude (dB)"
        legend: ["Rx1", "Rx2", "Rx3"]
        chartData: radarView.getChartData(1)
    }
    PixmapImage {
        id: rangeDoppler
        objectName: "rangeDopplerImage"
        x: 40; y: 420; width: 600; height: 360
        data: radarView.getRangeDopplerChartData()
    }
}
)qml";

struct FrameSize {
    const char* name;
    double targetMs;
    // Zero keeps the module's default configuration.
    float maxRangeM;
    float speedResolutionMs;
    float frameRepetitionTimeS;
    quint32 sampleRateHz;
};

const FrameSize kDefault { "default", 3.0, 0.0f, 0.0f, 0.0f, 0 };
const FrameSize kLarge { "large", 12.0, 76.8f, 2.0f * 2.45f / 256.0f, 0.2f, 2000000 };

struct Sample {
    double refreshMs;
    double syncMs;
    double guiMs;
    double renderMs;
};

// Times each refresh from the view's "chartsDataUpdated" to the swap of
// the frame that shows it.
class RefreshProbe : public QObject
{
    Q_OBJECT
public:
    RefreshProbe(QQuickWindow& window, QObject& scene) : m_window(window), m_scene(scene)
    {
        QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
        connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, [this] {
            if (m_pending)
                m_blockedSince = Clock::now();
        });
        connect(dispatcher, &QAbstractEventDispatcher::awake, this, [this] {
            if (m_pending && m_blockedSince != Clock::time_point()) {
                m_blocked += Clock::now() - m_blockedSince;
                m_blockedSince = Clock::time_point();
            }
        });
        connect(&window, &QQuickWindow::beforeSynchronizing, this, [this] {
            if (m_pending)
                m_syncStart = Clock::now();
        }, Qt::DirectConnection);
        connect(&window, &QQuickWindow::afterSynchronizing, this, &RefreshProbe::synchronised,
                Qt::DirectConnection);
        connect(&window, &QQuickWindow::frameSwapped, this, &RefreshProbe::swapped, Qt::DirectConnection);
    }

    std::vector<Sample> samples;
    int overtaken = 0;
    bool renderedOffThread = false;

public slots:
    void chartsDataUpdated()
    {
        if (m_pending)
            ++overtaken;
        m_start = Clock::now();
        m_blocked = Clock::duration::zero();
        m_blockedSince = Clock::time_point();
        m_pending = true;
        QMetaObject::invokeMethod(&m_scene, "refreshCharts");
        m_refreshed = Clock::now();
    }

private:
    void synchronised()
    {
        if (QThread::currentThread() != thread())
            renderedOffThread = true;
        if (!m_pending)
            return;
        m_pending = false;
        m_synchronised = Clock::now();
        m_current.refreshMs = milliseconds(m_refreshed - m_start);
        m_current.syncMs = milliseconds(m_synchronised - m_syncStart);
        m_current.guiMs = milliseconds(m_synchronised - m_start - m_blocked);
        m_rendering = true;
    }

    void swapped()
    {
        if (!m_rendering)
            return;
        m_rendering = false;
        m_current.renderMs = milliseconds(Clock::now() - m_synchronised);
        samples.push_back(m_current);
    }

    QQuickWindow& m_window;
    QObject& m_scene;
    bool m_pending = false;
    bool m_rendering = false;
    Clock::time_point m_start;
    Clock::time_point m_refreshed;
    Clock::time_point m_syncStart;
    Clock::time_point m_synchronised;
    Clock::time_point m_blockedSince;
    Clock::duration m_blocked = Clock::duration::zero();
    Sample m_current {};
};

// OpenGL when this platform can give a context, else the software renderer
// (the offscreen platform without a display cannot).
QString chooseRenderer()
{
    if (!qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND"))
        return QString::fromLocal8Bit(qgetenv("QT_QUICK_BACKEND"));
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    if (context.create() && context.makeCurrent(&surface)) {
        context.doneCurrent();
        return QStringLiteral("OpenGL");
    }
    QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
    return QStringLiteral("software");
}

// The large frame: every receiver, 512 samples per chirp, 256 chirps.
QString configure(QObject* view, const FrameSize& size)
{
    if (size.maxRangeM == 0.0f)
        return QString();
    QObject* metrics = child(child(view, "guiConfiguration"), "metrics");
    QObject* rx = child(metrics, "rx");
    if (!metrics || !rx)
        return QStringLiteral("the view publishes no metrics");
    for (int antenna = 0; antenna < 3; ++antenna)
        QMetaObject::invokeMethod(rx, "setEnabled", Q_ARG(int, antenna), Q_ARG(bool, true));
    metrics->setProperty("sampleRateHz", size.sampleRateHz);
    metrics->setProperty("frameRepetitionTimeS", size.frameRepetitionTimeS);
    metrics->setProperty("maxRangeM", size.maxRangeM);
    metrics->setProperty("speedResolutionMs", size.speedResolutionMs);
    bool applied = false;
    QMetaObject::invokeMethod(view, "applyGuiConfiguration", Q_RETURN_ARG(bool, applied));
    return applied ? QString() : QStringLiteral("the module refuses the large configuration");
}

QString frameShape(QObject* view)
{
    QObject* configuration = child(view, "deviceConfiguration");
    QObject* parameters = child(configuration, "parameters");
    QObject* rx = child(child(configuration, "metrics"), "rx");
    return QStringLiteral("%1 Rx x %2 chirps x %3 samples")
        .arg(rx ? rx->property("numberOfEnabled").toInt() : 0)
        .arg(parameters ? parameters->property("numChirpsPerFrame").toUInt() : 0)
        .arg(parameters ? parameters->property("numSamplesPerChirp").toUInt() : 0);
}

QImage shownImage(QQuickWindow& window)
{
    // QQuickWindow::grabWindow() answers an empty image with the software
    // renderer on the offscreen platform; its screen holds what was shown.
    if (window.rendererInterface()->graphicsApi() == QSGRendererInterface::Software)
        return window.screen()->grabWindow(window.winId()).toImage();
    return window.grabWindow();
}

bool run(const FrameSize& size, int samples, const QString& pngDir, QTemporaryDir& dir)
{
    const QString bench = dir.filePath(QStringLiteral("bench-%1.json").arg(QLatin1String(size.name)));
    QFile file(bench);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    // The simulator's default scene: a reflector and a walking person.
    file.write(R"({ "boards": [ { "uuid": "1f3c-0001", "shield": 512, "chip": "KMR7A", "pacing": "realtime" } ] })");
    file.close();

    ModuleHost host;
    ModuleHost::Options options;
    options.modulePath = QStringLiteral(RADAR_MODULE);
    options.sdkPath = QStringLiteral(VRN_SIM_LIBRARY);
    options.settingsPath = dir.filePath(QStringLiteral("settings-%1.json").arg(QLatin1String(size.name)));
    options.benchPath = bench;
    QString error = host.start(options);
    if (error.isEmpty())
        error = awaitBoards(host);
    std::shared_ptr<IDevice> device = error.isEmpty() ? host.deviceRegister().devices().value(0) : nullptr;
    if (error.isEmpty() && (!device || !device->connectDevice()))
        error = QStringLiteral("the simulated board does not connect");
    QObject* view = error.isEmpty()
        ? host.engine()->rootContext()->contextProperty(QStringLiteral("radarView")).value<QObject*>()
        : nullptr;
    if (error.isEmpty() && !view)
        error = QStringLiteral("the module sets no radarView");
    if (error.isEmpty())
        error = configure(view, size);
    if (!error.isEmpty()) {
        std::fprintf(stderr, "%s frame: %s\n", size.name, qPrintable(error));
        return false;
    }

    bool ok = false;
    {
        QQmlComponent component(host.engine());
        component.setData(kScene, QUrl());
        std::unique_ptr<QObject> scene(component.create());
        auto* root = qobject_cast<QQuickItem*>(scene.get());
        if (!root) {
            std::fprintf(stderr, "The charts do not load: %s\n", qPrintable(component.errorString()));
            return false;
        }
        QQuickWindow window;
        window.resize(1280, 800);
        window.setColor(Qt::white);
        root->setParentItem(window.contentItem());
        window.show();

        RefreshProbe probe(window, *root);
        const QMetaObject* meta = view->metaObject();
        QObject::connect(view, meta->method(meta->indexOfSignal("chartsDataUpdated()")), &probe,
                         probe.metaObject()->method(probe.metaObject()->indexOfSlot("chartsDataUpdated()")));

        const int wanted = samples + kWarmUp;
        ok = waitFor([&] { return int(probe.samples.size()) >= wanted; }, 60000 + wanted * 500);
        QObject::disconnect(view, nullptr, &probe, nullptr);
        if (!ok)
            std::fprintf(stderr, "%s frame: only %zu refreshes arrived\n", size.name, probe.samples.size());

        std::vector<double> gui, refresh, sync, render;
        for (size_t i = kWarmUp; i < probe.samples.size(); ++i) {
            gui.push_back(probe.samples[i].guiMs);
            refresh.push_back(probe.samples[i].refreshMs);
            sync.push_back(probe.samples[i].syncMs);
            render.push_back(probe.samples[i].renderMs);
        }
        const Stats g = statsOf(gui), r = statsOf(refresh), s = statsOf(sync), f = statsOf(render);
        int points = 0;
        for (SeriesChart* chart : root->findChildren<SeriesChart*>())
            points += chart->pointCount();
        std::printf("%-7s frame (%s), %zu refreshes, %d chart points, renderer %s%s\n", size.name,
                    qPrintable(frameShape(view)), gui.size(), points, qPrintable(rendererOf(window)),
                    probe.renderedOffThread ? " (rendered off the GUI thread!)" : "");
        std::printf("  GUI thread, refresh to end of sync: median %6.2f ms  p95 %6.2f ms  (target %.0f ms: %s)\n",
                    g.median, g.p95, size.targetMs, g.median <= size.targetMs ? "met" : "MISSED");
        ok = ok && g.median <= size.targetMs;
        std::printf("    of which refresh calls:           median %6.2f ms  p95 %6.2f ms\n", r.median, r.p95);
        std::printf("    of which synchronisation:         median %6.2f ms  p95 %6.2f ms\n", s.median, s.p95);
        std::printf("  render, end of sync to swap:        median %6.2f ms  p95 %6.2f ms\n", f.median, f.p95);
        if (probe.overtaken > 0)
            std::printf("  %d refreshes were overtaken by the next before they were shown\n", probe.overtaken);
        if (!pngDir.isEmpty()) {
            QDir().mkpath(pngDir);
            const QString png = QDir(pngDir).filePath(QStringLiteral("charts-%1.png").arg(QLatin1String(size.name)));
            if (!shownImage(window).save(png))
                std::fprintf(stderr, "Cannot write %s\n", qPrintable(png));
            else
                std::printf("  picture: %s\n", qPrintable(png));
        }
    }
    device->disconnectDevice();
    device.reset();
    host.stop();
    return ok;
}

}

int main(int argc, char** argv)
{
    // Offscreen unless asked otherwise, and the basic render loop so that
    // synchronisation and rendering happen on the GUI thread.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QSG_RENDER_LOOP", "basic");
    // A window's update request otherwise waits 5 ms on a timer, which is
    // idle time, not work; and the plain Unix event dispatcher says exactly
    // when the thread blocks and wakes, so what idle time remains is left
    // out of the GUI thread's figure.
    qputenv("QT_QPA_UPDATE_IDLE_TIME", "0");
    qputenv("QT_NO_GLIB", "1");
    QGuiApplication app(argc, argv);

    QCommandLineParser parser;
    parser.addHelpOption();
    QCommandLineOption samplesOption(QStringLiteral("samples"), QStringLiteral("Refreshes per frame size."),
                                     QStringLiteral("N"), QStringLiteral("100"));
    QCommandLineOption pngOption(QStringLiteral("png"), QStringLiteral("Save the window after each run in DIR."),
                                 QStringLiteral("DIR"));
    parser.addOption(samplesOption);
    parser.addOption(pngOption);
    parser.process(app);
    const int samples = qMax(1, parser.value(samplesOption).toInt());

    const QString renderer = chooseRenderer();
    QTemporaryDir dir;
    if (!dir.isValid()) {
        std::fprintf(stderr, "No temporary directory\n");
        return 1;
    }
    // The host palette, as the window registers the items with it.
    registerWorkbenchItems(CoreUserSettings().palette());
    std::printf("Chart refresh on the real-time simulated board, %d cores, renderer asked: %s\n",
                QThread::idealThreadCount(), qPrintable(renderer));
    std::printf("Targets (GUI thread, median): default <= 3 ms, large <= 12 ms\n");
    bool ok = true;
    for (const FrameSize* size : { &kDefault, &kLarge })
        ok = run(*size, samples, parser.value(pngOption), dir) && ok;
    return ok ? 0 : 1;
}

#include "bench_chart_refresh.moc"
