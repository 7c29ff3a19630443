#include "fmcw/cw/config/RadarCWUserSettings.h"

#include "core/JSONConfigurationBinding.h"
#include "core/JSONConfigurationObject.h"
#include "core/LoggingConfiguration.h"

const QString RadarCWUserSettings::kDefaultFileNamePrefix = QStringLiteral("CWmode_datalog");

RadarCWUserSettings::RadarCWUserSettings(RangeSpectrumUserSettings* rangeSpectrum,
                                         TimeDomainUserSettings* timeDomain, QObject* parent)
    : QObject(parent)
    , m_loggingConfiguration(new LoggingConfiguration(this))
    , m_rangeSpectrum(rangeSpectrum)
    , m_timeDomain(timeDomain)
{
    m_loggingConfiguration->setLoggingFileName(kDefaultFileNamePrefix);
    // A frame's file is named by its prefix and the time of capture, never
    // by the timestamp name of a logging run.
    m_loggingConfiguration->setIsCustomFileName(true);
}

RadarCWUserSettings::~RadarCWUserSettings() = default;

std::unique_ptr<JSONConfigurationObject> RadarCWUserSettings::configurationNode()
{
    auto cwMode = std::make_unique<JSONConfigurationObject>(QStringLiteral("cw_mode"));
    using JSONConfigurationBinding::bindValue;
    using L = LoggingConfiguration;
    bindValue(*cwMode, QStringLiteral("loggingFileName"), m_loggingConfiguration, &L::loggingFileName,
              &L::setLoggingFileName);
    bindValue(*cwMode, QStringLiteral("loggingPath"), m_loggingConfiguration, &L::loggingPath, &L::setLoggingPath);
    auto radar = std::make_unique<JSONConfigurationObject>(QStringLiteral("radar"));
    radar->addChild(std::move(cwMode));
    return radar;
}
