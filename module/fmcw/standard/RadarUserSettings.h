#pragma once

#include "fmcw/standard/IRadarUserSettings.h"

#include <memory>

class JSONConfigurationObject;

// The standard mode's chart settings: borrows the shared range spectrum and
// time domain settings, owns the range-Doppler settings.
class RadarUserSettings : public IRadarUserSettings
{
    Q_OBJECT
public:
    RadarUserSettings(RangeSpectrumUserSettings* rangeSpectrum, TimeDomainUserSettings* timeDomain,
                      QObject* parent = nullptr);
    ~RadarUserSettings() override;

    RangeSpectrumUserSettings* rangeSpectrum() const override { return m_rangeSpectrum; }
    TimeDomainUserSettings* timeDomain() const override { return m_timeDomain; }
    RangeDopplerUserSettings* rangeDoppler() const override { return m_rangeDoppler.get(); }

    // "radar" → "standard" → "range_doppler". The host merges sibling nodes of
    // the same name, so the settings file keeps a single "radar" object.
    std::unique_ptr<JSONConfigurationObject> configurationNode();

private:
    RangeSpectrumUserSettings* m_rangeSpectrum;
    TimeDomainUserSettings* m_timeDomain;
    std::unique_ptr<RangeDopplerUserSettings> m_rangeDoppler;
};
