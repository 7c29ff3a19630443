#pragma once

#include "BoardSpec.h"
#include "FaultCounter.h"
#include "FrameTicket.h"
#include "NoiseSource.h"
#include "Pacing.h"
#include "ThermalModel.h"

#include <sdk/vrn.h>
#include <vrn_sim.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace vrnsim {

// Run-time state of one plugged board, shared by the registry and the
// handles opened on it. One mutex guards everything; fetches wait on the
// condition variable with it released, so other calls and unplugging get in.
class Board
{
public:
    using Clock = std::chrono::steady_clock;

    explicit Board(BoardSpec spec);

    const BoardSpec& spec() const { return m_spec; }
    const ChipModel& chip() const { return *m_spec.chip; }
    const NoiseSource& noise() const { return m_noise; }

    bool isPlugged();
    bool isOpen();
    void unplug();

    // Opens the board for exclusive use; statuses as the SDK's create call.
    // nullHandle: an injected fault wants success without a handle.
    vrn_Status_t open(bool& nullHandle);
    void close();

    void injectFault(const VrnSimFault& fault);
    void clearFaults();
    bool takeTemperatureFault(int32_t& status);
    bool takeTxPowerFault(int32_t& status);
    uint64_t droppedFrames();

    // Waits at most timeoutMs for the next frame of the running acquisition,
    // starting it (with this pacing) if none runs.
    vrn_Status_t awaitFrame(const Pacing& pacing, uint16_t timeoutMs, FrameTicket& ticket);
    // A single capture outside frame acquisition (CW mode).
    vrn_Status_t takeCapture(double durationS, FrameTicket& ticket);
    void stopAcquisition();
    void setEmission(double duty);
    // The CW transmitter's time on air since the board was plugged.
    uint64_t emissionTimeMs();
    double temperature();

private:
    double sceneTime(Clock::time_point at) const;
    // `capture`: asked by a CW capture; only captures meet the faults scheduled by capture.
    bool scheduledFault(bool capture, int32_t& status, bool& unplug);

    const BoardSpec m_spec;
    const NoiseSource m_noise;
    const Clock::time_point m_pluggedAt;

    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_plugged = true;
    bool m_open = false;
    FaultCounter m_openFault, m_fetchFault, m_temperatureFault, m_txPowerFault;
    FaultCounter m_stallFault; // holds the stall in milliseconds as its status
    std::vector<bool> m_scheduledDone;

    ThermalModel m_thermal;
    double m_emissionDuty = 0.0;
    Clock::duration m_emitted{};      // finished emissions
    Clock::time_point m_emittingSince; // start of the one under way, if any
    bool m_acquiring = false;
    Pacing m_pacing;
    Clock::time_point m_start;
    uint64_t m_nextIndex = 0;
    uint64_t m_delivered = 0;   // frames handed out since the board was opened
    uint64_t m_captured = 0;    // of those, CW captures
    uint64_t m_dropped = 0;
    double m_virtualTime = 0;   // scene clock of unpaced boards
};

}  // namespace vrnsim
