#pragma once

#include "fmcw/common/IRadarTxPowerMonitor.h"

class DeviceInfo;
class IRadarTxPowerProvider;

class RadarTxPowerMonitor : public IRadarTxPowerMonitor
{
    Q_OBJECT
public:
    // Neither the provider nor the info is owned.
    RadarTxPowerMonitor(IRadarTxPowerProvider* provider, DeviceInfo* info, QObject* parent = nullptr);

public slots:
    // Stores the power of every antenna, or nothing when one read fails.
    void update() override;

private:
    IRadarTxPowerProvider* m_provider;
    DeviceInfo* m_info;
};
