#include "zp7/ZP7SDopplerTransform.h"

#include "common/RangeSpectrumUserSettings.h"

#include <QDebug>
#include <QtMath>

#include <fftw3.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <initializer_list>
#include <mutex>
#include <vector>

namespace {

// FFTW's planner is not reentrant: plans are made and destroyed under this
// lock. Execution of a finished plan needs none.
std::mutex& plannerMutex()
{
    static std::mutex mutex;
    return mutex;
}

bool isPowerOfTwo(quint32 value)
{
    return value != 0 && (value & (value - 1)) == 0;
}

// Sum of cosine terms a0 - a1 cos(x) + a2 cos(2x) - a3 cos(3x).
QVector<float> cosineWindow(quint32 size, const std::initializer_list<double>& terms)
{
    QVector<float> window(int(size), 1.0f);
    if (size < 2)
        return window;
    for (quint32 n = 0; n < size; ++n) {
        const double x = 2.0 * M_PI * double(n) / double(size - 1);
        double value = 0.0;
        double sign = 1.0;
        int k = 0;
        for (double a : terms) {
            value += sign * a * std::cos(double(k) * x);
            sign = -sign;
            ++k;
        }
        window[int(n)] = float(value);
    }
    return window;
}

// Chebyshev polynomial of the first kind of `order`, for any real x.
double chebyshev(double order, double x)
{
    if (std::abs(x) <= 1.0)
        return std::cos(order * std::acos(x));
    const double value = std::cosh(order * std::acosh(std::abs(x)));
    return x < 0.0 && std::fmod(order, 2.0) != 0.0 ? -value : value;
}

// Dolph-Chebyshev: equal side lobes at -attenuation dB. The window is the
// inverse transform of the Chebyshev polynomial sampled on the unit circle,
// centred and scaled to a peak of 1; a direct transform, since it is built
// once per configuration.
QVector<float> dolphChebyshev(quint32 size, double attenuationDb)
{
    QVector<float> window(int(size), 1.0f);
    if (size < 2)
        return window;
    const int n = int(size);
    const double order = double(n - 1);
    const double beta = std::cosh(std::acosh(std::pow(10.0, attenuationDb / 20.0)) / order);
    std::vector<std::complex<double>> p(static_cast<size_t>(n));
    for (int k = 0; k < n; ++k) {
        const double value = chebyshev(order, beta * std::cos(M_PI * double(k) / double(n)));
        // An even length needs the half-sample shift that centres it.
        p[size_t(k)] = n % 2 ? std::complex<double>(value, 0.0) : std::polar(value, M_PI * double(k) / double(n));
    }
    std::vector<double> spectrum(static_cast<size_t>(n));
    for (int m = 0; m < n; ++m) {
        std::complex<double> sum(0.0, 0.0);
        for (int k = 0; k < n; ++k)
            sum += p[size_t(k)] * std::polar(1.0, -2.0 * M_PI * double(k) * double(m) / double(n));
        spectrum[size_t(m)] = sum.real();
    }
    // Mirror the first half around the centre sample(s).
    const int half = n % 2 ? (n + 1) / 2 : n / 2 + 1;
    std::vector<double> w;
    for (int i = half - 1; i > 0; --i)
        w.push_back(spectrum[size_t(i)]);
    for (int i = n % 2 ? 0 : 1; i < half; ++i)
        w.push_back(spectrum[size_t(i)]);
    const double peak = *std::max_element(w.begin(), w.end());
    for (int i = 0; i < n; ++i)
        window[i] = float(w[size_t(i)] / peak);
    return window;
}

}

struct ZP7SDopplerTransform::Plan {
    fftwf_complex* in = nullptr;
    fftwf_complex* out = nullptr;
    fftwf_plan plan = nullptr;
    ~Plan()
    {
        std::lock_guard<std::mutex> lock(plannerMutex());
        if (plan)
            fftwf_destroy_plan(plan);
        fftwf_free(in);
        fftwf_free(out);
    }
};

ZP7SDopplerTransform::Settings ZP7SDopplerTransform::settingsFor(const RangeSpectrumUserSettings& user,
                                                                 quint32 samples)
{
    Settings settings;
    settings.samples = samples;
    const quint32 wanted = user.fftSize();
    settings.fftSize = isPowerOfTwo(wanted) && wanted >= samples ? wanted : qNextPowerOfTwo(qMax(samples, 1u));
    settings.windowType = user.fftConfig()->window()->type();
    settings.windowScale = user.fftConfig()->window()->scale();
    settings.attenuationDb = user.fftConfig()->window()->attenuationDB();
    settings.meanRemoval = user.fftConfig()->meanRemoval();
    settings.normalizedWindow = user.fftConfig()->normalizedWindow();
    settings.linear = user.isLinearFftMagnitude();
    settings.threshold = user.threshold();
    return settings;
}

