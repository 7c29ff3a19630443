#!/usr/bin/python3
"""Reference data for the simulator's signal-processing tests.

Run with Debian's python3 (numpy and scipy from python3-numpy and
python3-scipy) from this directory:

    /usr/bin/python3 make_reference.py

It writes windows.txt, spectra.txt and rdm.txt next to itself. The tests read
these committed files and never run Python. Everything here is computed in
double precision by numpy/scipy, independently of the C++ code:

- windows: scipy.signal.windows (symmetric) hamming, hann, blackmanharris,
  chebwin (attenuation in dB) and blackman;
- spectra: first chirp, optional mean removal, window times scale (divided
  by the window's sum when normalised), numpy.fft.rfft zero-padded to the FFT
  size, magnitude of the first FFT size / 2 bins, then linear, 10 log10 or
  20 log10 of the magnitude floored at the threshold;
- rdm: the same range stage per chirp, then per range bin across chirps
  (optional mean removal of the complex values, Doppler window) a
  zero-padded numpy.fft.fft, numpy.fft.fftshift, magnitude and scale; for
  large maps only every n-th range bin (the last number of the case line).

Inputs are pseudo-random ADC-like values around 0.5 plus tones, from a fixed
numpy seed, so the files are reproducible.
"""
import os

import numpy as np
from scipy.signal import windows

HERE = os.path.dirname(os.path.abspath(__file__))

# Window type numbers as the SDK records carry them.
HAMMING, HANN, BLACKMANHARRIS, CHEBYSHEV, BLACKMAN = range(5)
LINEAR, DB10, DB20 = 0, 10, 20


def window(kind, size, attenuation):
    if kind == HAMMING:
        return windows.hamming(size, sym=True)
    if kind == HANN:
        return windows.hann(size, sym=True)
    if kind == BLACKMANHARRIS:
        return windows.blackmanharris(size, sym=True)
    if kind == CHEBYSHEV:
        return windows.chebwin(size, attenuation, sym=True)
    return windows.blackman(size, sym=True)


def coefficients(kind, size, attenuation, scale, normalized):
    w = window(kind, size, attenuation) * scale
    if normalized:
        w = w / np.sum(window(kind, size, attenuation))
    return w


def scaled(magnitude, scale_type, threshold):
    if scale_type == LINEAR:
        return magnitude
    floored = np.maximum(magnitude, threshold)
    return (20.0 if scale_type == DB20 else 10.0) * np.log10(floored)


def fmt(values):
    return " ".join("%.9g" % v for v in np.ravel(values))


def signal(rng, chirps, samples):
    n = np.arange(samples)
    k = np.arange(chirps)[:, None]
    x = 0.5 + 0.002 * rng.standard_normal((chirps, samples))
    x += 0.05 * np.cos(2 * np.pi * 0.11 * n + 0.7 + 0.9 * k)      # moving target
    x += 0.02 * np.cos(2 * np.pi * 0.27 * n + 1.3)                # still target
    return np.round(x * 4095.0) / 4095.0


def write_windows(path):
    rows = []
    for kind in (HAMMING, HANN, BLACKMANHARRIS, BLACKMAN):
        for size in (1, 7, 16, 64):
            rows.append((kind, size, 0.0))
    for size in (7, 16, 64, 65):
        for attenuation in (60.0, 100.0):
            rows.append((CHEBYSHEV, size, attenuation))
    with open(path, "w") as f:
        f.write("# type size attenuation_dB coefficients...\n")
        for kind, size, attenuation in rows:
            f.write("%d %d %g %s\n" % (kind, size, attenuation, fmt(window(kind, size, attenuation))))


