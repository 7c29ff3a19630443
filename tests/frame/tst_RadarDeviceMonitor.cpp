#include "FakeSubmoduleCoordinator.h"
#include "FakeVrn.h"

#include "frame/RadarCoordinator.h"
#include "frame/RadarDeviceMonitor.h"
#include "frame/RadarDeviceProxy.h"

#include <QMutex>
#include <QSemaphore>
#include <QSignalSpy>
#include <QtTest>

#include <cstring>

namespace {

// A Vrn table whose device list is scripted by the test. Only the list
// entry points are filled; the detection thread calls them.
struct Script {
    QMutex mutex;
    QVector<QPair<vrn_Device_Shield_Type_t, QString>> boards;
    int failingEntry = -1;       // index whose read fails, -1 for none
    bool failList = false;
    int listCalls = 0;
    bool gated = false;          // when set, each list call waits for gate
    QSemaphore entered;          // released when a list call starts
    QSemaphore gate;
};

Script& script()
{
    static Script instance;
    return instance;
}

struct List {
    QVector<QPair<vrn_Device_Shield_Type_t, QByteArray>> boards;
    int failingEntry;
};

vrn_Error_t listGet(vrn_Device_List_Handle* handle)
{
    Script& s = script();
    bool gated = false;
    {
        QMutexLocker lock(&s.mutex);
        ++s.listCalls;
        gated = s.gated;
    }
    s.entered.release();
    if (gated)
        s.gate.acquire();
    QMutexLocker lock(&s.mutex);
    if (s.failList)
        return "list unavailable";
    auto* list = new List { {}, s.failingEntry };
    for (const auto& board : qAsConst(s.boards))
        list->boards.append({ board.first, board.second.toUtf8() });
    *handle = reinterpret_cast<vrn_Device_List_Handle>(list);
    return nullptr;
}

const Vrn* deviceListTable()
{
    static const Vrn sdk = [] {
        Vrn t {};
        t.api_version = VRN_API_VERSION;
        t.struct_size = sizeof(Vrn);
        t.device_list_get = listGet;
        t.device_list_size = [](vrn_Device_List_Handle handle, uint32_t* count) -> vrn_Error_t {
            *count = uint32_t(reinterpret_cast<List*>(handle)->boards.size());
            return nullptr;
        };
        t.device_list_entry = [](vrn_Device_List_Handle handle, uint32_t index, vrn_Device_List_Entry_t* entry)
            -> vrn_Error_t {
            auto* list = reinterpret_cast<List*>(handle);
            if (int(index) == list->failingEntry)
                return "entry unreadable";
            entry->shield_type = list->boards.at(int(index)).first;
            std::strncpy(entry->uuid, list->boards.at(int(index)).second.constData(), VRN_UUID_MAX - 1);
            return nullptr;
        };
        t.device_list_destroy = [](vrn_Device_List_Handle handle) -> vrn_Error_t {
            delete reinterpret_cast<List*>(handle);
            return nullptr;
        };
        return t;
    }();
    return &sdk;
}

void attach(QVector<QPair<vrn_Device_Shield_Type_t, QString>> boards, int failingEntry = -1)
{
    QMutexLocker lock(&script().mutex);
    script().boards = std::move(boards);
    script().failingEntry = failingEntry;
}

} // namespace

class TestRadarDeviceMonitor : public QObject
{
    Q_OBJECT

private:
    FakeBroker m_broker { deviceListTable() };
    FakeSubmoduleCoordinator m_standard { { { VRN_SHIELD_FMCW_512, QStringLiteral("Standard") } } };
    RadarCoordinator m_coordinator;
    std::unique_ptr<RadarDeviceMonitor> m_monitor;
    std::unique_ptr<QSignalSpy> m_added;
    std::unique_ptr<QSignalSpy> m_removed;

    // Runs one detection and waits until the monitor is idle again.
    void detect()
    {
        m_monitor->detectDevices();
        QTRY_COMPARE(m_monitor->detectionState(), RadarDeviceMonitor::Idle);
    }

    QStringList addedNames() const
    {
        QStringList names;
        for (const auto& args : *m_added)
            names << args.first().value<std::shared_ptr<IDevice>>()->name();
        return names;
    }

    QStringList removedNames() const
    {
        QStringList names;
        for (const auto& args : *m_removed)
            names << args.first().toString();
        names.sort(); // known boards are kept in a hash: removals come in no particular order
        return names;
    }

private slots:
    void initTestCase() { m_coordinator.registerSubmoduleCoordinator(&m_standard); }

    void init()
    {
        attach({});
        {
            QMutexLocker lock(&script().mutex);
            script().failList = script().gated = false;
            script().listCalls = 0;
        }
        script().entered.tryAcquire(script().entered.available());
        m_monitor = std::make_unique<RadarDeviceMonitor>(&m_broker, &m_coordinator);
        m_added = std::make_unique<QSignalSpy>(m_monitor.get(), &RadarDeviceMonitor::deviceAdded);
        m_removed = std::make_unique<QSignalSpy>(m_monitor.get(), &RadarDeviceMonitor::deviceRemoved);
    }

