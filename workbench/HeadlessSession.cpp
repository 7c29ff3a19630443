#include "HeadlessSession.h"

#include "ChartSnapshot.h"
#include "DeviceListing.h"
#include "ModuleHost.h"

#include "host/IDevice.h"
#include "host/IPlayback.h"

#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QMetaMethod>
#include <QQmlContext>
#include <QQmlEngine>
#include <QTimer>

namespace {

enum ExitCode { Success = 0, SessionFailed = 4 };

// Signals of the module's view are matched by name at run time, as QML
// does: the host does not compile against the module's classes.
bool connectByName(QObject* sender, const char* signal, QObject* receiver, const char* slot)
{
    const int signalIndex = sender->metaObject()->indexOfSignal(QMetaObject::normalizedSignature(signal));
    const int slotIndex = receiver->metaObject()->indexOfSlot(QMetaObject::normalizedSignature(slot));
    if (signalIndex < 0 || slotIndex < 0)
        return false;
    return QObject::connect(sender, sender->metaObject()->method(signalIndex), receiver,
                            receiver->metaObject()->method(slotIndex));
}

const char* typeName(Constants::UserMessageType type)
{
    switch (type) {
    case Constants::Error:
        return "error";
    case Constants::Warning:
        return "warning";
    default:
        return "info";
    }
}

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
    if (m_device)
        m_device->disconnectDevice();
    if (m_playback)
        m_playback->close();
    return SessionFailed;
}

QString HeadlessSession::prepareView()
{
    QQmlEngine* engine = m_host.engine();
    m_view = engine ? engine->rootContext()->contextProperty(QStringLiteral("radarView")).value<QObject*>() : nullptr;
    if (!m_view)
        return QStringLiteral("the module offers no standard-mode view");
    if (!connectByName(m_view, "frameNumberChanged(int)", this, "onFrameNumberChanged(int)")
        || !connectByName(m_view, "enqueueUserMessage(Constants::UserMessageType,QString,QString)", this,
                          "onUserMessage(Constants::UserMessageType,QString,QString)"))
        return QStringLiteral("the module's view lacks the frame or message signals");
    return {};
}

void HeadlessSession::onFrameNumberChanged(int frameNumber)
{
    // The counter restarts at 0 when a configuration is applied; count
    // every advance, not the counter itself.
    if (frameNumber > m_lastFrameNumber && frameNumber > 0)
        m_frames += quint64(frameNumber - qMax(m_lastFrameNumber, 0));
    m_lastFrameNumber = frameNumber;
    // While recording, the recorder's own frame limit ends the session, so
    // the file holds exactly the frames asked for.
    if (m_loop && !m_recording && m_options.frames > 0 && m_frames >= m_options.frames)
        m_loop->quit();
}

void HeadlessSession::onRecordingActiveChanged(bool active)
{
    if (!active && m_recording) {
        m_recording = false;
        if (m_loop)
            m_loop->quit();
    }
}

void HeadlessSession::onChartsDataUpdated()
{
    if (m_refreshLoop)
        m_refreshLoop->quit();
}

void HeadlessSession::awaitChartRefresh()
{
    // Charts are refreshed at most once per refresh interval; a short
    // session may end before the first one. While the source still runs,
    // wait for the next refresh so the snapshot shows the newest frame.
    if (m_sourceEnded || !m_failure.isEmpty())
        return;
    if (!connectByName(m_view, "chartsDataUpdated()", this, "onChartsDataUpdated()"))
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
        m_failure = QStringLiteral("no frame arrived for 10 s");
        if (m_loop)
            m_loop->quit();
    }
    m_framesAtLastCheck = m_frames;
}

void HeadlessSession::onUserMessage(Constants::UserMessageType type, QString message, QString details)
{
    m_out << '[' << typeName(type) << "] " << message;
    if (!details.isEmpty())
        m_out << " (" << details << ')';
    m_out << Qt::endl;
    if (type == Constants::Error && m_failure.isEmpty()) {
        m_failure = message;
        if (m_loop)
            m_loop->quit();
    }
}

