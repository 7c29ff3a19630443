#pragma once

// A hand-written stand-in for the SDK table with scripted answers, for the
// failure paths a simulated board cannot be made to take on demand. Only the
// entry points the FMCW device and conversion use are filled.

#include "sdk/vrn.h"

#include <QByteArray>
#include <QVector>

#include <atomic>

struct FakeVrn {
    Vrn table {};

    // device_create_by_uuid always succeeds; refused opens are exercised
    // against the simulated SDK.
    QByteArray lastUuid;
    int destroyCalls = 0;
    const char* destroyError = nullptr;

    // configuration
    const char* limitsError = nullptr;
    vrn_Metrics_Limits_t limits {};
    const char* translateError = nullptr;
    vrn_Device_Config_t translated {};
    vrn_Metrics_t lastMetrics {};
    const char* setConfigError = nullptr;
    int setConfigCalls = 0;
    vrn_Device_Config_t lastSetConfig {};
    const char* prtError = nullptr;
    float prt = 0.0f;
    float chirpTime = 64e-6f;
    const char* chirpTimeError = nullptr;

    // frames: statuses are answered in order, the last one repeats
    QVector<vrn_Status_t> frameStatuses { VRN_STATUS_OK };
    std::atomic<int> nextFrameCalls { 0 };
    const char* frameCreateError = nullptr;
    uint32_t lastFrameChannels = 0;
    std::atomic<int> framesAlive { 0 };
    QVector<const char*> clearErrors; // per channel index
    int clearCalls = 0;
    int frameDestroyCalls = 0;

    // stop, queries
    const char* stopError = nullptr;
    uint8_t stopped = 1;
    int stopCalls = 0;
    vrn_Status_t temperatureStatus = VRN_STATUS_OK;
    float temperature = 0.0f;
    vrn_Device_Info_t info {};
    vrn_Firmware_Info_t firmware {};
    const char* infoError = nullptr;
    QVector<float> txPower; // NaN entries fail
    const char* segError = nullptr;
    vrn_Segmentation_Config_t segDefaults {};
    const char* psError = nullptr;
    vrn_PresenceSensing_Config_t psDefaults {};

    static FakeVrn*& current()
    {
        static FakeVrn* instance = nullptr;
        return instance;
    }

    FakeVrn();
    ~FakeVrn() { current() = nullptr; }
};
