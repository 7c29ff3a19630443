#include "HeadlessSession.h"

#include "ChartSnapshot.h"
#include "ConsoleText.h"
#include "DeviceListing.h"
#include "DopplerSnapshot.h"
#include "ExitCodes.h"
#include "ModeViews.h"
#include "ModuleHost.h"
#include "SessionRecording.h"
#include "ViewConnection.h"

#include "host/IDevice.h"
#include "host/IPlayback.h"
#include "recording/RecordingFiles.h"

#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QQmlContext>
#include <QQmlEngine>
#include <QTimer>
#include <csignal>

namespace {

// A source that delivers nothing for this long has stalled.
constexpr int kStallMs = 10000;

} // namespace

HeadlessSession::HeadlessSession(ModuleHost& host, Options options, QTextStream& out, QTextStream& err)
    : m_host(host)
    , m_options(std::move(options))
    , m_out(out)
    , m_err(err)
{
}

HeadlessSession::~HeadlessSession() = default;

int HeadlessSession::fail(const QString& reason)
{
    m_err << "Session failed: " << reason << Qt::endl;
    stopSource();
    return ExitCode::SessionFailed;
}

void HeadlessSession::quitLoops()
{
    if (m_loop)
        m_loop->quit();
    if (m_refreshLoop)
        m_refreshLoop->quit();
}

QString HeadlessSession::prepareView(const QString& name)
{
    m_viewName = name;
    m_view = ModeViews::view(m_host.engine(), name);
    if (!m_view)
        return QStringLiteral("the module offers no view \"%1\" for this source").arg(name);
    if (!connectByName(m_view, "frameNumberChanged(int)", this, "onFrameNumberChanged(int)")
        || !connectByName(m_view, "enqueueUserMessage(Constants::UserMessageType,QString,QString)", this,
                          "onUserMessage(Constants::UserMessageType,QString,QString)")
        || !connectByName(m_view, "chartsDataUpdated()", this, "onChartsDataUpdated()"))
        return QStringLiteral("the module's view lacks the frame, chart or message signals");
    return {};
}

void HeadlessSession::onFrameNumberChanged(int frameNumber)
{
    // The counter restarts at 0 when a configuration is applied; count
    // every advance, not the counter itself, and only while acquiring:
    // frames of the set-up and of the snapshot's wait are not the session's.
    if (m_loop && frameNumber > m_lastFrameNumber && frameNumber > 0)
        m_frames += quint64(frameNumber - qMax(m_lastFrameNumber, 0));
    m_lastFrameNumber = frameNumber;
    // While recording, the recorder's own frame limit ends the session, so
    // the file holds exactly the frames asked for.
    const quint32 limit = m_options.limits.frames;
    if (m_loop && !m_recording && m_frames > 0 && (m_timeUp || (limit > 0 && m_frames >= limit)))
        m_loop->quit();
}

void HeadlessSession::onChartsDataUpdated()
{
    if (m_loop)
        ++m_chartRefreshes;
    if (m_refreshLoop)
        m_refreshLoop->quit();
}

void HeadlessSession::onInterrupted(int signalNumber)
{
    if (m_signal != 0) {
        if (m_recording)
            m_recording->abandonTextCopy();
        return;
    }
    m_signal = signalNumber;
    if (m_recording)
        m_recording->endProgressLine();
    m_out << "Interrupted by " << signalName(signalNumber) << ": finishing the session" << Qt::endl;
    quitLoops();
}

void HeadlessSession::awaitChartRefresh()
{
    // Charts are refreshed at most once per refresh interval; a short
    // session may end before the first one. While the source still runs,
    // wait for the next refresh so the snapshot shows the newest frame.
    if (m_sourceEnded || !m_failure.isEmpty() || m_signal != 0)
        return;
    QEventLoop loop;
    m_refreshLoop = &loop;
    QTimer::singleShot(2000, &loop, &QEventLoop::quit);
    loop.exec();
    m_refreshLoop = nullptr;
}

void HeadlessSession::checkStalled()
{
    if (m_frames == m_framesAtLastCheck && m_failure.isEmpty()) {
        m_failure = QStringLiteral("no frame arrived for %1 s").arg(kStallMs / 1000);
        if (m_loop)
            m_loop->quit();
    }
    m_framesAtLastCheck = m_frames;
}

void HeadlessSession::onUserMessage(Constants::UserMessageType type, QString message, QString details)
{
    if (m_recording)
        m_recording->endProgressLine();
    const QString text = details.isEmpty() ? message : QStringLiteral("%1 (%2)").arg(message, details);
    m_out << '[' << messageTypeName(type) << "] " << text << Qt::endl;
    if (type == Constants::Error && m_failure.isEmpty()) {
        m_failure = text;
        if (m_loop)
            m_loop->quit();
    }
}

