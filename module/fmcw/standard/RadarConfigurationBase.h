#pragma once

#include "frame/RadarConstants.h"

#include <QHash>
#include <QString>
#include <QStringList>

// Tables every FMCW configuration object shares: which "json_version" types
// belong to a chip and which versions of each type this build reads.
class RadarConfigurationBase
{
public:
    RadarConfigurationBase();
    virtual ~RadarConfigurationBase() = default;

    // "KMR7A" etc.; empty for an unknown chip.
    QString fileType(RadarConstants::RadarType type) const { return m_fileTypes.value(type); }
    QString extendedFileType(RadarConstants::RadarType type) const { return m_extendedFileTypes.value(type); }
    bool isKnownType(const QString& type) const { return m_versions.contains(type); }
    // Empty when the (type, version) pair is readable, else why not: the
    // type first ("Invalid json type"), then the version ("Invalid json version").
    QString checkVersion(const QString& expectedType, const QString& type, const QString& version) const;

private:
    QHash<int, QString> m_fileTypes;
    QHash<int, QString> m_extendedFileTypes;
    QHash<QString, QStringList> m_versions;
};
