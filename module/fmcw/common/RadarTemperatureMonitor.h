#pragma once

#include "fmcw/common/IRadarTemperatureMonitor.h"

#include <QPointer>
#include <QTimer>

class DeviceInfo;
class IRadarTemperatureProvider;

class RadarTemperatureMonitor : public IRadarTemperatureMonitor
{
    Q_OBJECT
public:
    // Neither the provider nor the info is owned. The provider must outlive
    // the timer's run; the info may go first, as when a monitor released
    // after its own reading is deleted late.
    RadarTemperatureMonitor(IRadarTemperatureProvider* provider, DeviceInfo* info, QObject* parent = nullptr);
    // Clears the temperature so the pages show no stale reading.
    ~RadarTemperatureMonitor() override;

    void setInterval(int milliseconds) override;
    void start() override;
    void stop() override;

public slots:
    void update() override;

private:
    QTimer m_timer;
    IRadarTemperatureProvider* m_provider;
    QPointer<DeviceInfo> m_info;
};
