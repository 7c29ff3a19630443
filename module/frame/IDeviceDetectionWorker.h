#pragma once

#include <QObject>
#include <QString>

#include "sdk/vrn.h"

// Scans the attached boards on the detection thread.
class IDeviceDetectionWorker : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~IDeviceDetectionWorker() override = default;

signals:
    void deviceAdded(QString name, QString uuid, vrn_Device_Shield_Type_t type);
    void deviceRemoved(QString name);
    void detectionFinished();

public slots:
    virtual void detectDevices() = 0;
};
