#include "CWSession.h"

#include "ChartSnapshot.h"
#include "ConsoleText.h"
#include "DeviceListing.h"
#include "ExitCodes.h"
#include "ModuleHost.h"
#include "SessionMode.h"
#include "ViewConnection.h"

#include "fmcw/cw/RadarCWMode.h"
#include "host/IDevice.h"

#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QQmlContext>
#include <QQmlEngine>
#include <QSet>
#include <QTimer>
#include <QVector>
#include <csignal>

namespace {

constexpr int kMaxAntennas = 4;
// How long after the module's readouts the session prints them.
constexpr int kReadingLagMs = 150;

QObject* child(QObject* object, const char* property)
{
    return object ? object->property(property).value<QObject*>() : nullptr;
}

// "1 3" for antennas 1 and 3, "none" for none.
QString enabledAntennas(QObject* antennas)
{
    QStringList numbers;
    for (int position = 0; antennas && position < kMaxAntennas; ++position) {
        bool enabled = false;
        QMetaObject::invokeMethod(antennas, "getEnabled", Qt::DirectConnection, Q_RETURN_ARG(bool, enabled),
                                  Q_ARG(int, position));
        if (enabled)
            numbers << QString::number(position + 1);
    }
    return numbers.isEmpty() ? QStringLiteral("none") : numbers.join(QLatin1Char(' '));
}

QSet<QString> filesIn(const QString& directory)
{
    const QStringList names = QDir(directory).entryList(QDir::Files);
    return QSet<QString>(names.cbegin(), names.cend());
}

} // namespace

CWSession::CWSession(ModuleHost& host, CWSessionOptions options, QTextStream& out, QTextStream& err)
    : m_host(host)
    , m_options(std::move(options))
    , m_out(out)
    , m_err(err)
{
    // Files are named in full in the output, wherever the session ran.
    if (!m_options.log.isEmpty())
        m_options.log = QFileInfo(m_options.log).absoluteFilePath();
    if (!m_options.snapshot.isEmpty())
        m_options.snapshot = QFileInfo(m_options.snapshot).absoluteFilePath();
}

CWSession::~CWSession() = default;

bool CWSession::call(const char* method)
{
    bool result = false;
    return QMetaObject::invokeMethod(m_view, method, Qt::DirectConnection, Q_RETURN_ARG(bool, result)) && result;
}

bool CWSession::call(const char* method, const QString& argument)
{
    bool result = false;
    return QMetaObject::invokeMethod(m_view, method, Qt::DirectConnection, Q_RETURN_ARG(bool, result),
                                     Q_ARG(QString, argument))
        && result;
}

QString CWSession::reason(const QString& fallback) const
{
    return m_lastMessage.isEmpty() ? fallback : QStringLiteral("%1: %2").arg(fallback, m_lastMessage);
}

QObject* CWSession::params(const char* configuration) const
{
    return child(child(m_view, configuration), "params");
}

void CWSession::onUserMessage(Constants::UserMessageType type, QString message, QString details)
{
    const QString text = details.isEmpty() ? message : QStringLiteral("%1 (%2)").arg(message, details);
    if (type == Constants::Info) {
        m_out << "[info] " << text << Qt::endl;
        return;
    }
    m_err << '[' << messageTypeName(type) << "] " << text << Qt::endl;
    m_lastMessage = text;
    // Like any error during emission, a failing protector or readout ends
    // the test: its record would not be what was asked for.
    if (type == Constants::Error && m_loop && m_failure.isEmpty()) {
        m_failure = QStringLiteral("the module reported an error during emission: ") + text;
        m_loop->quit();
    }
}

void CWSession::onConnectedChanged()
{
    if (!m_inCW || m_view->property("isConnected").toBool())
        return;
    // The module has let the board go (unplugged, or no longer answering);
    // it has ended emission and its readouts itself.
    m_inCW = false;
    m_boardLost = true;
    if (m_loop)
        m_loop->quit();
}

void CWSession::onEmissionActiveChanged()
{
    if (!m_emitting || m_view->property("isEmissionActive").toBool())
        return;
    // The module ended emission itself; why follows (the board's loss, or
    // its message), so the reason is judged once the loop has ended.
    m_emitting = false;
    m_emittedMs = m_emissionClock.elapsed();
    m_emissionEnded = true;
    if (m_loop)
        m_loop->quit();
}

