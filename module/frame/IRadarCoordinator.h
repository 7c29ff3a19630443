#pragma once

#include "frame/RadarEventCode.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>

#include "sdk/vrn.h"

class JSONConfigurationObject;

// The one object the user interface talks to: routes a connected board to
// the coordinator of its mode.
class IRadarCoordinator : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~IRadarCoordinator() override = default;

    // The coordinator's settings node ("radar" holding "userMode").
    virtual std::unique_ptr<JSONConfigurationObject> configurationNode() = 0;
    virtual bool connectDevice(const QString& uuid, vrn_Device_Shield_Type_t type) = 0;
    virtual void disconnectDevice() = 0;
    virtual bool isConnected() const = 0;
    // Callable from the detection thread.
    virtual bool isDeviceConnected(const QString& uuid) const = 0;
    virtual void startAcquisition() = 0;
    virtual void stopAcquisition() = 0;
    virtual bool isAcquisitionActive() const = 0;
    virtual QStringList userModes() const = 0;

signals:
    void isConnectedChanged(bool connected);
    void isAcquisitionActiveChanged(bool newState);
    void triggerDetectDevices();
    void triggerEvent(RadarEventCode code, QString message, QString details);

public slots:
    virtual void onSubmoduleCoordinatorIsConnectedChanged(bool isConnected) = 0;
};
