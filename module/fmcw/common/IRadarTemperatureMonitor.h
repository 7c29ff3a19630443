#pragma once

#include <QObject>

// Refreshes the device temperature shown by the pages at a fixed interval.
class IRadarTemperatureMonitor : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~IRadarTemperatureMonitor() override = default;

    virtual void setInterval(int milliseconds) = 0;
    virtual void start() = 0;
    virtual void stop() = 0;

public slots:
    virtual void update() = 0;
};
