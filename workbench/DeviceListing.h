#pragma once

#include <QTextStream>

class ModuleHost;

// Runs one detection through the module and prints a line per board:
// display name, uuid, shield type, chip. Returns the process exit code.
int listDevices(ModuleHost& host, QTextStream& out, QTextStream& err);
