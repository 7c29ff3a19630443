#pragma once

// A hand-written stand-in for the SDK table with scripted answers, for the
// failure paths a simulated board cannot be made to take on demand. Frames,
// vectors and matrices are real allocations and counted, so a test sees
// leaks. Calls answer at once: the waits of a real board are exercised
// against the simulated SDK. The processing runs write recognisable values
// instead of computing anything: the first sample of the input channel, so
// a test can tell which channel reached the SDK.

#include "common/SharedFrame.h"
#include "host/IBroker.h"
#include "sdk/vrn.h"

#include <QByteArray>
#include <QVector>

#include <atomic>

class FakeBroker : public IBroker
{
public:
    explicit FakeBroker(const Vrn* vrn) : m_vrn(vrn) {}
    const Vrn* sdk() const override { return m_vrn; }
    QString applicationDirectory() const override { return QString(); }

private:
    const Vrn* m_vrn;
};

struct FakeVrn {
    Vrn table {};
    FakeBroker broker { &table };

    // device: opening always succeeds; refused opens are exercised against
    // the simulated SDK.
    QByteArray lastUuid;
    int destroyCalls = 0;
    const char* destroyError = nullptr;
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
    const char* stopError = nullptr;
    uint8_t stopped = 1;
    int stopCalls = 0;
    vrn_Status_t temperatureStatus = VRN_STATUS_OK;
    float temperature = 0.0f;
    vrn_Device_Info_t info {};
    vrn_Firmware_Info_t firmware {};
    const char* infoError = nullptr;
    QVector<float> txPower; // NaN entries fail

    // frames: statuses are answered in order, the last one repeats
    QVector<vrn_Status_t> frameStatuses { VRN_STATUS_OK };
    std::atomic<int> nextFrameCalls { 0 };
    const char* frameCreateError = nullptr;
    std::atomic<int> framesAlive { 0 };
    int frameDestroyCalls = 0;
    QVector<const char*> clearErrors; // per channel index
    int clearCalls = 0;
    int vectorsAlive = 0;
    int matricesAlive = 0;

    // range spectrum
    const char* rsCreateError = nullptr;
    const char* rsDestroyError = nullptr;
    int rsDestroyCalls = 0;
    vrn_RS_Config_t rsConfig {};
    QVector<const char*> rsRunErrors; // per run, in call order
    int rsRuns = 0;
    const char* axisError = nullptr;
    vrn_Math_Axis_Spec_s axis { 0.0, 9.6, 0.0375 };

    // range-Doppler map
    const char* rdmCreateError = nullptr;
    const char* rdmDestroyError = nullptr;
    vrn_RDM_Config_t rdmConfig {};
    const char* rdmRunError = nullptr;
    const char* rangeAxisError = nullptr;
    const char* speedAxisError = nullptr;
    uint64_t lastBandwidth = 0;
    float lastCenterFrequency = 0.0f;
    float lastChirpTime = 0.0f;

    // presence sensing
    const char* psError = nullptr; // of the defaults
    vrn_PresenceSensing_Config_t psDefaults {};
    const char* psCreateError = nullptr;
    const char* psDestroyError = nullptr;
    int psDestroyCalls = 0;
    vrn_PresenceSensing_Config_t psConfig {};
    bool psInputMissing = false;
    QVector<const char*> psRunErrors;
    int psRuns = 0;

    // segmentation
    const char* segError = nullptr; // of the defaults
    vrn_Segmentation_Config_t segDefaults {};
    const char* segCreateError = nullptr;
    vrn_Segmentation_Config_t segConfig {};
    const char* segRunError = nullptr;
    QVector<float> segInputMarkers; // first sample of each channel handed in
    vrn_Segmentation_Result_t segResult {};

    static FakeVrn*& current()
    {
        static FakeVrn* instance = nullptr;
        return instance;
    }

    // A frame of `channels` matrices of chirps × samples; every sample of
    // channel c holds `10 × (c + 1)`. It is owned the way the module's frames
    // are: the last holder hands it back through this table.
    SharedFrame newFrame(uint32_t channels, uint32_t chirps, uint32_t samples);

    FakeVrn();
    ~FakeVrn()
    {
        if (current() == this)
            current() = nullptr;
    }
};
