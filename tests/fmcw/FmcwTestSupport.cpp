#include "FmcwTestSupport.h"

#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/RadarDeviceConfiguration.h"

#include <QSignalSpy>

void describeBoard(RadarDeviceConfiguration& config, const QString& chip, quint8 rx, quint8 tx)
{
    config.deviceInfo()->setDeviceName(chip);
    config.deviceInfo()->setNumRxAntennas(rx);
    config.deviceInfo()->setNumTxAntennas(tx);
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

