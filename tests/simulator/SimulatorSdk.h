#pragma once

// Shared by the simulator tests: the simulated SDK loaded the way the
// workbench loads it (the built library by path, its entry-point table and,
// next to it, its control table), benches and scene metrics the tests start
// from, and plain reference signal processing.

#include <sdk/vrn.h>
#include <vrn_sim.h>

#include <QByteArray>
#include <QLibrary>
#include <QString>
#include <QStringList>

#include <complex>
#include <vector>

class SimulatorSdk
{
public:
    SimulatorSdk();

    QString loadError() const { return m_library.errorString(); }

    // Opens the only board of a freshly loaded bench; null on failure.
    vrn_Device_Handle open(const char* uuid);
    // Destroys what a test left open and clears the pointers.
    void close(vrn_Device_Handle& device, vrn_Frame_R_t*& frame);
    // The uuids of the device list, or "<list failed>".
    QStringList listedUuids();

    const Vrn* vrn = nullptr;
    const VrnSimControl* sim = nullptr;

private:
    QLibrary m_library;
};

// A bench of one unpaced board `uuid` carrying `chip`, with the scene's
// `targets` (JSON objects separated by commas).
QByteArray oneBoardBench(const char* uuid, const QString& chip, const QString& targets, double noise = 0.0,
                         int seed = 1);

// The default scene (9.6 m, 2.45 m/s, 0.0766 m/s, ten frames a second at
// 60.5 GHz) seen through the receivers of `rxMask` and the first transmitter.
vrn_Metrics_t sceneMetrics(uint32_t rxMask, float rangeResolution = 0.3f);

// Plain DFT of one row, written out so the tests do not lean on any FFT of
// the code under test.
std::vector<std::complex<double>> dft(const float* x, size_t n, bool removeOffset = true);

// The bin of the largest magnitude in [first, last).
size_t peakBin(const std::vector<std::complex<double>>& spectrum, size_t first, size_t last);

// A phase folded into [-pi, pi].
double wrapPhase(double p);
