#include "host/RecordingUserSettings.h"

#include <QDir>

RecordingUserSettings::RecordingUserSettings(QObject* parent)
    : QObject(parent)
    , m_recordingPath(QDir::currentPath())
{
}

void RecordingUserSettings::setRecordingPath(const QString& path)
{
    if (path == m_recordingPath)
        return;
    m_recordingPath = path;
    emit changed();
}

void RecordingUserSettings::setFileName(const QString& name)
{
    if (name == m_fileName)
        return;
    m_fileName = name;
    emit changed();
}

QString RecordingUserSettings::basePath() const
{
    return QDir(m_recordingPath).filePath(m_fileName);
}

void RecordingUserSettings::setNumOfFrames(quint32 frames)
{
    if (frames == m_numOfFrames)
        return;
    m_numOfFrames = frames;
    emit changed();
}

void RecordingUserSettings::setTimeLimitOnRecording(bool enabled)
{
    if (enabled == m_timeLimit)
        return;
    m_timeLimit = enabled;
    emit changed();
}

void RecordingUserSettings::setDuration(quint32 hours, quint32 minutes, quint32 seconds, quint32 milliseconds)
{
    if (hours == m_hours && minutes == m_minutes && seconds == m_seconds && milliseconds == m_milliseconds)
        return;
    m_hours = hours;
    m_minutes = minutes;
    m_seconds = seconds;
    m_milliseconds = milliseconds;
    emit changed();
}

void RecordingUserSettings::setTxtFile(bool enabled)
{
    if (enabled == m_txtFile)
        return;
    m_txtFile = enabled;
    emit changed();
}

void RecordingUserSettings::updateFrameRepetitionTimeS(float seconds)
{
    if (seconds == m_frameRepetitionTimeS)
        return;
    m_frameRepetitionTimeS = seconds;
    emit changed();
}
