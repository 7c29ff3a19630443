#include "fmcw/common/RadarDeviceConfiguration.h"

#include "common/MathAxis.h"
#include "core/JSONConfigurationObject.h"
#include "core/JSONConfigurationValue.h"
#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/IRecalcConfigurationHandler.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/MetricsLimits.h"
#include "fmcw/common/PresenceSensingConfig.h"
#include "fmcw/common/RadarDeviceParameters.h"
#include "fmcw/common/SegmentationConfiguration.h"

#include <QDebug>
#include <QLocale>
#include <QMetaEnum>
#include <QMetaProperty>

#include <cmath>

const QString RadarDeviceConfiguration::kVersion = QStringLiteral("1.0");
const QString RadarDeviceConfiguration::kExtendedSuffix = QStringLiteral("_Extended");

RadarDeviceConfiguration::RadarDeviceConfiguration(QObject* parent)
    : QObject(parent)
    , m_parameters(new RadarDeviceParameters(this))
    , m_metrics(new Metrics(this))
    , m_limits(new MetricsLimits(this))
    , m_presenceSensing(new PresenceSensingConfig(this))
    , m_segmentation(new SegmentationConfiguration(this))
    , m_deviceInfo(new DeviceInfo(this))
    , m_dopplerRangeAxis(new MathAxis(this))
    , m_dopplerSpeedAxis(new MathAxis(this))
    , m_frequencyDomainAxis(new MathAxis(this))
{
}

RadarDeviceConfiguration::~RadarDeviceConfiguration() = default;

void RadarDeviceConfiguration::setApplication(RadarConstants::Application application)
{
    if (m_application == application)
        return;
    m_application = application;
    emit applicationChanged();
}

void RadarDeviceConfiguration::setOptimalAppConfig(bool optimal)
{
    if (m_optimalAppConfig == optimal)
        return;
    m_optimalAppConfig = optimal;
    emit optimalAppConfigChanged();
}

RadarConstants::RadarType RadarDeviceConfiguration::radarType() const
{
    return m_deviceInfo->radarType();
}

bool RadarDeviceConfiguration::recalcConfig()
{
    if (!m_recalcHandler) {
        qWarning() << "No handler to recalculate the configuration";
        return false;
    }
    return m_recalcHandler->recalculateConfiguration(*this);
}

QString RadarDeviceConfiguration::validateField(const QString& field, const QString& text) const
{
    const int dot = field.indexOf(QLatin1Char('.'));
    const QString section = field.left(dot);
    const QString property = field.mid(dot + 1);
    const QObject* target = nullptr;
    QString (*check)(const QString&, double) = nullptr;
    if (section == QLatin1String("metrics")) {
        target = m_metrics;
        check = &Metrics::checkValue;
    } else if (section == QLatin1String("presencesensing")) {
        target = m_presenceSensing;
        check = &PresenceSensingConfig::checkValue;
    } else if (section == QLatin1String("segmentation")) {
        target = m_segmentation;
        check = &SegmentationConfiguration::checkValue;
    }
    const int index = target ? target->metaObject()->indexOfProperty(property.toLatin1().constData()) : -1;
    if (dot < 0 || index < 0) {
        qWarning() << "A page asked to validate the unknown field" << field;
        return QStringLiteral("Unknown field %1").arg(field);
    }

    const QString typed = text.trimmed();
    if (typed.isEmpty())
        return QStringLiteral("A value is required");
    bool ok = false;
    const double value = QLocale::c().toDouble(typed, &ok);
    if (!ok || !std::isfinite(value))
        return QStringLiteral("Value %1 is not a number").arg(typed);
    const int type = target->metaObject()->property(index).userType();
    if (type == QMetaType::UInt || type == QMetaType::ULongLong) {
        if (value < 0.0)
            return QStringLiteral("Value %1 must not be negative").arg(typed);
        if (value != std::floor(value))
            return QStringLiteral("Value %1 is not a whole number").arg(typed);
        // Far beyond any whole setting, and beyond what converts to one.
        if (value >= 1.0e18)
            return QStringLiteral("Value %1 is too large").arg(typed);
    }

    if (target == m_metrics) {
        const QString beyondLimits = m_limits->checkValue(property, value);
        if (!beyondLimits.isEmpty())
            return beyondLimits;
    }
    return check(property, value);
}

std::unique_ptr<JSONConfigurationObject> RadarDeviceConfiguration::configurationTree()
{
    auto root = std::make_unique<JSONConfigurationObject>(QStringLiteral("device_configuration"));
    auto deviceConfig = std::make_unique<JSONConfigurationObject>(QStringLiteral("device_config"));
    deviceConfig->addChild(m_metrics->configurationNode(m_deviceInfo));
    root->addChild(std::move(deviceConfig));
    if (m_application == RadarConstants::PresenceSensing)
        root->addChild(m_presenceSensing->configurationNode());
    else if (m_application == RadarConstants::Segmentation)
        root->addChild(m_segmentation->configurationNode());
    m_fileVersion = JSONVersion(m_deviceInfo->deviceName(), kVersion);
    root->addChild(m_fileVersion.configurationNode());
    return root;
}

std::unique_ptr<JSONConfigurationObject> RadarDeviceConfiguration::extendedConfigurationTree()
{
    auto root = std::make_unique<JSONConfigurationObject>(QStringLiteral("device_configuration_extended"));
    const QMetaEnum applications = QMetaEnum::fromType<RadarConstants::Application>();
    root->addChild(std::make_unique<JSONConfigurationValue<QString>>(
        QStringLiteral("application"),
        [this, applications] { return QString::fromLatin1(applications.valueToKey(m_application)); },
        [this, applications](const QString& name) {
            bool ok = false;
            const int value = applications.keyToValue(name.toLatin1().constData(), &ok);
            if (!ok)
                qWarning() << "Unknown application" << name << "- using" << applications.valueToKey(0);
            setApplication(static_cast<RadarConstants::Application>(ok ? value : 0));
        },
        [](const QString&) { return QString(); }));
    root->addChild(m_deviceInfo->configurationNode());
    root->addChild(m_limits->configurationNode());
    root->addChild(m_parameters->configurationNode());
    m_extendedFileVersion = JSONVersion(m_deviceInfo->deviceName() + kExtendedSuffix, kVersion);
    root->addChild(m_extendedFileVersion.configurationNode());
    return root;
}

QString RadarDeviceConfiguration::defaultConfigurationResource(RadarConstants::Application application,
                                                               RadarConstants::RadarType radarType)
{
    const QString prefix = QStringLiteral(":/json/config/");
    switch (application) {
    case RadarConstants::PresenceSensing:
        return prefix
            + (radarType == RadarConstants::KMR7C ? QStringLiteral("defaultConfigPS_KMR7C.json")
                                                  : QStringLiteral("defaultConfigPS_KMR7A.json"));
    case RadarConstants::Segmentation:
        return prefix + QStringLiteral("defaultConfigSeg_KMR7A.json");
    case RadarConstants::None:
        break;
    }
    switch (radarType) {
    case RadarConstants::KMR7B:
        return prefix + QStringLiteral("defaultConfigKMR7B.json");
    case RadarConstants::KMR7C:
        return prefix + QStringLiteral("defaultConfigKMR7C.json");
    case RadarConstants::KMR7A:
    case RadarConstants::Unknown:
        break;
    }
    return prefix + QStringLiteral("defaultConfigKMR7A.json");
}