void CWSession::onInterrupted(int signalNumber)
{
    if (m_signal != 0)
        return;
    m_signal = signalNumber;
    m_out << "Interrupted by " << signalName(signalNumber) << ": stopping emission and finishing the session"
          << Qt::endl;
    // The transmitter goes off first, whatever the session was doing.
    const QString error = stopEmission();
    if (!error.isEmpty())
        m_err << error << Qt::endl;
    if (m_loop)
        m_loop->quit();
}

QString CWSession::prepareView()
{
    QQmlEngine* engine = m_host.engine();
    m_view = engine ? engine->rootContext()->contextProperty(QStringLiteral("radarCWView")).value<QObject*>() : nullptr;
    if (!m_view || !SessionMode::coordinator(m_host))
        return QStringLiteral("the module offers no CW view");
    if (!connectByName(m_view, "enqueueUserMessage(Constants::UserMessageType,QString,QString)", this,
                       "onUserMessage(Constants::UserMessageType,QString,QString)")
        || !connectByName(m_view, "isConnectedChanged()", this, "onConnectedChanged()")
        || !connectByName(m_view, "isEmissionActiveChanged()", this, "onEmissionActiveChanged()"))
        return QStringLiteral("the module's CW view lacks the message, connection or emission signals");
    return {};
}

QString CWSession::connectBoard()
{
    QString error;
    m_device = chooseBoard(m_host, m_options.device, error);
    if (!m_device)
        return error;

    const QString board = QStringLiteral("%1 (%2)").arg(m_device->name(), m_device->property("uuid").toString());
    m_out << "Connecting " << board << Qt::endl;
    if (!m_device->connectDevice())
        return reason(QStringLiteral("%1 could not be connected").arg(board));
    // The module opens a board in its standard mode; the CW mode takes it
    // over from there, as when the window's mode selector switches it. The
    // mode is the session's alone: nothing is written to the settings file.
    const QString mode = QString::fromLatin1(RadarCWMode::kUserMode);
    SessionMode::coordinator(m_host)->setProperty("userMode", mode);
    if (!m_view->property("isConnected").toBool())
        return reason(QStringLiteral("%1 could not be opened in the %2 mode").arg(board, mode));
    m_inCW = true;
    m_out << "CW mode on " << board << ", chip " << child(m_view, "deviceInfo")->property("deviceName").toString()
          << Qt::endl;
    return {};
}

QString CWSession::configure()
{
    // Connecting applied the board's defaults; a file replaces them.
    if (!m_options.config.isEmpty()) {
        const QString path = QFileInfo(m_options.config).absoluteFilePath();
        m_lastMessage.clear();
        if (!call("loadConfig", path))
            return reason(QStringLiteral("the configuration %1 was refused").arg(path));
    }
    if (m_options.dutyCycle >= 0)
        params("guiConfig")->setProperty("dutyCycle", uint(m_options.dutyCycle));
    if (!m_options.config.isEmpty() || m_options.dutyCycle >= 0) {
        m_lastMessage.clear();
        if (!call("applyGuiConfig"))
            return reason(QStringLiteral("the configuration could not be applied"));
    }
    printConfiguration();
    return {};
}

void CWSession::printConfiguration()
{
    QObject* applied = params("deviceConfig");
    QObject* device = child(m_view, "deviceConfig");
    m_out << "Applied: carrier " << QString::number(applied->property("rfCenterFrequency").toDouble() / 1e9, 'f', 3)
          << " GHz, DAC " << applied->property("dac").toUInt() << ", Tx " << enabledAntennas(child(device, "txAntennas"))
          << ", Rx " << enabledAntennas(child(device, "rxAntennas")) << ", "
          << applied->property("rxNumSamples").toUInt() << " samples at " << applied->property("samplingRate").toUInt()
          << " Hz, test signal " << applied->property("testSignalMode").toString() << ", duty cycle "
          << applied->property("dutyCycle").toUInt() << " %" << Qt::endl;
}

QString CWSession::prepareOutputs()
{
    if (!m_options.log.isEmpty()) {
        if (!QDir().mkpath(m_options.log))
            return QStringLiteral("Cannot create the log directory %1").arg(m_options.log);
        // Where the CW pages' CSV options point; the prefix stays the user's.
        QObject* logging = child(child(m_view, "userSettings"), "loggingConfiguration");
        bool valid = false;
        if (logging) {
            logging->setProperty("loggingPath", m_options.log);
            QMetaObject::invokeMethod(logging, "checkIfLoggingPathIsValid", Qt::DirectConnection,
                                      Q_RETURN_ARG(bool, valid));
        }
        if (!valid)
            return QStringLiteral("Path is not valid: %1").arg(m_options.log);
    }
    if (!m_options.snapshot.isEmpty() && !QDir().mkpath(m_options.snapshot))
        return QStringLiteral("Cannot create the snapshot directory %1").arg(m_options.snapshot);
    return {};
}

