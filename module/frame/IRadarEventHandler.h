#pragma once

#include "frame/RadarEventCode.h"

#include <QObject>
#include <QString>

// Receives the events of a mode's objects and turns them into user messages.
class IRadarEventHandler : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~IRadarEventHandler() override = default;

public slots:
    virtual void onRadarEvent(RadarEventCode code, QString message, QString details) = 0;
};
