// Range spectrum plus range-Doppler map of a whole frame (three antennas):
// ours through the SDK table, the bare FFTW transforms of the same sizes, and
// the numpy reference (reference_numpy.py), side by side with their ratios.

#include <sdk/vrn.h>

#include <benchmark/benchmark.h>
#include <fftw3.h>

#include <dlfcn.h>

#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

struct FrameSize {
    const char* name;
    uint32_t antennas, chirps, samples, rangeFft, dopplerFft;
};

const FrameSize kSizes[] = {
    {"default", 3, 64, 64, 256, 256},
    {"large", 3, 256, 512, 512, 256},
};

const Vrn* sdk()
{
    static const Vrn* vrn = [] {
        void* library = dlopen(VRN_SIM_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        auto entry = library ? reinterpret_cast<vrn_entry_points_fn>(dlsym(library, VRN_ENTRY_POINTS_SYMBOL))
                             : nullptr;
        return entry ? entry() : nullptr;
    }();
    return vrn;
}

// A frame of ADC-like values; the content does not change the work done.
vrn_Frame_R_t* makeFrame(const Vrn* vrn, const FrameSize& size)
{
    vrn_Frame_R_t* frame = nullptr;
    if (vrn->frame_r_create(size.antennas, size.chirps, size.samples, &frame))
        return nullptr;
    std::mt19937 random(1);
    std::normal_distribution<float> noise(0.5f, 0.01f);
    for (uint32_t a = 0; a < size.antennas; ++a)
        for (uint32_t i = 0; i < size.chirps * size.samples; ++i)
            frame->rx_data[a]->data[i] = noise(random);
    return frame;
}

void ours(benchmark::State& state, FrameSize size)
{
    const Vrn* vrn = sdk();
    if (!vrn) {
        state.SkipWithError("cannot load the simulated SDK");
        return;
    }
    const vrn_PPFFT_Config_t range{VRN_FFT_TYPE_R2C, size.rangeFft, 1, 1,
                                   {VRN_WINDOW_BLACKMANHARRIS, size.samples, 1.0f, 0.0f}};
    const vrn_PPFFT_Config_t doppler{VRN_FFT_TYPE_C2C, size.dopplerFft, 1, 1,
                                     {VRN_WINDOW_CHEBYSHEV, size.chirps, 1.0f, 100.0f}};
    const vrn_RS_Config_t rsConfig{1e-6f, VRN_SCALE_TYPE_DECIBEL_20LOG, range, size.chirps};
    const vrn_RDM_Config_t rdmConfig{1e-6f, VRN_SCALE_TYPE_DECIBEL_20LOG, range, doppler};
    vrn_RS_Handle rs = nullptr;
    vrn_RDM_Handle rdm = nullptr;
    vrn_Vector_R_s* spectrum = nullptr;
    vrn_Matrix_R_s* map = nullptr;
    vrn_Frame_R_t* frame = makeFrame(vrn, size);
    if (!frame || vrn->rs_create(&rsConfig, &rs) || vrn->rdm_create(&rdmConfig, &rdm) ||
        vrn->vector_r_create(size.rangeFft / 2, &spectrum) ||
        vrn->matrix_r_create(size.rangeFft / 2, size.dopplerFft, &map)) {
        state.SkipWithError("cannot set up the processing");
        return;
    }
    for (auto _ : state) {
        for (uint32_t a = 0; a < size.antennas; ++a) {
            if (vrn->rs_run(rs, frame->rx_data[a], spectrum) || vrn->rdm_run(rdm, frame->rx_data[a], map)) {
                state.SkipWithError("processing failed");
                break;
            }
        }
        benchmark::DoNotOptimize(map->data);
        benchmark::ClobberMemory();
    }
    vrn->matrix_r_destroy(map);
    vrn->vector_r_destroy(spectrum);
    vrn->rdm_destroy(rdm);
    vrn->rs_destroy(rs);
    vrn->frame_r_destroy(frame);
}

// The transforms alone: per antenna one real FFT for the spectrum, one real
// FFT per chirp and one complex FFT per range bin, planned the way the
// simulator plans them, on buffers that are already in place.
void bareFftw(benchmark::State& state, FrameSize size)
{
    const int nr = int(size.rangeFft), nd = int(size.dopplerFft), chirps = int(size.chirps);
    const int bins = nr / 2;
    float* spectrumIn = fftwf_alloc_real(size_t(nr));
    fftwf_complex* spectrumOut = fftwf_alloc_complex(size_t(nr));
    float* rangeIn = fftwf_alloc_real(size_t(chirps) * nr);
    fftwf_complex* rangeOut = fftwf_alloc_complex(size_t(chirps) * (bins + 1));
    fftwf_complex* dopplerIn = fftwf_alloc_complex(size_t(bins) * nd);
    fftwf_complex* dopplerOut = fftwf_alloc_complex(size_t(bins) * nd);
    fftwf_plan spectrumPlan = fftwf_plan_dft_r2c_1d(nr, spectrumIn, spectrumOut, FFTW_ESTIMATE);
    fftwf_plan rangePlan = fftwf_plan_many_dft_r2c(1, &nr, chirps, rangeIn, nullptr, 1, nr, rangeOut, nullptr, 1,
                                                   bins + 1, FFTW_ESTIMATE);
    fftwf_plan dopplerPlan = fftwf_plan_many_dft(1, &nd, bins, dopplerIn, nullptr, 1, nd, dopplerOut, nullptr, 1, nd,
                                                 FFTW_FORWARD, FFTW_ESTIMATE);
    std::fill(spectrumIn, spectrumIn + nr, 0.25f);
    std::fill(rangeIn, rangeIn + size_t(chirps) * nr, 0.25f);
    std::fill(&dopplerIn[0][0], &dopplerIn[0][0] + 2 * size_t(bins) * nd, 0.25f);
    for (auto _ : state) {
        for (uint32_t a = 0; a < size.antennas; ++a) {
            fftwf_execute_dft_r2c(spectrumPlan, spectrumIn, spectrumOut);
            fftwf_execute_dft_r2c(rangePlan, rangeIn, rangeOut);
            fftwf_execute_dft(dopplerPlan, dopplerIn, dopplerOut);
        }
        benchmark::DoNotOptimize(dopplerOut);
        benchmark::ClobberMemory();
    }
    fftwf_destroy_plan(spectrumPlan);
    fftwf_destroy_plan(rangePlan);
    fftwf_destroy_plan(dopplerPlan);
    fftwf_free(spectrumIn);
    fftwf_free(spectrumOut);
    fftwf_free(rangeIn);
    fftwf_free(rangeOut);
    fftwf_free(dopplerIn);
    fftwf_free(dopplerOut);
}

// Collects processor seconds per frame of every repetition while the
// console shows them, and keeps the best one per benchmark: the machine is
// shared, and other work only ever adds time.
class Collector : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.iterations <= 0 || run.error_occurred)
                continue;
            const std::string name = run.run_name.function_name;
            const double perFrame = run.cpu_accumulated_time / double(run.iterations);
            const auto it = seconds.find(name);
            if (it == seconds.end() || perFrame < it->second)
                seconds[name] = perFrame;
        }
        ConsoleReporter::ReportRuns(runs);
    }
    std::map<std::string, double> seconds;
};