QVector<float> ZP7SDopplerTransform::window(const QString& type, quint32 size, float attenuationDb)
{
    if (type == QLatin1String("Chebyshev")) {
        if (attenuationDb > 0.0f)
            return dolphChebyshev(size, double(attenuationDb));
        qWarning() << "The Doppler spectrum needs a positive side-lobe attenuation for a Chebyshev window, not"
                   << attenuationDb << "dB: it uses Blackman-Harris";
        return window(QStringLiteral("Blackmann Harris"), size);
    }
    if (type == QLatin1String("Hamming"))
        return cosineWindow(size, { 0.54, 0.46 });
    if (type == QLatin1String("Hanning"))
        return cosineWindow(size, { 0.5, 0.5 });
    if (type == QLatin1String("Blackman"))
        return cosineWindow(size, { 0.42, 0.5, 0.08 });
    if (type != QLatin1String("Blackmann Harris"))
        qWarning().noquote() << "The Doppler spectrum uses a Blackman-Harris window in place of" << type;
    return cosineWindow(size, { 0.35875, 0.48829, 0.14128, 0.01168 });
}

std::unique_ptr<ZP7SDopplerTransform> ZP7SDopplerTransform::create(const Settings& settings)
{
    if (settings.samples == 0 || !isPowerOfTwo(settings.fftSize) || settings.fftSize < settings.samples
        || settings.fftSize > (1u << 20)) {
        qWarning().nospace() << "No Doppler spectrum for " << settings.samples << " samples with an FFT of "
                             << settings.fftSize << ": the FFT size must be a power of two, at least the samples";
        return nullptr;
    }
    auto plan = std::make_unique<Plan>();
    const int n = int(settings.fftSize);
    {
        std::lock_guard<std::mutex> lock(plannerMutex());
        plan->in = fftwf_alloc_complex(size_t(n));
        plan->out = fftwf_alloc_complex(size_t(n));
        if (plan->in && plan->out)
            plan->plan = fftwf_plan_dft_1d(n, plan->in, plan->out, FFTW_FORWARD, FFTW_ESTIMATE);
    }
    if (!plan->plan) {
        qWarning() << "No Doppler spectrum: FFTW could not plan a transform of" << n << "points";
        return nullptr;
    }
    return std::unique_ptr<ZP7SDopplerTransform>(new ZP7SDopplerTransform(settings, std::move(plan)));
}

ZP7SDopplerTransform::ZP7SDopplerTransform(const Settings& settings, std::unique_ptr<Plan> plan)
    : m_settings(settings)
    , m_window(window(settings.windowType, settings.samples, settings.attenuationDb))
    , m_plan(std::move(plan))
{
    double sum = 0.0;
    for (float w : qAsConst(m_window))
        sum += double(w);
    m_gain = settings.windowScale;
    if (settings.normalizedWindow && sum > 0.0)
        m_gain = float(double(settings.windowScale) / sum);
}

ZP7SDopplerTransform::~ZP7SDopplerTransform() = default;

QVector<float> ZP7SDopplerTransform::run(const vrn_Matrix_C_s& channel)
{
    const quint32 samples = m_settings.samples;
    if (channel.rows < 1 || channel.cols != samples || !channel.data)
        return {};
    std::complex<float> mean(0.0f, 0.0f);
    if (m_settings.meanRemoval) {
        std::complex<double> sum(0.0, 0.0);
        for (quint32 i = 0; i < samples; ++i)
            sum += std::complex<double>(channel.data[i].re, channel.data[i].im);
        mean = std::complex<float>(sum / double(samples));
    }
    fftwf_complex* in = m_plan->in;
    for (quint32 i = 0; i < samples; ++i) {
        const float w = m_window[int(i)] * m_gain;
        in[i][0] = (channel.data[i].re - mean.real()) * w;
        in[i][1] = (channel.data[i].im - mean.imag()) * w;
    }
    for (quint32 i = samples; i < m_settings.fftSize; ++i)
        in[i][0] = in[i][1] = 0.0f;
    fftwf_execute(m_plan->plan);

    // Shifted: bin 0 of the output is the most negative frequency.
    const int n = int(m_settings.fftSize);
    const int half = n / 2;
    QVector<float> spectrum(n);
    for (int k = 0; k < n; ++k) {
        const fftwf_complex& bin = m_plan->out[(k + half) % n];
        const float magnitude = std::hypot(bin[0], bin[1]);
        spectrum[k] = m_settings.linear ? magnitude : 20.0f * std::log10(std::max(magnitude, m_settings.threshold));
    }
    return spectrum;
}
