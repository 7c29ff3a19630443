#include "Board.h"

#include <algorithm>
#include <cmath>

namespace vrnsim {

Board::Board(BoardSpec spec)
    : m_spec(std::move(spec)),
      m_noise(m_spec.seed, float(m_spec.noise)),
      m_pluggedAt(Clock::now()),
      m_scheduledDone(m_spec.faults.size(), false),
      m_thermal(m_spec.ambientC, m_spec.heatingC, m_spec.thermalTimeS)
{}

bool Board::isPlugged()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_plugged;
}

bool Board::isOpen()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_open;
}

void Board::unplug()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_plugged = false;
        m_acquiring = false;
        // A board off the bus has no power for its transmitter.
        if (m_emissionDuty > 0)
            m_emitted += Clock::now() - m_emittingSince;
        m_emissionDuty = 0;
    }
    m_wake.notify_all();
}

vrn_Status_t Board::open(bool& nullHandle)
{
    nullHandle = false;
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_plugged)
        return VRN_STATUS_DEVICE_NOT_FOUND;
    if (m_open)
        return VRN_STATUS_DEVICE_BUSY;
    int32_t status = 0;
    if (m_openFault.take(status)) {
        // Status 0: the board answers but hands out no handle.
        nullHandle = status == VRN_STATUS_OK;
        return status;
    }
    // Boards older than firmware 2.0.0 speak a protocol this SDK lacks.
    if (m_spec.firmware[0] < 2)
        return VRN_STATUS_FIRMWARE_NOT_SUPPORTED;
    m_open = true;
    m_delivered = 0;
    m_captured = 0;
    std::fill(m_scheduledDone.begin(), m_scheduledDone.end(), false);
    return VRN_STATUS_OK;
}

void Board::close()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_open = false;
    m_acquiring = false;
    if (m_emissionDuty > 0)
        m_emitted += Clock::now() - m_emittingSince;
    m_emissionDuty = 0;
    m_thermal.setDuty(0.0, Clock::now());
}

void Board::injectFault(const VrnSimFault& fault)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    switch (fault.kind) {
    case VRNSIM_FAULT_FETCH: m_fetchFault.arm(fault.status, fault.count); break;
    case VRNSIM_FAULT_OPEN: m_openFault.arm(fault.status, fault.count); break;
    case VRNSIM_FAULT_TEMPERATURE: m_temperatureFault.arm(fault.status, fault.count); break;
    case VRNSIM_FAULT_TX_POWER: m_txPowerFault.arm(fault.status, fault.count); break;
    case VRNSIM_FAULT_STALL: m_stallFault.arm(int32_t(fault.stall_ms), fault.count); break;
    default: break;
    }
}

void Board::clearFaults()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_openFault.clear();
    m_fetchFault.clear();
    m_temperatureFault.clear();
    m_txPowerFault.clear();
    m_stallFault.clear();
}

bool Board::takeTemperatureFault(int32_t& status)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_temperatureFault.take(status);
}

bool Board::takeTxPowerFault(int32_t& status)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_txPowerFault.take(status);
}

uint64_t Board::droppedFrames()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_dropped;
}

double Board::sceneTime(Clock::time_point at) const
{
    return std::chrono::duration<double>(at - m_pluggedAt).count();
}

bool Board::scheduledFault(bool capture, int32_t& status, bool& unplug)
{
    for (size_t i = 0; i < m_spec.faults.size(); ++i) {
        const ScheduledFault& f = m_spec.faults[i];
        if (m_scheduledDone[i] || (f.atCapture && !capture) || (f.atCapture ? m_captured : m_delivered) < f.atFrame)
            continue;
        m_scheduledDone[i] = true;
        if (f.unplug) {
            unplug = true;
            return true;
        }
        m_fetchFault.arm(f.status, f.count);
    }
    return m_fetchFault.take(status);
}

