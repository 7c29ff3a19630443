#include "WindowFunction.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numeric>

namespace vrnsim {

namespace {

// Cosine-sum window a0 - a1 cos(x) + a2 cos(2x) - a3 cos(3x), x = 2 pi n / (size - 1).
std::vector<double> cosineSum(uint32_t size, double a0, double a1, double a2, double a3)
{
    std::vector<double> w(size, 1.0);
    if (size < 2)
        return w;
    const double step = 2.0 * M_PI / double(size - 1);
    for (uint32_t n = 0; n < size; ++n) {
        const double x = step * n;
        w[n] = a0 - a1 * std::cos(x) + a2 * std::cos(2.0 * x) - a3 * std::cos(3.0 * x);
    }
    return w;
}

// Chebyshev polynomial of the first kind, for any real argument.
double chebyshevPolynomial(double order, double x)
{
    if (x > 1.0)
        return std::cosh(order * std::acosh(x));
    if (x < -1.0)
        return (std::fmod(order, 2.0) == 0.0 ? 1.0 : -1.0) * std::cosh(order * std::acosh(-x));
    return std::cos(order * std::acos(x));
}

}  // namespace

std::string WindowFunction::check(const vrn_Window_Config_t& config)
{
    switch (config.type) {
    case VRN_WINDOW_HAMMING:
    case VRN_WINDOW_HANN:
    case VRN_WINDOW_BLACKMANHARRIS:
    case VRN_WINDOW_CHEBYSHEV:
    case VRN_WINDOW_BLACKMAN:
        break;
    default:
        return "Unknown window type " + std::to_string(int(config.type)) + " (0 to 4 are known)";
    }
    if (config.size == 0)
        return "The window size must be at least 1";
    if (!std::isfinite(config.scale) || config.scale <= 0.0f)
        return "The window scale must be a positive number";
    if (!std::isfinite(config.attenuation_dB))
        return "The window attenuation must be a finite number of dB";
    return std::string();
}

std::vector<double> WindowFunction::shape(vrn_Window_Type_t type, uint32_t size, double attenuationDb)
{
    switch (type) {
    case VRN_WINDOW_HAMMING: return cosineSum(size, 0.54, 0.46, 0.0, 0.0);
    case VRN_WINDOW_HANN: return cosineSum(size, 0.5, 0.5, 0.0, 0.0);
    case VRN_WINDOW_BLACKMANHARRIS: return cosineSum(size, 0.35875, 0.48829, 0.14128, 0.01168);
    case VRN_WINDOW_CHEBYSHEV: return chebyshev(size, attenuationDb);
    case VRN_WINDOW_BLACKMAN:
    default: return cosineSum(size, 0.42, 0.5, 0.08, 0.0);
    }
}

// Dolph-Chebyshev: equal side lobes at -attenuation dB. The window is the
// inverse transform of the Chebyshev polynomial sampled on the unit circle;
// the sizes are small and the window is made once per handle, so a direct
// transform in double precision is plenty.
std::vector<double> WindowFunction::chebyshev(uint32_t size, double attenuationDb)
{
    std::vector<double> w(size, 1.0);
    if (size < 2)
        return w;
    const uint32_t m = size;
    const double order = double(m - 1);
    const double beta = std::cosh(std::acosh(std::pow(10.0, std::fabs(attenuationDb) / 20.0)) / order);
    std::vector<std::complex<double>> p(m);
    for (uint32_t k = 0; k < m; ++k) {
        const double value = chebyshevPolynomial(order, beta * std::cos(M_PI * k / m));
        // An even length needs a half-sample shift to stay symmetric.
        p[k] = m % 2 ? std::complex<double>(value) : value * std::polar(1.0, M_PI * k / m);
    }
    auto transformed = [&](uint32_t n) {
        std::complex<double> sum = 0.0;
        for (uint32_t k = 0; k < m; ++k)
            sum += p[k] * std::polar(1.0, -2.0 * M_PI * double(k) * double(n) / double(m));
        return sum.real();
    };
    if (m % 2) {
        const uint32_t half = (m + 1) / 2;
        for (uint32_t n = 0; n < half; ++n) {
            const double v = transformed(n);
            w[half - 1 + n] = v;
            w[half - 1 - n] = v;
        }
    } else {
        const uint32_t half = m / 2 + 1;
        for (uint32_t n = 1; n < half; ++n) {
            const double v = transformed(n);
            w[half - 2 + n] = v;
            w[half - 1 - n] = v;
        }
    }
    const double peak = *std::max_element(w.begin(), w.end());
    for (double& v : w)
        v /= peak;
    return w;
}

std::vector<float> WindowFunction::coefficients(const vrn_Window_Config_t& config, bool normalized)
{
    const std::vector<double> w = shape(config.type, config.size, config.attenuation_dB);
    double factor = config.scale;
    if (normalized) {
        const double sum = std::accumulate(w.begin(), w.end(), 0.0);
        if (sum > 0.0)
            factor /= sum;
    }
    std::vector<float> out(w.size());
    for (size_t n = 0; n < w.size(); ++n)
        out[n] = float(w[n] * factor);
    return out;
}

}  // namespace vrnsim
