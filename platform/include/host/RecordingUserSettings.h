#pragma once

#include <QObject>
#include <QString>

// The host's recording settings: where recordings go and how long they last.
// A recording is limited either by a frame count ("numOfFrames") or, with
// "timeLimitOnRecording", by a duration that becomes a frame count once the
// frame repetition time is known.
class RecordingUserSettings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString recordingPath READ recordingPath WRITE setRecordingPath NOTIFY changed)
    Q_PROPERTY(QString fileName READ fileName WRITE setFileName NOTIFY changed)
    Q_PROPERTY(quint32 numOfFrames READ numOfFrames WRITE setNumOfFrames NOTIFY changed)
    Q_PROPERTY(bool timeLimitOnRecording READ timeLimitOnRecording WRITE setTimeLimitOnRecording NOTIFY changed)
    Q_PROPERTY(bool txtFile READ txtFile WRITE setTxtFile NOTIFY changed)
public:
    explicit RecordingUserSettings(QObject* parent = nullptr);

    QString recordingPath() const { return m_recordingPath; }
    void setRecordingPath(const QString& path);
    // Base name of the files, without extension.
    QString fileName() const { return m_fileName; }
    void setFileName(const QString& name);
    // recordingPath/fileName.
    QString basePath() const;

    quint32 numOfFrames() const { return m_numOfFrames; }
    void setNumOfFrames(quint32 frames);

    bool timeLimitOnRecording() const { return m_timeLimit; }
    void setTimeLimitOnRecording(bool enabled);
    quint32 hours() const { return m_hours; }
    quint32 minutes() const { return m_minutes; }
    quint32 seconds() const { return m_seconds; }
    quint32 milliseconds() const { return m_milliseconds; }
    void setDuration(quint32 hours, quint32 minutes, quint32 seconds, quint32 milliseconds);

    bool txtFile() const { return m_txtFile; }
    void setTxtFile(bool enabled);

    float frameRepetitionTimeS() const { return m_frameRepetitionTimeS; }
    void updateFrameRepetitionTimeS(float seconds);

signals:
    void changed();

private:
    QString m_recordingPath;
    QString m_fileName = QStringLiteral("recording");
    quint32 m_numOfFrames = 100;
    bool m_timeLimit = false;
    quint32 m_hours = 0;
    quint32 m_minutes = 0;
    quint32 m_seconds = 10;
    quint32 m_milliseconds = 0;
    bool m_txtFile = false;
    float m_frameRepetitionTimeS = 0.0f;
};
