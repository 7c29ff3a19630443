#pragma once

#include <QObject>

class RangeSpectrumUserSettings;
class TimeDomainUserSettings;

// The chart settings the ZP7 pages use: the spectrum settings drive the
// Doppler FFT, the time-domain ones the I/Q chart. They are the module's
// shared objects when given (borrowed, they must outlive this object);
// missing ones are made and owned here.
class ZP7SUserSettings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(RangeSpectrumUserSettings* rangeSpectrum READ rangeSpectrum CONSTANT)
    Q_PROPERTY(TimeDomainUserSettings* timeDomain READ timeDomain CONSTANT)
public:
    explicit ZP7SUserSettings(RangeSpectrumUserSettings* rangeSpectrum = nullptr,
                              TimeDomainUserSettings* timeDomain = nullptr, QObject* parent = nullptr);
    ~ZP7SUserSettings() override;

    RangeSpectrumUserSettings* rangeSpectrum() const { return m_rangeSpectrum; }
    TimeDomainUserSettings* timeDomain() const { return m_timeDomain; }

private:
    RangeSpectrumUserSettings* m_rangeSpectrum;
    TimeDomainUserSettings* m_timeDomain;
};
