#pragma once

// A hand-written stand-in for the SDK's processing entry points with
// scripted answers, for the failure paths the simulator cannot be made to
// take. Frames, vectors and matrices are real allocations and counted, so a
// test sees leaks. The runs write recognisable values instead of computing
// anything: the first sample of the input channel, so a test can tell which
// channel reached the SDK.

#include "common/SharedFrame.h"
#include "host/IBroker.h"
#include "sdk/vrn.h"

#include <QVector>

struct FakeProcessingVrn {
    Vrn table {};

    int framesAlive = 0;
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
    const char* psCreateError = nullptr;
    const char* psDestroyError = nullptr;
    int psDestroyCalls = 0;
    vrn_PresenceSensing_Config_t psDefaults {};
    vrn_PresenceSensing_Config_t psConfig {};
    bool psInputMissing = false;
    QVector<const char*> psRunErrors;
    int psRuns = 0;

    // segmentation
    const char* segCreateError = nullptr;
    vrn_Segmentation_Config_t segConfig {};
    const char* segRunError = nullptr;
    QVector<float> segInputMarkers; // first sample of each channel handed in
    vrn_Segmentation_Result_t segResult {};

    static FakeProcessingVrn*& current()
    {
        static FakeProcessingVrn* instance = nullptr;
        return instance;
    }

    // A frame of `channels` matrices of chirps × samples; every sample of
    // channel c holds `10 × (c + 1)`. It is owned the way the module's frames
    // are: the last holder hands it back through this table.
    SharedFrame newFrame(uint32_t channels, uint32_t chirps, uint32_t samples);

    FakeProcessingVrn();
};

class FakeBroker : public IBroker
{
public:
    explicit FakeBroker(const Vrn* vrn)
        : m_vrn(vrn)
    {
    }
    const Vrn* sdk() const override { return m_vrn; }
    QString applicationDirectory() const override { return QString(); }

private:
    const Vrn* m_vrn;
};
