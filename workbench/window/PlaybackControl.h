#pragma once

#include <QObject>
#include <QString>
#include <memory>

class IPlayback;
class MessageLog;

// Plays a recording through the module's playback source in place of a
// board: open, play, pause, step one frame, stop, and where it stands
// (frames handed out of the recording's total). What goes wrong is said in
// the messages; the module's own reasons arrive there through its view.
class PlaybackControl : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool available READ available CONSTANT)
    Q_PROPERTY(QString file READ file NOTIFY stateChanged)
    Q_PROPERTY(bool opened READ opened NOTIFY stateChanged)
    Q_PROPERTY(bool playing READ playing NOTIFY stateChanged)
    Q_PROPERTY(bool paused READ paused NOTIFY stateChanged)
    Q_PROPERTY(bool ended READ ended NOTIFY stateChanged)
    Q_PROPERTY(quint32 position READ position NOTIFY positionChanged)
    Q_PROPERTY(quint32 total READ total NOTIFY stateChanged)
public:
    PlaybackControl(std::shared_ptr<IPlayback> playback, QObject* view, MessageLog& messages,
                    QObject* parent = nullptr);
    ~PlaybackControl() override;

    bool available() const { return bool(m_playback); }
    QString file() const { return m_base; }
    bool opened() const { return !m_base.isEmpty(); }
    bool playing() const;
    bool paused() const;
    bool ended() const { return m_ended; }
    quint32 position() const { return m_position; }
    quint32 total() const;

    // Takes the recording's base or any of its files (a file URL too).
    Q_INVOKABLE bool open(const QString& path);
    Q_INVOKABLE void play();
    Q_INVOKABLE void pause();
    Q_INVOKABLE void step();
    Q_INVOKABLE void stop();

signals:
    void stateChanged();
    void positionChanged();
    // A recording was opened: the status counts start again.
    void started();

public slots:
    void onFrameNumberChanged(int frameNumber);
    void onFinished();

private:
    bool reopen();
    void setPosition(quint32 position);

    std::shared_ptr<IPlayback> m_playback;
    QObject* m_view;
    MessageLog& m_messages;
    QString m_base;
    quint32 m_position = 0;
    bool m_ended = false;
};
