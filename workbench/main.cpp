// tavrin-workbench: the reference host of the radar module, with a command
// line for scripted, headless sessions.
#include "DeviceListing.h"
#include "HeadlessSession.h"
#include "ModuleHost.h"
#include "RecordingCommands.h"

#include "host/IModule.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QTextStream>
#include <QDir>
#include <QLoggingCategory>
#include <cerrno>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char* workbenchVersion = "1.0.0";

enum ExitCode { Success = 0, UsageError = 1, SettingsError = 2, StartError = 3 };

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

int runCheck(ModuleHost& host)
{
    const auto info = host.module()->moduleInfo();
    out() << info.first << ' ' << info.second << Qt::endl;
    if (!host.settingsError().isEmpty()) {
        err() << host.settingsError() << Qt::endl;
        return SettingsError;
    }
    if (!host.saveSettings()) {
        err() << "Cannot write settings file " << host.settingsPath() << Qt::endl;
        return SettingsError;
    }
    return Success;
}

} // namespace

int main(int argc, char* argv[])
{
    // The command-line sessions need no screen.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Without a desktop session Qt picks a runtime directory itself, but warns
    // on every start; choose the same private directory quietly.
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        const QByteArray runtime = QDir::tempPath().toLocal8Bit() + "/runtime-" + QByteArray::number(getuid());
        if (::mkdir(runtime.constData(), 0700) == 0 || errno == EEXIST)
            qputenv("XDG_RUNTIME_DIR", runtime);
    }

    QGuiApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tavrin-workbench"));
    QCoreApplication::setApplicationVersion(QString::fromLatin1(workbenchVersion));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Tavrin Workbench: loads the radar module and drives sensor boards."));
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
        QStringLiteral("Print the header and frame count of a binary recording (BASE.raw.bin)."), QStringLiteral("FILE"));
    const QCommandLineOption convertOption(QStringLiteral("convert"),
        QStringLiteral("Write BASE.raw.txt from the binary recording BASE.raw.bin."), QStringLiteral("BASE"));
    const QCommandLineOption headlessOption(QStringLiteral("headless"),
        QStringLiteral("Run a session without a window: connect a board (or play a recording), acquire, record, report."));
    const QCommandLineOption deviceOption(QStringLiteral("device"),
        QStringLiteral("Board to connect, by its display name (default: the first)."), QStringLiteral("NAME"));
    const QCommandLineOption configOption(QStringLiteral("config"),
        QStringLiteral("Configuration file to apply after connecting."), QStringLiteral("FILE"));
    const QCommandLineOption applicationOption(QStringLiteral("application"),
        QStringLiteral("Application to run: None, PresenceSensing or Segmentation."), QStringLiteral("NAME"));
    const QCommandLineOption framesOption(QStringLiteral("frames"),
        QStringLiteral("Acquire this many frames."), QStringLiteral("N"));
    const QCommandLineOption secondsOption(QStringLiteral("seconds"),
        QStringLiteral("Acquire for this many seconds (default 5)."), QStringLiteral("S"));
    const QCommandLineOption recordOption(QStringLiteral("record"),
        QStringLiteral("Record the session to BASE.raw.bin (and BASE.json)."), QStringLiteral("BASE"));
    const QCommandLineOption txtOption(QStringLiteral("txt"),
        QStringLiteral("With --record: also write the text copy BASE.raw.txt."));
    const QCommandLineOption playOption(QStringLiteral("play"),
        QStringLiteral("Play the recording BASE instead of connecting a board."), QStringLiteral("BASE"));
    const QCommandLineOption snapshotOption(QStringLiteral("snapshot"),
        QStringLiteral("Write the last chart data (CSV) and the range-Doppler image (PNG) into DIR."),
        QStringLiteral("DIR"));
    parser.addOptions({ checkOption, listDevicesOption, inspectOption, convertOption, headlessOption, deviceOption,
                        configOption, applicationOption, framesOption, secondsOption, recordOption, txtOption,
                        playOption, snapshotOption, moduleOption, sdkOption, settingsOption, benchOption });
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

    ModuleHost host;
    const QString error = host.start({ parser.value(moduleOption), parser.value(sdkOption),
                                       parser.value(settingsOption), parser.value(benchOption) });
    if (!error.isEmpty()) {
        err() << error << Qt::endl;
        return StartError;
    }

    int code = Success;
    if (parser.isSet(checkOption)) {
        code = runCheck(host);
    } else if (parser.isSet(listDevicesOption)) {
        code = listDevices(host, out(), err());
    } else if (parser.isSet(headlessOption)) {
        HeadlessSession::Options options;
        options.device = parser.value(deviceOption);
        options.config = parser.value(configOption);
        options.application = parser.value(applicationOption);
        options.record = parser.value(recordOption);
        options.txt = parser.isSet(txtOption);
        options.play = parser.value(playOption);
        options.snapshot = parser.value(snapshotOption);
        bool framesOk = true;
        bool secondsOk = true;
        if (parser.isSet(framesOption))
            options.frames = parser.value(framesOption).toUInt(&framesOk);
        if (parser.isSet(secondsOption))
            options.seconds = parser.value(secondsOption).toDouble(&secondsOk);
        if (!framesOk || !secondsOk || options.seconds < 0) {
            err() << "--frames takes a whole number and --seconds a positive number." << Qt::endl;
            code = UsageError;
        } else {
            HeadlessSession session(host, options, out(), err());
            code = session.run();
        }
    } else {
        err() << "Nothing to do: give --check, --list-devices, --headless, --inspect or --convert (see --help)." << Qt::endl;
        code = UsageError;
    }
    host.stop();
    return code;
}
