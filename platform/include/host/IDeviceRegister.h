#pragma once

#include "host/IDevice.h"

// Where modules announce the devices they detect.
class IDeviceRegister : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~IDeviceRegister() override = default;

public slots:
    virtual void registerDevice(std::shared_ptr<IDevice> device) = 0;
    virtual void unregisterDevice(QString name) = 0;
};
