#include "fmcw/standard/RadarRecordingSource.h"

#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/Metrics.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/common/RadarDeviceParameters.h"

RadarRecordingSource::RadarRecordingSource(const RadarDeviceConfiguration& configuration, QByteArray document)
    : m_header(headerFor(configuration))
    , m_document(std::move(document))
{
}

RadarRecordingHeader RadarRecordingSource::headerFor(const RadarDeviceConfiguration& configuration)
{
    const RadarDeviceParameters& parameters = *configuration.parameters();
    const Metrics& metrics = *configuration.metrics();
    RadarRecordingHeader header;
    header.numTxAntennas = configuration.deviceInfo()->numTxAntennas() & 0xffu;
    header.numRxAntennas = configuration.deviceInfo()->numRxAntennas() & 0xffu;
    header.maskTxAntennas = metrics.tx()->mask();
    header.maskRxAntennas = metrics.rx()->mask();
    header.lowerRfFrequencyKHz = float(double(parameters.lowerFrequencyHz()) / 1000.0);
    header.upperRfFrequencyKHz = float(double(parameters.upperFrequencyHz()) / 1000.0);
    header.samplingFrequencyKHz = float(double(metrics.sampleRateHz()) / 1000.0);
    header.chirpsPerFrame = parameters.numChirpsPerFrame();
    header.samplesPerChirp = parameters.numSamplesPerChirp();
    header.samplesPerFrame = quint32(metrics.rx()->activeCount()) * quint32(metrics.tx()->activeCount())
        * parameters.numSamplesPerChirp() * parameters.numChirpsPerFrame();
    header.chirpTimeSec = parameters.chirpTime();
    header.pulseRepetitionTimeSec = parameters.chirpRepetitionTimeS();
    header.framePeriodSec = metrics.frameRepetitionTimeS();
    return header;
}
