// Stand-in for the board maker's flashing library. It sees the baseboards
// that the simulated bench attaches (none yet), so the module's flashing
// path builds and runs on machines without hardware.
#include "flash/FlashRadarBaseboardKT4.h"

#include <chrono>
#include <thread>

FlashRadarBaseboardKT4::FlashRadarBaseboardKT4() = default;
FlashRadarBaseboardKT4::~FlashRadarBaseboardKT4() = default;

std::vector<std::string> FlashRadarBaseboardKT4::findComPorts(const std::string&, const std::string&)
{
    return {};
}

bool FlashRadarBaseboardKT4::activateBootloader(const std::string&, const std::string& port, std::string& errorMessage)
{
    errorMessage = "No baseboard on port " + port;
    return false;
}

bool FlashRadarBaseboardKT4::activateBootloaderFF(const std::string& port, std::string& errorMessage, int)
{
    return activateBootloader(std::string(), port, errorMessage);
}

bool FlashRadarBaseboardKT4::activateBootloaderRadarBaseboardKT4(const std::string& port, std::string& errorMessage, int)
{
    return activateBootloader(std::string(), port, errorMessage);
}

bool FlashRadarBaseboardKT4::activateBootloaderRadarBaseboardKT4Legacy(const std::string& port, std::string& errorMessage,
                                                                       int)
{
    return activateBootloader(std::string(), port, errorMessage);
}

bool FlashRadarBaseboardKT4::flash(const std::string& port, const std::string&, std::string& errorMessage)
{
    errorMessage = "No bootloader on port " + port;
    return false;
}

void FlashRadarBaseboardKT4::setStatusCallback(StatusCallback callback)
{
    m_status = std::move(callback);
}

void FlashRadarBaseboardKT4::setProgressCallback(ProgressCallback callback)
{
    m_progress = std::move(callback);
}

void FlashRadarBaseboardKT4::sleep_for(unsigned int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}
