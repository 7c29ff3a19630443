#pragma once

#include <QString>
#include <QStringList>

// The files of one recording share a base path: base + ".json" (the
// configuration), ".raw.bin" (the frames), ".raw.txt" (the text copy) and
// ".presence.txt" (the presence log). Whoever starts a recording, plays one
// back or converts one names it by that base.
namespace RecordingFiles {

QString jsonPath(const QString& base);
QString binPath(const QString& base);
QString txtPath(const QString& base);
QString presencePath(const QString& base);

// Every file a recording under `base` may consist of.
QStringList siblings(const QString& base);
// The siblings that exist on disk now.
QStringList existingSiblings(const QString& base);

// The base of a recording named either by its base or by one of its files
// ("rec", "rec.raw.bin", "rec.json", "rec.raw.txt" all give "rec").
QString baseOf(const QString& path);

} // namespace RecordingFiles
