#include "PlaybackControl.h"

#include "MessageLog.h"
#include "ViewConnection.h"

#include "host/IPlayback.h"
#include "recording/RecordingFiles.h"

#include <QDebug>
#include <QFileInfo>
#include <QUrl>

PlaybackControl::PlaybackControl(QList<std::shared_ptr<IPlayback>> playbacks, ViewOf viewOf, MessageLog& messages,
                                 QObject* parent)
    : QObject(parent)
    , m_playbacks(std::move(playbacks))
    , m_viewOf(std::move(viewOf))
    , m_messages(messages)
{
    QList<QObject*> views;
    for (const auto& playback : qAsConst(m_playbacks)) {
        connect(playback.get(), &IPlayback::isActiveChanged, this, &PlaybackControl::stateChanged);
        connect(playback.get(), &IPlayback::isPausedChanged, this, &PlaybackControl::stateChanged);
        QObject* view = m_viewOf ? m_viewOf(*playback) : nullptr;
        if (!view || views.contains(view))
            continue;
        views.append(view);
        connectByName(view, "frameNumberChanged(int)", this, "onFrameNumberChanged(int)");
        connectByName(view, "finished()", this, "onFinished()");
        connectByName(view, "totalFramesNumberChanged()", this, "stateChanged()");
    }
}

PlaybackControl::~PlaybackControl() = default;

QString PlaybackControl::playbackName() const
{
    return opened() && m_playback ? m_playback->name() : QString();
}

std::shared_ptr<IPlayback> PlaybackControl::playbackFor(const QString& base) const
{
    for (const auto& playback : m_playbacks) {
        if (playback->accepts(base))
            return playback;
    }
    // None takes it: the first is asked anyway, so that its message says
    // what is wrong with the file.
    return m_playbacks.value(0);
}

bool PlaybackControl::fromCurrentView() const
{
    return m_view && sender() == m_view;
}

bool PlaybackControl::playing() const
{
    return m_playback && m_playback->isActive();
}

bool PlaybackControl::paused() const
{
    return m_playback && m_playback->isPaused();
}

quint32 PlaybackControl::total() const
{
    return m_playback && opened() ? m_playback->totalFramesNumber() : 0;
}

bool PlaybackControl::open(const QString& path)
{
    if (m_playbacks.isEmpty()) {
        m_messages.add(Constants::Error, QStringLiteral("The module offers no playback"));
        return false;
    }
    const QUrl url(path);
    const QString local = url.isLocalFile() ? url.toLocalFile() : path.trimmed();
    if (local.isEmpty())
        return false;
    const QString base = QFileInfo(RecordingFiles::baseOf(local)).absoluteFilePath();
    for (const QString& file : { RecordingFiles::binPath(base), RecordingFiles::jsonPath(base) }) {
        if (!QFileInfo::exists(file)) {
            m_messages.add(Constants::Error, QStringLiteral("%1 is not a recording").arg(local),
                           QStringLiteral("A recording is a pair of files, BASE.raw.bin and BASE.json; "
                                          "no such file: %1")
                               .arg(file));
            return false;
        }
    }
    stop();
    m_playback = playbackFor(base);
    m_view = m_viewOf ? m_viewOf(*m_playback) : nullptr;
    qInfo().noquote() << "Playing" << base << "through the" << m_playback->name() << "playback";
    const int before = m_messages.count();
    if (!m_playback->open(base)) {
        // The module has said why; say at least which file it was.
        if (m_messages.count() == before)
            m_messages.add(Constants::Error, QStringLiteral("%1 cannot be played").arg(base));
        emit stateChanged();
        return false;
    }
    m_base = base;
    m_ended = false;
    setPosition(0);
    emit started();
    emit stateChanged();
    if (m_playback->totalFramesNumber() == 0)
        m_messages.add(Constants::Warning, QStringLiteral("The recording %1 holds no whole frame").arg(base));
    return true;
}

bool PlaybackControl::reopen()
{
    const QString base = m_base;
    return !base.isEmpty() && open(base);
}

void PlaybackControl::play()
{
    if (!opened())
        return;
    // Played to its end: from the start again.
    if (m_ended && !reopen())
        return;
    if (m_playback->isActive())
        m_playback->resume();
    else
        m_playback->play();
}

void PlaybackControl::pause()
{
    if (m_playback && m_playback->isActive())
        m_playback->pause();
}

void PlaybackControl::step()
{
    if (!opened() || (m_ended && !reopen()))
        return;
    if (!m_playback->isActive()) {
        // Paused before it starts, so that the start hands out no frame of
        // its own: the step is the only one.
        m_playback->pause();
        m_playback->play();
    }
    m_playback->stepFrame();
}

void PlaybackControl::stop()
{
    if (!m_playback || !opened())
        return;
    m_playback->close();
    m_base.clear();
    m_ended = false;
    setPosition(0);
    emit stateChanged();
}

void PlaybackControl::onFrameNumberChanged(int frameNumber)
{
    // The pipeline numbers the frames of the opened recording from 1.
    if (playing() && fromCurrentView())
        setPosition(quint32(qMax(frameNumber, 0)));
}

void PlaybackControl::onFinished()
{
    if (!opened() || !fromCurrentView())
        return;
    m_ended = true;
    emit stateChanged();
}

void PlaybackControl::setPosition(quint32 position)
{
    if (position == m_position)
        return;
    m_position = position;
    emit positionChanged();
}
