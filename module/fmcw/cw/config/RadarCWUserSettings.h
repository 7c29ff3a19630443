#pragma once

#include <QObject>
#include <QString>

#include <memory>

class JSONConfigurationObject;
class LoggingConfiguration;
class RangeSpectrumUserSettings;
class TimeDomainUserSettings;

// What the CW pages keep between sessions: where and under which prefix a
// captured frame is logged, and the chart settings the module shares
// between its modes (borrowed, may be null when the host did not publish
// them).
class RadarCWUserSettings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(LoggingConfiguration* loggingConfiguration READ loggingConfiguration CONSTANT)
    Q_PROPERTY(RangeSpectrumUserSettings* rangeSpectrum READ rangeSpectrum CONSTANT)
    Q_PROPERTY(TimeDomainUserSettings* timeDomain READ timeDomain CONSTANT)
public:
    static const QString kDefaultFileNamePrefix; // "CWmode_datalog"

    RadarCWUserSettings(RangeSpectrumUserSettings* rangeSpectrum, TimeDomainUserSettings* timeDomain,
                        QObject* parent = nullptr);
    ~RadarCWUserSettings() override;

    LoggingConfiguration* loggingConfiguration() const { return m_loggingConfiguration; }
    RangeSpectrumUserSettings* rangeSpectrum() const { return m_rangeSpectrum; }
    TimeDomainUserSettings* timeDomain() const { return m_timeDomain; }

    // "radar" → "cw_mode" with "loggingFileName" and "loggingPath". The
    // host merges sibling nodes of the same name into one "radar" object.
    std::unique_ptr<JSONConfigurationObject> configurationNode();

private:
    LoggingConfiguration* m_loggingConfiguration;
    RangeSpectrumUserSettings* m_rangeSpectrum;
    TimeDomainUserSettings* m_timeDomain;
};
