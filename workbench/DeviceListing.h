#pragma once

#include <QTextStream>

class ModuleHost;

#include <QString>

// Asks the module to detect boards and waits until it has announced every
// board the SDK lists. Empty text on success, otherwise why not.
QString awaitBoards(ModuleHost& host, int timeoutMs = 10000);

// Runs one detection through the module and prints a line per board:
// display name, uuid, shield type, chip. Returns the process exit code.
int listDevices(ModuleHost& host, QTextStream& out, QTextStream& err);