QString CWSession::saveConfiguration()
{
    if (m_options.saveConfig.isEmpty())
        return {};
    // Applying made the edited copy what the board accepted.
    const QString path = QFileInfo(m_options.saveConfig).absoluteFilePath();
    // Like the log and snapshot folders, a missing folder is made.
    QDir().mkpath(QFileInfo(path).absolutePath());
    m_lastMessage.clear();
    if (!call("saveConfig", path))
        return reason(QStringLiteral("the configuration could not be saved to %1").arg(path));
    m_written << path;
    m_out << "Configuration: " << path << Qt::endl;
    return {};
}

QString CWSession::emitAndCapture()
{
    m_lastMessage.clear();
    if (!call("startEmission")) {
        const int transmitters = child(child(m_view, "deviceConfig"), "txAntennas")->property("numberOfEnabled").toInt();
        return reason(transmitters == 0
                          ? QStringLiteral("emission cannot start: the applied configuration enables no Tx antenna")
                          : QStringLiteral("emission could not be started"));
    }
    m_emitting = true;
    m_emissionClock.start();
    m_out << "Emitting for " << m_options.emitSeconds << " s at a duty cycle of "
          << params("deviceConfig")->property("dutyCycle").toUInt() << " %" << Qt::endl;

    QEventLoop loop;
    m_loop = &loop;
    const qint64 totalMs = qint64(m_options.emitMilliseconds());
    const quint32 captures = m_options.captures;
    bool timeUp = false;
    // Captures are spread over the emission: capture i (from 1) is due at
    // i / (N + 1) of it. Slow captures run back to back and keep the
    // transmitter on until the last one.
    auto nextDelay = [&] {
        const qint64 due = totalMs * qint64(m_captured + 1) / qint64(captures + 1);
        return int(qMax<qint64>(0, due - m_emissionClock.elapsed()));
    };
    // Precise timers: a coarse one may fire early and cut the emission short.
    QTimer capture;
    capture.setTimerType(Qt::PreciseTimer);
    capture.setSingleShot(true);
    connect(&capture, &QTimer::timeout, &loop, [&] {
        const QString error = captureNext();
        if (!error.isEmpty()) {
            m_captureError = error;
            loop.quit();
        } else if (m_captured < captures) {
            capture.start(nextDelay());
        } else if (timeUp) {
            loop.quit();
        }
    });
    QTimer end;
    end.setTimerType(Qt::PreciseTimer);
    end.setSingleShot(true);
    connect(&end, &QTimer::timeout, &loop, [&] {
        timeUp = true;
        if (m_captured >= captures)
            loop.quit();
    });
    // The module reads temperature and Tx power once a second from when the
    // board connected and emission started: the session prints them a
    // moment after each of those readings, not in a race with it.
    QTimer readings;
    readings.setTimerType(Qt::PreciseTimer);
    connect(&readings, &QTimer::timeout, this, &CWSession::printReadings);
    QTimer::singleShot(kReadingLagMs, &readings, [&readings] { readings.start(1000); });
    if (captures > 0)
        capture.start(nextDelay());
    // At most a day, well within the timer's range.
    end.start(int(totalMs));
    if (m_failure.isEmpty() && !m_boardLost && m_signal == 0 && m_emitting)
        loop.exec();
    m_loop = nullptr;

    // The first cause first: a lost board fails the capture under way and
    // ends emission.
    if (m_boardLost)
        return reason(QStringLiteral("the board was lost during emission"));
    if (!m_captureError.isEmpty())
        return m_captureError;
    if (!m_failure.isEmpty())
        return m_failure;
    if (m_emissionEnded)
        return reason(QStringLiteral("emission ended before its time"));
    return {};
}

void CWSession::printReadings()
{
    QObject* info = child(m_view, "deviceInfo");
    const QVariant temperature = info->property("deviceTemperature");
    const QVector<float> power = info->property("deviceTxPower").value<QVector<float>>();
    QStringList powers;
    for (int antenna = 0; antenna < power.size(); ++antenna)
        powers << QStringLiteral("Tx%1 %2 dBm").arg(antenna + 1).arg(double(power[antenna]), 0, 'f', 1);
    m_out << "emitting " << QString::number(m_emissionClock.elapsed() / 1000.0, 'f', 1) << " s  temperature "
          << (temperature.isValid() ? QStringLiteral("%1 C").arg(temperature.toDouble(), 0, 'f', 1)
                                    : QStringLiteral("n/a"))
          << "  Tx power " << (powers.isEmpty() ? QStringLiteral("n/a") : powers.join(QStringLiteral(", ")))
          << Qt::endl;
}

