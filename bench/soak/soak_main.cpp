// Soak: the whole module on the simulated SDK, loaded the way the host
// loads it, for a number of cycles of plugging a board, connecting,
// acquiring and recording with one fault injected per cycle (fetch
// failure, time-outs, FIFO overflow, unplug; drawn from --seed), then
// disconnecting and unplugging. Each recording is read back; at the end
// resident memory and the thread count are compared with a warm-up.
// Usage: bench_soak [--cycles N] [--seed S]

#include "SoakRun.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QTextStream>

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Plug, record, fail and unplug simulated boards"));
    parser.addHelpOption();
    parser.addOption({ QStringLiteral("cycles"), QStringLiteral("Cycles to run."), QStringLiteral("N"),
                       QStringLiteral("300") });
    parser.addOption({ QStringLiteral("seed"), QStringLiteral("Seed of the fault draws."), QStringLiteral("S"),
                       QStringLiteral("1") });
    parser.process(app);
    bool cyclesOk = false;
    bool seedOk = false;
    const int cycles = parser.value(QStringLiteral("cycles")).toInt(&cyclesOk);
    const quint32 seed = parser.value(QStringLiteral("seed")).toUInt(&seedOk);
    QTextStream err(stderr);
    if (!cyclesOk || cycles < 1 || !seedOk) {
        err << "--cycles takes a positive whole number and --seed a non-negative one" << Qt::endl;
        return 2;
    }
    QTextStream out(stdout);
    SoakRun run(seed, out);
    return run.run(cycles) ? 0 : 1;
}
