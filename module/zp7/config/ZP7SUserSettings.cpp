#include "zp7/config/ZP7SUserSettings.h"

#include "common/RangeSpectrumUserSettings.h"
#include "common/TimeDomainUserSettings.h"

ZP7SUserSettings::ZP7SUserSettings(RangeSpectrumUserSettings* rangeSpectrum, TimeDomainUserSettings* timeDomain,
                                   QObject* parent)
    : QObject(parent)
    , m_rangeSpectrum(rangeSpectrum ? rangeSpectrum : new RangeSpectrumUserSettings(this))
    , m_timeDomain(timeDomain ? timeDomain : new TimeDomainUserSettings(this))
{
}

ZP7SUserSettings::~ZP7SUserSettings() = default;
