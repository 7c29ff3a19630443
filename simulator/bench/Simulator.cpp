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
        replaceBoards({});
        return false;
    }
    return loadBenchJson(json, "Bench file " + path, error);
}

bool Simulator::loadBenchJson(const std::string& json, const std::string& origin, std::string& error)
{
    Bench bench;
    const bool ok = BenchParser::parseBench(json, origin, bench, error);
    std::vector<std::shared_ptr<Board>> boards;
    if (ok)
        for (BoardSpec& spec : bench.boards)
            boards.push_back(std::make_shared<Board>(std::move(spec)));
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_loaded = true;
        m_loadError = ok ? std::string() : error;
        m_listFault.clear();
    }
    replaceBoards(std::move(boards));
    return ok;
}

void Simulator::replaceBoards(std::vector<std::shared_ptr<Board>> boards)
{
    std::vector<std::shared_ptr<Board>> old;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        old.swap(m_boards);
        m_boards = std::move(boards);
    }
    for (auto& board : old)
        board->unplug();
    notifyChange();
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
        for (const auto& board : m_boards) {
            if (board->spec().uuid == spec.uuid) {
                error = "Board: uuid: \"" + spec.uuid + "\" is already plugged in";
                return false;
            }
        }
        m_boards.push_back(std::make_shared<Board>(std::move(spec)));
    }
    notifyChange();
    return true;
}

bool Simulator::unplug(const std::string& uuid, std::string& error)
{
    std::shared_ptr<Board> gone;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        for (auto it = m_boards.begin(); it != m_boards.end(); ++it) {
            if ((*it)->spec().uuid == uuid) {
                gone = *it;
                m_boards.erase(it);
                break;
            }
        }
    }
    if (!gone) {
        error = "No board with uuid \"" + uuid + "\" is plugged in";
        return false;
    }
    gone->unplug();
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
    if (fault.kind < VRNSIM_FAULT_FETCH || fault.kind > VRNSIM_FAULT_TX_POWER) {
        error = "Unknown fault kind " + std::to_string(int(fault.kind));
        return false;
    }
    if (fault.kind != VRNSIM_FAULT_OPEN && fault.status == 0) {
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
