#pragma once

#include "Baseboard.h"
#include "Board.h"
#include "FaultCounter.h"

#include <vrn_sim.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace vrnsim {

// The bench: which boards are plugged in. One process-wide instance, loaded
// on first use from the file named by VRN_SIM_BENCH or else the embedded
// default. Board set changes fire the registered callback after the registry
// lock is released, so the callback may call back into the SDK.
class Simulator
{
public:
    static Simulator& instance();

    // Loads the bench once; false with the load error if the bench is bad.
    bool ensureLoaded(std::string& error);

    bool loadBenchJson(const std::string& json, const std::string& origin, std::string& error);
    bool loadBenchFile(const std::string& path, std::string& error);
    bool plug(const std::string& boardJson, std::string& error);
    bool unplug(const std::string& uuid, std::string& error);
    void setChangeCallback(VrnSimChangeCallback callback, void* user);
    bool injectFault(const char* uuid, const VrnSimFault& fault, std::string& error);
    bool clearFaults(const char* uuid, std::string& error);
    uint64_t droppedFrames(const std::string& uuid);
    uint64_t emissionTimeMs(const std::string& uuid);

    // Ports of the baseboards answering with this USB identity, in bench order.
    std::vector<std::string> usbPorts(const std::string& vendor, const std::string& product);
    std::shared_ptr<Baseboard> baseboardOn(const std::string& port);
    // The board's application leaves the bus, and the device list, for its bootloader.
    void leaveApplication(const std::shared_ptr<Baseboard>& baseboard);
    // The application starts again as the baseboard now describes it; false when the
    // board was unplugged meanwhile.
    bool startApplication(const std::shared_ptr<Baseboard>& baseboard);
    // uuid null: every baseboard on the bench.
    bool setFlashPace(const char* uuid, const FlashPace& pace, std::string& error);

    // Boards plugged and not opened, in bench order.
    std::vector<vrn_Device_List_Entry_t> availableBoards();
    std::shared_ptr<Board> find(const std::string& uuid);
    bool takeListEntryFault(uint32_t index);

private:
    Simulator() = default;
    void replaceBoards(std::vector<std::shared_ptr<Board>> boards,
                       std::vector<std::shared_ptr<Baseboard>> baseboards);
    std::string freePort() const;
    void notifyChange();

    std::mutex m_loadMutex;
    std::mutex m_mutex;
    bool m_loaded = false;
    std::string m_loadError;
    std::vector<std::shared_ptr<Board>> m_boards;          // application running, as the SDK sees them
    std::vector<std::shared_ptr<Baseboard>> m_baseboards;  // every board on the bus, in bench order
    std::recursive_mutex m_callbackMutex; // guards the callback and its calls
    VrnSimChangeCallback m_callback = nullptr;
    void* m_callbackUser = nullptr;
    FaultCounter m_listFault;  // its status is not used: the entry read fails with a text
    uint32_t m_listFaultIndex = 0;
};

}  // namespace vrnsim
