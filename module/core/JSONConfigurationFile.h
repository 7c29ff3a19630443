#pragma once

#include <QByteArray>
#include <QString>

class JSONConfigurationObject;

// Loading and saving a settings tree. The root's own name never appears in
// the document: its top-level object holds the root's children directly.

// Returns an empty text on success. The document is validated whole before
// anything is read, so a failed load leaves every bound object unchanged.
QString loadFromText(JSONConfigurationObject& root, const QByteArray& bytes);
QString loadFromFile(JSONConfigurationObject& root, const QString& path);
// The file is replaced in one step: a failed save keeps the previous file.
bool saveToFile(JSONConfigurationObject& root, const QString& path);
