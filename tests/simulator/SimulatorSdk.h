#pragma once

// Loads the simulated SDK the way the workbench does: the built library by
// path, its entry-point table and, next to it, its control table.

#include <sdk/vrn.h>
#include <vrn_sim.h>

#include <QLibrary>
#include <QString>

#include <complex>
#include <vector>

class SimulatorSdk
{
public:
    SimulatorSdk()
        : m_library(QStringLiteral(VRN_SIM_LIBRARY))
    {
        if (!m_library.load())
            return;
        auto entry = reinterpret_cast<vrn_entry_points_fn>(m_library.resolve(VRN_ENTRY_POINTS_SYMBOL));
        auto control = reinterpret_cast<vrnsim_control_fn>(m_library.resolve(VRNSIM_CONTROL_SYMBOL));
        vrn = entry ? entry() : nullptr;
        sim = control ? control() : nullptr;
    }

    QString loadError() const { return m_library.errorString(); }

    // Opens the only board of a freshly loaded bench; null on failure.
    vrn_Device_Handle open(const char* uuid)
    {
        vrn_Device_Handle device = nullptr;
        return vrn->device_create_by_uuid(uuid, &device) == VRN_STATUS_OK ? device : nullptr;
    }

    const Vrn* vrn = nullptr;
    const VrnSimControl* sim = nullptr;

private:
    QLibrary m_library;
};

// Plain DFT of one row, written out so the tests do not lean on any FFT of
// the code under test.
inline std::vector<std::complex<double>> dft(const float* x, size_t n, bool removeOffset = true)
{
    std::vector<std::complex<double>> out(n);
    double mean = 0;
    if (removeOffset) {
        for (size_t i = 0; i < n; ++i)
            mean += x[i];
        mean /= double(n);
    }
    for (size_t k = 0; k < n; ++k) {
        std::complex<double> sum = 0;
        for (size_t i = 0; i < n; ++i)
            sum += (double(x[i]) - mean) * std::polar(1.0, -2.0 * M_PI * double(k) * double(i) / double(n));
        out[k] = sum;
    }
    return out;
}

inline size_t peakBin(const std::vector<std::complex<double>>& spectrum, size_t first, size_t last)
{
    size_t best = first;
    for (size_t k = first; k < last; ++k)
        if (std::abs(spectrum[k]) > std::abs(spectrum[best]))
            best = k;
    return best;
}

inline double wrapPhase(double p)
{
    return std::remainder(p, 2.0 * M_PI);
}
