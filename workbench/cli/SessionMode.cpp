#include "SessionMode.h"

#include "ModuleHost.h"

#include <QObject>
#include <QQmlContext>
#include <QQmlEngine>
#include <QVariant>

namespace SessionMode {

QObject* coordinator(ModuleHost& host)
{
    QQmlEngine* engine = host.engine();
    return engine ? engine->rootContext()->contextProperty(QStringLiteral("radarCoordinator")).value<QObject*>()
                  : nullptr;
}

QStringList offered(ModuleHost& host)
{
    QObject* radar = coordinator(host);
    return radar ? radar->property("submodules").toStringList() : QStringList();
}

QString match(ModuleHost& host, QString& mode)
{
    const QStringList modes = offered(host);
    for (const QString& name : modes) {
        if (name.compare(mode.trimmed(), Qt::CaseInsensitive) == 0) {
            mode = name;
            return {};
        }
    }
    return QStringLiteral("--mode \"%1\" is not a mode of the module; the modes are: %2")
        .arg(mode, modes.isEmpty() ? QStringLiteral("none") : modes.join(QStringLiteral(", ")));
}

} // namespace SessionMode
