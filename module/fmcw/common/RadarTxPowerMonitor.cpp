#include "fmcw/common/RadarTxPowerMonitor.h"

#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/IRadarTxPowerProvider.h"

#include <cmath>

RadarTxPowerMonitor::RadarTxPowerMonitor(IRadarTxPowerProvider* provider, DeviceInfo* info, QObject* parent)
    : IRadarTxPowerMonitor(parent)
    , m_provider(provider)
    , m_info(info)
{
}

void RadarTxPowerMonitor::update()
{
    if (!m_provider || !m_info)
        return;
    QVector<float> powers(m_info->numTxAntennas());
    for (int antenna = 0; antenna < powers.size(); ++antenna) {
        const float power = m_provider->getTxPower(antenna);
        // A partial list would show a mix of old and new readings.
        if (std::isnan(power))
            return;
        powers[antenna] = power;
    }
    m_info->setDeviceTxPower(powers);
}
