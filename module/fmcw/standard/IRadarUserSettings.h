#pragma once

#include <QObject>

class RangeDopplerUserSettings;
class RangeSpectrumUserSettings;
class TimeDomainUserSettings;

// The chart settings the standard mode's pages edit: the range spectrum and
// time domain settings the module shares between its modes, and the mode's
// own range-Doppler settings.
class IRadarUserSettings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(RangeSpectrumUserSettings* rangeSpectrum READ rangeSpectrum CONSTANT)
    Q_PROPERTY(TimeDomainUserSettings* timeDomain READ timeDomain CONSTANT)
    Q_PROPERTY(RangeDopplerUserSettings* rangeDoppler READ rangeDoppler CONSTANT)
public:
    using QObject::QObject;
    ~IRadarUserSettings() override = default;

    // Each may be null when the host did not publish it.
    virtual RangeSpectrumUserSettings* rangeSpectrum() const = 0;
    virtual TimeDomainUserSettings* timeDomain() const = 0;
    virtual RangeDopplerUserSettings* rangeDoppler() const = 0;
};
