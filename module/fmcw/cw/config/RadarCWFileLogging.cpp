#include "fmcw/cw/config/RadarCWFileLogging.h"

#include "fmcw/common/DeviceInfo.h"
#include "fmcw/cw/config/RadarDeviceCWConfig.h"

RadarCWFileLogging::RadarCWFileLogging(const RadarDeviceCWConfig& config, const DeviceInfo& deviceInfo,
                                       SharedFrame frame, QObject* parent)
    : CSVFileLogging(parent)
    , m_config(config)
    , m_deviceInfo(deviceInfo)
    , m_frame(std::move(frame))
{
}

RadarCWFileLogging::~RadarCWFileLogging() = default;

bool RadarCWFileLogging::write(const LoggingConfiguration&) { return false; }
QStringList RadarCWFileLogging::headerLines() const { return {}; }
QStringList RadarCWFileLogging::columnNames() const { return {}; }
CSVLoggerBuffer RadarCWFileLogging::dataRows() const { return {}; }
