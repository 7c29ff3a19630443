#include "fmcw/common/RadarAntennas.h"
#include "zp7/config/ZP7SFrameParams.h"
#include "zp7/config/ZP7SGainTable.h"
#include "zp7/config/ZP7SLimits.h"
#include "zp7/config/ZP7SPulseConfigParams.h"

#include <QMetaMethod>
#include <QtTest>

// Writes down, in order, the names of the signals it is connected to.
class SignalOrder : public QObject
{
    Q_OBJECT
public:
    void listen(QObject* object, const QByteArray& name)
    {
        const QMetaObject* meta = object->metaObject();
        const QMetaMethod signal = meta->method(meta->indexOfSignal(name + "()"));
        QVERIFY2(signal.isValid(), name.constData());
        connect(object, signal, this, metaObject()->method(metaObject()->indexOfSlot("record()")));
    }
    QStringList names;
public slots:
    void record() { names << QString::fromLatin1(sender()->metaObject()->method(senderSignalIndex()).name()); }
};

Q_DECLARE_METATYPE(vrn_Corvix_Channel_t)

class tst_ZP7SParams : public QObject
{
    Q_OBJECT
private slots:
    void writersSignalOnlyOnChange_data()
    {
        QTest::addColumn<bool>("pulse");
        QTest::addColumn<QString>("property");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("frame rate") << false << "frameRepetitionRate" << QVariant(12.5f);
        QTest::newRow("samples") << false << "numOfSamples" << QVariant::fromValue(quint16(256));
        QTest::newRow("PRT") << false << "pulseRepetitionTime" << QVariant(250e-6f);
        QTest::newRow("Tx power") << true << "txPowerLevel" << QVariant::fromValue(quint8(5));
        QTest::newRow("gain") << true << "abbGain" << QVariant::fromValue(quint16(96));
    }

    void writersSignalOnlyOnChange()
    {
        QFETCH(bool, pulse);
        QFETCH(QString, property);
        QFETCH(QVariant, value);
        ZP7SFrameParams frame;
        ZP7SPulseConfigParams pulseParams;
        QObject* object = pulse ? static_cast<QObject*>(&pulseParams) : &frame;
        const QByteArray name = property.toLatin1();
        SignalOrder order;
        order.listen(object, name + "Changed");
        order.listen(object, "guiParamChanged");
        QVERIFY(object->setProperty(name.constData(), value));
        QCOMPARE(object->property(name.constData()), value);
        QCOMPARE(order.names, QStringList({ property + "Changed", QStringLiteral("guiParamChanged") }));
        // The same value again: not a single signal.
        QVERIFY(object->setProperty(name.constData(), value));
        QCOMPARE(order.names.size(), 2);
    }

    void pulseRecordFromAntennas_data()
    {
        QTest::addColumn<quint32>("rx");
        QTest::addColumn<quint32>("tx");
        QTest::addColumn<int>("channel"); // -1: refused
        QTest::newRow("Tx1Rx1") << 1u << 1u << 0;
        QTest::newRow("Tx2Rx2") << 2u << 2u << 1;
        QTest::newRow("both Rx, Tx2") << 3u << 2u << 1;
        QTest::newRow("Rx1 with Tx2") << 1u << 2u << -1;
        QTest::newRow("no antennas") << 0u << 0u << -1;
    }

    void pulseRecordFromAntennas()
    {
        QFETCH(quint32, rx);
        QFETCH(quint32, tx);
        QFETCH(int, channel);
        ZP7SPulseConfigParams params;
        params.rxAntennas()->setMask(rx);
        params.txAntennas()->setMask(tx);
        params.setTxPowerLevel(4);
        params.setAbbGain(192);
        QCOMPARE(params.channel(), channel);
        vrn_Corvix_Pulse_Config_t record { VRN_CORVIX_CHANNEL_FORCE_32BIT, 99, 999 };
        if (channel < 0)
            QTest::ignoreMessage(QtCriticalMsg, "Invalid channel settings");
        QCOMPARE(params.copyTo(record), channel >= 0);
        // A refused record is left as it was.
        const QVector<int> expected = channel < 0 ? QVector<int> { VRN_CORVIX_CHANNEL_FORCE_32BIT, 99, 999 }
                                                  : QVector<int> { channel, 4, 192 };
        QCOMPARE(QVector<int>({ int(record.channel), int(record.tx_power_level), int(record.abb_gain_index) }), expected);
    }

    void antennasFromPulseRecord_data()
    {
        QTest::addColumn<int>("channel");
        QTest::addColumn<quint32>("mask"); // both sets afterwards
        QTest::newRow("channel 0") << 0 << 1u;
        QTest::newRow("channel 1") << 1 << 2u;
        QTest::newRow("unknown channel keeps the sets") << 7 << 3u;
    }

    void antennasFromPulseRecord()
    {
        QFETCH(int, channel);
        QFETCH(quint32, mask);
        ZP7SPulseConfigParams params;
        params.rxAntennas()->setMask(3);
        params.txAntennas()->setMask(3);
        params.copyFrom({ vrn_Corvix_Channel_t(channel), 6, 24 });
        QCOMPARE(QVector<quint32>({ params.rxAntennas()->mask(), params.txAntennas()->mask(), params.txPowerLevel(),
                                    params.abbGain() }),
                 QVector<quint32>({ mask, mask, 6, 24 }));
    }

    void gainChoicesFollowTheBoardsBounds_data()
    {
        QTest::addColumn<int>("min");
        QTest::addColumn<int>("max");
        QTest::addColumn<QStringList>("labels");
        const QStringList all { "3 / 10dB",  "6 / 16dB",  "12 / 22dB",  "24 / 28dB",
                                "48 / 34dB", "96 / 40dB", "192 / 46dB", "384 / 52dB" };
        QTest::newRow("the simulator's 3..384") << 3 << 384 << all;
        QTest::newRow("between steps") << 10 << 100 << QStringList(all.mid(2, 4));
        QTest::newRow("no step") << 4 << 5 << QStringList();
    }

    void gainChoicesFollowTheBoardsBounds()
    {
        QFETCH(int, min);
        QFETCH(int, max);
        QFETCH(QStringList, labels);
        ZP7SLimits limits;
        vrn_Corvix_Limits_t bounds = ZP7SLimits::unbounded();
        bounds.abb_gain_index_min = quint16(min);
        bounds.abb_gain_index_max = quint16(max);
        QSignalSpy choices(&limits, &ZP7SLimits::abbGainChoicesChanged);
        limits.setFromSdk(bounds);
        QCOMPARE(limits.abbGainLabels(), labels);
        // Unbounded, all steps are offered already: only a change is told.
        QCOMPARE(choices.count(), labels.size() == ZP7SGainTable::kStepCount ? 0 : 1);
        for (int row = 0; row < labels.size(); ++row) {
            // The drop-down's row stores the label's leading number, and
            // that number finds the row again.
            const int value = limits.abbGainValueAt(row);
            QCOMPARE(QString::number(value), labels[row].section(QLatin1Char(' '), 0, 0));
            QCOMPARE(limits.abbGainChoiceOf(value), row);
            QVERIFY(limits.checkAbbGain(quint32(value)).isEmpty());
        }
        QCOMPARE(limits.abbGainChoiceOf(7), -1);
        QVERIFY(!limits.checkAbbGain(7).isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_ZP7SParams)
#include "tst_ZP7SParams.moc"
