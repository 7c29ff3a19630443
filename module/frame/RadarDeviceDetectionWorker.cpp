#include "frame/RadarDeviceDetectionWorker.h"

#include "frame/IRadarCoordinator.h"
#include "frame/RadarDeviceMonitor.h"
#include "host/IBroker.h"

#include <QDebug>

RadarDeviceDetectionWorker::RadarDeviceDetectionWorker(IBroker* broker, IRadarCoordinator* coordinator,
                                                       QAtomicInt* state)
    : m_broker(broker)
    , m_coordinator(coordinator)
    , m_state(state)
{
}

QString RadarDeviceDetectionWorker::displayName(int number)
{
    return number == 1 ? QStringLiteral("Radar") : QStringLiteral("Radar #%1").arg(number);
}

QString RadarDeviceDetectionWorker::nameOf(const QString& uuid)
{
    // Numbers are handed out once and never reused, so a board keeps its name
    // across unplugging and a new board never takes a name seen before.
    auto it = m_nameNumbers.find(uuid);
    if (it == m_nameNumbers.end())
        it = m_nameNumbers.insert(uuid, m_nameNumbers.size() + 1);
    return displayName(it.value());
}

void RadarDeviceDetectionWorker::detectDevices()
{
    // A newer request is already queued behind this one: let it do the scan.
    if (m_state->loadAcquire() == RadarDeviceMonitor::DetectionPending) {
        emit detectionFinished();
        return;
    }

    QMap<QString, vrn_Device_Shield_Type_t> detected;
    const Vrn* sdk = m_broker ? m_broker->sdk() : nullptr;
    if (!sdk) {
        qCritical() << "Getting sdk Radar device list failed" << "no SDK loaded";
    } else {
        vrn_Device_List_Handle list = nullptr;
        if (vrn_Error_t error = sdk->device_list_get(&list)) {
            qCritical() << "Getting sdk Radar device list failed" << error;
        } else {
            detected = readDeviceList(*sdk, list);
            if (vrn_Error_t destroyError = sdk->device_list_destroy(list))
                qCritical() << "SDK Radar device list destroy failed" << destroyError;
        }
    }

    for (auto it = m_knownDevices.begin(); it != m_knownDevices.end();) {
        // An opened board is not listed by the SDK while it is in use.
        if (detected.contains(it.key()) || (m_coordinator && m_coordinator->isDeviceConnected(it.key()))) {
            ++it;
            continue;
        }
        const QString name = nameOf(it.key());
        it = m_knownDevices.erase(it);
        emit deviceRemoved(name);
    }

    for (auto it = detected.cbegin(); it != detected.cend(); ++it) {
        if (m_knownDevices.contains(it.key()))
            continue;
        m_knownDevices.insert(it.key(), it.value());
        emit deviceAdded(nameOf(it.key()), it.key(), it.value());
    }

    emit detectionFinished();
}

QMap<QString, vrn_Device_Shield_Type_t> RadarDeviceDetectionWorker::readDeviceList(const Vrn& sdk,
                                                                                  vrn_Device_List_Handle list) const
{
    uint32_t count = 0;
    if (vrn_Error_t error = sdk.device_list_size(list, &count)) {
        qCritical() << "Getting SDK device list size failed" << error;
        return {};
    }
    QMap<QString, vrn_Device_Shield_Type_t> devices;
    for (uint32_t i = 0; i < count; ++i) {
        vrn_Device_List_Entry_t entry {};
        if (vrn_Error_t error = sdk.device_list_entry(list, i, &entry)) {
            qCritical() << "Getting device from SDK device list failed" << error;
            return {};
        }
        entry.uuid[VRN_UUID_MAX - 1] = '\0';
        devices.insert(QString::fromUtf8(entry.uuid), entry.shield_type);
    }
    return devices;
}
