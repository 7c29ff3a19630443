#include "frame/RadarGeneralUserSettings.h"

#include "core/JSONConfigurationBinding.h"
#include "core/JSONConfigurationObject.h"
#include "flashing/RadarBaseboardIdentity.h"

#include <QDebug>
#include <QJsonArray>
#include <QRegularExpression>

#include <functional>

namespace {

// "flashing" came after the first settings files; its absence is no error.
class OptionalObjectNode : public JSONConfigurationObject
{
public:
    using JSONConfigurationObject::JSONConfigurationObject;

    void readFromJson(const QJsonObject& parent) override
    {
        if (parent.contains(name()))
            JSONConfigurationObject::readFromJson(parent);
    }
    void validate(QString& error, const QJsonObject& parent, QStringList path) override
    {
        if (parent.contains(name()))
            JSONConfigurationObject::validate(error, parent, std::move(path));
    }
};

// A leaf holding a list of texts as a JSON array of strings.
class TextListValue : public IJSONConfigurationNode
{
public:
    TextListValue(QString name, std::function<QStringList()> getter, std::function<void(const QStringList&)> setter,
                  std::function<QString(const QStringList&)> validator)
        : m_name(std::move(name))
        , m_getter(std::move(getter))
        , m_setter(std::move(setter))
        , m_validator(std::move(validator))
    {
    }

    void writeToJson(QJsonObject& parent) override
    {
        parent.insert(m_name, QJsonArray::fromStringList(m_getter()));
    }

    void readFromJson(const QJsonObject& parent) override
    {
        QStringList texts;
        for (const QJsonValue& value : parent.value(m_name).toArray())
            texts << value.toString();
        m_setter(texts);
    }

    void validate(QString& error, const QJsonObject& parent, QStringList path) override
    {
        path.append(m_name);
        const QString joined = path.join(QLatin1Char('.'));
        if (!parent.contains(m_name)) {
            error = QStringLiteral("Mandatory field %1 is missing").arg(joined);
            return;
        }
        if (!parent.value(m_name).isArray()) {
            error = QStringLiteral("Field %1 type error: expected an array of texts").arg(joined);
            return;
        }
        QStringList texts;
        for (const QJsonValue& value : parent.value(m_name).toArray()) {
            if (!value.isString()) {
                error = QStringLiteral("Field %1 type error: expected an array of texts").arg(joined);
                return;
            }
            texts << value.toString();
        }
        const QString objection = m_validator(texts);
        if (!objection.isEmpty())
            error = QStringLiteral("Field %1 validation error: %2").arg(joined, objection);
    }

private:
    QString m_name;
    std::function<QStringList()> m_getter;
    std::function<void(const QStringList&)> m_setter;
    std::function<QString(const QStringList&)> m_validator;
};

QStringList defaultProductIds()
{
    QStringList ids;
    for (const std::string& id : RadarBaseboardIdentity::defaultProductIds())
        ids << QString::fromStdString(id);
    return ids;
}

} // namespace

RadarGeneralUserSettings::RadarGeneralUserSettings(QObject* parent)
    : QObject(parent)
    , m_baseboardVendorId(QString::fromStdString(RadarBaseboardIdentity::defaultVendorId()))
    , m_baseboardProductIds(defaultProductIds())
{
}

QString RadarGeneralUserSettings::usbIdError(const QString& id)
{
    static const QRegularExpression pattern(QStringLiteral("^[0-9A-F]{4}$"));
    if (pattern.match(id).hasMatch())
        return QString();
    return QStringLiteral("\"%1\" is not a USB ID of four upper-case hexadecimal digits").arg(id);
}

QString RadarGeneralUserSettings::productIdsError(const QStringList& productIds)
{
    if (productIds.size() != kBaseboardProductIdCount)
        return QStringLiteral("expected %1 product IDs, found %2").arg(kBaseboardProductIdCount).arg(productIds.size());
    for (const QString& id : productIds) {
        const QString error = usbIdError(id);
        if (!error.isEmpty())
            return error;
    }
    return QString();
}

bool RadarGeneralUserSettings::setBaseboardVendorId(const QString& vendorId)
{
    const QString error = usbIdError(vendorId);
    if (!error.isEmpty()) {
        qWarning().noquote() << "Baseboard vendor ID refused:" << error;
        return false;
    }
    if (vendorId != m_baseboardVendorId) {
        m_baseboardVendorId = vendorId;
        emit baseboardIdentityChanged();
    }
    return true;
}

bool RadarGeneralUserSettings::setBaseboardProductIds(const QStringList& productIds)
{
    const QString error = productIdsError(productIds);
    if (!error.isEmpty()) {
        qWarning().noquote() << "Baseboard product IDs refused:" << error;
        return false;
    }
    if (productIds != m_baseboardProductIds) {
        m_baseboardProductIds = productIds;
        emit baseboardIdentityChanged();
    }
    return true;
}

std::unique_ptr<JSONConfigurationObject> RadarGeneralUserSettings::configurationNode()
{
    auto common = std::make_unique<JSONConfigurationObject>(QStringLiteral("common"));
    common->addChild(m_rangeSpectrum.configurationNode());
    common->addChild(m_timeDomain.configurationNode());

    using S = RadarGeneralUserSettings;
    auto flashing = std::make_unique<OptionalObjectNode>(QStringLiteral("flashing"));
    flashing->addChild(std::make_unique<JSONConfigurationValue<QString>>(
        QStringLiteral("baseboardVendorId"), [this] { return baseboardVendorId(); },
        [this](const QString& id) { setBaseboardVendorId(id); }, &S::usbIdError));
    flashing->addChild(std::make_unique<TextListValue>(
        QStringLiteral("baseboardProductIds"), [this] { return baseboardProductIds(); },
        [this](const QStringList& ids) { setBaseboardProductIds(ids); }, &S::productIdsError));

    auto radar = std::make_unique<JSONConfigurationObject>(QStringLiteral("radar"));
    radar->addChild(std::move(common));
    radar->addChild(std::move(flashing));
    return radar;
}
