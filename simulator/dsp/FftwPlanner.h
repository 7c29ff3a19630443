#pragma once

#include <fftw3.h>

namespace vrnsim {

// FFTW's planner keeps global state and may not run on two threads at once;
// handles are created from any thread, so every plan is made and destroyed
// under one process-wide lock. Plans are estimated, not measured: measuring
// takes long enough to stall a settings change in the user interface.
// Executing a plan needs no lock.
class FftwPlanner
{
public:
    // `count` real transforms of length n, rows `inDistance` floats apart in
    // `in`, results n/2+1 complex values apart in `out`.
    static fftwf_plan realForward(int n, int count, float* in, int inDistance, fftwf_complex* out);
    // `count` complex transforms of length n on contiguous rows of n values.
    static fftwf_plan complexForward(int n, int count, fftwf_complex* in, fftwf_complex* out);
    // `count` complex transforms of length n down the columns of `in`: element
    // i of transform j at in[i * inStride + j]; results in contiguous rows.
    static fftwf_plan complexColumns(int n, int count, fftwf_complex* in, int inStride, fftwf_complex* out);
    static void destroy(fftwf_plan plan);
};

}  // namespace vrnsim
