#include "Simulator.h"

#include "BenchParser.h"

#include <cstdlib>
#include <cstring>

namespace vrnsim {

Simulator& Simulator::instance()
{
    static Simulator simulator;
    return simulator;
}

bool Simulator::ensureLoaded(std::string& error)
{
    // Serialises first use so that two threads do not load the bench twice.
    std::lock_guard<std::mutex> once(m_loadMutex);
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (m_loaded) {
            error = m_loadError;
            return m_loadError.empty();
        }
    }
    const char* path = std::getenv("VRN_SIM_BENCH");
    bool ok;
    if (path && *path)
        ok = loadBenchFile(path, error);
    else
        ok = loadBenchJson(BenchParser::defaultBenchJson(), "Bench", error);
    std::lock_guard<std::mutex> lock(m_mutex);
    error = m_loadError;
    return ok;
}

bool Simulator::loadBenchFile(const std::string& path, std::string& error)
{
    std::string json;
    if (!BenchParser::readFile(path, json, error)) {
        // A bad bench leaves no boards rather than quietly using the default.
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_loaded = true;
            m_loadError = error;
        }
        replaceBoards({}, {});
        return false;
    }
    return loadBenchJson(json, "Bench file " + path, error);
}

bool Simulator::loadBenchJson(const std::string& json, const std::string& origin, std::string& error)
{
    Bench bench;
    const bool ok = BenchParser::parseBench(json, origin, bench, error);
    std::vector<std::shared_ptr<Board>> boards;
    std::vector<std::shared_ptr<Baseboard>> baseboards;
    if (ok) {
        for (BoardSpec& spec : bench.boards) {
            if (!spec.startsInBootloader)
                boards.push_back(std::make_shared<Board>(spec));
            baseboards.push_back(std::make_shared<Baseboard>(std::move(spec)));
        }
    }
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_loaded = true;
        m_loadError = ok ? std::string() : error;
        m_listFault.clear();
    }
    replaceBoards(std::move(boards), std::move(baseboards));
    return ok;
}

void Simulator::replaceBoards(std::vector<std::shared_ptr<Board>> boards,
                              std::vector<std::shared_ptr<Baseboard>> baseboards)
{
    std::vector<std::shared_ptr<Board>> old;
    std::vector<std::shared_ptr<Baseboard>> oldBaseboards;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        old.swap(m_boards);
        oldBaseboards.swap(m_baseboards);
        m_boards = std::move(boards);
        m_baseboards = std::move(baseboards);
    }
    for (auto& board : old)
        board->unplug();
    for (auto& baseboard : oldBaseboards)
        baseboard->unplug();
    notifyChange();
}

std::string Simulator::freePort() const
{
    for (size_t n = 0;; ++n) {
        const std::string port = "ttyVRN" + std::to_string(n);
        bool used = false;
        for (const auto& baseboard : m_baseboards)
            used = used || baseboard->port() == port;
        if (!used)
            return port;
    }
}

bool Simulator::plug(const std::string& boardJson, std::string& error)
{
    std::string ignored;
    ensureLoaded(ignored);
    BoardSpec spec;
    if (!BenchParser::parseBoard(boardJson, spec, error))
        return false;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        for (const auto& baseboard : m_baseboards) {
            if (baseboard->uuid() == spec.uuid) {
                error = "Board: uuid: \"" + spec.uuid + "\" is already plugged in";
                return false;
            }
            if (baseboard->port() == spec.port) {
                error = "Board: port: \"" + spec.port + "\" is taken by board \"" + baseboard->uuid() + "\"";
                return false;
            }
        }
        // A board plugged without a port takes the first free one.
        if (spec.port.empty())
            spec.port = freePort();
        if (!spec.startsInBootloader)
            m_boards.push_back(std::make_shared<Board>(spec));
        m_baseboards.push_back(std::make_shared<Baseboard>(std::move(spec)));
    }
    notifyChange();
    return true;
}

bool Simulator::unplug(const std::string& uuid, std::string& error)
{
    std::shared_ptr<Board> gone;
    std::shared_ptr<Baseboard> goneBaseboard;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        for (auto it = m_boards.begin(); it != m_boards.end(); ++it) {
            if ((*it)->spec().uuid == uuid) {
                gone = *it;
                m_boards.erase(it);
                break;
            }
        }
        for (auto it = m_baseboards.begin(); it != m_baseboards.end(); ++it) {
            if ((*it)->uuid() == uuid) {
                goneBaseboard = *it;
                m_baseboards.erase(it);
                break;
            }
        }
    }
    if (!gone && !goneBaseboard) {
        error = "No board with uuid \"" + uuid + "\" is plugged in";
        return false;
    }
    if (gone)
        gone->unplug();
    if (goneBaseboard)
        goneBaseboard->unplug();
    notifyChange();
    return true;
}

void Simulator::setChangeCallback(VrnSimChangeCallback callback, void* user)
{
    // Waits for a callback in flight on another thread, so that once this
    // returns the previous callback's user data may be destroyed.
    std::lock_guard<std::recursive_mutex> lock(m_callbackMutex);
    m_callback = callback;
    m_callbackUser = user;
}

void Simulator::notifyChange()
{
    // Held while the callback runs (not the registry lock, so the callback
    // may call into the SDK); recursive so it may also replace itself.
    std::lock_guard<std::recursive_mutex> lock(m_callbackMutex);
    if (m_callback)
        m_callback(m_callbackUser);
}

