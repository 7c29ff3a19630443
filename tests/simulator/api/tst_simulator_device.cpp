#include "SimulatorSdk.h"

#include <QtTest>

#include <cstring>

namespace {

const char* const kBench = R"({ "boards": [
    { "uuid": "d-7a", "chip": "KMR7A", "shield": 512, "firmware": "2.5.1", "pacing": "unpaced" },
    { "uuid": "d-7c", "chip": "KMR7C", "pacing": "unpaced", "thermal_time_s": 0.5 },
    { "uuid": "d-zp7", "chip": "ZP7", "pacing": "unpaced", "firmware": "3.0.7" },
    { "uuid": "d-warm", "chip": "KMR7B", "pacing": "unpaced", "thermal_time_s": 0.5 } ] })";

}  // namespace

class SimulatorDeviceTest : public QObject
{
    Q_OBJECT

private:
    SimulatorSdk sdk;
    // What a test opened; cleanup() destroys it and checks that it went.
    vrn_Device_Handle device = nullptr;
    vrn_CW_Handle cw = nullptr;
    vrn_Frame_R_t* frame = nullptr;

    // Opens `uuid` and its CW controller into `device` and `cw`.
    bool openCw(const QString& uuid)
    {
        device = sdk.open(uuid.toUtf8().constData());
        return device && !sdk.vrn->cw_create(device, &cw);
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(sdk.vrn && sdk.sim, qPrintable(sdk.loadError()));
        QCOMPARE(sdk.vrn->api_version, VRN_API_VERSION);
        QCOMPARE(sdk.vrn->struct_size, uint32_t(sizeof(Vrn)));
    }

    void init()
    {
        QVERIFY(!sdk.sim->load_bench_json(kBench));
    }

    void cleanup()
    {
        if (cw)
            QVERIFY(!sdk.vrn->cw_destroy(cw));
        if (frame)
            QVERIFY(!sdk.vrn->frame_r_destroy(frame));
        if (device)
            QVERIFY(!sdk.vrn->device_destroy(device));
        cw = nullptr;
        frame = nullptr;
        device = nullptr;
    }

    void embeddedDefaultHasOneKmr7aOnShield512()
    {
        QVERIFY(!sdk.sim->reset());
        QCOMPARE(sdk.listedUuids().size(), 1);
        vrn_Device_List_Handle list = nullptr;
        vrn_Device_List_Entry_t entry{};
        QVERIFY(!sdk.vrn->device_list_get(&list) && !sdk.vrn->device_list_entry(list, 0, &entry));
        QCOMPARE(int(entry.shield_type), 512);
        QVERIFY(sdk.vrn->device_list_entry(list, 1, &entry) != nullptr);
        QVERIFY(!sdk.vrn->device_list_destroy(list));
        QVERIFY(device = sdk.open(entry.uuid));
        vrn_Device_Info_t info{};
        QVERIFY(!sdk.vrn->device_get_info(device, &info));
        QCOMPARE(QString::fromUtf8(info.name), QStringLiteral("KMR7A"));
    }

    void openBoardIsHiddenAndBusyUntilClosed()
    {
        QVERIFY(device = sdk.open("d-7a"));
        QVERIFY(!sdk.listedUuids().contains("d-7a"));
        vrn_Device_Handle second = nullptr;
        QCOMPARE(sdk.vrn->device_create_by_uuid("d-7a", &second), VRN_STATUS_DEVICE_BUSY);
        sdk.close(device, frame);
        QVERIFY(sdk.listedUuids().contains("d-7a"));
    }

    void openAnswersByBoard_data()
    {
        QTest::addColumn<QString>("uuid");
        QTest::addColumn<int>("status");
        QTest::newRow("ZP7 as FMCW") << "d-zp7" << int(VRN_STATUS_NOT_SUPPORTED);
        QTest::newRow("KMR7C") << "d-7c" << int(VRN_STATUS_OK);
    }

    void openAnswersByBoard()
    {
        QFETCH(QString, uuid);
        QFETCH(int, status);
        QCOMPARE(int(sdk.vrn->device_create_by_uuid(uuid.toUtf8().constData(), &device)), status);
        QCOMPARE(device != nullptr, status == VRN_STATUS_OK);
        QVERIFY(std::strlen(sdk.vrn->status_text(status)) > 0);
        QCOMPARE(QString::fromUtf8(sdk.vrn->status_text(0x12345)), QStringLiteral("Unknown status 0x12345"));
    }

