#include "frame/RadarDeviceMonitor.h"

#include "frame/RadarDeviceDetectionWorker.h"
#include "frame/RadarDeviceProxy.h"

RadarDeviceMonitor::RadarDeviceMonitor(IBroker* broker, IRadarCoordinator* coordinator, QObject* parent)
    : QObject(parent)
    , m_broker(broker)
    , m_coordinator(coordinator)
{
    qRegisterMetaType<vrn_Device_Shield_Type_t>("vrn_Device_Shield_Type_t");
    qRegisterMetaType<std::shared_ptr<IDevice>>("std::shared_ptr<IDevice>");

    auto* worker = new RadarDeviceDetectionWorker(m_broker, m_coordinator, &m_state);
    worker->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, worker, &QObject::deleteLater);
    connect(this, &RadarDeviceMonitor::detectDeviceRequest, worker, &RadarDeviceDetectionWorker::detectDevices);
    connect(worker, &RadarDeviceDetectionWorker::deviceAdded, this, &RadarDeviceMonitor::onNewDeviceDetected);
    connect(worker, &RadarDeviceDetectionWorker::deviceRemoved, this, &RadarDeviceMonitor::deviceRemoved);
    connect(worker, &RadarDeviceDetectionWorker::detectionFinished, this, &RadarDeviceMonitor::onDetectionFinished);
    m_thread.setObjectName(QStringLiteral("RadarDeviceDetection"));
    m_thread.start(QThread::InheritPriority);
}

RadarDeviceMonitor::~RadarDeviceMonitor()
{
    m_thread.quit();
    if (!m_thread.wait(3000)) {
        m_thread.terminate();
        m_thread.wait();
    }
}

void RadarDeviceMonitor::detectDevices()
{
    if (m_state.testAndSetOrdered(Idle, DetectionRunning)) {
        emit detectDeviceRequest();
        return;
    }
    m_state.testAndSetOrdered(DetectionRunning, DetectionPending);
}

void RadarDeviceMonitor::onDetectionFinished()
{
    if (m_state.fetchAndStoreOrdered(Idle) == DetectionPending)
        detectDevices();
}

void RadarDeviceMonitor::onNewDeviceDetected(QString name, QString uuid, vrn_Device_Shield_Type_t type)
{
    emit deviceAdded(std::make_shared<RadarDeviceProxy>(m_coordinator, name, uuid, type));
}