// Seconds per frame of the numpy reference by frame name; empty when Debian's
// numpy is not there.
std::map<std::string, double> numpyTimes()
{
    std::map<std::string, double> times;
    const std::string command = "/usr/bin/python3 " BENCH_SOURCE_DIR "/reference_numpy.py";
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe)
        return times;
    char name[32];
    double seconds = 0.0;
    while (std::fscanf(pipe, "%31s %lf", name, &seconds) == 2)
        times[name] = seconds;
    pclose(pipe);
    return times;
}

}  // namespace

int main(int argc, char** argv)
{
    for (const FrameSize& size : kSizes) {
        benchmark::RegisterBenchmark((std::string("ours/") + size.name).c_str(), ours, size)
            ->Unit(benchmark::kMicrosecond)
            ->Repetitions(5);
        benchmark::RegisterBenchmark((std::string("fftw/") + size.name).c_str(), bareFftw, size)
            ->Unit(benchmark::kMicrosecond)
            ->Repetitions(5);
    }
    benchmark::Initialize(&argc, argv);
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    const std::map<std::string, double> numpy = numpyTimes();

    std::printf("\nRange spectrum + range-Doppler map of one frame (3 antennas),\n"
                "processor microseconds per frame, best of the repetitions\n");
    std::printf("%-8s %10s %10s %10s %11s %12s\n", "frame", "ours", "FFTW", "numpy", "ours/FFTW", "numpy/ours");
    for (const FrameSize& size : kSizes) {
        const auto us = [&](const std::map<std::string, double>& m, const std::string& key) {
            const auto it = m.find(key);
            return it == m.end() ? -1.0 : it->second * 1e6;
        };
        const double o = us(collector.seconds, std::string("ours/") + size.name);
        const double f = us(collector.seconds, std::string("fftw/") + size.name);
        const double n = us(numpy, size.name);
        if (o <= 0.0 || f <= 0.0)
            continue;
        if (n > 0.0)
            std::printf("%-8s %10.1f %10.1f %10.1f %10.2fx %11.1fx\n", size.name, o, f, n, o / f, n / o);
        else
            std::printf("%-8s %10.1f %10.1f %10s %10.2fx %12s\n", size.name, o, f, "n/a", o / f, "n/a");
    }
    std::printf("Targets: ours/FFTW at most 1.5x; numpy/ours at least 10x (default) and 5x (large).\n");
    if (numpy.empty())
        std::printf("The numpy reference did not run (needs /usr/bin/python3 with numpy and scipy).\n");
    benchmark::Shutdown();
    return 0;
}
