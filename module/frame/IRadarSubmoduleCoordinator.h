#pragma once

#include "frame/IRadarEventHandler.h"

#include <QList>
#include <QPair>
#include <QString>

#include "sdk/vrn.h"

// The coordinator of one operating mode: connects a board of a type it
// serves and runs its acquisition.
class IRadarSubmoduleCoordinator : public IRadarEventHandler
{
    Q_OBJECT
public:
    using Mode = QPair<vrn_Device_Shield_Type_t, QString>;

    using IRadarEventHandler::IRadarEventHandler;
    ~IRadarSubmoduleCoordinator() override = default;

    virtual QString deviceUuid() const = 0;
    virtual vrn_Device_Shield_Type_t deviceType() const = 0;
    virtual bool isConnected() const = 0;
    virtual bool connectDevice(const QString& uuid, vrn_Device_Shield_Type_t type) = 0;
    virtual void disconnectDevice() = 0;
    virtual void startAcquisition() = 0;
    virtual void stopAcquisition() = 0;
    virtual bool isAcquisitionActive() const = 0;
    // (shield type, user mode) pairs this coordinator serves.
    virtual QList<Mode> supportedModes() const = 0;

signals:
    void isConnectedChanged(bool connected);
    void isAcquisitionActiveChanged(bool active);
};
