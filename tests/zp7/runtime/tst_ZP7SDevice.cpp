// The pulsed-Doppler device's answers to an SDK that fails on demand: each
// failure reaches the coordinator as the event and text it acts on.

#include "FakeCorvix.h"

#include "zp7/ZP7SDevice.h"
#include "zp7/config/ZP7SDeviceConfig.h"
#include "zp7/config/ZP7SFrameParams.h"

#include <QSignalSpy>
#include <QtTest>

Q_DECLARE_METATYPE(QVector<vrn_Status_t>)

class TestZP7SDevice : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<FakeVrn> m_vrn;
    std::unique_ptr<FakeCorvix> m_board;
    std::unique_ptr<ZP7SDevice> m_device;

    // The one event told so far, as "code|message".
    static QString event(const QSignalSpy& spy)
    {
        if (spy.count() != 1)
            return QStringLiteral("%1 events").arg(spy.count());
        return QStringLiteral("%1|%2").arg(spy.at(0).at(0).value<RadarEventCode>() == RadarEventCode::Error
                                               ? QStringLiteral("Error")
                                               : QString::number(int(spy.at(0).at(0).value<RadarEventCode>())),
                                           spy.at(0).at(1).toString());
    }

private slots:
    void initTestCase() { qRegisterMetaType<RadarEventCode>("RadarEventCode"); }

    void init()
    {
        m_vrn = std::make_unique<FakeVrn>();
        m_board = std::make_unique<FakeCorvix>(*m_vrn);
        m_device = std::make_unique<ZP7SDevice>(&m_vrn->table);
        QVERIFY(m_device->connectDevice(QStringLiteral("zp7-fake"), VRN_SHIELD_ZP7_768));
    }

    void cleanup()
    {
        m_device.reset();
        QCOMPARE(m_board->framesAlive, 0);
        m_board.reset();
        m_vrn.reset();
    }

    void fetchAnswers_data()
    {
        QTest::addColumn<QVector<vrn_Status_t>>("statuses");
        QTest::addColumn<bool>("frame");
        QTest::addColumn<QString>("told");
        const QString none = QStringLiteral("0 events");
        const QString ended = QStringLiteral("%1|Fetching next frame failed").arg(int(RadarEventCode::NoDataAvailable));
        const QString lost = QStringLiteral("%1|Communication with device failed")
                                 .arg(int(RadarEventCode::DeviceCommunicationFailure));
        QTest::newRow("frame") << QVector<vrn_Status_t> { VRN_STATUS_OK } << true << none;
        QTest::newRow("waits, then a frame")
            << QVector<vrn_Status_t> { VRN_STATUS_FRAME_TIMEOUT, VRN_STATUS_FRAME_TIMEOUT, VRN_STATUS_OK } << true
            << none;
        QTest::newRow("fetch failed") << QVector<vrn_Status_t> { VRN_STATUS_FRAME_FETCH_FAILED } << false << ended;
        QTest::newRow("unknown status") << QVector<vrn_Status_t> { 0x7777 } << false << ended;
        QTest::newRow("silent board") << QVector<vrn_Status_t> { VRN_STATUS_FRAME_TIMEOUT } << false << ended;
        QTest::newRow("board lost") << QVector<vrn_Status_t> { VRN_STATUS_COMMUNICATION_LOST } << false << lost;
    }

    void fetchAnswers()
    {
        QFETCH(QVector<vrn_Status_t>, statuses);
        QFETCH(bool, frame);
        QFETCH(QString, told);
        m_board->frameStatuses = statuses;
        ZP7SDeviceConfig config;
        config.frameParams()->setNumOfSamples(64);
        config.frameParams()->setFrameRepetitionRate(10.0f);
        QSignalSpy events(m_device.get(), &ZP7SDevice::triggerEvent);
        const ZP7SFrameResult result = m_device->getNextFrame(config);
        QCOMPARE(result.success, frame);
        QCOMPARE(result.frame != nullptr, frame);
        if (frame)
            QCOMPARE(result.frame->channel_data[0]->cols, 64u);
        QCOMPARE(event(events), told);
    }

    void limitsAreCheckedBeforeUse_data()
    {
        QTest::addColumn<QByteArray>("error");
        QTest::addColumn<bool>("crossed");
        QTest::addColumn<QString>("told");
        QTest::newRow("read") << QByteArray() << false << QStringLiteral("0 events");
        QTest::newRow("refused") << QByteArray("no limits") << false << QStringLiteral("Error|Cannot get limits for ZP7");
        QTest::newRow("crossed") << QByteArray() << true << QStringLiteral("Error|Getting limits for ZP7 failed");
    }

    void limitsAreCheckedBeforeUse()
    {
        QFETCH(QByteArray, error);
        QFETCH(bool, crossed);
        QFETCH(QString, told);
        m_board->limitsError = error.isEmpty() ? nullptr : error.constData();
        if (crossed)
            std::swap(m_board->limits.num_samples_min, m_board->limits.num_samples_max);
        QSignalSpy events(m_device.get(), &ZP7SDevice::triggerEvent);
        vrn_Corvix_Limits_t limits {};
        QCOMPARE(m_device->getLimits(limits), told == QLatin1String("0 events"));
        QCOMPARE(event(events), told);
        QCOMPARE(limits.num_samples_max, quint16(told == QLatin1String("0 events") ? 2048 : 0));
    }

    void stopReachesOnlyAnAcquiringBoard()
    {
        m_device->stopAcquisition();
        QCOMPARE(m_board->stopCalls, 0);
        ZP7SDeviceConfig config;
        config.frameParams()->setNumOfSamples(16);
        config.frameParams()->setFrameRepetitionRate(10.0f);
        QVERIFY(m_device->getNextFrame(config).success);
        QVERIFY(m_device->isAcquiring());
        m_board->stopError = "gone";
        QSignalSpy events(m_device.get(), &ZP7SDevice::triggerEvent);
        m_device->stopAcquisition();
        QCOMPARE(m_board->stopCalls, 1);
        QCOMPARE(event(events), QStringLiteral("%1|Failed to stop acquisition")
                                    .arg(int(RadarEventCode::DeviceCommunicationFailure)));
        QVERIFY(!m_device->isAcquiring());
    }

    void temperatureFailures_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("told");
        QTest::newRow("not supported") << int(VRN_STATUS_NOT_SUPPORTED)
                                       << QStringLiteral("%1|Failed to get device temperature")
                                              .arg(int(RadarEventCode::TemperatureNotSupported));
        QTest::newRow("board lost") << int(VRN_STATUS_COMMUNICATION_LOST)
                                    << QStringLiteral("%1|Communication with device failed")
                                           .arg(int(RadarEventCode::DeviceCommunicationFailure));
    }

    void temperatureFailures()
    {
        QFETCH(int, status);
        QFETCH(QString, told);
        QCOMPARE(m_device->getTemperature(), 31.5f);
        m_board->temperatureStatus = status;
        QSignalSpy events(m_device.get(), &ZP7SDevice::triggerEvent);
        QVERIFY(qIsNaN(m_device->getTemperature()));
        QCOMPARE(event(events), told);
    }
};

QTEST_MAIN(TestZP7SDevice)
#include "tst_ZP7SDevice.moc"
