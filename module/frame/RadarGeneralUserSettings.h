#pragma once

#include "common/RangeSpectrumUserSettings.h"
#include "common/TimeDomainUserSettings.h"

#include <QObject>
#include <QStringList>
#include <memory>

class JSONConfigurationObject;

// Settings shared by the whole module, persisted under "radar": the chart
// settings of the FMCW modes ("common") and the USB identity under which the
// deployment's baseboards appear in normal mode ("flashing").
class RadarGeneralUserSettings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(RangeSpectrumUserSettings* rangeSpectrum READ rangeSpectrum CONSTANT)
    Q_PROPERTY(TimeDomainUserSettings* timeDomain READ timeDomain CONSTANT)
    Q_PROPERTY(QString baseboardVendorId READ baseboardVendorId WRITE setBaseboardVendorId NOTIFY
                   baseboardIdentityChanged)
    Q_PROPERTY(QStringList baseboardProductIds READ baseboardProductIds WRITE setBaseboardProductIds NOTIFY
                   baseboardIdentityChanged)
public:
    static constexpr int kBaseboardProductIdCount = 3;

    explicit RadarGeneralUserSettings(QObject* parent = nullptr);

    RangeSpectrumUserSettings* rangeSpectrum() { return &m_rangeSpectrum; }
    TimeDomainUserSettings* timeDomain() { return &m_timeDomain; }

    // Four upper-case hexadecimal digits, e.g. "2F5A".
    QString baseboardVendorId() const { return m_baseboardVendorId; }
    // Refused, with a warning and the old value kept, unless valid.
    bool setBaseboardVendorId(const QString& vendorId);
    // Exactly three product IDs in the vendor ID's form.
    QStringList baseboardProductIds() const { return m_baseboardProductIds; }
    bool setBaseboardProductIds(const QStringList& productIds);

    // Empty when `id` is a USB ID as the flashing library expects it.
    static QString usbIdError(const QString& id);
    static QString productIdsError(const QStringList& productIds);

    // "radar" holding "common" with the range-spectrum and time-domain nodes
    // and "flashing" with the baseboard identity. Files written before
    // "flashing" existed are still accepted and keep the defaults.
    std::unique_ptr<JSONConfigurationObject> configurationNode();

signals:
    void baseboardIdentityChanged();

private:
    RangeSpectrumUserSettings m_rangeSpectrum;
    TimeDomainUserSettings m_timeDomain;
    QString m_baseboardVendorId;
    QStringList m_baseboardProductIds;
};
