#include "ThermalModel.h"

#include <cmath>

namespace vrnsim {

ThermalModel::ThermalModel(double ambientC, double heatingC, double timeConstantS)
    : m_ambient(ambientC), m_heating(heatingC), m_tau(timeConstantS), m_temperature(ambientC), m_last(Clock::now())
{}

void ThermalModel::advance(Clock::time_point now)
{
    const double dt = std::chrono::duration<double>(now - m_last).count();
    if (dt <= 0)
        return;
    const double target = m_ambient + m_heating * m_duty;
    m_temperature += (target - m_temperature) * (1.0 - std::exp(-dt / m_tau));
    m_last = now;
}

void ThermalModel::setDuty(double duty, Clock::time_point now)
{
    advance(now);
    m_duty = duty;
}

double ThermalModel::temperature(Clock::time_point now)
{
    advance(now);
    return m_temperature;
}

}  // namespace vrnsim
