#include "SimulatorSdk.h"

#include <QSemaphore>
#include <QtTest>

#include <atomic>
#include <cstring>
#include <functional>
#include <thread>

namespace {

const char* const kBench = R"({ "boards": [
    { "uuid": "f-fast", "chip": "KMR7A", "pacing": "unpaced" },
    { "uuid": "f-real", "chip": "KMR7A", "pacing": "realtime" },
    { "uuid": "f-zp7", "chip": "ZP7", "pacing": "unpaced" },
    { "uuid": "f-sched", "chip": "KMR7B", "pacing": "unpaced",
      "faults": [ { "at_frame": 3, "status": "0x1100e", "count": 1 },
                  { "at_frame": 5, "kind": "unplug" } ] } ] })";

void countChange(void* user)
{
    static_cast<std::atomic<int>*>(user)->fetch_add(1);
}

}  // namespace

class SimulatorFaultsTest : public QObject
{
    Q_OBJECT

private:
    SimulatorSdk sdk;
    vrn_Device_Handle device = nullptr;
    vrn_Frame_R_t* frame = nullptr;

    bool openWithFrame(const char* uuid, uint32_t chirps = 64)
    {
        device = sdk.open(uuid);
        return device && !sdk.vrn->frame_r_create(1, chirps, 64, &frame);
    }

    // Changes the open board's configuration as `change` says.
    bool reconfigure(const std::function<void(vrn_Device_Config_t&)>& change)
    {
        vrn_Device_Config_t config{};
        if (sdk.vrn->device_get_config(device, &config))
            return false;
        change(config);
        return !sdk.vrn->device_set_config(device, &config);
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(sdk.vrn && sdk.sim, qPrintable(sdk.loadError()));
    }

    void init()
    {
        QVERIFY(!sdk.sim->load_bench_json(kBench));
    }

    void cleanup()
    {
        sdk.sim->set_change_callback(nullptr, nullptr);
        sdk.close(device, frame);
    }

    void fetchWaitsForTheFrameRepetitionTime_data()
    {
        QTest::addColumn<QString>("uuid");
        QTest::addColumn<int>("shortWait");
        QTest::addColumn<int>("secondStatus");
        // The default frame repetition time is 100 ms: a 10 ms wait right
        // after a frame is too short on a paced board.
        QTest::newRow("realtime, short wait") << "f-real" << 10 << int(VRN_STATUS_FRAME_TIMEOUT);
        QTest::newRow("realtime, no wait") << "f-real" << 0 << int(VRN_STATUS_FRAME_TIMEOUT);
        QTest::newRow("unpaced, no wait") << "f-fast" << 0 << int(VRN_STATUS_OK);
    }

    void fetchWaitsForTheFrameRepetitionTime()
    {
        QFETCH(QString, uuid);
        QFETCH(int, shortWait);
        QFETCH(int, secondStatus);
        QVERIFY(openWithFrame(uuid.toUtf8().constData()));
        QCOMPARE(sdk.vrn->device_get_next_frame(device, frame, 1000), VRN_STATUS_OK);
        QCOMPARE(int(sdk.vrn->device_get_next_frame(device, frame, uint16_t(shortWait))), secondStatus);
        QCOMPARE(sdk.vrn->device_get_next_frame(device, frame, 1000), VRN_STATUS_OK);
    }

    void lateHostLosesTheOldestFramesAndIsTold()
    {
        QVERIFY(!sdk.sim->plug_board(R"({ "uuid": "f-fifo", "pacing": "realtime", "fifo_frames": 2 })"));
        // One chirp per frame and a frame every 10 ms.
        QVERIFY(openWithFrame("f-fifo", 1));
        QVERIFY(reconfigure([](vrn_Device_Config_t& c) {
            c.num_chirps_per_frame = 1, c.frame_repetition_time_s = 0.01f;
        }));
        QCOMPARE(sdk.vrn->device_get_next_frame(device, frame, 1000), VRN_STATUS_OK);
        QCOMPARE(sdk.sim->dropped_frames("f-fifo"), uint64_t(0));
        // The host stalls for 20 frame times: the FIFO overflows, the next
        // fetch says so, and the one after gets the oldest frame kept.
        const VrnSimFault stall{VRNSIM_FAULT_STALL, 0, 1, 0, 200};
        QVERIFY(!sdk.sim->inject_fault("f-fifo", &stall));
        QCOMPARE(sdk.vrn->device_get_next_frame(device, frame, 1000), VRN_STATUS_FRAME_FETCH_FAILED);
        QVERIFY(sdk.sim->dropped_frames("f-fifo") >= 15);
        QCOMPARE(sdk.vrn->device_get_next_frame(device, frame, 1000), VRN_STATUS_OK);
        QCOMPARE(sdk.sim->dropped_frames("nope"), uint64_t(0));
        const VrnSimFault noStall{VRNSIM_FAULT_STALL, 0, 1, 0, 0};
        QVERIFY(sdk.sim->inject_fault("f-fifo", &noStall));
    }

