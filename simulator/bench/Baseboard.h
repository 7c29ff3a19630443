#pragma once

#include "BoardSpec.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>

namespace vrnsim {

// The USB side of one bench board: its identity and port on the bus, whether
// its application or its bootloader answers there, and what goes with it
// through its trips into the bootloader (the firmware it will run, the
// flashing faults not yet used, the flashing pace). The SDK sees the board
// only while its application runs.
class Baseboard
{
public:
    using Clock = std::chrono::steady_clock;
    enum class Mode { Application, Bootloader, OffBus };

    static constexpr const char* kBootloaderVendor = "03EB";
    static constexpr const char* kBootloaderProduct = "6124";

    explicit Baseboard(BoardSpec spec);

    const std::string& uuid() const { return m_uuid; }
    const std::string& port() const { return m_port; }
    const std::string& usbProduct() const { return m_product; }

    // Whether the board answers on the bus with this identity now.
    bool answersAs(const std::string& vendor, const std::string& product);
    Mode mode();
    // The bootloader answers once `delayMs` have passed.
    void enterBootloader(uint32_t delayMs);
    void setMode(Mode mode);
    bool isPlugged();
    void unplug();

    // The description (BoardSpec) a board coming back to its application starts from.
    BoardSpec spec();
    void setFirmware(const uint16_t version[3]);
    FlashPace pace();
    void setPace(const FlashPace& pace);
    // Takes one use of the first fault of this kind; false when none is left.
    bool takeFault(FlashFault::Kind kind, FlashFault& fault);

    // One flash at a time per bootloader.
    bool claim();
    void release();
    // Waits `ms` without spinning; false at once when the board is unplugged.
    bool pause(uint32_t ms);

private:
    const std::string m_uuid, m_port, m_vendor, m_product;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    BoardSpec m_spec;
    Mode m_mode;
    Clock::time_point m_visibleAt;
    bool m_plugged = true;
    bool m_busy = false;
};

}  // namespace vrnsim
