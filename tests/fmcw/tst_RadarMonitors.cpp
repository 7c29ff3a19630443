#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/IRadarTemperatureProvider.h"
#include "fmcw/common/IRadarTxPowerProvider.h"
#include "fmcw/common/RadarTemperatureMonitor.h"
#include "fmcw/common/RadarTxPowerMonitor.h"

#include <QSignalSpy>
#include <QtTest>

#include <limits>

namespace {

const float kNaN = std::numeric_limits<float>::quiet_NaN();

struct ScriptedTemperature : IRadarTemperatureProvider {
    float value = kNaN;
    int calls = 0;
    float getTemperature() override
    {
        ++calls;
        return value;
    }
};

struct ScriptedTxPower : IRadarTxPowerProvider {
    QVector<float> values;
    QVector<int> asked;
    float getTxPower(int antennaIndex) override
    {
        asked.append(antennaIndex);
        return values.value(antennaIndex, kNaN);
    }
};

}

class TestRadarMonitors : public QObject
{
    Q_OBJECT
private slots:
    void temperatureIsStoredUnlessNaN()
    {
        ScriptedTemperature provider;
        DeviceInfo info;
        RadarTemperatureMonitor monitor(&provider, &info);
        QSignalSpy changed(&info, &DeviceInfo::deviceTemperatureChanged);
        provider.value = 36.5f;
        monitor.update();
        QCOMPARE(info.deviceTemperature().userType(), int(QMetaType::Float));
        QCOMPARE(info.deviceTemperature().toFloat(), 36.5f);
        provider.value = kNaN;
        monitor.update();
        QCOMPARE(info.deviceTemperature().toFloat(), 36.5f);
        QCOMPARE(changed.count(), 1);
    }

    void temperatureFollowsTheTimer()
    {
        ScriptedTemperature provider;
        provider.value = 40.0f;
        DeviceInfo info;
        RadarTemperatureMonitor monitor(&provider, &info);
        monitor.setInterval(5);
        monitor.start();
        QTRY_COMPARE(info.deviceTemperature().toFloat(), 40.0f);
        provider.value = 45.0f;
        QTRY_COMPARE(info.deviceTemperature().toFloat(), 45.0f);
        QVERIFY(provider.calls >= 2);
    }

    void txPowerTakesAllOrNothing_data()
    {
        QTest::addColumn<int>("antennas");
        QTest::addColumn<QVector<float>>("readings");
        QTest::addColumn<QVector<float>>("stored");
        const QVector<float> previous { 1.0f, 1.0f };
        QTest::newRow("both read") << 2 << QVector<float> { 5.0f, 6.5f } << QVector<float> { 5.0f, 6.5f };
        QTest::newRow("second NaN") << 2 << QVector<float> { 5.0f, kNaN } << previous;
        QTest::newRow("no antennas") << 0 << QVector<float> {} << QVector<float> {};
    }

    void txPowerTakesAllOrNothing()
    {
        QFETCH(int, antennas);
        QFETCH(QVector<float>, readings);
        QFETCH(QVector<float>, stored);
        ScriptedTxPower provider;
        provider.values = readings;
        DeviceInfo info;
        info.setNumTxAntennas(quint8(antennas));
        info.setDeviceTxPower({ 1.0f, 1.0f });
        RadarTxPowerMonitor monitor(&provider, &info);
        monitor.update();
        QCOMPARE(info.deviceTxPower(), stored);
        // Reading stops at the first failure.
        const int firstNaN = int(std::find_if(readings.begin(), readings.end(), [](float v) { return v != v; })
                                 - readings.begin());
        QCOMPARE(provider.asked.size(), std::min(antennas, firstNaN + 1));
    }
};

QTEST_GUILESS_MAIN(TestRadarMonitors)
#include "tst_RadarMonitors.moc"
