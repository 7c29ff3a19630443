#include "core/JSONConfigurationFile.h"

#include "core/JSONConfigurationObject.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QSaveFile>

QString loadFromText(JSONConfigurationObject& root, const QByteArray& bytes)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return QStringLiteral("JSON parser error: %1").arg(parseError.errorString());

    const QJsonObject top = document.object();
    QString error;
    error = root.validateChildren(error, top, QStringList());
    if (!error.isEmpty())
        return error;
    root.readChildren(top);
    return QString();
}

QString loadFromFile(JSONConfigurationObject& root, const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return QStringLiteral("Cannot open file");
    const QByteArray bytes = file.readAll();
    file.close();
    return loadFromText(root, bytes);
}

bool saveToFile(JSONConfigurationObject& root, const QString& path)
{
    // QSaveFile writes a temporary next to the target and renames it over
    // the target on commit, so a crash or a full disk never leaves a
    // half-written settings file behind.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        return false;
    QJsonObject top;
    root.writeChildren(top);
    const QByteArray bytes = QJsonDocument(top).toJson(QJsonDocument::Indented);
    // The caller reports a failure; the tree itself logs nothing but the
    // overwrite warning of its object nodes.
    if (file.write(bytes) != bytes.size()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}