    void deviceDescribesItsChip_data()
    {
        QTest::addColumn<QString>("uuid");
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("tx");
        QTest::addColumn<int>("rx");
        QTest::addColumn<int>("type");
        QTest::newRow("KMR7A") << "d-7a" << "KMR7A" << 1 << 3 << int(VRN_DEVICE_TYPE_KMR7A);
        QTest::newRow("KMR7C") << "d-7c" << "KMR7C" << 2 << 4 << int(VRN_DEVICE_TYPE_KMR7C);
    }

    void deviceDescribesItsChip()
    {
        QFETCH(QString, uuid);
        QFETCH(QString, name);
        QFETCH(int, tx);
        QFETCH(int, rx);
        QFETCH(int, type);
        QVERIFY(device = sdk.open(uuid.toUtf8().constData()));
        vrn_Device_Info_t info{};
        uint32_t rxCount = 0, txCount = 0;
        vrn_Device_Type_t deviceType{};
        QVERIFY(!sdk.vrn->device_get_info(device, &info) && !sdk.vrn->device_get_num_rx_antennas(device, &rxCount) &&
                !sdk.vrn->device_get_num_tx_antennas(device, &txCount) && !sdk.vrn->device_get_type(device, &deviceType));
        QCOMPARE((QVariantList{QString::fromUtf8(info.name), int(info.num_tx_antennas), int(info.num_rx_antennas),
                               int(txCount), int(rxCount), int(deviceType), int(info.adc_resolution_bits)}),
                 (QVariantList{name, tx, rx, tx, rx, type, 12}));
        QVERIFY(info.min_rf_frequency_Hz >= 57000000000ull && info.max_rf_frequency_Hz <= 64000000000ull);
        float power = 0;
        QVERIFY(!sdk.vrn->device_get_tx_power(device, 0, &power));
        QVERIFY(power > -20.0f && power < 10.0f);
        QVERIFY(sdk.vrn->device_get_tx_power(device, uint32_t(tx), &power) != nullptr);
    }

    void frameOfTheWrongShapeIsRefused_data()
    {
        QTest::addColumn<uint>("channels");
        QTest::addColumn<uint>("chirps");
        QTest::addColumn<uint>("samples");
        QTest::addColumn<int>("status");
        QTest::newRow("configured shape") << 1u << 64u << 64u << int(VRN_STATUS_OK);
        QTest::newRow("too many channels") << 3u << 64u << 64u << int(VRN_STATUS_INVALID_ARGUMENT);
        QTest::newRow("too few chirps") << 1u << 32u << 64u << int(VRN_STATUS_INVALID_ARGUMENT);
        QTest::newRow("too many samples") << 1u << 64u << 128u << int(VRN_STATUS_INVALID_ARGUMENT);
    }

    void frameOfTheWrongShapeIsRefused()
    {
        QFETCH(uint, channels);
        QFETCH(uint, chirps);
        QFETCH(uint, samples);
        QFETCH(int, status);
        QVERIFY(device = sdk.open("d-7a"));
        vrn_Frame_R_t* frame = nullptr;
        QVERIFY(!sdk.vrn->frame_r_create(channels, chirps, samples, &frame));
        QCOMPARE(int(sdk.vrn->device_get_next_frame(device, frame, 100)), status);
        if (status != VRN_STATUS_OK)
            QVERIFY(QString::fromUtf8(sdk.vrn->status_text(status)).contains("shape"));
        QVERIFY(!sdk.vrn->frame_r_destroy(frame));
    }

    void clearedFrameIsRefilledAndDestroyable()
    {
        QVERIFY(device = sdk.open("d-7a"));
        vrn_Frame_R_t* frame = nullptr;
        QVERIFY(!sdk.vrn->frame_r_create(1, 64, 64, &frame));
        QCOMPARE(sdk.vrn->device_get_next_frame(device, frame, 100), VRN_STATUS_OK);
        QVERIFY(!sdk.vrn->matrix_r_clear(frame->rx_data[0]));
        QCOMPARE(frame->rx_data[0]->data[10], 0.0f);
        frame->num_rx = 0;
        QCOMPARE(sdk.vrn->device_get_next_frame(device, frame, 100), VRN_STATUS_OK);
        QCOMPARE(frame->num_rx, 1u);
        QVERIFY(frame->rx_data[0]->data[10] > 0.3f && frame->rx_data[0]->data[10] < 0.7f);
        frame->num_rx = 0;
        QVERIFY(!sdk.vrn->frame_r_destroy(frame));
    }

