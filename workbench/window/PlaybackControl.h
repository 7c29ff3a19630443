#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <functional>
#include <memory>

class IPlayback;
class MessageLog;

// Plays a recording through the module's playback sources in place of a
// board: open, play, pause, step one frame, stop, and where it stands
// (frames handed out of the recording's total). Each mode plays only its
// own recordings; the first playback that accepts the chosen one plays it,
// and its mode's view tells the frames. What goes wrong is said in the
// messages; the module's own reasons arrive there through its view.
class PlaybackControl : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool available READ available CONSTANT)
    Q_PROPERTY(QString file READ file NOTIFY stateChanged)
    // The name of the playback that plays the opened recording ("Radar",
    // "ZP7"); empty when none is open.
    Q_PROPERTY(QString playbackName READ playbackName NOTIFY stateChanged)
    Q_PROPERTY(bool opened READ opened NOTIFY stateChanged)
    Q_PROPERTY(bool playing READ playing NOTIFY stateChanged)
    Q_PROPERTY(bool paused READ paused NOTIFY stateChanged)
    Q_PROPERTY(bool ended READ ended NOTIFY stateChanged)
    Q_PROPERTY(quint32 position READ position NOTIFY positionChanged)
    Q_PROPERTY(quint32 total READ total NOTIFY stateChanged)
public:
    // The view (null: none) that tells the frames a playback hands out.
    using ViewOf = std::function<QObject*(const IPlayback& playback)>;

    PlaybackControl(QList<std::shared_ptr<IPlayback>> playbacks, ViewOf viewOf, MessageLog& messages,
                    QObject* parent = nullptr);
    ~PlaybackControl() override;

    bool available() const { return !m_playbacks.isEmpty(); }
    QString file() const { return m_base; }
    QString playbackName() const;
    // The view of the opened recording's mode; null when none is open.
    QObject* view() const { return opened() ? m_view : nullptr; }
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
    // The playback that takes the recording at `base`.
    std::shared_ptr<IPlayback> playbackFor(const QString& base) const;
    // Whether the signal being handled comes from the opened recording's
    // view (every mode's view is listened to).
    bool fromCurrentView() const;

    QList<std::shared_ptr<IPlayback>> m_playbacks;
    ViewOf m_viewOf;
    std::shared_ptr<IPlayback> m_playback;
    QObject* m_view = nullptr;
    MessageLog& m_messages;
    QString m_base;
    quint32 m_position = 0;
    bool m_ended = false;
};
