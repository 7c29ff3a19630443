#pragma once

#include <QString>
#include <QTextStream>
#include <memory>

class IDevice;
class ModuleHost;

// Asks the module to detect boards and waits until it has announced every
// board the SDK lists. Empty text on success, otherwise why not.
QString awaitBoards(ModuleHost& host, int timeoutMs = 10000);

// Runs one detection through the module and prints a line per board:
// display name, uuid, shield type, chip. Says so on err when there is none.
// Returns the process exit code.
int listDevices(ModuleHost& host, QTextStream& out, QTextStream& err);

// The announced board with this display name or, failing that, this uuid.
std::shared_ptr<IDevice> findBoard(ModuleHost& host, const QString& nameOrUuid);

// Waits for detection, then the board a session asked for: by name or uuid,
// or the first one when `nameOrUuid` is empty. Null with `error` set when
// there is no such board.
std::shared_ptr<IDevice> chooseBoard(ModuleHost& host, const QString& nameOrUuid, QString& error);

// The announced boards as "\"NAME\" (UUID), ...", or "none".
QString boardNames(ModuleHost& host);
