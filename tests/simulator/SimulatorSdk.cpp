#include "SimulatorSdk.h"

#include <cmath>

SimulatorSdk::SimulatorSdk()
    : m_library(QStringLiteral(VRN_SIM_LIBRARY))
{
    if (!m_library.load())
        return;
    auto entry = reinterpret_cast<vrn_entry_points_fn>(m_library.resolve(VRN_ENTRY_POINTS_SYMBOL));
    auto control = reinterpret_cast<vrnsim_control_fn>(m_library.resolve(VRNSIM_CONTROL_SYMBOL));
    vrn = entry ? entry() : nullptr;
    sim = control ? control() : nullptr;
}

vrn_Device_Handle SimulatorSdk::open(const char* uuid)
{
    vrn_Device_Handle device = nullptr;
    return vrn->device_create_by_uuid(uuid, &device) == VRN_STATUS_OK ? device : nullptr;
}

void SimulatorSdk::close(vrn_Device_Handle& device, vrn_Frame_R_t*& frame)
{
    if (frame)
        vrn->frame_r_destroy(frame);
    if (device)
        vrn->device_destroy(device);
    frame = nullptr;
    device = nullptr;
}

QStringList SimulatorSdk::listedUuids()
{
    QStringList uuids;
    vrn_Device_List_Handle list = nullptr;
    if (vrn->device_list_get(&list))
        return {QStringLiteral("<list failed>")};
    uint32_t count = 0;
    vrn->device_list_size(list, &count);
    for (uint32_t i = 0; i < count; ++i) {
        vrn_Device_List_Entry_t entry{};
        if (!vrn->device_list_entry(list, i, &entry))
            uuids << QString::fromUtf8(entry.uuid);
    }
    vrn->device_list_destroy(list);
    return uuids;
}

QByteArray oneBoardBench(const char* uuid, const QString& chip, const QString& targets, double noise, int seed)
{
    return QStringLiteral(R"({ "boards": [ { "uuid": "%1", "chip": "%2", "pacing": "unpaced",
        "noise": %3, "seed": %4, "scene": { "targets": [ %5 ] } } ] })")
        .arg(QString::fromUtf8(uuid), chip)
        .arg(noise)
        .arg(seed)
        .arg(targets)
        .toUtf8();
}

vrn_Metrics_t sceneMetrics(uint32_t rxMask, float rangeResolution)
{
    vrn_Metrics_t m{};
    m.sample_rate_Hz = 1000000;
    m.rx_mask = rxMask;
    m.tx_mask = 1;
    m.tx_power_level = 31;
    m.if_gain_dB = 33;
    m.range_resolution_m = rangeResolution;
    m.max_range_m = 9.6f;
    m.max_speed_m_s = 2.45f;
    m.speed_resolution_m_s = 0.0766f;
    m.frame_repetition_time_s = 0.1f;
    m.center_frequency_Hz = 60.5e9f;
    return m;
}

std::vector<std::complex<double>> dft(const float* x, size_t n, bool removeOffset)
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

size_t peakBin(const std::vector<std::complex<double>>& spectrum, size_t first, size_t last)
{
    size_t best = first;
    for (size_t k = first; k < last; ++k)
        if (std::abs(spectrum[k]) > std::abs(spectrum[best]))
            best = k;
    return best;
}

double wrapPhase(double p)
{
    return std::remainder(p, 2.0 * M_PI);
}
