#include "fmcw/cw/config/RadarDeviceCWConfig.h"

#include "common/MathAxis.h"
#include "core/JSONConfigurationBinding.h"
#include "core/JSONConfigurationObject.h"
#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/RadarAntennas.h"
#include "fmcw/common/SettingsValidation.h"
#include "fmcw/cw/config/RadarCWChips.h"
#include "fmcw/cw/config/RadarCWParams.h"
#include "fmcw/cw/config/RadarCWParamsLimits.h"

#include <QDebug>
#include <QLocale>
#include <QMetaProperty>

#include <cmath>
#include <limits>

namespace {

// Antennas the device reports; all four positions while it is not known.
int antennaCount(const DeviceInfo* deviceInfo, bool receive)
{
    const int count = deviceInfo ? int(receive ? deviceInfo->numRxAntennas() : deviceInfo->numTxAntennas()) : 0;
    return count > 0 ? qMin(count, RadarAntennas::kMaxAntennas) : RadarAntennas::kMaxAntennas;
}

// Bits of antennas the board does not have are dropped. CW mode may run
// without a transmitter and with any set of receivers, so nothing else is
// corrected.
RadarAntennas::Sanitizer boardMask(const DeviceInfo* deviceInfo, bool receive)
{
    return [deviceInfo, receive](quint32 requested, quint32) {
        return requested & ((1u << antennaCount(deviceInfo, receive)) - 1u);
    };
}

QString checkAntennas(const QVector<qint32>& antennas, int available, const QString& kind, bool mayBeEmpty)
{
    if (antennas.isEmpty() && !mayBeEmpty)
        return QStringLiteral("Array is empty");
    for (qint32 antenna : antennas) {
        if (antenna < 1 || antenna > available)
            return QStringLiteral("Invalid %1 antenna index: %2").arg(kind).arg(antenna);
    }
    return QString();
}

}

RadarDeviceCWConfig::RadarDeviceCWConfig(DeviceInfo* deviceInfo, QObject* parent)
    : QObject(parent)
    , m_deviceInfo(deviceInfo)
    , m_frequencyDomainAxis(new MathAxis(this))
    , m_params(new RadarCWParams(this))
    , m_limits(new RadarCWParamsLimits(this))
    , m_rxAntennas(new RadarAntennas(boardMask(deviceInfo, true), this))
    , m_txAntennas(new RadarAntennas(boardMask(deviceInfo, false), this))
{
}

RadarDeviceCWConfig::~RadarDeviceCWConfig() = default;

RadarConstants::RadarType RadarDeviceCWConfig::radarType() const
{
    return m_deviceInfo ? m_deviceInfo->radarType() : RadarConstants::Unknown;
}

vrn_CW_Config_t RadarDeviceCWConfig::toSdkConfig() const
{
    vrn_CW_Config_t config {};
    config.rf_center_frequency_Hz = m_params->rfCenterFrequency();
    config.dac_value = m_params->dac();
    config.tx_mask = m_txAntennas->mask();
    config.rx_mask = m_rxAntennas->mask();
    config.num_samples = m_params->rxNumSamples();
    m_params->copyToTestSignalGenerator(config.test_signal);
    m_params->copyToAdcConfig(config.adc);
    m_params->copyToBasebandConfig(config.baseband);
    return config;
}

void RadarDeviceCWConfig::setFromSdkConfig(const vrn_CW_Config_t& config)
{
    m_params->copyFromSdkConfig(config);
    m_rxAntennas->setMask(config.rx_mask);
    m_txAntennas->setMask(config.tx_mask);
}

void RadarDeviceCWConfig::assign(const RadarDeviceCWConfig& other)
{
    // The bounds first, so that anything clamping to them sees the new ones.
    m_limits->assign(*other.m_limits);
    m_params->assign(*other.m_params);
    m_rxAntennas->setMask(other.m_rxAntennas->mask());
    m_txAntennas->setMask(other.m_txAntennas->mask());
    m_frequencyDomainAxis->setMin(other.m_frequencyDomainAxis->min());
    m_frequencyDomainAxis->setMax(other.m_frequencyDomainAxis->max());
    m_frequencyDomainAxis->setStep(other.m_frequencyDomainAxis->step());
}

