#include "FmcwTestSupport.h"

#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/RadarDeviceConfiguration.h"

#include "FakeVrn.h"

#include <QSignalSpy>

#include <cstring>

void describeBoard(RadarDeviceConfiguration& config, const QString& chip, quint8 rx, quint8 tx)
{
    config.deviceInfo()->setDeviceName(chip);
    config.deviceInfo()->setNumRxAntennas(rx);
    config.deviceInfo()->setNumTxAntennas(tx);
}

void describeFakeBoard(FakeVrn& fake, const char* chip, quint32 rx, quint32 tx)
{
    std::strncpy(fake.info.name, chip, sizeof fake.info.name - 1);
    fake.info.num_rx_antennas = rx;
    fake.info.num_tx_antennas = tx;
}

QStringList textsOf(const QSignalSpy& spy, int argument)
{
    QStringList texts;
    for (const QList<QVariant>& arguments : spy)
        texts.append(arguments.at(argument).toString());
    return texts;
}

RadarEvent eventAt(const QSignalSpy& spy, int index)
{
    const QList<QVariant>& args = spy.at(index);
    return { args.at(0).value<RadarEventCode>(), args.at(1).toString(), args.value(2).toString() };
}

QVector<RadarEvent> eventsOf(const QSignalSpy& spy)
{
    QVector<RadarEvent> events;
    for (int i = 0; i < spy.count(); ++i)
        events.append(eventAt(spy, i));
    return events;
}

bool operator==(const RadarEvent& a, const RadarEvent& b)
{
    return a.code == b.code && a.message == b.message && a.details == b.details;
}

