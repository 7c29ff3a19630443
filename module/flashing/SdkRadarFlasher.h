#pragma once

#include "flash/FlashRadarBaseboardKT4.h"
#include "flashing/ISdkRadarFlasher.h"

#include <cstddef>

// Owns one instance of the flashing library and forwards its operations.
class SdkRadarFlasher : public ISdkRadarFlasher
{
    Q_OBJECT
public:
    explicit SdkRadarFlasher(QObject* parent = nullptr);

    std::vector<std::string> findComPorts(const std::string& vendorId, const std::string& productId) override;
    bool activateBootloader(const std::string& productId, const std::string& port,
                            std::string& errorMessage) override;
    bool activateBootloaderFF(const std::string& port, std::string& errorMessage, int argument);
    bool activateBootloaderRadarBaseboardKT4(const std::string& port, std::string& errorMessage, int argument);
    bool activateBootloaderRadarBaseboardKT4Legacy(const std::string& port, std::string& errorMessage, int argument);
    bool flash(const std::string& port, const std::string& imagePath, std::string& errorMessage) override;
    void sleep_for(unsigned int milliseconds) override;

    // The library's reports during flash(); public so that the translation
    // can be checked without a board.
    void onLibraryStatus(const std::string& status);
    void onLibraryProgress(std::size_t done, std::size_t total);

private:
    FlashRadarBaseboardKT4 m_library;
    QString m_phase;
};
