#pragma once

#include <QCommandLineOption>
#include <QList>
#include <QString>
#include <QtGlobal>

class QCommandLineParser;

// What a headless CW session is asked to do, read from the command line and
// judged before the module is loaded: a value out of range or an option of
// the other kind of session never reaches a board.
struct CWSessionOptions {
    static constexpr double kMaxEmitSeconds = 86400.0;
    static constexpr quint32 kMaxCaptures = 1000;
    static constexpr quint32 kDefaultCaptures = 1;

    QString device;        // display name or uuid; empty: the first board
    QString config;        // CW configuration file; empty: the board's defaults
    int dutyCycle = -1;    // percent, 0 to 100; -1: as the configuration has it
    double emitSeconds = 0;
    quint32 captures = kDefaultCaptures;
    QString log;           // directory of the one-frame CSV files; empty: not logged
    QString snapshot;      // directory of the last frame's chart data
    QString saveConfig;    // file to save the applied configuration to

    // --mode, and the options only a CW session takes.
    static QCommandLineOption modeOption();
    static QList<QCommandLineOption> commandLineOptions();

    // Whether `mode` names the CW mode, in any case.
    static bool isCWMode(const QString& mode);

    // Empty text when the command line makes a CW session, otherwise the
    // usage error.
    static QString read(const QCommandLineParser& parser, CWSessionOptions& options);
    // For any other session: the usage error when a CW-only option is given
    // (or --mode without --headless).
    static QString refuseOutsideCW(const QCommandLineParser& parser, bool headless);
    // The seconds in whole milliseconds, at least one.
    quint64 emitMilliseconds() const;
};