QString HeadlessSession::connectBoard()
{
    QString error;
    m_device = chooseBoard(m_host, m_options.device, error);
    if (!m_device)
        return error;
    // The view has to listen before the board connects: its messages about
    // the connection are the session's.
    error = prepareView(ModeViews::viewNameForBoard(m_device->property("shieldType").toInt()));
    if (!error.isEmpty())
        return error;

    connect(m_device.get(), &IDevice::isConnectedChanged, this, [this](bool connected) {
        if (!connected && m_loop) {
            m_sourceEnded = true;
            m_loop->quit();
        }
    });
    m_out << "Connecting " << m_device->name() << " (" << m_device->property("uuid").toString() << ")" << Qt::endl;
    if (!m_device->connectDevice())
        return m_failure.isEmpty() ? QStringLiteral("%1 could not be connected").arg(m_device->name()) : m_failure;
    return {};
}

QString HeadlessSession::applyConfiguration()
{
    bool applied = true;
    if (!m_options.config.isEmpty()) {
        QMetaObject::invokeMethod(m_view, "applyConfiguration", Qt::DirectConnection, Q_RETURN_ARG(bool, applied),
                                  Q_ARG(QString, QFileInfo(m_options.config).absoluteFilePath()));
        if (!applied)
            return m_failure.isEmpty() ? QStringLiteral("the configuration %1 was refused").arg(m_options.config)
                                       : m_failure;
    }
    if (!m_options.application.isEmpty()) {
        auto* edited = m_view->property("guiConfiguration").value<QObject*>();
        if (edited && edited->metaObject()->indexOfProperty("application") < 0)
            return QStringLiteral("--application applies to FMCW boards; %1 has no applications")
                .arg(m_device->name());
        if (!edited || !edited->setProperty("application", m_options.application))
            return QStringLiteral("unknown application \"%1\" (None, PresenceSensing or Segmentation)")
                .arg(m_options.application);
        QMetaObject::invokeMethod(m_view, "applyGuiConfiguration", Qt::DirectConnection, Q_RETURN_ARG(bool, applied));
        if (!applied)
            return m_failure.isEmpty() ? QStringLiteral("the %1 application was refused").arg(m_options.application)
                                       : m_failure;
    }
    return {};
}

QString HeadlessSession::openPlayback()
{
    const auto playbacks = m_host.playbackRegister().playbacks();
    if (playbacks.isEmpty())
        return QStringLiteral("the module offers no playback");
    const QString base = QFileInfo(RecordingFiles::baseOf(m_options.play)).absoluteFilePath();
    for (const QString& path : { RecordingFiles::binPath(base), RecordingFiles::jsonPath(base) }) {
        if (!QFileInfo::exists(path))
            return QStringLiteral("the recording %1 is missing: no such file %2").arg(m_options.play, path);
    }
    // Each mode plays only its own recordings; the first that takes this
    // one plays it. When none does, the first is asked anyway so that its
    // message says what is wrong with the file.
    m_playback = playbacks.first();
    for (const auto& playback : playbacks) {
        if (playback->accepts(base)) {
            m_playback = playback;
            break;
        }
    }
    const QString error = prepareView(ModeViews::viewNameForPlayback(m_playback->name()));
    if (!error.isEmpty())
        return error;
    connect(m_playback.get(), &IPlayback::isActiveChanged, this, [this](bool active) {
        if (!active && m_loop) {
            m_sourceEnded = true;
            m_loop->quit();
        }
    });
    if (!m_playback->open(base))
        return m_failure.isEmpty() ? QStringLiteral("%1 cannot be played").arg(m_options.play) : m_failure;
    const quint32 total = m_playback->totalFramesNumber();
    m_out << "Playing " << base << " (" << total << " frames)" << Qt::endl;
    if (total == 0)
        return QStringLiteral("the recording %1 holds no whole frame").arg(base);
    // Without a limit a playback runs to its end.
    if (m_options.limits.frames == 0 && m_options.limits.seconds == 0)
        m_options.limits.frames = total;
    return {};
}

QString HeadlessSession::startRecording()
{
    if (m_options.record.isEmpty())
        return {};
    m_recording = std::make_unique<SessionRecording>(
        m_view, *m_host.coreConfiguration().coreUserSettings()->recordingUserSettings(),
        SessionRecording::Options { QFileInfo(m_options.record).absoluteFilePath(), m_options.txt,
                                    m_options.overwrite },
        m_out);
    // The recorder's own limit ends a recording session.
    connect(m_recording.get(), &SessionRecording::ended, this, [this] {
        if (m_loop)
            m_loop->quit();
    });
    const QString error = m_recording->start(m_options.limits.frames, m_options.limits.milliseconds());
    if (error.isEmpty())
        return {};
    // The module's message has been printed as it came; the session's own
    // text says what to do about an earlier recording.
    if (m_failure.isEmpty() || m_recording->refusedForEarlierRecording())
        return error;
    return m_failure;
}

void HeadlessSession::printProgress()
{
    const qint64 now = m_clock.elapsed();
    const double rate = now > m_msAtLastProgress
        ? double(m_frames - m_framesAtLastProgress) * 1000.0 / double(now - m_msAtLastProgress)
        : 0.0;
    m_framesAtLastProgress = m_frames;
    m_msAtLastProgress = now;
    m_out << "frames " << m_frames << "  rate " << QString::number(rate, 'f', 1) << " fps  fifo overflows "
          << m_view->property("fifoOverflowCounter").toUInt() << Qt::endl;
}