    void temperatureRisesWhileEmitting()
    {
        QVERIFY(openCw("d-warm"));
        float start = 0;
        QCOMPARE(sdk.vrn->cw_get_temperature(cw, &start), VRN_STATUS_OK);
        QVERIFY(!sdk.vrn->cw_start_emission(cw));
        uint8_t active = 0;
        QVERIFY(!sdk.vrn->cw_is_emission_active(cw, &active));
        QCOMPARE(active, uint8_t(1));
        float now = start;
        QTRY_VERIFY_WITH_TIMEOUT((sdk.vrn->cw_get_temperature(cw, &now), now > start + 2.0f), 5000);
    }

    void emissionTimeCountsOnlyWhileTheTransmitterIsOn()
    {
        QVERIFY(openCw("d-7a"));
        QCOMPARE(sdk.sim->emission_time_ms("d-7a"), uint64_t(0));
        QCOMPARE(sdk.sim->emission_time_ms("nope"), uint64_t(0));
        QVERIFY(!sdk.vrn->cw_start_emission(cw));
        QTest::qSleep(150);
        // A second start keeps the span that runs.
        QVERIFY(!sdk.vrn->cw_start_emission(cw));
        QTest::qSleep(150);
        QVERIFY(!sdk.vrn->cw_stop_emission(cw));
        const uint64_t first = sdk.sim->emission_time_ms("d-7a");
        QVERIFY2(first >= 300 && first < 600, qPrintable(QString::number(first)));
        QTest::qSleep(200);
        QCOMPARE(sdk.sim->emission_time_ms("d-7a"), first);

        // Without a transmitter enabled nothing goes on air.
        QVERIFY(!sdk.vrn->cw_set_tx_antenna_mask(cw, 0));
        QVERIFY(!sdk.vrn->cw_start_emission(cw));
        QTest::qSleep(100);
        QCOMPARE(sdk.sim->emission_time_ms("d-7a"), first);

        // Closing the controller ends an emission under way.
        QVERIFY(!sdk.vrn->cw_set_tx_antenna_mask(cw, 1));
        QVERIFY(!sdk.vrn->cw_start_emission(cw));
        QTest::qSleep(100);
        QVERIFY(!sdk.vrn->cw_destroy(cw));
        cw = nullptr;
        const uint64_t closed = sdk.sim->emission_time_ms("d-7a");
        QVERIFY(closed >= first + 100);
        QTest::qSleep(100);
        QCOMPARE(sdk.sim->emission_time_ms("d-7a"), closed);
    }

    void cwSamplingRateLimitsFollowTheAdcSetting_data()
    {
        QTest::addColumn<uint>("sampleTime");
        QTest::addColumn<uint>("tracking");
        QTest::addColumn<uint>("oversampling");
        QTest::addColumn<uint>("doubleMsb");
        QTest::addColumn<uint>("maxRate");
        // conversion = sample time + (12 + double MSB) / 80 MHz, times
        // (1 + tracking conversions) times oversampling; at most 2 MHz.
        QTest::newRow("defaults") << 0u << 1u << 0u << 0u << 2000000u;
        QTest::newRow("400 ns") << 3u << 1u << 0u << 0u << 909090u;
        QTest::newRow("3 conversions, double MSB") << 1u << 2u << 0u << 1u << 952380u;
        QTest::newRow("4x oversampling") << 0u << 1u << 2u << 0u << 625000u;
        QTest::newRow("no tracking, 8x") << 2u << 0u << 3u << 0u << 357142u;
    }

