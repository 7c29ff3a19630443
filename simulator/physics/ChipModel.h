#pragma once

#include <sdk/vrn.h>

#include <string>

namespace vrnsim {

// What one radar chip can do. Antenna positions are in units of the
// wavelength at the centre of the chip's RF band, x horizontal, y vertical.
struct ChipModel {
    vrn_Device_Type_t type = VRN_DEVICE_TYPE_UNKNOWN;
    const char* name = "";
    bool pulsedDoppler = false;
    vrn_Device_Shield_Type_t defaultShield = VRN_SHIELD_UNKNOWN;
    uint64_t minRfHz = 0;
    uint64_t maxRfHz = 0;
    uint32_t numTx = 0;
    uint32_t numRx = 0;
    double txPosition[2][2] = {};
    double rxPosition[4][2] = {};
    uint32_t adcBits = 12;
    uint32_t minSampleRateHz = 0;
    uint32_t maxSampleRateHz = 0;
    uint32_t minSamplesPerChirp = 0;
    uint32_t maxSamplesPerChirp = 0;
    uint32_t minChirpsPerFrame = 0;
    uint32_t maxChirpsPerFrame = 0;
    uint32_t maxTxPowerLevel = 0;
    uint32_t minIfGainDb = 0;
    uint32_t maxIfGainDb = 0;
    double rampOverheadS = 0;        // settling and reset around the sampled ramp
    double maxChirpRepetitionS = 0;
    double maxFrameRepetitionS = 0;
    bool cwTemperature = true;       // temperature sensor readable in CW mode
    bool cwTxPower = true;           // Tx power detector readable in CW mode
    uint32_t cwTestSignalModes = 0;  // number of test-signal modes offered
    uint32_t cwHighPassCutoffs = 0;  // number of high-pass cut-off choices

    // Looks a chip up by name ("KMR7A", ...); null when unknown.
    static const ChipModel* byName(const std::string& name);
    static const ChipModel* byType(vrn_Device_Type_t type);
    static bool shieldFits(const ChipModel& chip, int shield);
};

}  // namespace vrnsim
