#pragma once

#include "ChipModel.h"
#include "FlashFault.h"
#include "ScheduledFault.h"
#include "Scene.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vrnsim {

// One board of a bench, as written in the bench file.
struct BoardSpec {
    std::string uuid;
    int shield = 0;
    const ChipModel* chip = nullptr;
    uint16_t firmware[3] = {2, 5, 1};
    std::string firmwareDescription;
    std::string port;
    bool realtime = true;
    double noise = 0.002;
    uint64_t seed = 1;
    uint32_t fifoFrames = 4;
    double ambientC = 25.0;
    double heatingC = 20.0;        // rise above ambient at full duty
    double thermalTimeS = 60.0;    // time constant of that rise
    Scene scene;
    std::vector<ScheduledFault> faults;

    // The baseboard as a flashing library sees it on the USB bus.
    std::string usbVendor = "2F5A";
    std::string usbProduct;        // by shield: 512 "0251", 513 "0252", 514 and 768 "0253"
    bool startsInBootloader = false;
    FlashPace flashPace;
    std::vector<FlashFault> flashFaults;
};

}  // namespace vrnsim
