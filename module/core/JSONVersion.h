#pragma once

#include <QString>

#include <memory>

class JSONConfigurationObject;

// The "json_version" stamp of a configuration document: which kind of
// document it is and which revision of that kind.
class JSONVersion
{
public:
    JSONVersion() = default;
    JSONVersion(QString type, QString version);

    const QString& type() const { return m_type; }
    const QString& version() const { return m_version; }

    // An object node "json_version" bound to this instance, which must
    // outlive the node.
    std::unique_ptr<JSONConfigurationObject> configurationNode();

    // Empty when both match; the type is checked first because a document
    // of another kind makes its version meaningless.
    QString check(const QString& type, const QString& version) const;

private:
    QString m_version;
    QString m_type;
};
