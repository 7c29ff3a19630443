#pragma once

#include <QString>
#include <QTextStream>

class LogFile;
class ModuleHost;

// The commands that open the window, each returning the process exit code.

// Shows the window until the user closes it. With `connect` it connects a
// board as soon as the window is up: `device` by name or uuid, or the first.
int runWindow(ModuleHost& host, LogFile* logFile, bool connect, const QString& device, QTextStream& err);

// Opens the window, connects the first board, waits for `frames` frames
// and a chart refresh, saves a picture of the whole window as PNG to
// `file` and closes the window as a user would.
int runScreenshot(ModuleHost& host, LogFile* logFile, const QString& file, int frames, QTextStream& out,
                  QTextStream& err);

// Whether a window can appear on a screen: a display server is named, or
// the user chose a platform plug-in. Without one the window command says so
// and suggests the headless commands.
bool hasDisplay();
