#pragma once

#include "common/RangeSpectrumUserSettings.h"
#include "common/TimeDomainUserSettings.h"

#include <QObject>
#include <memory>

class JSONConfigurationObject;

// Chart settings shared by the FMCW modes, persisted under "radar"/"common".
class RadarGeneralUserSettings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(RangeSpectrumUserSettings* rangeSpectrum READ rangeSpectrum CONSTANT)
    Q_PROPERTY(TimeDomainUserSettings* timeDomain READ timeDomain CONSTANT)
public:
    explicit RadarGeneralUserSettings(QObject* parent = nullptr);

    RangeSpectrumUserSettings* rangeSpectrum() { return &m_rangeSpectrum; }
    TimeDomainUserSettings* timeDomain() { return &m_timeDomain; }

    // "radar" holding "common" with the range-spectrum and time-domain nodes.
    std::unique_ptr<JSONConfigurationObject> configurationNode();

private:
    RangeSpectrumUserSettings m_rangeSpectrum;
    TimeDomainUserSettings m_timeDomain;
};
