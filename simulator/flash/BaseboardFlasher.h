#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace vrnsim {

class Simulator;

// What a bench baseboard's bootloader does for a flashing library: it takes
// the bootloader command and it erases, writes, verifies and restarts into a
// new image, at the board's pace and with the faults its bench schedules.
class BaseboardFlasher
{
public:
    using StatusReport = std::function<void(const std::string& text)>;
    using ProgressReport = std::function<void(uint64_t done, uint64_t total)>;

    explicit BaseboardFlasher(Simulator& simulator) : m_simulator(simulator) {}

    // The board leaves the device list at once and answers as the bootloader
    // once its switching time has passed. productId empty: any board.
    bool activate(const std::string& port, const std::string& productId, std::string& error);

    // Returns once the board has restarted (or failed); reports arrive on
    // the calling thread.
    bool flash(const std::string& port, const uint8_t* image, size_t size, const StatusReport& status,
               const ProgressReport& progress, std::string& error);

private:
    Simulator& m_simulator;
};

}  // namespace vrnsim
