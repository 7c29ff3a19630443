#include "SimulatorSdk.h"

#include "fmcw/common/DeviceInfo.h"
#include "zp7/config/IZP7SController.h"
#include "zp7/config/ZP7SConfig.h"
#include "zp7/config/ZP7SDeviceConfig.h"
#include "zp7/config/ZP7SFrameParams.h"
#include "zp7/config/ZP7SGainTable.h"
#include "zp7/config/ZP7SLimits.h"
#include "zp7/config/ZP7SPulseConfigParams.h"

#include <QtTest>

namespace {

// The simulated SDK's ZP7 calls, one to one: enough of a device for the
// configuration, without the mode's own device class.
class SdkController : public IZP7SController
{
public:
    SdkController(const Vrn* vrn, vrn_Corvix_Handle handle)
        : m_vrn(vrn)
        , m_handle(handle)
    {
    }
    bool isConnected() const override { return m_handle; }
    bool getDefaultConfig(vrn_Corvix_Frame_Config_t& f, vrn_Corvix_Pulse_Config_t& p) override
    {
        return !m_vrn->corvix_get_default_config(m_handle, &f, &p);
    }
    bool getConfig(vrn_Corvix_Frame_Config_t& f, vrn_Corvix_Pulse_Config_t& p) override
    {
        return !m_vrn->corvix_get_config(m_handle, &f, &p);
    }
    bool setConfig(const vrn_Corvix_Frame_Config_t& f, const vrn_Corvix_Pulse_Config_t& p) override
    {
        return !m_vrn->corvix_set_config(m_handle, &f, &p);
    }
    bool getLimits(vrn_Corvix_Limits_t& l) override { return !m_vrn->corvix_get_limits(m_handle, &l); }
    bool readDeviceInfo(DeviceInfo& into) override
    {
        vrn_Device_Info_t info {};
        if (m_vrn->corvix_get_device_info(m_handle, &info))
            return false;
        into.setDeviceName(QString::fromUtf8(info.name));
        into.setNumRxAntennas(info.num_rx_antennas);
        into.setNumTxAntennas(info.num_tx_antennas);
        return true;
    }

private:
    const Vrn* m_vrn;
    vrn_Corvix_Handle m_handle;
};

}

class tst_ZP7SConfigSimulator : public QObject
{
    Q_OBJECT
private slots:
    void everyOfferedGainRunsOnTheBoard()
    {
        SimulatorSdk sdk;
        QVERIFY2(sdk.vrn && sdk.sim, qPrintable(sdk.loadError()));
        QVERIFY(!sdk.sim->load_bench_json(oneBoardBench("zp7-config", QStringLiteral("ZP7"), QString()).constData()));
        vrn_Corvix_Handle handle = nullptr;
        QCOMPARE(sdk.vrn->corvix_create_by_uuid("zp7-config", &handle), VRN_STATUS_OK);
        SdkController board(sdk.vrn, handle);
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
        QVERIFY(!sdk.vrn->corvix_destroy(handle));
    }
};

QTEST_GUILESS_MAIN(tst_ZP7SConfigSimulator)
#include "tst_ZP7SConfigSimulator.moc"
