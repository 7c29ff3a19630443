#include "fmcw/common/RadarTemperatureMonitor.h"

#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/IRadarTemperatureProvider.h"

#include <cmath>

RadarTemperatureMonitor::RadarTemperatureMonitor(IRadarTemperatureProvider* provider, DeviceInfo* info,
                                                 QObject* parent)
    : IRadarTemperatureMonitor(parent)
    , m_provider(provider)
    , m_info(info)
{
    connect(&m_timer, &QTimer::timeout, this, &RadarTemperatureMonitor::update);
}

RadarTemperatureMonitor::~RadarTemperatureMonitor()
{
    m_timer.stop();
    if (m_info)
        m_info->setDeviceTemperature(QVariant());
}

void RadarTemperatureMonitor::setInterval(int milliseconds)
{
    m_timer.setInterval(milliseconds);
}

void RadarTemperatureMonitor::start()
{
    m_timer.start();
}

void RadarTemperatureMonitor::stop()
{
    m_timer.stop();
}

void RadarTemperatureMonitor::update()
{
    if (!m_provider || !m_info)
        return;
    const float temperature = m_provider->getTemperature();
    // NaN means no reading this time; the last good one stays on show.
    if (std::isnan(temperature))
        return;
    m_info->setDeviceTemperature(QVariant::fromValue(temperature));
}
