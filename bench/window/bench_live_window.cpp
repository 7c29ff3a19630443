// The workbench window left running on the real-time simulated board while
// it records: the whole window (WorkbenchWindow over the module's host), the
// standard mode's charts on show and refreshed live, a recording without a
// frame limit started the way the page's record button starts it, stopped
// after --seconds. Then the recording is read back with the module's own
// reader and compared with the frames the session was told of.
//
// It fails (exit 1) when a frame was lost: the board dropped one (the
// simulator counts frames fetched too late), the module counted a FIFO
// overflow, the file has a gap, or a frame the session acquired while
// recording is not in the file.
//
// Recording starts and stops right after a frame has been announced, so
// the frames recorded are exactly the ones announced in between; a frame
// period is long against the time a frame takes from the board to the GUI.
//
// Also printed: chart refreshes, the GUI thread's time per refresh (from
// "chartsDataUpdated" to the end of the scene graph's synchronisation, less
// the time the thread sat idle in between) and peak RSS.
//
// Offscreen with the software renderer unless a display is there. Started
// by a person, not by ctest: it runs a minute by default.
//
// Usage: bench_live_window [--seconds S] [--png FILE] [--keep DIR]

#include "BoardList.h"
#include "DeviceListing.h"
#include "ModuleHost.h"
#include "SessionStatus.h"
#include "ViewConnection.h"
#include "WindowPicture.h"
#include "WorkbenchWindow.h"

#include "host/CoreUserSettings.h"
#include "host/RecordingUserSettings.h"
#include "recording/RadarBinFile.h"
#include "recording/RecordingFiles.h"
#include "RecordingCheck.h"

#include "WindowBenchSupport.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <set>
#include <vector>

namespace {


// The first refreshes build nodes, textures and glyph caches once.
constexpr int kWarmUpRefreshes = 5;
constexpr int kProgressEverySeconds = 10;
// Polls, 200 ms apart, for the file to be complete after the stop.
constexpr int kCompletePolls = 100;

// One board, paced in real time, in the simulator's default scene (a
// reflector and a walking person) and without the default bench's fault.
const char* const kBench =
    R"({ "boards": [ { "uuid": "1f3c-0001", "shield": 512, "chip": "KMR7A", "pacing": "realtime" } ] })";

// Starts the refresh timer ahead of the page's handlers.
const char* const kStartHandler = R"qml(
import QtQml 2.15
Connections {
    target: radarView
    function onChartsDataUpdated() { refreshTimer.start() }
}
)qml";

// Times the GUI thread's share of each chart refresh, from the start of the
// page's handling of "chartsDataUpdated" to the end of the window's next
// synchronisation. QML handlers of a signal run ahead of its C++ slots, in
// the order they were connected: so the start comes from a QML handler
// connected before the window loads the page (kStartHandler), and a C++
// slot tells when the page's handlers are done.
class RefreshTimer : public QObject
{
    Q_OBJECT
public:
    void watch(QQuickWindow& window)
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
        connect(&window, &QQuickWindow::afterSynchronizing, this, &RefreshTimer::synchronised,
                Qt::DirectConnection);
        connect(&window, &QQuickWindow::frameSwapped, this, &RefreshTimer::swapped, Qt::DirectConnection);
    }

    int refreshes = 0;
    std::vector<double> guiMs;
    std::vector<double> handlersMs;
    std::vector<double> renderMs;

public slots:
    void start()
    {
        ++refreshes;
        m_start = Clock::now();
        m_blocked = Clock::duration::zero();
        m_blockedSince = Clock::time_point();
        m_pending = true;
        m_handlersDone = false;
    }

    // Connected as a C++ slot: after every QML handler.
    void handlersDone()
    {
        if (!m_pending || m_handlersDone)
            return;
        m_handlersDone = true;
        m_handlersMs = milliseconds(Clock::now() - m_start);
    }

private:
    void synchronised()
    {
        if (!m_pending)
            return;
        m_pending = false;
        m_synchronised = Clock::now();
        m_measuring = refreshes > kWarmUpRefreshes;
        if (m_measuring) {
            guiMs.push_back(milliseconds(m_synchronised - m_start - m_blocked));
            handlersMs.push_back(m_handlersDone ? m_handlersMs : 0.0);
        }
    }

    void swapped()
    {
        if (!m_measuring)
            return;
        m_measuring = false;
        renderMs.push_back(milliseconds(Clock::now() - m_synchronised));
    }

    bool m_pending = false;
    bool m_handlersDone = false;
    double m_handlersMs = 0.0;
    bool m_measuring = false;
    Clock::time_point m_start;
    Clock::time_point m_synchronised;
    Clock::time_point m_blockedSince;
    Clock::duration m_blocked = Clock::duration::zero();
};

