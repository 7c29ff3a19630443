#!/usr/bin/python3
"""numpy reference of the range spectrum and range-Doppler map of one frame.

The same computation as the simulated SDK's: per antenna the range spectrum
of the first chirp and the range-Doppler map (mean removal over each chirp,
Blackman-Harris range window, zero-padded real FFT, positive half; mean
removal across chirps, Chebyshev 100 dB Doppler window, zero-padded complex
FFT, shift, magnitude in 20 log10 floored at 1e-6), vectorised over the three
antennas as a numpy user would write it.

Run with Debian's numpy: /usr/bin/python3 reference_numpy.py
Prints one line per frame size: "<name> <processor seconds per frame>".
"""
import sys
import time
import timeit

import numpy as np
from scipy.signal import windows

THRESHOLD = 1e-6

SIZES = [
    # name, antennas, chirps, samples, range FFT, Doppler FFT
    ("default", 3, 64, 64, 256, 256),
    ("large", 3, 256, 512, 512, 256),
]


def make(antennas, chirps, samples, range_fft, doppler_fft):
    range_window = windows.blackmanharris(samples, sym=True).astype(np.float32)
    range_window /= range_window.sum()
    doppler_window = windows.chebwin(chirps, 100.0, sym=True).astype(np.float32)
    doppler_window /= doppler_window.sum()
    rng = np.random.default_rng(1)
    frame = (0.5 + 0.01 * rng.standard_normal((antennas, chirps, samples))).astype(np.float32)

    def process():
        # Range spectrum: first chirp of every antenna.
        first = frame[:, 0, :]
        first = first - first.mean(axis=1, keepdims=True)
        spectrum = np.abs(np.fft.rfft(first * range_window, range_fft, axis=1))[:, : range_fft // 2]
        spectrum = 20.0 * np.log10(np.maximum(spectrum, THRESHOLD))
        # Range-Doppler map.
        chirps_ = frame - frame.mean(axis=2, keepdims=True)
        r = np.fft.rfft(chirps_ * range_window, range_fft, axis=2)[:, :, : range_fft // 2]
        r = r - r.mean(axis=1, keepdims=True)
        d = np.fft.fft(r * doppler_window[None, :, None], doppler_fft, axis=1)
        d = np.fft.fftshift(d, axes=1)
        rdm = 20.0 * np.log10(np.maximum(np.abs(d), THRESHOLD)).transpose(0, 2, 1)
        return spectrum, rdm

    return process


def main():
    for name, *shape in SIZES:
        process = make(*shape)
        process()
        # Processor time, best of the repeats, as the C++ side measures: the
        # machine is shared and other work only ever adds time.
        timer = timeit.Timer(process, timer=time.process_time)
        number, _ = timer.autorange()
        best = min(timer.repeat(repeat=5, number=number)) / number
        print("%s %.9f" % (name, best))
    sys.stdout.flush()


if __name__ == "__main__":
    main()
