#pragma once

#include <QString>

class ModuleHost;
class QTextStream;

// The firmware commands of the command line. Both first ask the module to
// look at the serial ports (the host's device-change notice) and wait until
// the list of flashers has settled.

// One line per flasher: its name, its status and the image it would write.
// Returns the process exit code.
int listFlashers(ModuleHost& host, QTextStream& out, QTextStream& err);

// Runs one job through the named flasher with `image` (empty: the newest
// image of the flasher's firmware folder), drawing its progress with the
// phase and printing each message. Exit code 0 only when the board was
// flashed; otherwise the final status and message are on `err`.
int flashBoard(ModuleHost& host, const QString& name, const QString& image, QTextStream& out, QTextStream& err);
