#pragma once

#include <QAtomicInt>
#include <QObject>
#include <QThread>
#include <memory>

#include "host/IDevice.h"
#include "sdk/vrn.h"

class IBroker;
class IRadarCoordinator;
class RadarDeviceDetectionWorker;

// Finds radar boards on a detection thread whenever the host reports a
// device change or the coordinator asks for a rescan, and announces a proxy
// per new board. Bursts of requests coalesce into at most one rescan after
// the running one.
class RadarDeviceMonitor : public QObject
{
    Q_OBJECT
public:
    enum DetectionState { Idle = 0, DetectionRunning = 1, DetectionPending = 2 };

    RadarDeviceMonitor(IBroker* broker, IRadarCoordinator* coordinator, QObject* parent = nullptr);
    ~RadarDeviceMonitor() override;

    DetectionState detectionState() const { return DetectionState(m_state.loadAcquire()); }

signals:
    void deviceAdded(std::shared_ptr<IDevice> device);
    void deviceRemoved(QString name);
    void detectDeviceRequest();

public slots:
    void detectDevices();
    void onNewDeviceDetected(QString name, QString uuid, vrn_Device_Shield_Type_t type);
    void onDetectionFinished();

private:
    IBroker* m_broker;
    IRadarCoordinator* m_coordinator;
    // Shared with the worker, which reads it on the detection thread.
    QAtomicInt m_state { Idle };
    QThread m_thread;
};