QString HeadlessSession::connectBoard()
{
    const QString error = awaitBoards(m_host);
    if (!error.isEmpty())
        return error;
    const auto devices = m_host.deviceRegister().devices();
    if (devices.isEmpty())
        return QStringLiteral("no board is attached");
    m_device = m_options.device.isEmpty() ? devices.first() : m_host.deviceRegister().device(m_options.device);
    if (!m_device)
        return QStringLiteral("no board is named \"%1\"").arg(m_options.device);

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

QString HeadlessSession::startRecording()
{
    if (m_options.record.isEmpty())
        return {};
    const QFileInfo base(m_options.record);
    if (!QDir().mkpath(base.absolutePath()))
        return QStringLiteral("cannot create the directory %1").arg(base.absolutePath());
    RecordingUserSettings* recording = m_host.coreConfiguration().coreUserSettings()->recordingUserSettings();
    recording->setRecordingPath(base.absolutePath());
    recording->setFileName(base.fileName());
    recording->setTxtFile(m_options.txt);
    if (m_options.frames > 0) {
        recording->setTimeLimitOnRecording(false);
        recording->setNumOfFrames(m_options.frames);
    } else {
        const double seconds = m_options.seconds > 0 ? m_options.seconds : 5.0;
        const auto whole = quint32(seconds);
        recording->setTimeLimitOnRecording(true);
        recording->setDuration(whole / 3600, (whole / 60) % 60, whole % 60, quint32((seconds - whole) * 1000 + 0.5));
    }
    if (!connectByName(m_view, "isRecordingActiveChanged(bool)", this, "onRecordingActiveChanged(bool)"))
        return QStringLiteral("the module's view lacks the recording signal");
    QMetaObject::invokeMethod(m_view, "startRecording", Qt::DirectConnection);
    m_recording = m_view->property("isRecordingActive").toBool();
    if (!m_recording)
        return m_failure.isEmpty() ? QStringLiteral("recording to %1 did not start").arg(m_options.record) : m_failure;
    m_out << "Recording to " << base.absoluteFilePath() << ".raw.bin" << Qt::endl;
    return {};
}

QString HeadlessSession::startPlayback()
{
    const auto playbacks = m_host.playbackRegister().playbacks();
    if (playbacks.isEmpty())
        return QStringLiteral("the module offers no playback");
    m_playback = playbacks.first();
    connect(m_playback.get(), &IPlayback::isActiveChanged, this, [this](bool active) {
        if (!active && m_loop) {
            m_sourceEnded = true;
            m_loop->quit();
        }
    });
    if (!m_playback->open(QFileInfo(m_options.play).absoluteFilePath()))
        return m_failure.isEmpty() ? QStringLiteral("%1 cannot be played").arg(m_options.play) : m_failure;
    m_out << "Playing " << m_options.play << " (" << m_playback->totalFramesNumber() << " frames)" << Qt::endl;
    m_playback->play();
    return {};
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
    // Frames that arrived while the board was being set up do not count.
    m_frames = 0;
    const double seconds = m_options.frames == 0 ? (m_options.seconds > 0 ? m_options.seconds : 5.0) : 0.0;
    QEventLoop loop;
    m_loop = &loop;
    QTimer progress;
    connect(&progress, &QTimer::timeout, this, &HeadlessSession::printProgress);
    progress.start(1000);
    QTimer end;
    end.setSingleShot(true);
    connect(&end, &QTimer::timeout, &loop, &QEventLoop::quit);
    // A recording is ended by the recorder at its limit; the timer only
    // ends sessions that do not record.
    if (seconds > 0 && !m_recording)
        end.start(int(seconds * 1000));
    QTimer watchdog;
    connect(&watchdog, &QTimer::timeout, this, &HeadlessSession::checkStalled);
    watchdog.start(10000);
    m_clock.start();
    if (m_failure.isEmpty() && !m_sourceEnded)
        loop.exec();
    m_loop = nullptr;
}

void HeadlessSession::finishRecording()
{
    if (m_options.record.isEmpty())
        return;
    // The recorder stops by itself at its frame limit; a session that ended
    // early stops it here, which writes what is buffered.
    QMetaObject::invokeMethod(m_view, "stopRecording", Qt::DirectConnection);
}

int HeadlessSession::run()
{
    QString error = prepareView();
    if (error.isEmpty())
        error = m_options.play.isEmpty() ? connectBoard() : QString();
    if (error.isEmpty() && m_options.play.isEmpty())
        error = applyConfiguration();
    if (error.isEmpty())
        error = startRecording();
    if (error.isEmpty() && !m_options.play.isEmpty())
        error = startPlayback();
    if (!error.isEmpty())
        return fail(error);

    acquire();
    finishRecording();

    QStringList saved;
    if (!m_options.snapshot.isEmpty()) {
        awaitChartRefresh();
        QString snapshotError;
        saved = writeChartSnapshot(m_view, m_options.snapshot, snapshotError);
        if (!snapshotError.isEmpty())
            m_err << snapshotError << Qt::endl;
    }

    const quint32 overflows = m_view->property("fifoOverflowCounter").toUInt();
    if (m_device)
        m_device->disconnectDevice();
    if (m_playback)
        m_playback->close();

    const double elapsed = m_clock.elapsed() / 1000.0;
    m_out << "Summary: " << m_frames << " frames in " << QString::number(elapsed, 'f', 1) << " s ("
          << QString::number(elapsed > 0 ? m_frames / elapsed : 0.0, 'f', 1) << " fps), " << overflows
          << " fifo overflows" << Qt::endl;
    if (!m_options.record.isEmpty())
        m_out << "Recording: " << QFileInfo(m_options.record).absoluteFilePath() << ".raw.bin" << Qt::endl;
    for (const QString& file : qAsConst(saved))
        m_out << "Snapshot: " << file << Qt::endl;

    if (!m_failure.isEmpty())
        return fail(m_failure);
    if (m_frames == 0)
        return fail(QStringLiteral("no frame arrived"));
    return Success;
}
