#include "ChipModel.h"

namespace vrnsim {

namespace {

ChipModel makeFmcw(vrn_Device_Type_t type, const char* name, vrn_Device_Shield_Type_t shield,
                   uint64_t minRf, uint64_t maxRf)
{
    ChipModel c;
    c.type = type;
    c.name = name;
    c.defaultShield = shield;
    c.minRfHz = minRf;
    c.maxRfHz = maxRf;
    c.numTx = 1;
    c.numRx = 3;
    // Rx1 and Rx3 form the horizontal pair half a wavelength apart; Rx2 sits
    // half a wavelength above Rx1 for elevation.
    c.rxPosition[0][0] = 0.0; c.rxPosition[0][1] = 0.0;
    c.rxPosition[1][0] = 0.0; c.rxPosition[1][1] = 0.5;
    c.rxPosition[2][0] = 0.5; c.rxPosition[2][1] = 0.0;
    c.minSampleRateHz = 100000;
    c.maxSampleRateHz = 2000000;
    c.minSamplesPerChirp = 8;
    c.maxSamplesPerChirp = 1024;
    c.minChirpsPerFrame = 1;
    c.maxChirpsPerFrame = 512;
    c.maxTxPowerLevel = 31;
    c.minIfGainDb = 18;
    c.maxIfGainDb = 60;
    c.rampOverheadS = 10e-6;
    c.maxChirpRepetitionS = 5e-3;
    c.maxFrameRepetitionS = 10.0;
    c.cwTestSignalModes = 2;
    c.cwHighPassCutoffs = 4;
    return c;
}

const ChipModel* table()
{
    static const ChipModel chips[] = {
        makeFmcw(VRN_DEVICE_TYPE_KMR7A, "KMR7A", VRN_SHIELD_FMCW_512, 58000000000ull, 63500000000ull),
        makeFmcw(VRN_DEVICE_TYPE_KMR7B, "KMR7B", VRN_SHIELD_FMCW_513, 57000000000ull, 64000000000ull),
        [] {
            ChipModel c = makeFmcw(VRN_DEVICE_TYPE_KMR7C, "KMR7C", VRN_SHIELD_FMCW_514,
                                   57000000000ull, 64000000000ull);
            c.numTx = 2;
            c.numRx = 4;
            // 2 x 2 receive array; Tx2 one wavelength right of Tx1, so time
            // division over both Tx gives a horizontal virtual array at
            // 0, 1/2, 1 and 3/2 wavelengths from Rx1/Rx3 pairs.
            c.rxPosition[3][0] = 0.5; c.rxPosition[3][1] = 0.5;
            c.txPosition[1][0] = 1.0;
            c.maxSamplesPerChirp = 2048;
            c.cwTemperature = false;
            c.cwTxPower = false;
            c.cwTestSignalModes = 5;
            c.cwHighPassCutoffs = 5;
            return c;
        }(),
        [] {
            ChipModel c;
            c.type = VRN_DEVICE_TYPE_ZP7;
            c.name = "ZP7";
            c.pulsedDoppler = true;
            c.defaultShield = VRN_SHIELD_ZP7_768;
            c.minRfHz = 24000000000ull;
            c.maxRfHz = 24250000000ull;
            c.numTx = 2;
            c.numRx = 2;
            c.minSampleRateHz = 100;
            c.maxSampleRateHz = 10000;
            c.minSamplesPerChirp = 16;
            c.maxSamplesPerChirp = 2048;
            c.maxTxPowerLevel = 7;
            c.maxFrameRepetitionS = 10.0;
            return c;
        }(),
    };
    return chips;
}

constexpr int kChipCount = 4;

}  // namespace

const ChipModel* ChipModel::byName(const std::string& name)
{
    for (int i = 0; i < kChipCount; ++i)
        if (name == table()[i].name)
            return &table()[i];
    return nullptr;
}

const ChipModel* ChipModel::byType(vrn_Device_Type_t type)
{
    for (int i = 0; i < kChipCount; ++i)
        if (table()[i].type == type)
            return &table()[i];
    return nullptr;
}

bool ChipModel::shieldFits(const ChipModel& chip, int shield)
{
    if (chip.pulsedDoppler)
        return shield == VRN_SHIELD_ZP7_768;
    return shield == VRN_SHIELD_FMCW_512 || shield == VRN_SHIELD_FMCW_513 || shield == VRN_SHIELD_FMCW_514;
}

}  // namespace vrnsim