QString CWSession::captureNext()
{
    const quint32 number = m_captured + 1;
    m_lastMessage.clear();
    if (!call("captureFrame"))
        return reason(QStringLiteral("capture %1 of %2 failed").arg(number).arg(m_options.captures));
    ++m_captured;
    if (m_options.log.isEmpty()) {
        m_out << "Captured frame " << number << Qt::endl;
        return {};
    }
    // The module names each file after the second it is written and adds a
    // counter when that name is taken: every capture keeps its own file.
    // The new file is what the directory gained.
    const QSet<QString> before = filesIn(m_options.log);
    if (!call("logOneFrame"))
        return reason(QStringLiteral("frame %1 could not be logged to %2").arg(number).arg(m_options.log));
    QStringList added = (filesIn(m_options.log) - before).values();
    added.sort();
    if (added.isEmpty())
        return QStringLiteral("frame %1 was logged, but no new file appeared in %2").arg(number).arg(m_options.log);
    for (const QString& name : qAsConst(added)) {
        const QString path = QDir(m_options.log).filePath(name);
        m_written << path;
        m_out << "Captured frame " << number << ", logged to " << path << Qt::endl;
    }
    return {};
}

QString CWSession::stopEmission()
{
    if (!m_emitting)
        return {};
    m_emitting = false;
    m_emittedMs = m_emissionClock.elapsed();
    m_lastMessage.clear();
    if (!call("stopEmission"))
        return reason(QStringLiteral("emission could not be stopped"));
    m_out << "Emission stopped after " << QString::number(m_emittedMs / 1000.0, 'f', 1) << " s" << Qt::endl;
    return {};
}

QString CWSession::saveSnapshot()
{
    if (m_options.snapshot.isEmpty())
        return {};
    QStringList failures;
    const QStringList saved = writeSeriesCharts(
        m_view, m_options.snapshot,
        { { Constants::Chart::TimeDomain, QStringLiteral("time_domain.csv") },
          { Constants::Chart::FrequencyDomain, QStringLiteral("spectrum.csv") } },
        failures);
    for (const QString& file : saved) {
        m_written << file;
        m_out << "Snapshot: " << file << Qt::endl;
    }
    return failures.isEmpty() ? QString() : QStringLiteral("Not saved: ") + failures.join(QStringLiteral(", "));
}

void CWSession::disconnectBoard()
{
    if (m_device)
        m_device->disconnectDevice();
    m_inCW = false;
}

void CWSession::printSummary()
{
    m_out << "Summary: emitted " << QString::number(m_emittedMs / 1000.0, 'f', 1) << " s, frames captured "
          << m_captured << " of " << m_options.captures << ", files written " << m_written.size() << Qt::endl;
}

int CWSession::failWith(const QString& why)
{
    m_err << "Session failed: " << why << Qt::endl;
    return ExitCode::SessionFailed;
}

int CWSession::run()
{
    QString error = prepareView();
    if (error.isEmpty())
        error = connectBoard();
    if (error.isEmpty() && m_signal == 0)
        error = configure();
    if (error.isEmpty() && m_signal == 0)
        error = prepareOutputs();
    if (error.isEmpty() && m_signal == 0)
        error = saveConfiguration();
    if (!error.isEmpty() || m_signal != 0) {
        // Nothing was emitted.
        disconnectBoard();
        printSummary();
        return error.isEmpty() ? ExitCode::interruptedBy(m_signal) : failWith(error);
    }

    const QString emissionError = emitAndCapture();
    const QString stopError = stopEmission();
    // After a failure the charts may no longer hold the last frame (a lost
    // board takes them along): no snapshot then. An interrupted session
    // keeps what it captured.
    const QString snapshotError = emissionError.isEmpty() && m_captured > 0 ? saveSnapshot() : QString();
    disconnectBoard();
    printSummary();

    if (!emissionError.isEmpty())
        return failWith(emissionError);
    if (!stopError.isEmpty())
        return failWith(stopError);
    if (!snapshotError.isEmpty())
        return failWith(snapshotError);
    if (m_signal != 0)
        return ExitCode::interruptedBy(m_signal);
    return ExitCode::Success;
}
