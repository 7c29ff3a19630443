#pragma once

#include <QString>
#include <QStringList>

class ModuleHost;
class QObject;

// The user modes the loaded module offers, read from its coordinator
// ("radarCoordinator", as the window's mode selector reads them).
namespace SessionMode {

QObject* coordinator(ModuleHost& host);
QStringList offered(ModuleHost& host);

// Empty text when the module offers `mode` (compared without regard to
// case; `mode` then takes the module's spelling), otherwise a message that
// lists the modes there are.
QString match(ModuleHost& host, QString& mode);

} // namespace SessionMode