bool RadarDeviceCWConfig::sameSettings(const RadarDeviceCWConfig& other) const
{
    return *m_params == *other.m_params && m_rxAntennas->mask() == other.m_rxAntennas->mask()
        && m_txAntennas->mask() == other.m_txAntennas->mask();
}

QString RadarDeviceCWConfig::validateField(const QString& field, const QString& text) const
{
    const QString property = field.startsWith(QLatin1String("params.")) ? field.mid(7) : field;
    const int index = m_params->metaObject()->indexOfProperty(property.toLatin1().constData());
    const int type = index >= 0 ? m_params->metaObject()->property(index).userType() : QMetaType::UnknownType;
    const bool whole = type == QMetaType::UInt;
    if (!whole && type != QMetaType::Float) {
        qWarning() << "A page asked to validate the unknown CW field" << field;
        return QStringLiteral("Unknown field %1").arg(field);
    }

    const QString typed = text.trimmed();
    if (typed.isEmpty())
        return QStringLiteral("Value cannot be empty");
    bool ok = false;
    const double value = QLocale::c().toDouble(typed, &ok);
    if (!ok || !std::isfinite(value) || (whole && value != std::floor(value)))
        return QStringLiteral("Text must be valid number");
    if (value < 0.0)
        return QStringLiteral("Value must be greater or equal 0");
    if (whole && value > double(std::numeric_limits<quint32>::max()))
        return SettingsValidation::checkRange(quint64(value), 0, std::numeric_limits<quint32>::max());

    if (property == QLatin1String("rxNumSamples")) {
        // The SDK takes sample pairs, up to what one frame buffer holds.
        const QString range = SettingsValidation::checkRange(quint64(value), 2, 4094);
        if (!range.isEmpty())
            return range;
        if (quint64(value) % 2 != 0)
            return QStringLiteral("Value must be an even number");
    } else if (property == QLatin1String("dutyCycle")) {
        return SettingsValidation::checkRange(quint64(value), 0, 100);
    }
    return m_limits->checkValue(property, value);
}

std::unique_ptr<JSONConfigurationObject> RadarDeviceCWConfig::configurationTree(const QString& typeName)
{
    auto root = std::make_unique<JSONConfigurationObject>(QStringLiteral("cw_configuration"));
    // The parameters sit one level below an object of the same name; files
    // of this layout exist and must stay readable.
    auto scene = std::make_unique<JSONConfigurationObject>(QStringLiteral("cw_scene"));
    scene->addChild(m_params->configurationNode(m_limits));
    const DeviceInfo* info = m_deviceInfo;
    JSONConfigurationBinding::bindArray(
        *scene, QStringLiteral("rx_antennas"), m_rxAntennas, &RadarAntennas::activeAntennas,
        &RadarAntennas::setActiveAntennas, [info](const QVector<qint32>& value) {
            return checkAntennas(value, antennaCount(info, true), QStringLiteral("RX"), false);
        });
    // Without a transmitter the board only listens: a valid test setup.
    JSONConfigurationBinding::bindArray(
        *scene, QStringLiteral("tx_antennas"), m_txAntennas, &RadarAntennas::activeAntennas,
        &RadarAntennas::setActiveAntennas, [info](const QVector<qint32>& value) {
            return checkAntennas(value, antennaCount(info, false), QStringLiteral("TX"), true);
        });
    root->addChild(std::move(scene));
    m_fileVersion = JSONVersion(typeName, RadarCWChips::kFileVersion);
    root->addChild(m_fileVersion.configurationNode());
    return root;
}

std::unique_ptr<JSONConfigurationObject> RadarDeviceCWConfig::versionTree()
{
    auto root = std::make_unique<JSONConfigurationObject>(QStringLiteral("cw_configuration"));
    m_fileVersion = JSONVersion();
    root->addChild(m_fileVersion.configurationNode());
    return root;
}