    void cwSamplingRateLimitsFollowTheAdcSetting()
    {
        QFETCH(uint, sampleTime);
        QFETCH(uint, tracking);
        QFETCH(uint, oversampling);
        QFETCH(uint, doubleMsb);
        QFETCH(uint, maxRate);
        QVERIFY(openCw("d-7a"));
        vrn_Device_ADC_Config_t adc{1000, tracking, sampleTime, doubleMsb, oversampling};
        uint32_t minRate = 0, maxFound = 0;
        QVERIFY(!sdk.vrn->cw_get_sampling_rate_limits(cw, &adc, &minRate, &maxFound));
        QCOMPARE(maxFound, maxRate);
        QCOMPARE(minRate, 1221u);
        adc.sample_rate_Hz = maxRate;
        QVERIFY(!sdk.vrn->cw_set_adc_config(cw, &adc));
        adc.sample_rate_Hz = maxRate + 1;
        QVERIFY(sdk.vrn->cw_set_adc_config(cw, &adc) != nullptr);
        vrn_Device_ADC_Config_t stored{};
        QVERIFY(!sdk.vrn->cw_get_adc_config(cw, &stored));
        QCOMPARE(stored.sample_rate_Hz, maxRate);
    }

    void cwTestSignalModesDependOnTheChip_data()
    {
        QTest::addColumn<QString>("uuid");
        QTest::addColumn<uint>("mode");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("KMR7A baseband test") << "d-7a" << 1u << true;
        QTest::newRow("KMR7A Rx self test") << "d-7a" << 4u << false;
        QTest::newRow("KMR7C Rx self test") << "d-7c" << 4u << true;
    }

    void cwTestSignalModesDependOnTheChip()
    {
        QFETCH(QString, uuid);
        QFETCH(uint, mode);
        QFETCH(bool, accepted);
        QVERIFY(openCw(uuid));
        const vrn_Device_Test_Signal_Generator_t tsg{mode, 100000.0f};
        QCOMPARE(sdk.vrn->cw_set_test_signal_generator(cw, &tsg) == nullptr, accepted);
    }

    void zp7OpensAsPulsedDopplerDevice()
    {
        vrn_Corvix_Handle zp7 = nullptr;
        QCOMPARE(sdk.vrn->corvix_create_by_uuid("d-zp7", &zp7), VRN_STATUS_OK);
        vrn_Device_Info_t info{};
        QVERIFY(!sdk.vrn->corvix_get_device_info(zp7, &info));
        QCOMPARE(QString::fromUtf8(info.name), QStringLiteral("ZP7"));
        QCOMPARE(int(info.shield_type), 768);
        QCOMPARE(int(info.num_rx_antennas), 2);
        vrn_Firmware_Info_t firmware{};
        QVERIFY(!sdk.vrn->corvix_get_firmware_info(zp7, &firmware));
        QCOMPARE(firmware.version_major, uint16_t(3));
        vrn_Corvix_Limits_t limits{};
        QVERIFY(!sdk.vrn->corvix_get_limits(zp7, &limits));
        vrn_Corvix_Frame_Config_t frame{};
        vrn_Corvix_Pulse_Config_t pulse{};
        QVERIFY(!sdk.vrn->corvix_get_default_config(zp7, &frame, &pulse));
        QVERIFY(pulse.abb_gain_index >= limits.abb_gain_index_min && pulse.abb_gain_index <= limits.abb_gain_index_max);
        pulse.channel = VRN_CORVIX_CHANNEL_TX2_RX2;
        pulse.abb_gain_index = 7;
        QVERIFY(sdk.vrn->corvix_set_config(zp7, &frame, &pulse) != nullptr);
        pulse.abb_gain_index = 384;
        QVERIFY(!sdk.vrn->corvix_set_config(zp7, &frame, &pulse));
        vrn_Corvix_Pulse_Config_t stored{};
        QVERIFY(!sdk.vrn->corvix_get_config(zp7, &frame, &stored));
        QCOMPARE(int(stored.channel), int(VRN_CORVIX_CHANNEL_TX2_RX2));
        vrn_Device_Handle fmcw = nullptr;
        QCOMPARE(sdk.vrn->corvix_create_by_uuid("d-7a", reinterpret_cast<vrn_Corvix_Handle*>(&fmcw)),
                 VRN_STATUS_NOT_SUPPORTED);
        QVERIFY(!sdk.vrn->corvix_destroy(zp7));
    }

    void processingRefusesMissingRecords()
    {
        vrn_RS_Handle rs = nullptr;
        vrn_RDM_Handle rdm = nullptr;
        vrn_PresenceSensing_Handle ps = nullptr;
        vrn_Segmentation_Handle seg = nullptr;
        QVERIFY(QString::fromUtf8(sdk.vrn->rs_create(nullptr, &rs)).contains("configuration"));
        QVERIFY(QString::fromUtf8(sdk.vrn->rdm_create(nullptr, &rdm)).contains("configuration"));
        QVERIFY(QString::fromUtf8(sdk.vrn->ps_create(nullptr, &ps)).contains("configuration"));
        QVERIFY(QString::fromUtf8(sdk.vrn->seg_create(nullptr, &seg)).contains("configuration"));
        QVERIFY(!rs && !rdm && !ps && !seg);
    }

