#include "FftwPlanner.h"

#include <mutex>

namespace vrnsim {

namespace {

std::mutex& plannerMutex()
{
    static std::mutex mutex;
    return mutex;
}

}  // namespace

fftwf_plan FftwPlanner::realForward(int n, int count, float* in, int inDistance, fftwf_complex* out)
{
    std::lock_guard<std::mutex> lock(plannerMutex());
    return fftwf_plan_many_dft_r2c(1, &n, count, in, nullptr, 1, inDistance, out, nullptr, 1, n / 2 + 1,
                                   FFTW_ESTIMATE);
}

fftwf_plan FftwPlanner::complexForward(int n, int count, fftwf_complex* in, fftwf_complex* out)
{
    std::lock_guard<std::mutex> lock(plannerMutex());
    return fftwf_plan_many_dft(1, &n, count, in, nullptr, 1, n, out, nullptr, 1, n, FFTW_FORWARD, FFTW_ESTIMATE);
}

fftwf_plan FftwPlanner::complexColumns(int n, int count, fftwf_complex* in, int inStride, fftwf_complex* out)
{
    std::lock_guard<std::mutex> lock(plannerMutex());
    return fftwf_plan_many_dft(1, &n, count, in, nullptr, inStride, 1, out, nullptr, 1, n, FFTW_FORWARD,
                               FFTW_ESTIMATE);
}

void FftwPlanner::destroy(fftwf_plan plan)
{
    if (!plan)
        return;
    std::lock_guard<std::mutex> lock(plannerMutex());
    fftwf_destroy_plan(plan);
}

}  // namespace vrnsim
