#pragma once

#include <QObject>

// Something that runs on a thread of its own between start() and stop().
class IWorker : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~IWorker() override = default;

    virtual bool isRunning() const = 0;
    virtual void start() = 0;
    virtual void stop() = 0;
};
