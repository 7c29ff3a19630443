#include "recording/ReplayPlayback.h"

#include "recording/RecordingFiles.h"

#include <QDebug>
#include <QFile>

namespace {
const QString kCannotLoadConfiguration = QStringLiteral("Cannot load configuration file for playback");
const QString kNotSupported = QStringLiteral("This file for playback is not supported");
const QString kCannotRead = QStringLiteral("Cannot read data from file!");
} // namespace

ReplayPlayback::ReplayPlayback(QObject* parent)
    : IPlayback(parent)
{
}

ReplayPlayback::~ReplayPlayback() = default;

bool ReplayPlayback::accepts(const QString& basePath) const
{
    return RecordingLayout::kindOfRecording(basePath) == kind();
}

bool ReplayPlayback::refuse(const QString& message, const QString& details)
{
    emit enqueueUserMessage(message, details);
    return false;
}

bool ReplayPlayback::open(const QString& basePath)
{
    close();
    const QString jsonPath = RecordingFiles::jsonPath(basePath);
    const QString binPath = RecordingFiles::binPath(basePath);

    QFile json(jsonPath);
    if (!json.open(QIODevice::ReadOnly)) {
        qWarning() << "Cannot open" << jsonPath;
        return refuse(kCannotLoadConfiguration, jsonPath);
    }
    const QByteArray document = json.readAll();

    QString message;
    QString details;
    if (!m_replay.open(binPath, message, details))
        return refuse(message, details);
    const RadarRecordingHeader recorded = m_replay.header();
    const RecordingLayout::Kind found = RecordingLayout::kindOf(recorded);
    if (found != kind()) {
        qWarning() << name() << "cannot play" << binPath << ":" << RecordingLayout::describe(recorded);
        m_replay.close();
        return refuse(kNotSupported, RecordingLayout::refusal(binPath, found, name()));
    }
    const quint32 perChannel = floatsPerChannel(recorded);
    if (perChannel == 0 || recorded.samplesPerFrame % perChannel != 0) {
        m_replay.close();
        return refuse(kNotSupported, QStringLiteral("%1: %2 floats per frame are no whole number of channels of %3")
                                         .arg(binPath)
                                         .arg(recorded.samplesPerFrame)
                                         .arg(perChannel));
    }

    if (m_beforeOpen)
        m_beforeOpen();
    QString error;
    if (!loadConfiguration(document, error)) {
        m_replay.close();
        return refuse(kCannotLoadConfiguration, error);
    }

    m_channels = recorded.samplesPerFrame / perChannel;
    m_totalFrames = m_replay.totalFrames();
    emit totalFramesNumberChanged(m_totalFrames);
    m_row.samples.assign(recorded.samplesPerFrame, 0.0f);
    attach();
    qInfo() << name() << "plays" << binPath << ":" << m_totalFrames << "frames of" << m_channels << "channel(s), every"
            << recorded.framePeriodSec << "s";
    return true;
}

void ReplayPlayback::play()
{
    if (!m_replay.isOpen() || m_active)
        return;
    m_replay.start();
    m_active = true;
    emit isActiveChanged(true);
}

void ReplayPlayback::close()
{
    m_replay.requestStop();
    if (m_active) {
        m_active = false;
        // The mode's coordinator stops its acquisition worker here, before
        // the file goes away under it.
        emit isActiveChanged(false);
    }
    m_replay.close();
}

bool ReplayPlayback::isPaused() const
{
    return m_replay.isPaused();
}

void ReplayPlayback::setPaused(bool paused)
{
    if (m_replay.setPaused(paused))
        emit isPausedChanged(paused);
}

void ReplayPlayback::pause()
{
    setPaused(true);
}

void ReplayPlayback::resume()
{
    setPaused(false);
}

void ReplayPlayback::stepFrame()
{
    if (!isPaused())
        pause();
    m_replay.step();
}

bool ReplayPlayback::nextRecord()
{
    switch (m_replay.next(m_row)) {
    case RecordingReplay::Fetch::Frame:
        return true;
    case RecordingReplay::Fetch::ReadFailed:
        emit enqueueUserMessage(kCannotRead, QString());
        emit finished();
        break;
    case RecordingReplay::Fetch::End:
        emit finished();
        break;
    case RecordingReplay::Fetch::Stopped:
        break;
    }
    return false;
}
