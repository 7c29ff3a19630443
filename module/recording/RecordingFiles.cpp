#include "recording/RecordingFiles.h"

#include <QFileInfo>

namespace {
// Longest first, so "rec.raw.txt" is not taken for a ".txt" of base "rec.raw".
const char* const kSuffixes[] = { ".presence.txt", ".raw.bin", ".raw.txt", ".json" };
} // namespace

namespace RecordingFiles {

QString jsonPath(const QString& base)
{
    return base + QStringLiteral(".json");
}

QString binPath(const QString& base)
{
    return base + QStringLiteral(".raw.bin");
}

QString txtPath(const QString& base)
{
    return base + QStringLiteral(".raw.txt");
}

QString presencePath(const QString& base)
{
    return base + QStringLiteral(".presence.txt");
}

QStringList siblings(const QString& base)
{
    return { jsonPath(base), binPath(base), txtPath(base), presencePath(base) };
}

QStringList existingSiblings(const QString& base)
{
    QStringList existing;
    for (const QString& path : siblings(base)) {
        if (QFileInfo::exists(path))
            existing.append(path);
    }
    return existing;
}

QString baseOf(const QString& path)
{
    for (const char* suffix : kSuffixes) {
        const QLatin1String ending(suffix);
        if (path.endsWith(ending) && path.size() > ending.size())
            return path.left(path.size() - ending.size());
    }
    return path;
}

} // namespace RecordingFiles
