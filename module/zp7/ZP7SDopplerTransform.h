#pragma once

#include "sdk/vrn.h"

#include <QString>
#include <QVector>

#include <memory>

class RangeSpectrumUserSettings;

// The Doppler spectrum of one complex channel: mean removed (still targets
// and the receiver's offset go to 0 Hz and vanish), windowed, zero-padded
// complex FFT, shifted so that the bins run from -PRF/2 to +PRF/2 - step,
// magnitude in dB (20 log10, floored at the threshold) or linear. A tone of
// amplitude A peaks at A with a normalised window. One transform per
// configuration; runs may come from one thread at a time.
class ZP7SDopplerTransform
{
public:
    struct Settings {
        quint32 fftSize = 0;   // a power of two, at least `samples`
        quint32 samples = 0;   // samples per frame
        QString windowType;    // a name from ProcessingNameTables
        float windowScale = 1.0f;
        float attenuationDb = 0.0f; // side lobes of a Chebyshev window
        bool meanRemoval = true;
        bool normalizedWindow = true;
        bool linear = false;
        float threshold = 1.0e-6f;
    };

    // Settings taken from the spectrum page's settings, the FFT at least as
    // long as the frame.
    static Settings settingsFor(const RangeSpectrumUserSettings& user, quint32 samples);
    // None (with a log line saying why) for sizes FFTW cannot be given.
    static std::unique_ptr<ZP7SDopplerTransform> create(const Settings& settings);
    ~ZP7SDopplerTransform();

    const Settings& settings() const { return m_settings; }
    // fftSize values; empty when the channel is not 1 x samples.
    QVector<float> run(const vrn_Matrix_C_s& channel);

    // The window coefficients of `type` over `size` samples (symmetric);
    // `attenuationDb` sets a Chebyshev window's side lobes.
    static QVector<float> window(const QString& type, quint32 size, float attenuationDb = 0.0f);

private:
    struct Plan;
    explicit ZP7SDopplerTransform(const Settings& settings, std::unique_ptr<Plan> plan);

    Settings m_settings;
    QVector<float> m_window;
    float m_gain = 1.0f;
    std::unique_ptr<Plan> m_plan;
};
