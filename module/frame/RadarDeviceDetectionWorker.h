#pragma once

#include "frame/IDeviceDetectionWorker.h"

#include <QAtomicInt>
#include <QHash>
#include <QMap>

class IBroker;
class IRadarCoordinator;

// Lists the SDK's boards and reports which appeared and which have gone.
// Lives on the monitor's detection thread; the SDK is only called there.
class RadarDeviceDetectionWorker : public IDeviceDetectionWorker
{
    Q_OBJECT
public:
    RadarDeviceDetectionWorker(IBroker* broker, IRadarCoordinator* coordinator, QAtomicInt* state);

    // "Radar" for the first board ever seen, "Radar #n" for the n-th.
    static QString displayName(int number);

public slots:
    void detectDevices() override;

private:
    QMap<QString, vrn_Device_Shield_Type_t> readDeviceList(const Vrn& sdk, vrn_Device_List_Handle list) const;
    QString nameOf(const QString& uuid);

    IBroker* m_broker;
    IRadarCoordinator* m_coordinator;
    QAtomicInt* m_state;
    QHash<QString, vrn_Device_Shield_Type_t> m_knownDevices;
    QMap<QString, int> m_nameNumbers;
};
