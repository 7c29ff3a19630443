#include "SimulatorSdk.h"

#include <QtTest>

// Runs with VRN_SIM_BENCH naming a bench whose pacing is misspelt.
class SimulatorBenchEnvTest : public QObject
{
    Q_OBJECT

private:
    SimulatorSdk sdk;

private slots:
    void badBenchFileIsReportedNotReplaced()
    {
        QVERIFY2(sdk.vrn && sdk.sim, qPrintable(sdk.loadError()));
        vrn_Device_List_Handle list = nullptr;
        const char* error = sdk.vrn->device_list_get(&list);
        QVERIFY(error);
        const QString text = QString::fromUtf8(error);
        QVERIFY2(text.contains(QLatin1String("bad_pacing_bench.json")), error);
        QVERIFY2(text.contains(QLatin1String("boards[0].pacing")), error);
        // The embedded default board is not quietly offered instead.
        vrn_Device_Handle device = nullptr;
        QVERIFY(sdk.vrn->device_create_by_uuid("1f3c-0001", &device) != VRN_STATUS_OK);
        const char* again = sdk.sim->load_bench_file(qgetenv("VRN_SIM_BENCH").constData());
        QVERIFY(again);
        QCOMPARE(QString::fromUtf8(again), text);
    }
};

QTEST_GUILESS_MAIN(SimulatorBenchEnvTest)
#include "tst_simulator_benchenv.moc"
