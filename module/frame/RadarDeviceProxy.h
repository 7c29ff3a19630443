#pragma once

#include "host/IDevice.h"

#include "sdk/vrn.h"

class IRadarCoordinator;

// What the host lists for one detected board; connecting it hands the
// board's identity to the coordinator, which picks the mode.
class RadarDeviceProxy : public IDevice
{
    Q_OBJECT
    // Read by hosts that show more than the name.
    Q_PROPERTY(QString uuid READ uuid CONSTANT)
    Q_PROPERTY(int shieldType READ shieldTypeNumber CONSTANT)
public:
    RadarDeviceProxy(IRadarCoordinator* coordinator, QString name, QString uuid, vrn_Device_Shield_Type_t type);

    QString name() const override { return m_name; }
    bool connectDevice() override;
    void disconnectDevice() override;
    void startAcquisition() override;
    void stopAcquisition() override;
    bool isAcquisitionActive() const override;
    bool isAvailable() const override { return true; }

    QString uuid() const { return m_uuid; }
    vrn_Device_Shield_Type_t shieldType() const { return m_type; }
    int shieldTypeNumber() const { return int(m_type); }

private:
    IRadarCoordinator* m_coordinator;
    QString m_name;
    QString m_uuid;
    vrn_Device_Shield_Type_t m_type;
};
