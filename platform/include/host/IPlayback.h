#pragma once

#include <QMetaType>
#include <QObject>
#include <QString>
#include <memory>

// A source that replays a recording in place of a live device.
class IPlayback : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~IPlayback() override = default;

    virtual QString name() const = 0;
    // Whether this playback can play the recording at basePath (without
    // extensions): the host offers a recording to the playback that accepts
    // it. Tells the user nothing; open() says why a recording is refused.
    virtual bool accepts(const QString& basePath) const = 0;
    // Opens the recording at basePath (without extensions); false with a
    // user message when it cannot be played.
    virtual bool open(const QString& basePath) = 0;
    virtual void close() = 0;
    virtual bool isActive() const = 0;
    virtual bool isPaused() const = 0;
    virtual void play() = 0;
    virtual void pause() = 0;
    virtual void resume() = 0;
    virtual void stepFrame() = 0;
    virtual quint32 totalFramesNumber() const = 0;

signals:
    void isActiveChanged(bool active);
    void isPausedChanged(bool paused);
};

Q_DECLARE_METATYPE(std::shared_ptr<IPlayback>)