vrn_Status_t Board::awaitFrame(const Pacing& pacing, uint16_t timeoutMs, FrameTicket& ticket)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!m_plugged)
        return VRN_STATUS_COMMUNICATION_LOST;
    int32_t stallMs = 0;
    if (m_stallFault.take(stallMs)) {
        m_wake.wait_for(lock, std::chrono::milliseconds(stallMs), [this] { return !m_plugged; });
        if (!m_plugged)
            return VRN_STATUS_COMMUNICATION_LOST;
    }
    const Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);

    int32_t faultStatus = 0;
    bool unplug = false;
    if (scheduledFault(false, faultStatus, unplug)) {
        if (unplug) {
            ticket.unplugNow = true;
            return VRN_STATUS_COMMUNICATION_LOST;
        }
        // A board that times out does so only after the wait.
        if (faultStatus == VRN_STATUS_FRAME_TIMEOUT)
            m_wake.wait_until(lock, deadline, [this] { return !m_plugged; });
        return m_plugged ? faultStatus : VRN_STATUS_COMMUNICATION_LOST;
    }

    if (!m_acquiring) {
        m_acquiring = true;
        m_pacing = pacing;
        m_start = Clock::now();
        m_nextIndex = 0;
        m_thermal.setDuty(std::max(m_emissionDuty, pacing.duty), m_start);
    }

    if (!m_spec.realtime) {
        ticket.index = m_nextIndex++;
        ticket.sceneTime = m_virtualTime;
        m_virtualTime += m_pacing.frameTimeS;
    } else {
        const auto period = std::chrono::duration<double>(m_pacing.frameTimeS);
        const auto first = m_start + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(m_pacing.burstS));
        for (;;) {
            const Clock::time_point now = Clock::now();
            uint64_t produced = 0;
            if (now >= first)
                produced = uint64_t(std::chrono::duration<double>(now - first) / period) + 1;
            // The board's FIFO keeps the newest frames; older ones are lost.
            if (produced > m_nextIndex + m_spec.fifoFrames) {
                const uint64_t skip = produced - m_spec.fifoFrames - m_nextIndex;
                m_dropped += skip;
                m_nextIndex += skip;
                if (m_pacing.reportsOverflow)
                    return VRN_STATUS_FRAME_FETCH_FAILED;
            }
            if (produced > m_nextIndex)
                break;
            const Clock::time_point ready =
                first + std::chrono::duration_cast<Clock::duration>(period * double(m_nextIndex));
            if (now >= deadline)
                return VRN_STATUS_FRAME_TIMEOUT;
            m_wake.wait_until(lock, std::min(ready, deadline), [this] { return !m_plugged || !m_acquiring; });
            if (!m_plugged)
                return VRN_STATUS_COMMUNICATION_LOST;
            if (!m_acquiring)
                return VRN_STATUS_FRAME_TIMEOUT;
        }
        ticket.index = m_nextIndex++;
        ticket.sceneTime =
            sceneTime(m_start + std::chrono::duration_cast<Clock::duration>(period * double(ticket.index)));
    }
    ++m_delivered;
    ticket.temperatureC = m_thermal.temperature(Clock::now());
    return VRN_STATUS_OK;
}

vrn_Status_t Board::takeCapture(double durationS, FrameTicket& ticket)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_plugged)
        return VRN_STATUS_COMMUNICATION_LOST;
    int32_t status = 0;
    bool unplug = false;
    if (scheduledFault(true, status, unplug)) {
        ticket.unplugNow = unplug;
        return unplug ? VRN_STATUS_COMMUNICATION_LOST : status;
    }
    ticket.index = m_delivered++;
    ++m_captured;
    if (m_spec.realtime) {
        ticket.sceneTime = sceneTime(Clock::now());
    } else {
        ticket.sceneTime = m_virtualTime;
        m_virtualTime += durationS;
    }
    ticket.temperatureC = m_thermal.temperature(Clock::now());
    return VRN_STATUS_OK;
}

void Board::stopAcquisition()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_acquiring = false;
        m_thermal.setDuty(m_emissionDuty, Clock::now());
    }
    m_wake.notify_all();
}

void Board::setEmission(double duty)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    const Clock::time_point now = Clock::now();
    // Only the switching counts: a repeated start keeps the running span.
    if (m_emissionDuty > 0 && duty <= 0)
        m_emitted += now - m_emittingSince;
    else if (m_emissionDuty <= 0 && duty > 0)
        m_emittingSince = now;
    m_emissionDuty = duty;
    m_thermal.setDuty(std::max(duty, m_acquiring ? m_pacing.duty : 0.0), Clock::now());
}

uint64_t Board::emissionTimeMs()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    Clock::duration total = m_emitted;
    if (m_emissionDuty > 0)
        total += Clock::now() - m_emittingSince;
    return uint64_t(std::chrono::duration_cast<std::chrono::milliseconds>(total).count());
}

double Board::temperature()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_thermal.temperature(Clock::now());
}

}  // namespace vrnsim