    void badBenchNamesTheFieldAndReplacesNothing_data()
    {
        QTest::addColumn<QString>("bench");
        QTest::addColumn<QString>("field");
        QTest::newRow("chip") << R"({ "boards": [ { "uuid": "x", "chip": "KMR9" } ] })" << "boards[0].chip";
        QTest::newRow("shield") << R"({ "boards": [ { "uuid": "x", "chip": "ZP7", "shield": 512 } ] })"
                                << "boards[0].shield";
        QTest::newRow("target") << R"({ "boards": [ { "uuid": "x", "scene": { "targets": [ { "range_m": "far" } ] } } ] })"
                                << "boards[0].scene.targets[0].range_m";
        QTest::newRow("typo") << R"({ "boards": [ { "uuid": "x", "pacng": "unpaced" } ] })" << "boards[0].pacng";
        QTest::newRow("fault status") << R"({ "boards": [ { "uuid": "x", "faults": [ { "at_frame": 1 } ] } ] })"
                                      << "boards[0].faults[0].status";
        // A status the SDK's 32-bit status cannot hold is refused, not cut down.
        const QString status = QStringLiteral(R"({ "boards": [ { "uuid": "x", "faults": [ { "at_frame": 1, "status": %1 } ] } ] })");
        const QString refused = QStringLiteral("boards[0].faults[0].status: must be a non-zero status");
        QTest::newRow("status far beyond 32 bits") << status.arg("5.4e71") << refused;
        QTest::newRow("status text beyond 32 bits") << status.arg("\"0x100011002\"") << refused;
        QTest::newRow("status not whole") << status.arg("70658.5") << refused;
        QTest::newRow("fault counted twice")
            << R"({ "boards": [ { "uuid": "x", "faults": [ { "at_frame": 1, "at_capture": 1, "kind": "unplug" } ] } ] })"
            << "boards[0].faults[0].at_capture: cannot go with";
        QTest::newRow("fault without a count")
            << R"({ "boards": [ { "uuid": "x", "faults": [ { "kind": "unplug" } ] } ] })"
            << "boards[0].faults[0].at_frame: is missing";
        QTest::newRow("duplicate uuid") << R"({ "boards": [ { "uuid": "x" }, { "uuid": "x" } ] })"
                                        << "boards[1].uuid";
        QTest::newRow("not JSON") << "{ boards" << "not valid JSON";
        QTest::newRow("product ID") << R"({ "boards": [ { "uuid": "x", "usb_product": "251" } ] })"
                                    << "boards[0].usb_product: \"251\" is not four upper-case hexadecimal digits";
        QTest::newRow("flash fault kind") << R"({ "boards": [ { "uuid": "x", "flash_faults": [ { "kind": "smoke" } ] } ] })"
                                          << "boards[0].flash_faults[0].kind: \"smoke\" is not one of";
        QTest::newRow("percent on another flash fault")
            << R"({ "boards": [ { "uuid": "x", "flash_faults": [ { "kind": "no_return", "at_percent": 5 } ] } ] })"
            << "boards[0].flash_faults[0].at_percent: belongs to \"write_fails\" only";
        QTest::newRow("port twice") << R"({ "boards": [ { "uuid": "x", "port": "ttyA" }, { "uuid": "y", "port": "ttyA" } ] })"
                                    << "boards[1].port: \"ttyA\" is used by another board";
    }

    void badBenchNamesTheFieldAndReplacesNothing()
    {
        QFETCH(QString, bench);
        QFETCH(QString, field);
        const char* error = sdk.sim->load_bench_json(bench.toUtf8().constData());
        QVERIFY(error);
        QVERIFY2(QString::fromUtf8(error).contains(field), error);
        vrn_Device_List_Handle list = nullptr;
        const char* listError = sdk.vrn->device_list_get(&list);
        QVERIFY(listError);
        QVERIFY(QString::fromUtf8(listError).contains(field));
    }
};

QTEST_GUILESS_MAIN(SimulatorDeviceTest)
#include "tst_simulator_device.moc"
