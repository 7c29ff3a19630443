#pragma once

#include <chrono>

namespace vrnsim {

// First-order thermal model of a board: the die temperature approaches
// ambient + heating * duty with a time constant, duty being the share of time
// the transmitter emits.
class ThermalModel
{
public:
    using Clock = std::chrono::steady_clock;

    ThermalModel(double ambientC, double heatingC, double timeConstantS);

    void setDuty(double duty, Clock::time_point now);
    double temperature(Clock::time_point now);

private:
    void advance(Clock::time_point now);

    double m_ambient;
    double m_heating;
    double m_tau;
    double m_duty = 0.0;
    double m_temperature;
    Clock::time_point m_last;
};

}  // namespace vrnsim
