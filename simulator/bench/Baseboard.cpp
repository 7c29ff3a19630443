#include "Baseboard.h"

namespace vrnsim {

Baseboard::Baseboard(BoardSpec spec)
    : m_uuid(spec.uuid),
      m_port(spec.port),
      m_vendor(spec.usbVendor),
      m_product(spec.usbProduct),
      m_spec(std::move(spec)),
      m_mode(m_spec.startsInBootloader ? Mode::Bootloader : Mode::Application),
      m_visibleAt(Clock::now())
{
    // Once it has come back from the bootloader the board starts in its application.
    m_spec.startsInBootloader = false;
}

bool Baseboard::answersAs(const std::string& vendor, const std::string& product)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_plugged)
        return false;
    switch (m_mode) {
    case Mode::Application: return vendor == m_vendor && product == m_product;
    case Mode::Bootloader:
        return vendor == kBootloaderVendor && product == kBootloaderProduct && Clock::now() >= m_visibleAt;
    case Mode::OffBus: return false;
    }
    return false;
}

Baseboard::Mode Baseboard::mode()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_mode;
}

void Baseboard::enterBootloader(uint32_t delayMs)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_mode = Mode::Bootloader;
    m_visibleAt = Clock::now() + std::chrono::milliseconds(delayMs);
}

void Baseboard::setMode(Mode mode)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_mode = mode;
    m_visibleAt = Clock::now();
}

bool Baseboard::isPlugged()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_plugged;
}

void Baseboard::unplug()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_plugged = false;
    }
    m_wake.notify_all();
}

BoardSpec Baseboard::spec()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_spec;
}

void Baseboard::setFirmware(const uint16_t version[3])
{
    std::lock_guard<std::mutex> lock(m_mutex);
    for (int i = 0; i < 3; ++i)
        m_spec.firmware[i] = version[i];
}

FlashPace Baseboard::pace()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_spec.flashPace;
}

void Baseboard::setPace(const FlashPace& pace)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_spec.flashPace = pace;
}

bool Baseboard::takeFault(FlashFault::Kind kind, FlashFault& fault)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    auto& faults = m_spec.flashFaults;
    for (auto it = faults.begin(); it != faults.end(); ++it) {
        if (it->kind != kind)
            continue;
        fault = *it;
        if (it->count > 1)
            --it->count;
        else if (it->count == 1)
            faults.erase(it);
        return true;
    }
    return false;
}

bool Baseboard::claim()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_busy)
        return false;
    m_busy = true;
    return true;
}

void Baseboard::release()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_busy = false;
}

bool Baseboard::pause(uint32_t ms)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_wake.wait_for(lock, std::chrono::milliseconds(ms), [this] { return !m_plugged; });
    return m_plugged;
}

}  // namespace vrnsim
