#include "zp7/recording/ZP7SRecordingSource.h"

#include "zp7/ZP7SDoppler.h"
#include "zp7/config/ZP7SConfig.h"
#include "zp7/config/ZP7SDeviceConfig.h"
#include "zp7/config/ZP7SFrameParams.h"

ZP7SRecordingSource::ZP7SRecordingSource(const ZP7SConfig& config)
    : ZP7SRecordingSource(*config.deviceConfig(), config.recordingDocument())
{
}

ZP7SRecordingSource::ZP7SRecordingSource(const ZP7SDeviceConfig& running, QByteArray document)
    : m_header(headerFor(running))
    , m_document(std::move(document))
{
}

RadarRecordingHeader ZP7SRecordingSource::headerFor(const ZP7SDeviceConfig& running)
{
    const ZP7SFrameParams& frame = *running.frameParams();
    RadarRecordingHeader header;
    header.modulationTypeEnum = RadarRecordingHeader::kModulationDoppler;
    header.dataFormatEnum = RadarRecordingHeader::kDataComplexInterleaved;
    header.chirpShapeEnum = 0;
    // Frames are fetched of the selected channel alone: one transmitter and
    // one receiver, the pair's antenna bit in both masks.
    const int channel = running.channel();
    const quint32 mask = channel >= 0 ? 1u << channel : 0u;
    header.numTxAntennas = 1;
    header.numRxAntennas = 1;
    header.maskTxAntennas = mask;
    header.maskRxAntennas = mask;
    // A pulsed carrier: no sweep, both band edges at the centre frequency.
    header.lowerRfFrequencyKHz = float(ZP7SDoppler::kCenterFrequencyHz / 1000.0);
    header.upperRfFrequencyKHz = header.lowerRfFrequencyKHz;
    // Each pulse gives one I/Q sample, so the pulse rate is the sample rate.
    const double prt = frame.pulseRepetitionTime();
    header.samplingFrequencyKHz = prt > 0.0 ? float(1.0 / prt / 1000.0) : 0.0f;
    header.chirpsPerFrame = 1;
    header.samplesPerChirp = frame.numOfSamples();
    header.samplesPerFrame = header.expectedSamplesPerFrame();
    header.chirpTimeSec = 0.0f;
    header.pulseRepetitionTimeSec = float(prt);
    const double rate = frame.frameRepetitionRate();
    header.framePeriodSec = rate > 0.0 ? float(1.0 / rate) : 0.0f;
    return header;
}
