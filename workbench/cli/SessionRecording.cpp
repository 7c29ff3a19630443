#include "SessionRecording.h"

#include "ConsoleProgress.h"
#include "RecordingCheck.h"
#include "ViewConnection.h"

#include "host/RecordingUserSettings.h"
#include "recording/RecordingFiles.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>
#include <QTimer>

namespace {
// A conversion reports progress at least once per percent of the file; this
// long without any means it is stuck, and the session must not wait forever.
constexpr int kTextCopyStallMs = 30000;
} // namespace

SessionRecording::SessionRecording(QObject* view, RecordingUserSettings& settings, Options options, QTextStream& out)
    : m_view(view)
    , m_settings(settings)
    , m_options(std::move(options))
    , m_out(out)
{
    m_textCopyStall.setSingleShot(true);
    m_textCopyStall.setInterval(kTextCopyStallMs);
    connect(&m_textCopyStall, &QTimer::timeout, this, [this] {
        m_textCopyStalled = true;
        if (m_textCopyLoop)
            m_textCopyLoop->quit();
    });
}

SessionRecording::~SessionRecording() = default;

QString SessionRecording::binPath() const
{
    return RecordingFiles::binPath(m_options.base);
}

QString SessionRecording::txtPath() const
{
    return RecordingFiles::txtPath(m_options.base);
}

QString SessionRecording::removeEarlierRecording()
{
    const QStringList existing = RecordingFiles::existingSiblings(m_options.base);
    if (existing.isEmpty() || !m_options.overwrite)
        return {};
    for (const QString& path : existing) {
        QFile file(path);
        if (!file.remove())
            return QStringLiteral("cannot remove %1 to overwrite it: %2").arg(path, file.errorString());
    }
    m_out << "Overwriting: removed " << existing.join(QStringLiteral(", ")) << Qt::endl;
    return {};
}

QString SessionRecording::start(quint32 frames, quint64 milliseconds)
{
    const QFileInfo base(m_options.base);
    if (!QDir().mkpath(base.absolutePath()))
        return QStringLiteral("cannot create the directory %1").arg(base.absolutePath());
    const QString removeError = removeEarlierRecording();
    if (!removeError.isEmpty())
        return removeError;

    m_settings.setRecordingPath(base.absolutePath());
    m_settings.setFileName(base.fileName());
    m_settings.setTxtFile(m_options.txt);
    if (frames > 0) {
        m_settings.setTimeLimitOnRecording(false);
        m_settings.setNumOfFrames(frames);
    } else {
        const quint64 wholeSeconds = milliseconds / 1000;
        m_settings.setTimeLimitOnRecording(true);
        m_settings.setDuration(quint32(wholeSeconds / 3600), quint32(wholeSeconds / 60 % 60),
                               quint32(wholeSeconds % 60), quint32(milliseconds % 1000));
    }
    if (!connectByName(m_view, "isRecordingActiveChanged(bool)", this, "onRecordingActiveChanged(bool)")
        || !connectByName(m_view, "isParsingActiveChanged()", this, "onParsingActiveChanged()")
        || !connectByName(m_view, "convertingToTxt(int)", this, "onConvertingToTxt(int)"))
        return QStringLiteral("the module's view lacks the recording signals");

    const QStringList existing = RecordingFiles::existingSiblings(m_options.base);
    QMetaObject::invokeMethod(m_view, "startRecording", Qt::DirectConnection);
    m_active = m_view->property("isRecordingActive").toBool();
    if (!m_active) {
        m_refusedForEarlierRecording = !existing.isEmpty();
        if (m_refusedForEarlierRecording)
            return QStringLiteral("recording files already exist: %1 (give --overwrite to replace them)")
                .arg(existing.join(QStringLiteral(", ")));
        return QStringLiteral("recording to %1 did not start").arg(binPath());
    }
    m_out << "Recording to " << binPath() << Qt::endl;
    return {};
}

void SessionRecording::stop()
{
    if (m_active)
        QMetaObject::invokeMethod(m_view, "stopRecording", Qt::DirectConnection);
}

void SessionRecording::onRecordingActiveChanged(bool active)
{
    if (active || !m_active)
        return;
    m_active = false;
    emit ended();
}

void SessionRecording::onParsingActiveChanged()
{
    if (m_textCopyLoop && !m_view->property("isParsingActive").toBool())
        m_textCopyLoop->quit();
}

void SessionRecording::onConvertingToTxt(int progress)
{
    if (progress == m_lastProgress)
        return;
    if (!m_progressDrawn)
        m_out << "Text copy " << txtPath() << Qt::endl;
    m_lastProgress = progress;
    m_progressDrawn = true;
    if (m_textCopyLoop)
        m_textCopyStall.start();
    drawProgress(m_out, progress);
}

void SessionRecording::endProgressLine()
{
    if (m_progressDrawn && m_lastProgress >= 0) {
        m_out << Qt::endl;
        m_lastProgress = -1;
    }
}

void SessionRecording::abandonTextCopy()
{
    if (!m_textCopyLoop)
        return;
    endProgressLine();
    m_out << "Stopping the text copy" << Qt::endl;
    QMetaObject::invokeMethod(m_view, "stopParsing", Qt::DirectConnection);
}

QString SessionRecording::waitForTextCopy()
{
    // The module converts after the binary file is closed, on a thread of
    // its own; the process must not end before it has.
    if (!m_view->property("isParsingActive").toBool())
        return {};
    QEventLoop loop;
    m_textCopyLoop = &loop;
    m_textCopyStalled = false;
    m_textCopyStall.start();
    loop.exec();
    m_textCopyStall.stop();
    m_textCopyLoop = nullptr;
    endProgressLine();
    if (m_textCopyStalled)
        return QStringLiteral("the text copy %1 made no progress for %2 s").arg(txtPath()).arg(kTextCopyStallMs / 1000);
    return {};
}

QString SessionRecording::finish()
{
    QString error = m_options.txt ? waitForTextCopy() : QString();
    const RecordingCheck::BinaryFrames frames = RecordingCheck::binaryFrames(binPath());
    m_recordedFrames = frames.wholeFrames;
    if (!error.isEmpty())
        return error;
    if (!frames.error.isEmpty())
        return frames.error;
    if (frames.tornBytes != 0)
        return QStringLiteral("%1 ends with %2 bytes of an incomplete frame").arg(binPath()).arg(frames.tornBytes);
    if (m_options.txt)
        return RecordingCheck::checkTextCopy(binPath(), txtPath());
    return {};
}
