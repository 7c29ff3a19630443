#pragma once

#include "host/IPlayback.h"

// Where modules announce their playback sources.
class IPlaybackRegister : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~IPlaybackRegister() override = default;

public slots:
    virtual void registerPlayback(std::shared_ptr<IPlayback> playback) = 0;
    virtual void unregisterPlayback(QString name) = 0;
};
