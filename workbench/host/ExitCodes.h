#pragma once

// The workbench's process exit codes. Scripts branch on them, so a value
// never changes meaning once released.
namespace ExitCode {
constexpr int Success = 0;
// Bad command line, or --inspect/--convert given a file that is missing or
// not a readable recording, or a conversion that failed.
constexpr int UsageError = 1;
// --check only: the settings file cannot be read or written.
constexpr int SettingsError = 2;
// The module or the SDK could not be loaded, or boards could not be listed,
// or the window cannot open: no display, or its QML failed to load.
constexpr int StartError = 3;
// A headless session, a window screenshot or a flashing job ran into an
// error; the reason is on standard error.
constexpr int SessionFailed = 4;
// A headless session ended early by a signal: 128 + the signal's number, as
// a shell reports a process killed by it, but after a clean finish.
constexpr int interruptedBy(int signalNumber)
{
    return 128 + signalNumber;
}
} // namespace ExitCode
