#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

// The board maker's flashing library for radar baseboards attached over USB
// serial ports. Every operation blocks; failures are a false result with a
// sentence in the message argument, never an exception.
class FlashRadarBaseboardKT4
{
public:
    using StatusCallback = std::function<void(const std::string& status)>;
    using ProgressCallback = std::function<void(std::size_t done, std::size_t total)>;

    FlashRadarBaseboardKT4();
    ~FlashRadarBaseboardKT4();
    FlashRadarBaseboardKT4(const FlashRadarBaseboardKT4&) = delete;
    FlashRadarBaseboardKT4& operator=(const FlashRadarBaseboardKT4&) = delete;

    // Serial-port names of the attached devices with this USB identity
    // (four-digit upper-case hexadecimal texts, e.g. "03EB", "6124").
    std::vector<std::string> findComPorts(const std::string& vendorId, const std::string& productId);

    // Switches the board on the port into its bootloader.
    bool activateBootloader(const std::string& productId, const std::string& port, std::string& errorMessage);
    bool activateBootloaderFF(const std::string& port, std::string& errorMessage, int argument);
    bool activateBootloaderRadarBaseboardKT4(const std::string& port, std::string& errorMessage, int argument);
    bool activateBootloaderRadarBaseboardKT4Legacy(const std::string& port, std::string& errorMessage, int argument);

    // Writes and verifies the image on a board in bootloader mode; status
    // texts and progress arrive through the callbacks during the call.
    bool flash(const std::string& port, const std::string& imagePath, std::string& errorMessage);

    void setStatusCallback(StatusCallback callback);
    void setProgressCallback(ProgressCallback callback);

    static void sleep_for(unsigned int milliseconds);

private:
    StatusCallback m_status;
    ProgressCallback m_progress;
};