    void cleanup()
    {
        m_standard.disconnectDevice();
        m_monitor.reset();
    }

    void newBoardsGetProxiesWithTheirIdentity()
    {
        attach({ { VRN_SHIELD_FMCW_512, "a-1" }, { VRN_SHIELD_ZP7_768, "b-2" } });
        detect();
        QCOMPARE(m_added->count(), 2);
        auto first = std::dynamic_pointer_cast<RadarDeviceProxy>(m_added->at(0).first().value<std::shared_ptr<IDevice>>());
        auto second = std::dynamic_pointer_cast<RadarDeviceProxy>(m_added->at(1).first().value<std::shared_ptr<IDevice>>());
        QVERIFY(first && second);
        QCOMPARE(first->name(), QString("Radar"));
        QCOMPARE(first->uuid(), QString("a-1"));
        QCOMPARE(first->shieldType(), VRN_SHIELD_FMCW_512);
        QCOMPARE(second->name(), QString("Radar #2"));
        QCOMPARE(second->shieldType(), VRN_SHIELD_ZP7_768);

        // Nothing changed: a second scan announces nothing.
        detect();
        QCOMPARE(m_added->count(), 2);
        QCOMPARE(m_removed->count(), 0);
    }

    void namesAreNeverReused()
    {
        attach({ { VRN_SHIELD_FMCW_512, "a" }, { VRN_SHIELD_FMCW_512, "b" } });
        detect();
        attach({ { VRN_SHIELD_FMCW_512, "b" } });
        detect();
        attach({ { VRN_SHIELD_FMCW_512, "b" }, { VRN_SHIELD_FMCW_512, "c" } });
        detect();
        attach({ { VRN_SHIELD_FMCW_512, "a" }, { VRN_SHIELD_FMCW_512, "b" }, { VRN_SHIELD_FMCW_512, "c" } });
        detect();

        QCOMPARE(addedNames(), QStringList({ "Radar", "Radar #2", "Radar #3", "Radar" }));
        QCOMPARE(removedNames(), QStringList { "Radar" });
    }

    void connectedBoardMissingFromListIsKept()
    {
        attach({ { VRN_SHIELD_FMCW_512, "open-one" }, { VRN_SHIELD_FMCW_512, "other" } });
        detect();
        QVERIFY(m_coordinator.connectDevice("open-one", VRN_SHIELD_FMCW_512));

        // An opened board drops out of the SDK's list while in use.
        attach({});
        detect();
        QCOMPARE(removedNames(), QStringList { "Radar #2" });
    }

    void failedReadsLookLikeNoBoard_data()
    {
        QTest::addColumn<bool>("failList");
        QTest::addColumn<QString>("message");
        QTest::newRow("unreadable entry") << false << "Getting device from SDK device list failed entry unreadable";
        QTest::newRow("list unavailable") << true << "Getting sdk Radar device list failed list unavailable";
    }

    // Every unconnected board is removed; an unreadable entry in the middle
    // ends the list there.
    void failedReadsLookLikeNoBoard()
    {
        QFETCH(bool, failList);
        QFETCH(QString, message);
        attach({ { VRN_SHIELD_FMCW_512, "1" }, { VRN_SHIELD_FMCW_512, "2" }, { VRN_SHIELD_FMCW_512, "3" } });
        detect();
        QCOMPARE(m_added->count(), 3);

        attach({ { VRN_SHIELD_FMCW_512, "1" }, { VRN_SHIELD_FMCW_512, "2" }, { VRN_SHIELD_FMCW_512, "3" } },
               failList ? -1 : 1);
        {
            QMutexLocker lock(&script().mutex);
            script().failList = failList;
        }
        QTest::ignoreMessage(QtCriticalMsg, qPrintable(message));
        detect();
        QCOMPARE(removedNames(), QStringList({ "Radar", "Radar #2", "Radar #3" }));
    }

    void requestsDuringAScanCoalesceIntoOneRescan()
    {
        {
            QMutexLocker lock(&script().mutex);
            script().gated = true;
        }
        m_monitor->detectDevices();
        QVERIFY(script().entered.tryAcquire(1, 5000)); // the first scan is inside the SDK

        m_monitor->detectDevices();
        m_monitor->detectDevices();
        m_monitor->detectDevices();
        QCOMPARE(m_monitor->detectionState(), RadarDeviceMonitor::DetectionPending);

        script().gate.release(2);
        QTRY_COMPARE(m_monitor->detectionState(), RadarDeviceMonitor::Idle);
        QMutexLocker lock(&script().mutex);
        QCOMPARE(script().listCalls, 2);
    }
};

QTEST_GUILESS_MAIN(TestRadarDeviceMonitor)
#include "tst_RadarDeviceMonitor.moc"