def write_spectra(path, rng):
    cases = [
        # window, size, attenuation, fft, mean removal, normalized, scale, output scale, threshold
        (BLACKMANHARRIS, 64, 0.0, 256, 1, 1, 1.0, DB20, 1e-6),
        (HANN, 64, 0.0, 64, 1, 1, 1.0, LINEAR, 1e-6),
        (HAMMING, 50, 0.0, 128, 0, 0, 2.0, DB10, 1e-3),
        (CHEBYSHEV, 64, 80.0, 128, 1, 1, 1.0, DB20, 1e-6),
        (BLACKMAN, 33, 0.0, 64, 1, 0, 0.5, LINEAR, 1e-6),
        (BLACKMANHARRIS, 128, 0.0, 512, 0, 1, 1.0, DB20, 1e-2),
    ]
    with open(path, "w") as f:
        f.write("# case: window size attenuation fft mean normalized scale output threshold\n")
        for kind, size, att, fft, mean, norm, scale, out, thr in cases:
            x = signal(rng, 2, size)
            row = x[0] - (np.mean(x[0]) if mean else 0.0)
            spectrum = np.abs(np.fft.rfft(row * coefficients(kind, size, att, scale, norm), fft))[: fft // 2]
            f.write("case %d %d %g %d %d %d %g %d %g\n" % (kind, size, att, fft, mean, norm, scale, out, thr))
            f.write("input %d %d %s\n" % (x.shape[0], x.shape[1], fmt(x)))
            f.write("output %s\n" % fmt(scaled(spectrum, out, thr)))


def range_doppler(x, rng_cfg, dop_cfg, out, thr):
    (rk, ra, rfft, rmean, rnorm), (dk, da, dfft, dmean, dnorm) = rng_cfg, dop_cfg
    chirps, samples = x.shape
    rows = x - (np.mean(x, axis=1, keepdims=True) if rmean else 0.0)
    r = np.fft.rfft(rows * coefficients(rk, samples, ra, 1.0, rnorm), rfft, axis=1)[:, : rfft // 2]
    r = r - (np.mean(r, axis=0, keepdims=True) if dmean else 0.0)
    d = np.fft.fft(r * coefficients(dk, chirps, da, 1.0, dnorm)[:, None], dfft, axis=0)
    d = np.fft.fftshift(d, axes=0)
    return scaled(np.abs(d).T, out, thr)  # range bins x Doppler bins


def write_rdm(path, rng):
    # The last case is large enough (130 chirps x 128 range bins) for the
    # code's other Doppler layout; only every 8th range bin is kept for it.
    cases = [
        ((BLACKMANHARRIS, 0.0, 32, 1, 1), (CHEBYSHEV, 100.0, 16, 1, 1), DB20, 1e-6, 8, 16, 1),
        ((HANN, 0.0, 16, 0, 0), (HAMMING, 0.0, 8, 0, 1), LINEAR, 1e-6, 8, 16, 1),
        ((HAMMING, 0.0, 64, 1, 1), (BLACKMAN, 0.0, 32, 1, 0), DB10, 1e-4, 12, 20, 1),
        ((BLACKMANHARRIS, 0.0, 256, 1, 1), (CHEBYSHEV, 80.0, 256, 1, 1), DB20, 1e-6, 130, 24, 8),
    ]
    with open(path, "w") as f:
        f.write("# case: range(window att fft mean norm) doppler(window att fft mean norm) output threshold"
                " range-bin step\n")
        for rng_cfg, dop_cfg, out, thr, chirps, samples, step in cases:
            x = signal(rng, chirps, samples)
            f.write("case %d %g %d %d %d %d %g %d %d %d %d %g %d\n" % (rng_cfg + dop_cfg + (out, thr, step)))
            f.write("input %d %d %s\n" % (chirps, samples, fmt(x)))
            f.write("output %s\n" % fmt(range_doppler(x, rng_cfg, dop_cfg, out, thr)[::step]))


def main():
    rng = np.random.RandomState(20261122)
    write_windows(os.path.join(HERE, "windows.txt"))
    write_spectra(os.path.join(HERE, "spectra.txt"), rng)
    write_rdm(os.path.join(HERE, "rdm.txt"), rng)


if __name__ == "__main__":
    main()
