#include "CWSessionOptions.h"

#include "fmcw/cw/RadarCWMode.h"

#include <QCommandLineParser>
#include <QStringList>
#include <cmath>

namespace {

const QString kMode = QStringLiteral("mode");
const QString kDutyCycle = QStringLiteral("duty-cycle");
const QString kEmit = QStringLiteral("emit");
const QString kCapture = QStringLiteral("capture");
const QString kLog = QStringLiteral("log");
const QString kSaveConfig = QStringLiteral("save-config");

// The options of a standard session that mean nothing to a CW one.
const QStringList kStandardOnly { QStringLiteral("frames"), QStringLiteral("seconds"), QStringLiteral("record"),
                                  QStringLiteral("txt"),    QStringLiteral("overwrite"), QStringLiteral("play"),
                                  QStringLiteral("application") };
const QStringList kCWOnly { kDutyCycle, kEmit, kCapture, kLog, kSaveConfig };

QString given(const QCommandLineParser& parser, const QStringList& names)
{
    QStringList set;
    for (const QString& name : names) {
        if (parser.isSet(name))
            set << QStringLiteral("--") + name;
    }
    return set.join(QStringLiteral(", "));
}

} // namespace

QCommandLineOption CWSessionOptions::modeOption()
{
    return QCommandLineOption(kMode,
        QStringLiteral("With --headless: the user mode to run the board in, Standard (default) or %1.")
            .arg(QLatin1String(RadarCWMode::kUserMode)),
        QStringLiteral("MODE"), QStringLiteral("Standard"));
}

QList<QCommandLineOption> CWSessionOptions::commandLineOptions()
{
    return {
        QCommandLineOption(kDutyCycle,
            QStringLiteral("CW session: the share of each second the transmitter is on, 0 to 100 % (default: the "
                           "configuration's)."),
            QStringLiteral("P")),
        QCommandLineOption(kEmit,
            QStringLiteral("CW session (required): emit for this many seconds, above 0 and up to 86400."),
            QStringLiteral("S")),
        QCommandLineOption(kCapture,
            QStringLiteral("CW session: capture this many frames during emission, 0 to %1 (default %2).")
                .arg(kMaxCaptures)
                .arg(kDefaultCaptures),
            QStringLiteral("N")),
        QCommandLineOption(kLog, QStringLiteral("CW session: log every captured frame to its own CSV file in DIR."),
                           QStringLiteral("DIR")),
        QCommandLineOption(kSaveConfig, QStringLiteral("CW session: save the applied configuration to FILE."),
                           QStringLiteral("FILE")),
    };
}

bool CWSessionOptions::isCWMode(const QString& mode)
{
    return mode.trimmed().compare(QLatin1String(RadarCWMode::kUserMode), Qt::CaseInsensitive) == 0;
}

quint64 CWSessionOptions::emitMilliseconds() const
{
    return qMax<quint64>(1, quint64(std::ceil(emitSeconds * 1000.0)));
}

QString CWSessionOptions::refuseOutsideCW(const QCommandLineParser& parser, bool headless)
{
    if (!headless && parser.isSet(kMode))
        return QStringLiteral("--mode goes with --headless.");
    const QString cwOnly = given(parser, kCWOnly);
    if (cwOnly.isEmpty())
        return {};
    const QString cw = QStringLiteral("%1: only a CW session takes these (--headless --mode %2)")
                           .arg(cwOnly, QLatin1String(RadarCWMode::kUserMode));
    if (parser.isSet(kMode))
        return cw + QStringLiteral(", not a session in the mode \"%1\".").arg(parser.value(kMode));
    return cw + QLatin1Char('.');
}

QString CWSessionOptions::read(const QCommandLineParser& parser, CWSessionOptions& options)
{
    options = CWSessionOptions();
    const QString standardOnly = given(parser, kStandardOnly);
    if (!standardOnly.isEmpty())
        return QStringLiteral("%1: not an option of a CW session, which emits for --emit S and captures --capture N "
                              "frames.")
            .arg(standardOnly);

    if (!parser.isSet(kEmit))
        return QStringLiteral("A CW session needs --emit S, the seconds to emit (above 0 and up to %1).")
            .arg(kMaxEmitSeconds, 0, 'f', 0);
    bool ok = false;
    const QString emitText = parser.value(kEmit);
    options.emitSeconds = emitText.trimmed().toDouble(&ok);
    // The negated comparison also refuses NaN.
    if (!ok || !(options.emitSeconds > 0.0 && options.emitSeconds <= kMaxEmitSeconds))
        return QStringLiteral("--emit \"%1\" is not a number of seconds above 0 and up to %2 (one day).")
            .arg(emitText)
            .arg(kMaxEmitSeconds, 0, 'f', 0);

    if (parser.isSet(kDutyCycle)) {
        const QString text = parser.value(kDutyCycle);
        const uint percent = text.trimmed().toUInt(&ok);
        if (!ok || percent > 100)
            return QStringLiteral("--duty-cycle \"%1\" is not a whole percentage from 0 to 100.").arg(text);
        options.dutyCycle = int(percent);
    }

    if (parser.isSet(kCapture)) {
        const QString text = parser.value(kCapture);
        options.captures = text.trimmed().toUInt(&ok);
        if (!ok || options.captures > kMaxCaptures)
            return QStringLiteral("--capture \"%1\" is not a whole number from 0 to %2.").arg(text).arg(kMaxCaptures);
    }

    options.device = parser.value(QStringLiteral("device"));
    options.config = parser.value(QStringLiteral("config"));
    options.log = parser.value(kLog);
    options.snapshot = parser.value(QStringLiteral("snapshot"));
    options.saveConfig = parser.value(kSaveConfig);
    if (options.captures == 0 && (!options.log.isEmpty() || !options.snapshot.isEmpty()))
        return QStringLiteral("--log and --snapshot need a captured frame: drop --capture 0.");
    if (parser.isSet(kLog) && options.log.isEmpty())
        return QStringLiteral("--log needs a directory.");
    if (parser.isSet(kSaveConfig) && options.saveConfig.isEmpty())
        return QStringLiteral("--save-config needs a file name.");
    return {};
}
