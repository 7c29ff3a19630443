// CW mode end to end: the plug-in loaded by the reference host on the
// simulated SDK, switched to CW through "radarCoordinator" and driven
// through the "radarCWView" object the pages use.

#include "ModuleHost.h"
#include "SimulatedHost.h"

#include "fmcw/cw/RadarCWMode.h"
#include "host/Constants.h"
#include "sdk/vrn.h"

#include <vrn_sim.h>

#include <QDir>
#include <QElapsedTimer>
#include <QQmlContext>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const char* const kBoard = "1f3c-0c01";

QObject* child(QObject* object, const char* property)
{
    return object ? object->property(property).value<QObject*>() : nullptr;
}

// The messages of every enqueueUserMessage a spy recorded, but the notice of
// a newer firmware image that may follow a connection.
QStringList messagesOf(const QSignalSpy& spy)
{
    QStringList texts;
    for (const QList<QVariant>& arguments : spy)
        texts.append(arguments.at(1).toString());
    return texts.filter(QRegularExpression(QStringLiteral("^(?!A newer firmware image is available$)")));
}

} // namespace

class TestRadarCWSession : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<SimulatedHost> m_sim;

    QObject* contextObject(const char* name) const
    {
        return m_sim->host().engine()->rootContext()->contextProperty(QString::fromLatin1(name)).value<QObject*>();
    }
    QObject* cwView() const { return contextObject("radarCWView"); }
    QObject* coordinator() const { return contextObject("radarCoordinator"); }
    QObject* guiParams() const { return child(child(cwView(), "guiConfig"), "params"); }

    bool call(const char* method)
    {
        bool result = false;
        return QMetaObject::invokeMethod(cwView(), method, Q_RETURN_ARG(bool, result)) && result;
    }

    quint64 emissionTimeMs() const
    {
        return m_sim->host().sdkLibrary().control()->emission_time_ms(kBoard);
    }

    // Emits for `ms` under the applied duty cycle; the share of it the
    // transmitter was on air.
    double emittedShare(int ms)
    {
        const quint64 before = emissionTimeMs();
        QElapsedTimer clock;
        clock.start();
        if (!call("startEmission"))
            return -1.0;
        QTest::qWait(ms);
        call("stopEmission");
        return double(emissionTimeMs() - before) / double(clock.elapsed());
    }

    void applyParam(const char* name, const QVariant& value)
    {
        QVERIFY(guiParams()->setProperty(name, value));
        QVERIFY(call("applyGuiConfig"));
    }