bool Simulator::injectFault(const char* uuid, const VrnSimFault& fault, std::string& error)
{
    if (fault.kind == VRNSIM_FAULT_LIST_ENTRY) {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_listFault.arm(fault.status, fault.count);
        m_listFaultIndex = fault.index;
        return true;
    }
    if (fault.kind < VRNSIM_FAULT_FETCH || fault.kind > VRNSIM_FAULT_STALL) {
        error = "Unknown fault kind " + std::to_string(int(fault.kind));
        return false;
    }
    if (fault.kind == VRNSIM_FAULT_STALL && fault.stall_ms == 0) {
        error = "A stall needs a non-zero stall_ms";
        return false;
    }
    if (fault.kind != VRNSIM_FAULT_OPEN && fault.kind != VRNSIM_FAULT_STALL && fault.status == 0) {
        error = "A fault needs a non-zero status";
        return false;
    }
    std::shared_ptr<Board> board = uuid ? find(uuid) : nullptr;
    if (!board) {
        error = std::string("No board with uuid \"") + (uuid ? uuid : "(null)") + "\" is plugged in";
        return false;
    }
    board->injectFault(fault);
    return true;
}

bool Simulator::clearFaults(const char* uuid, std::string& error)
{
    std::vector<std::shared_ptr<Board>> boards;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_listFault.clear();
        boards = m_boards;
    }
    bool found = uuid == nullptr;
    for (auto& board : boards) {
        if (!uuid || board->spec().uuid == uuid) {
            board->clearFaults();
            found = true;
        }
    }
    if (!found)
        error = std::string("No board with uuid \"") + uuid + "\" is plugged in";
    return found;
}

uint64_t Simulator::droppedFrames(const std::string& uuid)
{
    std::shared_ptr<Board> board = find(uuid);
    return board ? board->droppedFrames() : 0;
}

uint64_t Simulator::emissionTimeMs(const std::string& uuid)
{
    std::shared_ptr<Board> board = find(uuid);
    return board ? board->emissionTimeMs() : 0;
}

std::vector<std::string> Simulator::usbPorts(const std::string& vendor, const std::string& product)
{
    std::vector<std::shared_ptr<Baseboard>> baseboards;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        baseboards = m_baseboards;
    }
    std::vector<std::string> ports;
    for (const auto& baseboard : baseboards)
        if (baseboard->answersAs(vendor, product))
            ports.push_back(baseboard->port());
    return ports;
}

std::shared_ptr<Baseboard> Simulator::baseboardOn(const std::string& port)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    for (const auto& baseboard : m_baseboards)
        if (baseboard->port() == port)
            return baseboard;
    return nullptr;
}

void Simulator::leaveApplication(const std::shared_ptr<Baseboard>& baseboard)
{
    std::shared_ptr<Board> gone;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        for (auto it = m_boards.begin(); it != m_boards.end(); ++it) {
            if ((*it)->spec().uuid == baseboard->uuid()) {
                gone = *it;
                m_boards.erase(it);
                break;
            }
        }
    }
    // Handles open on the application lose it as on an unplugged board.
    if (gone) {
        gone->unplug();
        notifyChange();
    }
}

bool Simulator::startApplication(const std::shared_ptr<Baseboard>& baseboard)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        size_t position = 0;  // keeps the device list in bench order
        bool onBench = false;
        for (const auto& other : m_baseboards) {
            if (other == baseboard) {
                onBench = true;
                break;
            }
            for (const auto& board : m_boards)
                if (board->spec().uuid == other->uuid())
                    ++position;
        }
        if (!onBench || !baseboard->isPlugged())
            return false;
        m_boards.insert(m_boards.begin() + long(position), std::make_shared<Board>(baseboard->spec()));
        baseboard->setMode(Baseboard::Mode::Application);
    }
    notifyChange();
    return true;
}

bool Simulator::setFlashPace(const char* uuid, const FlashPace& pace, std::string& error)
{
    std::vector<std::shared_ptr<Baseboard>> baseboards;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        baseboards = m_baseboards;
    }
    bool found = uuid == nullptr;
    for (auto& baseboard : baseboards) {
        if (!uuid || baseboard->uuid() == uuid) {
            baseboard->setPace(pace);
            found = true;
        }
    }
    if (!found)
        error = std::string("No board with uuid \"") + uuid + "\" is plugged in";
    return found;
}

std::vector<vrn_Device_List_Entry_t> Simulator::availableBoards()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    std::vector<vrn_Device_List_Entry_t> entries;
    for (const auto& board : m_boards) {
        if (board->isOpen())
            continue;
        vrn_Device_List_Entry_t entry{};
        entry.shield_type = static_cast<vrn_Device_Shield_Type_t>(board->spec().shield);
        std::strncpy(entry.uuid, board->spec().uuid.c_str(), VRN_UUID_MAX - 1);
        entries.push_back(entry);
    }
    return entries;
}

std::shared_ptr<Board> Simulator::find(const std::string& uuid)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    for (const auto& board : m_boards)
        if (board->spec().uuid == uuid)
            return board;
    return nullptr;
}

bool Simulator::takeListEntryFault(uint32_t index)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    int32_t ignored = 0;
    return index == m_listFaultIndex && m_listFault.take(ignored);
}

}  // namespace vrnsim
