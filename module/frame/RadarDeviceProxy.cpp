#include "frame/RadarDeviceProxy.h"

#include "frame/IRadarCoordinator.h"

RadarDeviceProxy::RadarDeviceProxy(IRadarCoordinator* coordinator, QString name, QString uuid,
                                   vrn_Device_Shield_Type_t type)
    : m_coordinator(coordinator)
    , m_name(std::move(name))
    , m_uuid(std::move(uuid))
    , m_type(type)
{
    // Every proxy relays the one coordinator, so all of them signal whenever
    // any board connects or starts acquiring.
    if (m_coordinator) {
        connect(m_coordinator, &IRadarCoordinator::isConnectedChanged, this, &IDevice::isConnectedChanged);
        connect(m_coordinator, &IRadarCoordinator::isAcquisitionActiveChanged, this,
                &IDevice::isAcquisitionActiveChanged);
    }
}

bool RadarDeviceProxy::connectDevice()
{
    return m_coordinator && m_coordinator->connectDevice(m_uuid, m_type);
}

void RadarDeviceProxy::disconnectDevice()
{
    if (m_coordinator)
        m_coordinator->disconnectDevice();
}

void RadarDeviceProxy::startAcquisition()
{
    if (m_coordinator)
        m_coordinator->startAcquisition();
}

void RadarDeviceProxy::stopAcquisition()
{
    if (m_coordinator)
        m_coordinator->stopAcquisition();
}

bool RadarDeviceProxy::isAcquisitionActive() const
{
    return m_coordinator && m_coordinator->isAcquisitionActive();
}
