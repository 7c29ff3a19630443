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
