// tavrin-workbench: the reference host of the radar module. Without a
// command it opens the desktop window; its command line runs scripted,
// headless sessions, the recording tools and window screenshots.
#include "CWSession.h"
#include "CWSessionOptions.h"
#include "DeviceListing.h"
#include "FlashCommands.h"
#include "ExitCodes.h"
#include "HeadlessSession.h"
#include "InterruptWatcher.h"
#include "LogFile.h"
#include "ModuleHost.h"
#include "RecordingCommands.h"
#include "SessionMode.h"
#include "WindowCommands.h"

#include "host/IModule.h"
#include "recording/RecordingFiles.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDebug>
#include <QTextStream>
#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>
#include <cerrno>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char* workbenchVersion = "1.0.0";
constexpr int kDefaultScreenshotFrames = 20;

// What the command line asks for, judged before the application object
// exists: the platform plug-in must be chosen first.
enum class Kind { Window, Screenshot, Console };

Kind commandKind(int argc, char* argv[])
{
    static const QList<QByteArray> console { "--check", "--list-devices", "--list-flashers", "--flash",
                                             "--inspect", "--convert", "--headless", "--help", "-h",
                                             "--help-all", "--version", "-v", "-?" };
    Kind kind = Kind::Window;
    for (int i = 1; i < argc; ++i) {
        const QByteArray argument = QByteArray(argv[i]).split('=').first();
        if (console.contains(argument))
            return Kind::Console;
        if (argument == "--screenshot")
            kind = Kind::Screenshot;
    }
    return kind;
}

QTextStream& out()
{
    static QTextStream stream(stdout);
    return stream;
}

QTextStream& err()
{
    static QTextStream stream(stderr);
    return stream;
}

// Every command that loads the module says the same about a settings file
// it cannot read; the host leaves such a file as it is on disk.
void reportSettingsError(const ModuleHost& host)
{
    if (host.settingsError().isEmpty())
        return;
    err() << host.settingsError() << Qt::endl;
    err() << "The settings file is left unchanged; going on with the default settings." << Qt::endl;
}

int runCheck(ModuleHost& host)
{
    const auto info = host.module()->moduleInfo();
    out() << info.first << ' ' << info.second << Qt::endl;
    if (!host.settingsError().isEmpty())
        return ExitCode::SettingsError;
    if (!host.saveSettings()) {
        err() << "Cannot write settings file " << host.settingsPath() << Qt::endl;
        return ExitCode::SettingsError;
    }
    return ExitCode::Success;
}

// Options of a headless session that can be judged before the module is
// loaded. Empty text when they are usable.
QString readSessionOptions(const QCommandLineParser& parser, HeadlessSession::Options& options)
{
    auto valueIfSet = [&parser](const QString& name) {
        return parser.isSet(name) ? parser.value(name) : QString();
    };
    const QString limitsError =
        SessionLimits::parse(valueIfSet(QStringLiteral("frames")), valueIfSet(QStringLiteral("seconds")), options.limits);
    if (!limitsError.isEmpty())
        return limitsError;
    options.device = parser.value(QStringLiteral("device"));
    options.config = parser.value(QStringLiteral("config"));
    options.application = parser.value(QStringLiteral("application"));
    options.record = parser.value(QStringLiteral("record"));
    options.txt = parser.isSet(QStringLiteral("txt"));
    options.overwrite = parser.isSet(QStringLiteral("overwrite"));
    options.play = parser.value(QStringLiteral("play"));
    options.snapshot = parser.value(QStringLiteral("snapshot"));
    if (options.record.isEmpty() && (options.txt || options.overwrite))
        return QStringLiteral("--txt and --overwrite go with --record BASE.");
    if (!options.record.isEmpty() && !options.play.isEmpty()
        && QFileInfo(RecordingFiles::baseOf(options.record)).absoluteFilePath()
            == QFileInfo(RecordingFiles::baseOf(options.play)).absoluteFilePath())
        return QStringLiteral("--record cannot write over the recording that --play reads.");
    return {};
}

} // namespace