// The frames the view announces ("frameNumberChanged" carries the count of
// frames taken, so frame n of the file is announced as n + 1), and the
// recording started and stopped right after an announcement.
class FrameLedger : public QObject
{
    Q_OBJECT
public:
    explicit FrameLedger(QObject* view) : m_view(view) {}

    quint64 announced = 0;
    int countRestarts = 0;
    // File numbers of the frames announced while recording.
    std::vector<qint32> acquired;
    bool recording = false;

    // The recording starts (or stops) after the next announcement.
    void startAfterNextFrame() { m_action = Action::Start; }
    void stopAfterNextFrame() { m_action = Action::Stop; }
    // For a board that no longer delivers.
    void stopNow()
    {
        m_action = Action::None;
        recording = false;
        QMetaObject::invokeMethod(m_view, "stopRecording");
    }

public slots:
    void onFrameNumberChanged(int count)
    {
        if (count == 0)
            return; // the count restarting for a new acquisition
        if (m_last > 0 && count != m_last + 1)
            ++countRestarts;
        m_last = count;
        ++announced;
        if (recording)
            acquired.push_back(count - 1);
        if (m_action == Action::Start) {
            m_action = Action::None;
            QMetaObject::invokeMethod(m_view, "startRecording");
            recording = m_view->property("isRecordingActive").toBool();
        } else if (m_action == Action::Stop) {
            m_action = Action::None;
            recording = false;
            QMetaObject::invokeMethod(m_view, "stopRecording");
        }
    }

private:
    enum class Action { None, Start, Stop };
    QObject* m_view;
    Action m_action = Action::None;
    int m_last = 0;
};

void runFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

QString frameShape(QObject* view)
{
    QObject* configuration = child(view, "deviceConfiguration");
    QObject* parameters = child(configuration, "parameters");
    QObject* metrics = child(configuration, "metrics");
    QObject* rx = child(metrics, "rx");
    return QStringLiteral("%1 Rx x %2 chirps x %3 samples, frame every %4 ms")
        .arg(rx ? rx->property("numberOfEnabled").toInt() : 0)
        .arg(parameters ? parameters->property("numChirpsPerFrame").toUInt() : 0)
        .arg(parameters ? parameters->property("numSamplesPerChirp").toUInt() : 0)
        .arg(metrics ? double(metrics->property("frameRepetitionTimeS").toFloat()) * 1000.0 : 0.0, 0, 'f', 1);
}

QQuickItem* findItem(QQuickItem* parent, const QString& name)
{
    if (!parent)
        return nullptr;
    if (parent->objectName() == name)
        return parent;
    for (QQuickItem* item : parent->childItems()) {
        if (QQuickItem* found = findItem(item, name))
            return found;
    }
    return nullptr;
}

// Frame numbers of a binary recording, in file order, read with the
// module's reader; empty text or why the file cannot be read.
QString readFrameNumbers(const QString& binPath, std::vector<qint32>& numbers)
{
    RadarBinFile file;
    RadarRecordingHeader header;
    if (!file.open(binPath, QIODevice::ReadOnly))
        return QStringLiteral("cannot open %1: %2").arg(binPath, file.errorString());
    if (!file.readHeader(header))
        return QStringLiteral("cannot read the header of %1: %2").arg(binPath, file.errorString());
    std::vector<RadarFrameRecord> rows;
    while (file.readFrames(1, header.samplesPerFrame, rows) && !rows.empty())
        numbers.push_back(rows.front().frameNumber);
    return {};
}

double peakRssMiB()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024.0; // kilobytes on Linux
}

