// The control table of the simulator (see include/vrn_sim.h).

#include "BaseboardFlasher.h"
#include "BenchParser.h"
#include "ErrorText.h"
#include "Simulator.h"

#include <vrn_sim.h>

namespace vrnsim {

namespace {

const char* answer(bool ok, const std::string& error)
{
    return ok ? nullptr : ErrorText::set(error);
}

// Calls that act on boards first load the bench, so that a fault injected
// before any device listing finds the boards of the bench.
Simulator& loaded()
{
    std::string ignored;
    Simulator::instance().ensureLoaded(ignored);
    return Simulator::instance();
}

const char* loadBenchFile(const char* path)
{
    if (!path)
        return ErrorText::set("The bench file path is null");
    std::string error;
    const bool ok = Simulator::instance().loadBenchFile(path, error);
    return answer(ok, error);
}

const char* loadBenchJson(const char* json)
{
    std::string error;
    const bool ok = json ? Simulator::instance().loadBenchJson(json, "Bench", error)
                         : Simulator::instance().loadBenchJson(BenchParser::defaultBenchJson(), "Bench", error);
    return answer(ok, error);
}

const char* reset()
{
    std::string error;
    Simulator::instance().clearFaults(nullptr, error);
    return loadBenchJson(nullptr);
}

const char* plugBoard(const char* json)
{
    if (!json)
        return ErrorText::set("The board description is null");
    std::string error;
    const bool ok = Simulator::instance().plug(json, error);
    return answer(ok, error);
}

const char* unplugBoard(const char* uuid)
{
    if (!uuid)
        return ErrorText::set("The uuid is null");
    std::string error;
    const bool ok = loaded().unplug(uuid, error);
    return answer(ok, error);
}

void setChangeCallback(VrnSimChangeCallback callback, void* user)
{
    Simulator::instance().setChangeCallback(callback, user);
}

const char* injectFault(const char* uuid, const VrnSimFault* fault)
{
    if (!fault)
        return ErrorText::set("The fault record is null");
    std::string error;
    const bool ok = loaded().injectFault(uuid, *fault, error);
    return answer(ok, error);
}

const char* clearFaults(const char* uuid)
{
    std::string error;
    const bool ok = loaded().clearFaults(uuid, error);
    return answer(ok, error);
}

uint64_t droppedFrames(const char* uuid)
{
    return uuid ? loaded().droppedFrames(uuid) : 0;
}

uint64_t emissionTimeMs(const char* uuid)
{
    return uuid ? loaded().emissionTimeMs(uuid) : 0;
}

void usbPorts(const char* vendor, const char* product, VrnSimPortCallback each, void* user)
{
    if (!vendor || !product || !each)
        return;
    for (const std::string& port : loaded().usbPorts(vendor, product))
        each(port.c_str(), user);
}

const char* activateBootloader(const char* port, const char* product)
{
    if (!port)
        return ErrorText::set("The port is null");
    std::string error;
    const bool ok = BaseboardFlasher(loaded()).activate(port, product ? product : "", error);
    return answer(ok, error);
}

const char* flashImage(const char* port, const uint8_t* image, uint64_t size, VrnSimFlashStatusCallback status,
                       VrnSimFlashProgressCallback progress, void* user)
{
    if (!port)
        return ErrorText::set("The port is null");
    const auto report = [&](const std::string& text) {
        if (status)
            status(text.c_str(), user);
    };
    const auto advance = [&](uint64_t done, uint64_t total) {
        if (progress)
            progress(done, total, user);
    };
    std::string error;
    const bool ok = BaseboardFlasher(loaded()).flash(port, image, size_t(size), report, advance, error);
    return answer(ok, error);
}

const char* setFlashPace(const char* uuid, uint32_t stepMs, uint32_t switchMs)
{
    std::string error;
    const bool ok = loaded().setFlashPace(uuid, FlashPace{stepMs, switchMs}, error);
    return answer(ok, error);
}

}  // namespace

}  // namespace vrnsim

extern "C" __attribute__((visibility("default"))) const VrnSimControl* vrnsim_control(void)
{
    static const VrnSimControl control = [] {
        VrnSimControl c{};
        c.version = VRNSIM_CONTROL_VERSION;
        c.struct_size = sizeof(VrnSimControl);
        c.load_bench_file = vrnsim::loadBenchFile;
        c.load_bench_json = vrnsim::loadBenchJson;
        c.reset = vrnsim::reset;
        c.plug_board = vrnsim::plugBoard;
        c.unplug_board = vrnsim::unplugBoard;
        c.set_change_callback = vrnsim::setChangeCallback;
        c.inject_fault = vrnsim::injectFault;
        c.clear_faults = vrnsim::clearFaults;
        c.dropped_frames = vrnsim::droppedFrames;
        c.emission_time_ms = vrnsim::emissionTimeMs;
        c.usb_ports = vrnsim::usbPorts;
        c.activate_bootloader = vrnsim::activateBootloader;
        c.flash_image = vrnsim::flashImage;
        c.set_flash_pace = vrnsim::setFlashPace;
        return c;
    }();
    return &control;
}