int main(int argc, char* argv[])
{
    const Kind kind = commandKind(argc, argv);
    // The console commands need no screen; a screenshot draws offscreen
    // when there is none. The window needs one.
    if (kind == Kind::Window && !hasDisplay()) {
        err() << "No display to open the window on (neither DISPLAY nor WAYLAND_DISPLAY is set).\n"
                 "Run a session without a window with --headless, or save a picture of the window with "
                 "--screenshot FILE (see --help)."
              << Qt::endl;
        return ExitCode::StartError;
    }
    if ((kind == Kind::Console || !hasDisplay()) && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Offscreen there is no OpenGL to count on: the window draws in software.
    if (kind != Kind::Console && qgetenv("QT_QPA_PLATFORM") == "offscreen"
        && qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND"))
        qputenv("QT_QUICK_BACKEND", "software");
    // Without a desktop session Qt picks a runtime directory itself, but warns
    // on every start; choose the same private directory quietly.
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        const QByteArray runtime = QDir::tempPath().toLocal8Bit() + "/runtime-" + QByteArray::number(getuid());
        if (::mkdir(runtime.constData(), 0700) == 0 || errno == EEXIST)
            qputenv("XDG_RUNTIME_DIR", runtime);
    }

    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tavrin-workbench"));
    QCoreApplication::setApplicationVersion(QString::fromLatin1(workbenchVersion));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Tavrin Workbench: loads the radar module and drives sensor boards.\n"
        "Without a command it opens the window (it needs a display)."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption checkOption(QStringLiteral("check"),
        QStringLiteral("Load and initialise the module, print its name and version, save the settings and exit."));
    const QCommandLineOption moduleOption(QStringLiteral("module"),
        QStringLiteral("Module library to load (default: libradar.so next to the executable)."), QStringLiteral("PATH"));
    const QCommandLineOption sdkOption(QStringLiteral("sdk"),
        QStringLiteral("Radar SDK library to load (default: the simulator, libvrn_sim.so next to the executable)."),
        QStringLiteral("PATH"));
    const QCommandLineOption settingsOption(QStringLiteral("settings"),
        QStringLiteral("Settings file (default: tavrin-workbench/settings.json in the user's configuration directory)."),
        QStringLiteral("FILE"));
    const QCommandLineOption benchOption(QStringLiteral("bench"),
        QStringLiteral("Bench of simulated boards (JSON); same as the environment variable VRN_SIM_BENCH."),
        QStringLiteral("FILE"));
    const QCommandLineOption listDevicesOption(QStringLiteral("list-devices"),
        QStringLiteral("Run one detection through the module and print a line per board: name, uuid, shield type, chip."));
    const QCommandLineOption inspectOption(QStringLiteral("inspect"),
        QStringLiteral("Print the header and frame count of a binary recording (BASE or BASE.raw.bin)."),
        QStringLiteral("FILE"));
    const QCommandLineOption convertOption(QStringLiteral("convert"),
        QStringLiteral("Write BASE.raw.txt from the binary recording BASE.raw.bin (give BASE or any of its files)."),
        QStringLiteral("BASE"));
    const QCommandLineOption listFlashersOption(QStringLiteral("list-flashers"),
        QStringLiteral("Look for radar baseboards on the serial ports (also in bootloader mode) and print a line per "
                       "flasher: name, status and the firmware image it would write."));
    const QCommandLineOption flashOption(QStringLiteral("flash"),
        QStringLiteral("Flash the baseboard of this flasher (a name from --list-flashers, with or without \" (Radar)\") "
                       "with the newest image of the firmware folder, showing progress; exit 0 only when it succeeded."),
        QStringLiteral("NAME"));
    const QCommandLineOption imageOption(QStringLiteral("image"),
        QStringLiteral("With --flash: the firmware image to write instead of the newest one of the firmware folder."),
        QStringLiteral("FILE"));
    const QCommandLineOption headlessOption(QStringLiteral("headless"),
        QStringLiteral("Run a session without a window: connect a board (or play a recording), acquire, record, report. "
                       "FMCW and pulsed-Doppler boards take the same options."));
    const QCommandLineOption deviceOption(QStringLiteral("device"),
        QStringLiteral("Board to connect, by its display name or uuid (default: the first)."), QStringLiteral("NAME"));
    const QCommandLineOption configOption(QStringLiteral("config"),
        QStringLiteral("Configuration file to apply after connecting."), QStringLiteral("FILE"));
    const QCommandLineOption applicationOption(QStringLiteral("application"),
        QStringLiteral("Application to run on an FMCW board: None, PresenceSensing or Segmentation."),
        QStringLiteral("NAME"));
    const QCommandLineOption framesOption(QStringLiteral("frames"),
        QStringLiteral("Acquire this many frames (1 to 10000000)."), QStringLiteral("N"));
    const QCommandLineOption secondsOption(QStringLiteral("seconds"),
        QStringLiteral("Acquire for this many seconds, above 0 and up to 86400 (default 5; a playback: to its end)."),
        QStringLiteral("S"));
    const QCommandLineOption recordOption(QStringLiteral("record"),
        QStringLiteral("Record the session to BASE.raw.bin (and BASE.json)."), QStringLiteral("BASE"));
    const QCommandLineOption txtOption(QStringLiteral("txt"),
        QStringLiteral("With --record: also write the text copy BASE.raw.txt."));
    const QCommandLineOption overwriteOption(QStringLiteral("overwrite"),
        QStringLiteral("With --record: remove the files of an earlier recording under BASE first."));
    const QCommandLineOption playOption(QStringLiteral("play"),
        QStringLiteral("Play the recording BASE (or any of its files) instead of connecting a board."),
        QStringLiteral("BASE"));
    const QCommandLineOption snapshotOption(QStringLiteral("snapshot"),
        QStringLiteral("Write the last chart data (CSV) into DIR: for an FMCW board also the range-Doppler image (PNG), "
                       "for a pulsed-Doppler board the I/Q signal and the Doppler spectrum with each bin's range rate."),
        QStringLiteral("DIR"));
    const QCommandLineOption screenshotOption(QStringLiteral("screenshot"),
        QStringLiteral("Open the window (offscreen without a display), connect the first board, wait for --frames "
                       "frames (default %1) and save a PNG of the window to FILE.")
            .arg(kDefaultScreenshotFrames),
        QStringLiteral("FILE"));
    const QCommandLineOption connectOption(QStringLiteral("connect"),
        QStringLiteral("With the window: connect the first board (or --device NAME) once the window is open."));
    parser.addOptions({ screenshotOption, connectOption, checkOption, listDevicesOption, listFlashersOption, flashOption,
                        imageOption, inspectOption, convertOption, headlessOption, deviceOption,
                        configOption, applicationOption, framesOption, secondsOption, recordOption, txtOption,
                        overwriteOption, playOption, snapshotOption, moduleOption, sdkOption, settingsOption, benchOption });
    const QCommandLineOption modeOption = CWSessionOptions::modeOption();
    parser.addOption(modeOption);
    parser.addOptions(CWSessionOptions::commandLineOptions());
    const QCommandLineOption verboseOption(QStringLiteral("verbose"), QStringLiteral("Also print debug log lines."));
    parser.addOption(verboseOption);
    parser.process(app);

    // Debug lines are for developers; sessions print their own progress.
    if (!parser.isSet(verboseOption) && qEnvironmentVariableIsEmpty("QT_LOGGING_RULES"))
        QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));

    // The recording tools work on files alone and need no module.
    if (parser.isSet(inspectOption))
        return inspectRecording(parser.value(inspectOption), out(), err());
    if (parser.isSet(convertOption))
        return convertRecording(parser.value(convertOption), out(), err());

    if (parser.isSet(imageOption) && !parser.isSet(flashOption)) {
        err() << "--image FILE goes with --flash NAME." << Qt::endl;
        return ExitCode::UsageError;
    }
    const bool firmware = parser.isSet(listFlashersOption) || parser.isSet(flashOption);
    const bool headless = parser.isSet(headlessOption);
    const bool screenshot = parser.isSet(screenshotOption);
    const bool window = !headless && !screenshot && !firmware && !parser.isSet(checkOption)
        && !parser.isSet(listDevicesOption);
    int screenshotFrames = kDefaultScreenshotFrames;
    if (screenshot && parser.isSet(framesOption)) {
        bool ok = false;
        screenshotFrames = parser.value(framesOption).toInt(&ok);
        if (!ok || screenshotFrames < 1 || screenshotFrames > 100000) {
            err() << "--frames must be a whole number from 1 to 100000 for --screenshot." << Qt::endl;
            return ExitCode::UsageError;
        }
    }
    QString mode = parser.value(modeOption);
    const bool cwSession = headless && CWSessionOptions::isCWMode(mode);
    HeadlessSession::Options sessionOptions;
    CWSessionOptions cwOptions;
    {
        QString usage = cwSession ? CWSessionOptions::read(parser, cwOptions)
                                  : CWSessionOptions::refuseOutsideCW(parser, headless);
        if (usage.isEmpty() && headless && !cwSession)
            usage = readSessionOptions(parser, sessionOptions);
        if (!usage.isEmpty()) {
            err() << usage << Qt::endl;
            return ExitCode::UsageError;
        }
    }
    // Taken over before the module starts: a signal that comes while the
    // board is being set up still ends the session cleanly.
    std::unique_ptr<InterruptWatcher> interrupts;
    if (headless)
        interrupts = std::make_unique<InterruptWatcher>();

    // The window keeps a log file in the application's log directory, where
    // its settings page can clean up; the console commands print instead.
    std::unique_ptr<LogFile> logFile;
    if (window || screenshot) {
        logFile = std::make_unique<LogFile>();
        const QString logError = logFile->open();
        if (!logError.isEmpty()) {
            qWarning().noquote() << logError;
            logFile.reset();
        }
    }

    ModuleHost host;
    const QString error = host.start({ parser.value(moduleOption), parser.value(sdkOption),
                                       parser.value(settingsOption), parser.value(benchOption) });
    if (!error.isEmpty()) {
        err() << error << Qt::endl;
        return ExitCode::StartError;
    }
    reportSettingsError(host);

    int code = ExitCode::Success;
    if (parser.isSet(checkOption)) {
        code = runCheck(host);
    } else if (parser.isSet(listDevicesOption)) {
        code = listDevices(host, out(), err());
    } else if (parser.isSet(listFlashersOption)) {
        code = listFlashers(host, out(), err());
    } else if (parser.isSet(flashOption)) {
        code = flashBoard(host, parser.value(flashOption), parser.value(imageOption), out(), err());
    } else if (screenshot) {
        code = runScreenshot(host, logFile.get(), parser.value(screenshotOption), screenshotFrames, out(), err());
    } else if (window) {
        code = runWindow(host, logFile.get(), parser.isSet(connectOption), parser.value(deviceOption), err());
    } else if (const QString unknownMode = SessionMode::match(host, mode); !unknownMode.isEmpty()) {
        err() << unknownMode << Qt::endl;
        code = ExitCode::UsageError;
    } else if (!cwSession && mode != QLatin1String("Standard")) {
        err() << "--mode " << mode << ": a headless session runs the Standard or the CW mode." << Qt::endl;
        code = ExitCode::UsageError;
    } else if (cwSession) {
        CWSession session(host, cwOptions, out(), err());
        QObject::connect(interrupts.get(), &InterruptWatcher::interrupted, &session, &CWSession::onInterrupted);
        code = session.run();
    } else {
        HeadlessSession session(host, sessionOptions, out(), err());
        QObject::connect(interrupts.get(), &InterruptWatcher::interrupted, &session, &HeadlessSession::onInterrupted);
        code = session.run();
    }
    host.stop();
    return code;
}