void HeadlessSession::acquire()
{
    QEventLoop loop;
    m_loop = &loop;
    QTimer progress;
    connect(&progress, &QTimer::timeout, this, &HeadlessSession::printProgress);
    progress.start(1000);
    QTimer end;
    end.setSingleShot(true);
    // Like a recording, a session shorter than a frame period still waits
    // for its one frame.
    connect(&end, &QTimer::timeout, &loop, [this, &loop] {
        m_timeUp = true;
        if (m_frames > 0)
            loop.quit();
    });
    // A recording is ended by the recorder at its limit; the timer only
    // ends sessions that do not record. The duration is at most a day, well
    // within the timer's range.
    if (m_options.limits.seconds > 0 && !m_recording)
        end.start(int(m_options.limits.milliseconds()));
    QTimer watchdog;
    connect(&watchdog, &QTimer::timeout, this, &HeadlessSession::checkStalled);
    watchdog.start(kStallMs);
    m_clock.start();
    const bool recordingEnded = m_recording && !m_recording->isActive();
    if (m_failure.isEmpty() && !m_sourceEnded && m_signal == 0 && !recordingEnded)
        loop.exec();
    m_loop = nullptr;
    m_acquiredMs = m_clock.elapsed();
}

QString HeadlessSession::saveSnapshot()
{
    if (m_options.snapshot.isEmpty())
        return {};
    awaitChartRefresh();
    QString error;
    DopplerPeak peak;
    const bool doppler = m_viewName == QLatin1String(ModeViews::kDopplerView);
    const QStringList saved = doppler ? writeDopplerSnapshot(m_view, m_options.snapshot, peak, error)
                                      : writeChartSnapshot(m_view, m_options.snapshot, error);
    for (const QString& file : saved)
        m_out << "Snapshot: " << file << Qt::endl;
    if (peak.found) {
        m_out << "Doppler peak: " << QString::number(peak.frequencyHz, 'f', 1) << " Hz, range rate "
              << QString::number(peak.rangeRateMps, 'f', 2) << " m/s ("
              << (peak.rangeRateMps < 0 ? "approaching" : "receding") << "), "
              << QString::number(peak.magnitudeDb, 'f', 1) << " dB" << Qt::endl;
    } else if (doppler && error.isEmpty()) {
        m_out << "Doppler peak: no moving echo in the spectrum" << Qt::endl;
    }
    return error;
}

void HeadlessSession::stopSource()
{
    if (m_recording)
        m_recording->stop();
    if (m_device)
        m_device->disconnectDevice();
    if (m_playback)
        m_playback->close();
}

void HeadlessSession::printSummary(quint32 overflows)
{
    const double elapsed = m_acquiredMs / 1000.0;
    m_out << "Summary: frames acquired " << m_frames;
    if (m_recording)
        m_out << ", recorded " << m_recording->recordedFrames() << " (in the file)";
    m_out << ", charts refreshed " << m_chartRefreshes << "; " << QString::number(elapsed, 'f', 1) << " s ("
          << QString::number(elapsed > 0 ? m_frames / elapsed : 0.0, 'f', 1) << " fps), " << overflows
          << " fifo overflows" << Qt::endl;
    if (m_recording) {
        m_out << "Recording: " << m_recording->binPath() << Qt::endl;
        if (m_options.txt && QFileInfo::exists(m_recording->txtPath()))
            m_out << "Text copy: " << m_recording->txtPath() << Qt::endl;
    }
}

int HeadlessSession::run()
{
    QString error = m_options.play.isEmpty() ? connectBoard() : openPlayback();
    if (error.isEmpty() && m_options.play.isEmpty())
        error = applyConfiguration();
    if (error.isEmpty() && m_options.limits.frames == 0 && m_options.limits.seconds == 0)
        m_options.limits.seconds = SessionLimits::kDefaultSeconds;
    // A playback loads its recorded configuration when it opens: the
    // recording starts after that, so its header describes the played
    // frames, and before play(), so it holds every one of them.
    if (error.isEmpty() && m_signal == 0)
        error = startRecording();
    if (error.isEmpty() && m_playback && m_signal == 0)
        m_playback->play();
    if (!error.isEmpty())
        return fail(error);

    acquire();
    // Everything acquired so far goes to the file before the source stops.
    if (m_recording)
        m_recording->stop();
    const QString snapshotError = saveSnapshot();
    const quint32 overflows = m_view->property("fifoOverflowCounter").toUInt();
    stopSource();
    const QString recordingError = m_recording ? m_recording->finish() : QString();
    printSummary(overflows);

    if (!m_failure.isEmpty())
        return fail(m_failure);
    if (!recordingError.isEmpty())
        return fail(recordingError);
    if (!snapshotError.isEmpty())
        return fail(snapshotError);
    if (m_signal != 0)
        return ExitCode::interruptedBy(m_signal);
    if (m_frames == 0)
        return fail(QStringLiteral("no frame arrived"));
    return ExitCode::Success;
}