int run(int seconds, const QString& png, const QString& directory)
{
    const QString benchPath = QDir(directory).filePath(QStringLiteral("bench.json"));
    QFile benchFile(benchPath);
    if (!benchFile.open(QIODevice::WriteOnly | QIODevice::Truncate) || benchFile.write(kBench) < 0) {
        std::fprintf(stderr, "Cannot write %s\n", qPrintable(benchPath));
        return 1;
    }
    benchFile.close();

    ModuleHost host;
    ModuleHost::Options options;
    options.modulePath = QStringLiteral(RADAR_MODULE);
    options.sdkPath = QStringLiteral(VRN_SIM_LIBRARY);
    options.settingsPath = QDir(directory).filePath(QStringLiteral("settings.json"));
    options.benchPath = benchPath;
    QString error = host.start(options);
    if (!error.isEmpty()) {
        std::fprintf(stderr, "The module does not start: %s\n", qPrintable(error));
        return 1;
    }
    QObject* view = host.engine()->rootContext()->contextProperty(QStringLiteral("radarView")).value<QObject*>();
    if (!view) {
        std::fprintf(stderr, "The module sets no radarView\n");
        return 1;
    }

    int failures = 0;
    auto fail = [&failures](const QString& why) {
        std::printf("FAILED: %s\n", qPrintable(why));
        ++failures;
    };
    {
        // Connected before the window loads the page, so that these run
        // ahead of its handlers.
        RefreshTimer refreshes;
        FrameLedger ledger(view);
        connectByName(view, "chartsDataUpdated()", &refreshes, "handlersDone()");
        connectByName(view, "frameNumberChanged(int)", &ledger, "onFrameNumberChanged(int)");
        QQmlContext startContext(host.engine()->rootContext());
        startContext.setContextProperty(QStringLiteral("refreshTimer"), &refreshes);
        QQmlComponent startComponent(host.engine());
        startComponent.setData(kStartHandler, QUrl());
        const std::unique_ptr<QObject> startHandler(startComponent.create(&startContext));
        if (!startHandler) {
            std::fprintf(stderr, "The refresh timer does not load: %s\n", qPrintable(startComponent.errorString()));
            return 1;
        }

        WorkbenchWindow workbench(host, nullptr);
        error = workbench.open();
        if (!error.isEmpty()) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            return 1;
        }
        QQuickWindow& window = *workbench.window();
        window.show();
        refreshes.watch(window);

        RecordingUserSettings& recording = *host.coreConfiguration().coreUserSettings()->recordingUserSettings();
        recording.setRecordingPath(directory);
        recording.setFileName(QStringLiteral("live-window"));
        recording.setTimeLimitOnRecording(false);
        recording.setNumOfFrames(0);
        recording.setTxtFile(false);
        const QString binPath = RecordingFiles::binPath(recording.basePath());

        // Connect as the window's Connect button does.
        error = awaitBoards(host);
        BoardList& boards = workbench.boardList();
        const int first = boards.preferredIndex();
        const QString name = first >= 0 ? boards.data(boards.index(first), BoardList::NameRole).toString() : QString();
        if (error.isEmpty() && name.isEmpty())
            error = QStringLiteral("no board is listed");
        if (error.isEmpty() && !boards.connectBoard(name))
            error = QStringLiteral("%1 does not connect").arg(name);
        if (error.isEmpty() && !waitFor([&] { return workbench.sessionStatus().frames() > 0; }, 15000))
            error = QStringLiteral("no frame arrived");
        if (error.isEmpty()
            && !waitFor([&] {
                   QQuickItem* charts = findItem(window.contentItem(), QStringLiteral("chartsPage"));
                   return charts && charts->isVisible();
               }, 10000))
            error = QStringLiteral("the charts page is not on show");
        quint32 frameLimit = 1;
        QMetaObject::invokeMethod(view, "recordingFrameLimit", Q_RETURN_ARG(quint32, frameLimit));
        if (error.isEmpty() && frameLimit != 0)
            error = QStringLiteral("the recording would stop after %1 frames").arg(frameLimit);
        if (!error.isEmpty()) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            workbench.finishSession();
            return 1;
        }
        std::printf("Live window on the real-time simulated board (%s), renderer %s, %d cores\n",
                    qPrintable(frameShape(view)), qPrintable(rendererOf(window)), QThread::idealThreadCount());
        std::printf("Recording to %s for %d s\n", qPrintable(binPath), seconds);
        std::fflush(stdout);

        ledger.startAfterNextFrame();
        if (!waitFor([&] { return ledger.recording; }, 10000)) {
            std::fprintf(stderr, "The recording does not start\n");
            workbench.finishSession();
            return 1;
        }
        const int refreshesBefore = refreshes.refreshes;
        QElapsedTimer clock;
        clock.start();
        for (int elapsed = 0; elapsed < seconds; elapsed += kProgressEverySeconds) {
            const int step = qMin(kProgressEverySeconds, seconds - elapsed);
            runFor(step * 1000 - int(clock.elapsed() - qint64(elapsed) * 1000));
            std::printf("  %3d s: %zu frames acquired while recording, %u FIFO overflows\n", elapsed + step,
                        ledger.acquired.size(), view->property("fifoOverflowCounter").toUInt());
            std::fflush(stdout);
        }
        if (!png.isEmpty()) {
            const QImage picture = renderedWindow(window);
            if (picture.isNull() || !picture.save(png))
                fail(QStringLiteral("cannot save the window to %1").arg(png));
        }
        if (boards.connectedBoard().isEmpty())
            fail(QStringLiteral("the board was lost"));
        if (!view->property("isRecordingActive").toBool())
            fail(QStringLiteral("the recording ended before it was stopped"));
        ledger.stopAfterNextFrame();
        if (!waitFor([&] { return !ledger.recording; }, 5000)) {
            fail(QStringLiteral("no frame came within 5 s to stop after"));
            ledger.stopNow();
        }
        if (!waitFor([&] { return !view->property("isRecordingActive").toBool(); }, 10000))
            fail(QStringLiteral("the recording does not stop"));
        const double runSeconds = double(clock.elapsed()) / 1000.0;
        const int chartRefreshes = refreshes.refreshes - refreshesBefore;
        const qint64 dropped = workbench.sessionStatus().droppedFrames();
        // Both since the board connected, not only while recording.
        const quint32 overflows = view->property("fifoOverflowCounter").toUInt();

        // The file is complete once it ends at a whole record and stops
        // growing.
        qint64 lastSize = -1;
        RecordingCheck::BinaryFrames onDisk;
        bool complete = false;
        for (int poll = 0; poll < kCompletePolls && !complete; ++poll) {
            runFor(200);
            onDisk = RecordingCheck::binaryFrames(binPath);
            const qint64 size = QFileInfo(binPath).size();
            complete = onDisk.error.isEmpty() && onDisk.tornBytes == 0 && size == lastSize;
            lastSize = size;
        }
        if (!complete)
            fail(QStringLiteral("the file is not complete: %1").arg(onDisk.error.isEmpty()
                ? QStringLiteral("%1 bytes of a torn record").arg(onDisk.tornBytes) : onDisk.error));

        std::vector<qint32> recorded;
        error = readFrameNumbers(binPath, recorded);
        if (!error.isEmpty())
            fail(error);
        int gaps = 0;
        for (size_t i = 1; i < recorded.size(); ++i)
            gaps += recorded[i] != recorded[i - 1] + 1 ? 1 : 0;
        const std::set<qint32> inFile(recorded.begin(), recorded.end());
        size_t missing = 0;
        for (qint32 number : ledger.acquired)
            missing += inFile.count(number) == 0 ? 1 : 0;
        const Stats gui = statsOf(refreshes.guiMs);
        const Stats render = statsOf(refreshes.renderMs);
        const Stats handlers = statsOf(refreshes.handlersMs);

        std::printf("seconds:                  %.1f\n", runSeconds);
        std::printf("frames acquired:          %zu while recording (%llu since connecting)\n",
                    ledger.acquired.size(), static_cast<unsigned long long>(ledger.announced));
        std::printf("frames recorded:          %zu (numbers %d to %d)\n", recorded.size(),
                    recorded.empty() ? -1 : recorded.front(), recorded.empty() ? -1 : recorded.back());
        std::printf("frames lost:              %zu acquired but not in the file, %d gaps in the file, "
                    "%lld dropped by the board (since connecting)\n",
                    missing, gaps, static_cast<long long>(dropped));
        std::printf("FIFO overflows:           %u (since connecting)\n", overflows);
        std::printf("chart refreshes:          %d (%.1f per second)\n", chartRefreshes,
                    runSeconds > 0 ? chartRefreshes / runSeconds : 0.0);
        std::printf("GUI thread per refresh:   median %.2f ms  p95 %.2f ms  (%zu refreshes shown)\n", gui.median,
                    gui.p95, refreshes.guiMs.size());
        std::printf("  of which page handlers: median %.2f ms  p95 %.2f ms\n", handlers.median, handlers.p95);
        std::printf("render per refresh:       median %.2f ms  p95 %.2f ms  (%s)\n", render.median, render.p95,
                    qPrintable(rendererOf(window)));
        std::printf("peak RSS:                 %.1f MiB\n", peakRssMiB());
        std::fflush(stdout);

        if (overflows != 0)
            fail(QStringLiteral("%1 FIFO overflows").arg(overflows));
        if (dropped < 0)
            fail(QStringLiteral("the SDK does not say whether the board dropped frames"));
        else if (dropped > 0)
            fail(QStringLiteral("the board dropped %1 frames").arg(dropped));
        if (missing > 0 || gaps > 0)
            fail(QStringLiteral("%1 frames acquired but not recorded, %2 gaps in the file").arg(missing).arg(gaps));
        if (recorded.size() != ledger.acquired.size())
            fail(QStringLiteral("%1 frames recorded, %2 acquired").arg(recorded.size()).arg(ledger.acquired.size()));
        if (ledger.countRestarts > 0)
            fail(QStringLiteral("the frame count jumped %1 times").arg(ledger.countRestarts));
        if (ledger.acquired.empty())
            fail(QStringLiteral("no frame was acquired while recording"));
        workbench.finishSession();
    }
    host.stop();
    if (failures == 0)
        std::printf("OK: every frame acquired while recording is in the file\n");
    return failures == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    // Offscreen and drawn in software unless there is a display, as the
    // workbench does without one.
    const bool display = !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (!display && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qgetenv("QT_QPA_PLATFORM") == "offscreen" && qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND"))
        qputenv("QT_QUICK_BACKEND", "software");
    // As in the chart bench: no 5 ms wait before an update is drawn, and the
    // plain Unix event dispatcher, which says exactly when the thread blocks
    // and wakes, so idle time stays out of the GUI thread's figure.
    qputenv("QT_QPA_UPDATE_IDLE_TIME", "0");
    qputenv("QT_NO_GLIB", "1");
    // The module's debug lines would bury the figures.
    if (qEnvironmentVariableIsEmpty("QT_LOGGING_RULES"))
        qputenv("QT_LOGGING_RULES", "*.debug=false");
    QApplication app(argc, argv);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "The workbench window with live charts on the real-time simulated board, recording for a while; "
        "fails when a frame is lost."));
    parser.addHelpOption();
    QCommandLineOption secondsOption(QStringLiteral("seconds"), QStringLiteral("How long to record (default 60)."),
                                     QStringLiteral("S"), QStringLiteral("60"));
    QCommandLineOption pngOption(QStringLiteral("png"), QStringLiteral("Save the window before the stop in FILE."),
                                 QStringLiteral("FILE"));
    QCommandLineOption keepOption(QStringLiteral("keep"),
                                  QStringLiteral("Keep the recording and settings in DIR (default: a temporary "
                                                 "folder, removed at the end)."),
                                  QStringLiteral("DIR"));
    parser.addOption(secondsOption);
    parser.addOption(pngOption);
    parser.addOption(keepOption);
    parser.process(app);
    bool valid = false;
    const int seconds = parser.value(secondsOption).toInt(&valid);
    if (!valid || seconds < 1) {
        std::fprintf(stderr, "--seconds takes a whole number of seconds, at least 1\n");
        return 2;
    }

    QTemporaryDir temporary;
    QString directory = parser.value(keepOption);
    if (directory.isEmpty()) {
        if (!temporary.isValid()) {
            std::fprintf(stderr, "No temporary directory\n");
            return 1;
        }
        directory = temporary.path();
    } else if (!QDir().mkpath(directory)) {
        std::fprintf(stderr, "Cannot create %s\n", qPrintable(directory));
        return 1;
    }
    directory = QDir(directory).absolutePath();
    if (QFile::exists(RecordingFiles::binPath(QDir(directory).filePath(QStringLiteral("live-window"))))) {
        std::fprintf(stderr, "%s already holds a recording named live-window; choose another folder\n",
                     qPrintable(directory));
        return 1;
    }
    return run(seconds, parser.value(pngOption), directory);
}

#include "bench_live_window.moc"
