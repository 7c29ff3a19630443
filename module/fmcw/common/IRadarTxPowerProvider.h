#pragma once

// Reads the radiated power of one transmit antenna.
class IRadarTxPowerProvider
{
public:
    virtual ~IRadarTxPowerProvider() = default;
    // dBm of the 0-based antenna; NaN when there is no reading.
    virtual float getTxPower(int antennaIndex) = 0;
};
