// Frames per second of unpaced FMCW synthesis, fetched through the SDK table
// exactly as the module fetches them.

#include <sdk/vrn.h>
#include <vrn_sim.h>

#include <benchmark/benchmark.h>

#include <dlfcn.h>

namespace {

struct Sdk {
    Sdk()
    {
        void* library = dlopen(VRN_SIM_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        if (!library)
            return;
        auto entry = reinterpret_cast<vrn_entry_points_fn>(dlsym(library, VRN_ENTRY_POINTS_SYMBOL));
        auto control = reinterpret_cast<vrnsim_control_fn>(dlsym(library, VRNSIM_CONTROL_SYMBOL));
        vrn = entry ? entry() : nullptr;
        sim = control ? control() : nullptr;
    }
    const Vrn* vrn = nullptr;
    const VrnSimControl* sim = nullptr;
};

// The default scene (a walking person and a reflector) with the default noise.
const char* const kBench = R"({ "boards": [ { "uuid": "bench-1", "chip": "KMR7A", "pacing": "unpaced",
    "noise": 0.002, "seed": 1 } ] })";

void synthesis(benchmark::State& state, float maxRange, float speedResolution, float frameTime, uint32_t sampleRate)
{
    static Sdk sdk;
    if (!sdk.vrn || !sdk.sim || sdk.sim->load_bench_json(kBench)) {
        state.SkipWithError("cannot load the simulator");
        return;
    }
    vrn_Device_Handle device = nullptr;
    if (sdk.vrn->device_create_by_uuid("bench-1", &device) != VRN_STATUS_OK || !device) {
        state.SkipWithError("cannot open the board");
        return;
    }
    vrn_Metrics_t m{};
    m.sample_rate_Hz = sampleRate;
    m.rx_mask = 0x7;
    m.tx_mask = 0x1;
    m.tx_power_level = 31;
    m.if_gain_dB = 33;
    m.range_resolution_m = 0.3f;
    m.max_range_m = maxRange;
    m.max_speed_m_s = 2.45f;
    m.speed_resolution_m_s = speedResolution;
    m.frame_repetition_time_s = frameTime;
    m.center_frequency_Hz = 60.5e9f;
    vrn_Device_Config_t config{};
    vrn_Frame_R_t* frame = nullptr;
    if (sdk.vrn->device_translate_metrics(device, &m, &config) || sdk.vrn->device_set_config(device, &config) ||
        sdk.vrn->frame_r_create(3, config.num_chirps_per_frame, config.num_samples_per_chirp, &frame)) {
        state.SkipWithError("cannot configure the board");
        sdk.vrn->device_destroy(device);
        return;
    }
    for (auto _ : state) {
        if (sdk.vrn->device_get_next_frame(device, frame, 0) != VRN_STATUS_OK) {
            state.SkipWithError("fetch failed");
            break;
        }
        benchmark::DoNotOptimize(frame->rx_data[0]->data[0]);
    }
    state.counters["frames/s"] = benchmark::Counter(double(state.iterations()), benchmark::Counter::kIsRate);
    state.counters["samples"] = double(3ull * config.num_chirps_per_frame * config.num_samples_per_chirp);
    sdk.vrn->frame_r_destroy(frame);
    sdk.vrn->device_destroy(device);
}

// 3 antennas x 64 chirps x 64 samples: the shipped default configuration.
void BM_DefaultFrame(benchmark::State& state)
{
    synthesis(state, 9.6f, 0.0766f, 0.1f, 1000000);
}

// 3 antennas x 256 chirps x 512 samples.
void BM_LargeFrame(benchmark::State& state)
{
    synthesis(state, 76.8f, 2.0f * 2.45f / 256.0f, 0.2f, 2000000);
}

}  // namespace

BENCHMARK(BM_DefaultFrame)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_LargeFrame)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
