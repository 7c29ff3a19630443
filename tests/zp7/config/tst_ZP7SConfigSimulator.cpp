#include "SimulatorSdk.h"

#include "fmcw/common/DeviceInfo.h"
#include "zp7/ZP7SDevice.h"
#include "zp7/config/ZP7SConfig.h"
#include "zp7/config/ZP7SDeviceConfig.h"
#include "zp7/config/ZP7SFrameParams.h"
#include "zp7/config/ZP7SGainTable.h"
#include "zp7/config/ZP7SLimits.h"
#include "zp7/config/ZP7SPulseConfigParams.h"

#include <QtTest>

class tst_ZP7SConfigSimulator : public QObject
{
    Q_OBJECT
private slots:
    void everyOfferedGainRunsOnTheBoard()
    {
        SimulatorSdk sdk;
        QVERIFY2(sdk.vrn && sdk.sim, qPrintable(sdk.loadError()));
        QVERIFY(!sdk.sim->load_bench_json(oneBoardBench("zp7-config", QStringLiteral("ZP7"), QString()).constData()));
        ZP7SDevice board(sdk.vrn);
        QVERIFY(board.connectDevice(QStringLiteral("zp7-config"), VRN_SHIELD_ZP7_768));
        ZP7SConfig config(&board);
        QVERIFY(config.loadFromDevice());
        QVERIFY(config.applyDefaultConfig());
        QCOMPARE(config.deviceInfo()->deviceName(), QStringLiteral("ZP7"));

        // The board's gain bounds offer the whole table, and each entry's
        // number is a gain index the board takes and reports back.
        const ZP7SLimits* limits = config.guiConfig()->limits();
        QCOMPARE(limits->abbGainLabels(), ZP7SGainTable::labels());
        for (int row = 0; row < limits->abbGainLabels().size(); ++row) {
            config.guiConfig()->pulseConfigParams()->setAbbGain(quint16(limits->abbGainValueAt(row)));
            config.guiConfig()->pulseConfigParams()->selectChannel(row % 2);
            QVERIFY2(config.applyGuiConfig(), qPrintable(limits->abbGainLabels().at(row)));
            vrn_Corvix_Frame_Config_t frame {};
            vrn_Corvix_Pulse_Config_t pulse {};
            QVERIFY(board.getConfig(frame, pulse));
            QCOMPARE(int(pulse.abb_gain_index), ZP7SGainTable::valueAt(row));
            QCOMPARE(int(pulse.channel), row % 2);
            QVERIFY(!config.differs());
        }
        // The largest frame the pages offer is one the board accepts.
        ZP7SDeviceConfig* gui = config.guiConfig();
        gui->frameParams()->setNumOfSamples(limits->maxNumOfSamples());
        gui->frameParams()->setPulseRepetitionTime(limits->maxPulseRepetitionTimeS() / 4);
        QVERIFY(config.applyGuiConfig());
        QCOMPARE(int(config.deviceConfig()->frameParams()->numOfSamples()), 2048);
        QVERIFY(board.disconnectDevice());
    }
};

QTEST_GUILESS_MAIN(tst_ZP7SConfigSimulator)
#include "tst_ZP7SConfigSimulator.moc"
