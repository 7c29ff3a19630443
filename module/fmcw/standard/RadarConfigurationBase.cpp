#include "fmcw/standard/RadarConfigurationBase.h"

#include "core/JSONVersion.h"

RadarConfigurationBase::RadarConfigurationBase()
{
    m_fileTypes = { { RadarConstants::Unknown, QString() },
                    { RadarConstants::KMR7B, QStringLiteral("KMR7B") },
                    { RadarConstants::KMR7A, QStringLiteral("KMR7A") },
                    { RadarConstants::KMR7C, QStringLiteral("KMR7C") } };
    m_extendedFileTypes = { { RadarConstants::Unknown, QString() },
                            { RadarConstants::KMR7B, QStringLiteral("KMR7B_Extended") },
                            { RadarConstants::KMR7A, QStringLiteral("KMR7A_Extended") },
                            { RadarConstants::KMR7C, QStringLiteral("KMR7C_Extended") } };
    const QStringList v1 { QStringLiteral("1.0") };
    for (const char* type : { "KMR7A", "KMR7A_Extended", "KMR7B", "KMR7B_Extended", "KMR7C", "KMR7C_Extended" })
        m_versions.insert(QString::fromLatin1(type), v1);
}

QString RadarConfigurationBase::checkVersion(const QString& expectedType, const QString& type,
                                             const QString& version) const
{
    // A document of another kind makes its version meaningless.
    if (type != expectedType || !m_versions.contains(type))
        return QStringLiteral("Invalid json type");
    for (const QString& accepted : m_versions.value(type)) {
        if (JSONVersion(type, accepted).check(type, version).isEmpty())
            return QString();
    }
    return JSONVersion(type, m_versions.value(type).value(0)).check(type, version);
}
