#include "zp7/config/ZP7SConfigDocument.h"

#include "core/JSONConfigurationFile.h"
#include "core/JSONConfigurationObject.h"
#include "fmcw/common/DeviceInfo.h"
#include "zp7/config/ZP7SDeviceConfig.h"
#include "zp7/config/ZP7SFrameParams.h"
#include "zp7/config/ZP7SPulseConfigParams.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

const QString ZP7SConfigDocument::kType = QStringLiteral("KMR24ZP7");
const QString ZP7SConfigDocument::kExtendedType = QStringLiteral("KMR24ZP7_Extended");
const QString ZP7SConfigDocument::kVersion = QStringLiteral("1.0");
const QString ZP7SConfigDocument::kExtendedKey = QStringLiteral("device_configuration_extended");

namespace {

const QString kExtendedSuffix = QStringLiteral("_Extended");

// Reads the "json_version" of `object` alone; empty on success.
QString readVersion(const QJsonObject& object, JSONVersion& version, const QString& where)
{
    JSONConfigurationObject root { QString() };
    root.addChild(version.configurationNode());
    const QString error = loadFromText(root, QJsonDocument(object).toJson(QJsonDocument::Compact));
    if (error.isEmpty())
        return QString();
    return where.isEmpty() ? error : QStringLiteral("%1: %2").arg(where, error);
}

QString checkStamp(const QJsonObject& object, const QString& expectedType, const QString& where)
{
    JSONVersion found;
    QString error = readVersion(object, found, where);
    if (error.isEmpty())
        error = ZP7SConfigDocument::kindError(found.type(), expectedType);
    if (error.isEmpty())
        error = JSONVersion(expectedType, ZP7SConfigDocument::kVersion).check(found.type(), found.version());
    return error;
}

}

ZP7SConfigDocument::ZP7SConfigDocument(ZP7SDeviceConfig& config)
    : m_config(config)
{
}

ZP7SConfigDocument::~ZP7SConfigDocument() = default;

std::unique_ptr<JSONConfigurationObject> ZP7SConfigDocument::configurationTree()
{
    auto root = std::make_unique<JSONConfigurationObject>(QStringLiteral("device_configuration"));
    auto deviceConfig = std::make_unique<JSONConfigurationObject>(QStringLiteral("device_config"));
    deviceConfig->addChild(m_config.frameParams()->configurationNode(m_config.limits()));
    deviceConfig->addChild(m_config.pulseConfigParams()->configurationNode(m_config.limits()));
    root->addChild(std::move(deviceConfig));
    m_version = JSONVersion(kType, kVersion);
    root->addChild(m_version.configurationNode());
    return root;
}

std::unique_ptr<JSONConfigurationObject> ZP7SConfigDocument::extendedConfigurationTree()
{
    auto root = std::make_unique<JSONConfigurationObject>(kExtendedKey);
    root->addChild(m_config.deviceInfo()->configurationNode());
    m_extendedVersion = JSONVersion(kExtendedType, kVersion);
    root->addChild(m_extendedVersion.configurationNode());
    return root;
}

std::unique_ptr<JSONConfigurationObject> ZP7SConfigDocument::combinedTree()
{
    auto root = std::make_unique<JSONConfigurationObject>(QString());
    auto tree = configurationTree();
    root->addChildrenOf(*tree);
    root->addChild(extendedConfigurationTree());
    return root;
}

QByteArray ZP7SConfigDocument::toJson()
{
    QJsonObject top;
    combinedTree()->writeChildren(top);
    return QJsonDocument(top).toJson(QJsonDocument::Indented);
}

QString ZP7SConfigDocument::kindError(const QString& found, const QString& expected)
{
    if (found == expected)
        return QString();
    if (found.isEmpty())
        return QStringLiteral("Invalid json type: the document names no type, expected \"%1\"").arg(expected);
    QString chip = found;
    if (chip.endsWith(kExtendedSuffix))
        chip.chop(kExtendedSuffix.size());
    if (DeviceInfo::radarTypeFromName(chip) != RadarConstants::Unknown)
        return QStringLiteral("Invalid json type: \"%1\" is an FMCW configuration, not a pulsed-Doppler \"%2\" one")
            .arg(found, expected);
    return QStringLiteral("Invalid json type: \"%1\" is not a \"%2\" configuration").arg(found, expected);
}

QString ZP7SConfigDocument::checkKind(const QByteArray& bytes, bool withExtended) const
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return QStringLiteral("JSON parser error: %1 at offset %2").arg(parseError.errorString()).arg(parseError.offset);
    if (!document.isObject())
        return QStringLiteral("The document is not a JSON object");
    const QJsonObject top = document.object();
    QString error = checkStamp(top, kType, QString());
    if (!error.isEmpty())
        return error;
    if (!top.contains(kExtendedKey)) {
        if (withExtended)
            return QStringLiteral("Mandatory field %1 is missing").arg(kExtendedKey);
        return QString();
    }
    const QJsonValue extended = top.value(kExtendedKey);
    if (!extended.isObject())
        return QStringLiteral("Field %1 type error: expected an object").arg(kExtendedKey);
    return checkStamp(extended.toObject(), kExtendedType, kExtendedKey);
}

QString ZP7SConfigDocument::load(const QByteArray& bytes, bool withExtended)
{
    const QString error = checkKind(bytes, withExtended);
    if (!error.isEmpty())
        return error;
    if (withExtended)
        return loadFromText(*combinedTree(), bytes);
    return loadFromText(*configurationTree(), bytes);
}
