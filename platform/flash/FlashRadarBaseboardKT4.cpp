// Stand-in for the board maker's flashing library. Its USB bus is the
// simulated bench: the library links the simulated SDK, so the loader hands
// the workbench's SDK and this library one and the same copy in a process,
// and both see the same boards, bootloaders and firmware versions.
#include "flash/FlashRadarBaseboardKT4.h"

#include <vrn_sim.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <fstream>
#include <iterator>
#include <thread>

namespace {

void collectPort(const char* port, void* user)
{
    static_cast<std::vector<std::string>*>(user)->push_back(port);
}

struct Reports {
    const FlashRadarBaseboardKT4::StatusCallback& status;
    const FlashRadarBaseboardKT4::ProgressCallback& progress;
};

void forwardStatus(const char* text, void* user)
{
    const auto& status = static_cast<Reports*>(user)->status;
    if (status)
        status(text);
}

void forwardProgress(uint64_t done, uint64_t total, void* user)
{
    const auto& progress = static_cast<Reports*>(user)->progress;
    if (progress)
        progress(std::size_t(done), std::size_t(total));
}

// Copies the answer before the next call on this thread replaces it.
bool succeeded(const char* error, std::string& errorMessage)
{
    if (!error)
        return true;
    errorMessage = error;
    return false;
}

}  // namespace

FlashRadarBaseboardKT4::FlashRadarBaseboardKT4() = default;
FlashRadarBaseboardKT4::~FlashRadarBaseboardKT4() = default;

std::vector<std::string> FlashRadarBaseboardKT4::findComPorts(const std::string& vendorId,
                                                              const std::string& productId)
{
    std::vector<std::string> ports;
    vrnsim_control()->usb_ports(vendorId.c_str(), productId.c_str(), collectPort, &ports);
    return ports;
}

bool FlashRadarBaseboardKT4::activateBootloader(const std::string& productId, const std::string& port,
                                                std::string& errorMessage)
{
    return succeeded(vrnsim_control()->activate_bootloader(port.c_str(), productId.c_str()), errorMessage);
}

// The board families' own bootloader commands; every simulated baseboard
// understands each of them, whatever its product ID.
bool FlashRadarBaseboardKT4::activateBootloaderFF(const std::string& port, std::string& errorMessage, int)
{
    return activateBootloader(std::string(), port, errorMessage);
}

bool FlashRadarBaseboardKT4::activateBootloaderRadarBaseboardKT4(const std::string& port, std::string& errorMessage,
                                                                 int)
{
    return activateBootloader(std::string(), port, errorMessage);
}

bool FlashRadarBaseboardKT4::activateBootloaderRadarBaseboardKT4Legacy(const std::string& port, std::string& errorMessage,
                                                                       int)
{
    return activateBootloader(std::string(), port, errorMessage);
}

bool FlashRadarBaseboardKT4::flash(const std::string& port, const std::string& imagePath, std::string& errorMessage)
{
    std::ifstream file(imagePath, std::ios::binary);
    if (!file) {
        errorMessage = "Cannot open the firmware image " + imagePath + ": " + std::strerror(errno);
        return false;
    }
    const std::vector<char> image((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (file.bad()) {
        errorMessage = "Cannot read the firmware image " + imagePath;
        return false;
    }
    Reports reports{m_status, m_progress};
    const char* error = vrnsim_control()->flash_image(port.c_str(), reinterpret_cast<const uint8_t*>(image.data()),
                                                      image.size(), forwardStatus, forwardProgress, &reports);
    return succeeded(error, errorMessage);
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