private slots:
    // The host started on a KMR7A board, switched to CW.
    void init()
    {
        qRegisterMetaType<Constants::UserMessageType>("Constants::UserMessageType");
        const QString directory = m_dir.filePath(QString::fromLatin1(QTest::currentTestFunction()));
        QVERIFY(QDir().mkpath(directory));
        m_sim = std::make_unique<SimulatedHost>();
        const QString error = m_sim->start(
            SimulatedHost::oneBoardBench(QLatin1String(kBoard), QStringLiteral("KMR7A"), QStringLiteral("unpaced")),
            directory);
        QVERIFY2(error.isEmpty(), qPrintable(error));
        QVERIFY(cwView());
        QVERIFY(m_sim->host().sdkLibrary().control());
        const QString connected = m_sim->connectFirstBoard();
        QVERIFY2(connected.isEmpty(), qPrintable(connected));
        QVERIFY(coordinator()->setProperty("userMode", QString::fromLatin1(RadarCWMode::kUserMode)));
        QTRY_VERIFY(cwView()->property("isConnected").toBool());
    }

    void cleanup()
    {
        m_sim.reset();
    }

    void switchingToCwAndBack()
    {
        QVERIFY(!m_sim->view()->property("isConnected").toBool());
        QCOMPARE(child(child(cwView(), "deviceConfig"), "params")->property("dac").toUInt(), 200u);
        QVERIFY(call("startEmission"));
        QVERIFY(cwView()->property("isEmissionActive").toBool());

        // Leaving the mode ends emission and hands the board back.
        QVERIFY(coordinator()->setProperty("userMode", QStringLiteral("Standard")));
        QTRY_VERIFY(m_sim->view()->property("isConnected").toBool());
        QVERIFY(!cwView()->property("isConnected").toBool());
        QVERIFY(!cwView()->property("isEmissionActive").toBool());
        const quint64 emitted = emissionTimeMs();
        QTest::qWait(150);
        QCOMPARE(emissionTimeMs(), emitted);
    }

    void dutyCycleLimitsTheTimeOnAir_data()
    {
        QTest::addColumn<int>("dutyCycle");
        QTest::addColumn<double>("least");
        QTest::addColumn<double>("most");
        QTest::newRow("100 %") << 100 << 0.9 << 1.01;
        QTest::newRow("30 %") << 30 << 0.2 << 0.45;
        QTest::newRow("0 %") << 0 << 0.0 << 0.08;
    }

    void dutyCycleLimitsTheTimeOnAir()
    {
        QFETCH(int, dutyCycle);
        QFETCH(double, least);
        QFETCH(double, most);
        applyParam("dutyCycle", quint32(dutyCycle));
        // Three periods of the protector: on 300 ms per second at 30 %.
        const double share = emittedShare(3000);
        QVERIFY2(share >= least && share <= most, qPrintable(QString::number(share)));
        QVERIFY(!cwView()->property("isEmissionActive").toBool());
    }

    void communicationLossEndsTheSession()
    {
        QVERIFY(call("startEmission"));
        const VrnSimFault fault { VRNSIM_FAULT_FETCH, VRN_STATUS_COMMUNICATION_LOST, 1, 0, 0 };
        QVERIFY(!m_sim->host().sdkLibrary().control()->inject_fault(kBoard, &fault));
        QSignalSpy messages(cwView(), SIGNAL(enqueueUserMessage(Constants::UserMessageType, QString, QString)));
        QVERIFY(!call("captureFrame"));
        QTRY_COMPARE(messagesOf(messages), QStringList { "Device communication error while fetching frame" });
        QCOMPARE(messages.last().at(2).toString(), QString());
        QVERIFY(!cwView()->property("isConnected").toBool());
        QVERIFY(!cwView()->property("isEmissionActive").toBool());
        const quint64 emitted = emissionTimeMs();
        QTest::qWait(150);
        QCOMPARE(emissionTimeMs(), emitted);
    }

    // A chip without readouts in CW mode is checked by the workbench's
    // headless CW session, whose emission fails on any error message.
    void readoutsWhileEmitting()
    {
        QObject* info = child(cwView(), "deviceInfo");
        QSignalSpy messages(cwView(), SIGNAL(enqueueUserMessage(Constants::UserMessageType, QString, QString)));
        QVERIFY(call("startEmission"));
        QTRY_VERIFY_WITH_TIMEOUT(info->property("deviceTemperature").isValid(), 5000);
        QTRY_VERIFY_WITH_TIMEOUT(!info->property("deviceTxPower").value<QVector<float>>().isEmpty(), 5000);
        // The transmitter's power while it emits at the default DAC code.
        const float power = info->property("deviceTxPower").value<QVector<float>>().at(0);
        QVERIFY2(power > 0.0f && power < 6.0f, qPrintable(QString::number(power)));
        QCOMPARE(messagesOf(messages), QStringList());
    }

    void unpluggingDuringEmissionEndsIt()
    {
        applyParam("dutyCycle", 50u);
        QVERIFY(call("startEmission"));
        QSignalSpy messages(cwView(), SIGNAL(enqueueUserMessage(Constants::UserMessageType, QString, QString)));
        QVERIFY(!m_sim->host().sdkLibrary().control()->unplug_board(kBoard));
        QTRY_VERIFY_WITH_TIMEOUT(!cwView()->property("isConnected").toBool(), 5000);
        QVERIFY(!cwView()->property("isEmissionActive").toBool());
        // The readouts notice the loss; the user is told of it.
        QVERIFY2(messagesOf(messages).contains(QStringLiteral("Device communication error while fetching temperature")),
                 qPrintable(messagesOf(messages).join(QLatin1Char('|'))));
        QVERIFY(child(cwView(), "deviceInfo")->property("deviceTemperature").isNull());
        // The protector switches nothing any more.
        QTest::qWait(1200);
        QVERIFY(!cwView()->property("isEmissionActive").toBool());
    }
};

QTEST_MAIN(TestRadarCWSession)
#include "tst_RadarCWSession.moc"