    void injectedFaultsAnswerTheirStatus_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("count"); // 0: until cleared
        const int fetch = VRNSIM_FAULT_FETCH, temperature = VRNSIM_FAULT_TEMPERATURE;
        QTest::newRow("fetch timeout") << fetch << int(VRN_STATUS_FRAME_TIMEOUT) << 2;
        QTest::newRow("fetch, communication lost") << fetch << int(VRN_STATUS_COMMUNICATION_LOST) << 2;
        QTest::newRow("fetch, unknown") << fetch << 0x12345 << 2;
        QTest::newRow("fetch failed until cleared") << fetch << int(VRN_STATUS_FRAME_FETCH_FAILED) << 0;
        // The transmit power fault is exercised through the monitor in
        // tst_RadarDeviceSimulator.
        QTest::newRow("temperature, lost") << temperature << int(VRN_STATUS_COMMUNICATION_LOST) << 1;
        QTest::newRow("temperature not supported") << temperature << int(VRN_STATUS_NOT_SUPPORTED) << 1;
    }

    void injectedFaultsAnswerTheirStatus()
    {
        QFETCH(int, kind);
        QFETCH(int, status);
        QFETCH(int, count);
        QVERIFY(openWithFrame("f-fast"));
        const VrnSimFault fault{VrnSimFaultKind(kind), status, uint32_t(count), 0, 0};
        QVERIFY(!sdk.sim->inject_fault("f-fast", &fault));
        float value = 0;
        const auto call = [&] {
            return int(kind == VRNSIM_FAULT_FETCH ? sdk.vrn->device_get_next_frame(device, frame, 20)
                                                  : sdk.vrn->device_get_temperature(device, &value));
        };
        for (int i = 0; i < (count ? count : 5); ++i)
            QCOMPARE(call(), status);
        if (!count)
            QVERIFY(!sdk.sim->clear_faults("f-fast"));
        QCOMPARE(call(), int(VRN_STATUS_OK));
    }

    void injectedListEntryFault()
    {
        const VrnSimFault fault{VRNSIM_FAULT_LIST_ENTRY, 0, 1, 1, 0};
        QVERIFY(!sdk.sim->inject_fault(nullptr, &fault));
        vrn_Device_List_Handle list = nullptr;
        QVERIFY(!sdk.vrn->device_list_get(&list));
        vrn_Device_List_Entry_t entry{};
        QVERIFY(!sdk.vrn->device_list_entry(list, 0, &entry));
        QVERIFY(sdk.vrn->device_list_entry(list, 1, &entry) != nullptr);
        QVERIFY(!sdk.vrn->device_list_entry(list, 2, &entry));
        QVERIFY(!sdk.vrn->device_list_destroy(list));
        QCOMPARE(sdk.listedUuids().size(), 4);
    }

    void benchScheduleFailsByFrameNumber()
    {
        std::atomic<int> changes{0};
        sdk.sim->set_change_callback(countChange, &changes);
        QVERIFY(openWithFrame("f-sched"));
        QList<int> statuses;
        for (int i = 0; i < 7; ++i)
            statuses << sdk.vrn->device_get_next_frame(device, frame, 20);
        // Frames 0-2 arrive, the fourth fetch fails once, two more arrive,
        // then the board drops off the bus for good.
        const QList<int> expected{0, 0, 0, VRN_STATUS_FRAME_FETCH_FAILED, 0, 0, VRN_STATUS_COMMUNICATION_LOST};
        QCOMPARE(statuses, expected);
        QCOMPARE(changes.load(), 1);
        QVERIFY(!sdk.listedUuids().contains("f-sched"));
    }

    void hotPlugIsAnnouncedAndListed()
    {
        std::atomic<int> changes{0};
        sdk.sim->set_change_callback(countChange, &changes);
        QVERIFY(!sdk.sim->plug_board(R"({ "uuid": "f-new", "chip": "KMR7C", "pacing": "unpaced" })"));
        QCOMPARE(changes.load(), 1);
        QVERIFY(sdk.listedUuids().contains("f-new"));
        QVERIFY(sdk.sim->plug_board(R"({ "uuid": "f-new" })") != nullptr);
        QVERIFY(!sdk.sim->unplug_board("f-new"));
        QCOMPARE(changes.load(), 2);
        QVERIFY(!sdk.listedUuids().contains("f-new"));
        QVERIFY(sdk.sim->unplug_board("f-new") != nullptr);
    }

    void removingTheCallbackWaitsForOneInFlight()
    {
        // A host removes its callback and then frees what the callback
        // uses: the removal must not return while the callback still runs.
        struct Blocking {
            QSemaphore entered;
            QSemaphore gate;
            std::atomic<bool> done{false};
        } blocking;
        sdk.sim->set_change_callback(
            [](void* user) {
                auto* b = static_cast<Blocking*>(user);
                b->entered.release();
                b->gate.acquire();
                b->done = true;
            },
            &blocking);
        std::thread plugger([this] { sdk.sim->plug_board(R"({ "uuid": "f-cb", "pacing": "unpaced" })"); });
        QVERIFY(blocking.entered.tryAcquire(1, 5000));

        std::atomic<bool> removing{false};
        std::atomic<bool> doneWhenRemoved{false};
        std::thread remover([&] {
            removing = true;
            sdk.sim->set_change_callback(nullptr, nullptr);
            doneWhenRemoved = blocking.done.load();
        });
        while (!removing)
            std::this_thread::yield();
        blocking.gate.release();
        remover.join();
        plugger.join();
        QVERIFY(doneWhenRemoved);
        QVERIFY(!sdk.sim->unplug_board("f-cb"));
    }

    void unpluggedOpenBoardAnswersCommunicationLost()
    {
        QVERIFY(openWithFrame("f-fast"));
        QVERIFY(!sdk.sim->unplug_board("f-fast"));
        float value = 0;
        QCOMPARE(sdk.vrn->device_get_next_frame(device, frame, 20), VRN_STATUS_COMMUNICATION_LOST);
        QCOMPARE(sdk.vrn->device_get_temperature(device, &value), VRN_STATUS_COMMUNICATION_LOST);
        vrn_Device_Config_t config{};
        const char* error = sdk.vrn->device_get_config(device, &config);
        QVERIFY(error);
        QVERIFY(QString::fromUtf8(error).contains("lost"));
        QVERIFY(sdk.vrn->device_get_tx_power(device, 0, &value) != nullptr);
        uint8_t stopped = 0;
        QVERIFY(sdk.vrn->device_stop_acquisition(device, &stopped) != nullptr);
        // Plugged in again, the board is a new device for the SDK.
        QVERIFY(!sdk.sim->plug_board(R"({ "uuid": "f-fast", "pacing": "unpaced" })"));
        QCOMPARE(sdk.vrn->device_get_next_frame(device, frame, 20), VRN_STATUS_COMMUNICATION_LOST);
        vrn_Device_Handle fresh = nullptr;
        QVERIFY((fresh = sdk.open("f-fast")) && !sdk.vrn->device_destroy(fresh));
    }

    void unplugWakesAWaitingFetch()
    {
        QVERIFY(openWithFrame("f-real"));
        // One frame every 5 s: the second fetch is still waiting when the
        // board goes, whenever the other thread gets to run.
        QVERIFY(reconfigure([](vrn_Device_Config_t& c) { c.frame_repetition_time_s = 5.0f; }));
        QCOMPARE(sdk.vrn->device_get_next_frame(device, frame, 1000), VRN_STATUS_OK);
        std::atomic<int> status{-1};
        std::thread fetcher([&] { status = sdk.vrn->device_get_next_frame(device, frame, 60000); });
        QVERIFY(!sdk.sim->unplug_board("f-real"));
        fetcher.join();
        QCOMPARE(status.load(), int(VRN_STATUS_COMMUNICATION_LOST));
    }

    void reconfiguringEndsAWaitingFetch()
    {
        // A board that warms up at once: its temperature shows when the
        // fetch below has started acquisition and waits for its frame.
        QVERIFY(!sdk.sim->plug_board(R"({ "uuid": "f-slow", "pacing": "realtime", "thermal_time_s": 0.001 })"));
        // 500 chirps of 5 ms: the first frame is 2.5 s away.
        QVERIFY(openWithFrame("f-slow", 500));
        QVERIFY(reconfigure([](vrn_Device_Config_t& c) {
            c.num_chirps_per_frame = 500, c.chirp_repetition_time_s = 0.005f, c.frame_repetition_time_s = 5.0f;
        }));
        std::atomic<int> status{-1};
        std::thread fetcher([&] { status = sdk.vrn->device_get_next_frame(device, frame, 60000); });
        float temperature = 0;
        QTRY_VERIFY((sdk.vrn->device_get_temperature(device, &temperature), temperature > 30.0f));
        // The waiting fetch holds no lock the configuration calls need; the
        // new configuration ends the wait without a frame.
        QVERIFY(reconfigure([](vrn_Device_Config_t& c) { c.frame_repetition_time_s = 4.0f; }));
        fetcher.join();
        QCOMPARE(status.load(), int(VRN_STATUS_FRAME_TIMEOUT));
    }

    void zp7FetchFaults()
    {
        vrn_Corvix_Handle zp7 = nullptr;
        QCOMPARE(sdk.vrn->corvix_create_by_uuid("f-zp7", &zp7), VRN_STATUS_OK);
        vrn_Corvix_Frame_C_t* iq = nullptr;
        QVERIFY(!sdk.vrn->corvix_frame_c_create(1, 128, &iq));
        const VrnSimFault fault{VRNSIM_FAULT_FETCH, VRN_STATUS_FRAME_FETCH_FAILED, 1, 0, 0};
        QVERIFY(!sdk.sim->inject_fault("f-zp7", &fault));
        QCOMPARE(sdk.vrn->corvix_get_next_frame(zp7, iq, 20), VRN_STATUS_FRAME_FETCH_FAILED);
        QCOMPARE(sdk.vrn->corvix_get_next_frame(zp7, iq, 20), VRN_STATUS_OK);
        QVERIFY(!sdk.vrn->corvix_frame_c_destroy(iq));
        QVERIFY(!sdk.vrn->corvix_destroy(zp7));
    }

    void streamingSurvivesConcurrentHotPlug()
    {
        QVERIFY(!sdk.sim->plug_board(R"({ "uuid": "f-other", "pacing": "unpaced" })"));
        std::atomic<int> failures{0};
        auto stream = [&](const char* uuid) {
            vrn_Device_Handle d = sdk.open(uuid);
            vrn_Frame_R_t* f = nullptr;
            if (!d || sdk.vrn->frame_r_create(1, 64, 64, &f)) {
                failures++;
                return;
            }
            for (int i = 0; i < 200; ++i)
                if (sdk.vrn->device_get_next_frame(d, f, 100) != VRN_STATUS_OK)
                    failures++;
            sdk.vrn->frame_r_destroy(f);
            sdk.vrn->device_destroy(d);
        };
        std::thread a(stream, "f-fast");
        std::thread b(stream, "f-other");
        for (int i = 0; i < 50; ++i) {
            QVERIFY(!sdk.sim->plug_board(R"({ "uuid": "f-flaky", "pacing": "unpaced" })"));
            sdk.listedUuids();
            QVERIFY(!sdk.sim->unplug_board("f-flaky"));
        }
        a.join();
        b.join();
        QCOMPARE(failures.load(), 0);
    }
};

QTEST_GUILESS_MAIN(SimulatorFaultsTest)
#include "tst_simulator_faults.moc"
