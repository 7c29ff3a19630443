#pragma once

#include "recording/IRadarRecordingSource.h"

class ZP7SConfig;
class ZP7SDeviceConfig;

// A snapshot of the pulsed-Doppler configuration running when a recording
// starts: the header marks the frames as Doppler with complex interleaved
// I/Q samples and one chirp (the N pulses) per frame, of the one channel
// acquired; "<base>.json" holds the configuration document with the
// extended one under "device_configuration_extended".
class ZP7SRecordingSource : public IRadarRecordingSource
{
public:
    explicit ZP7SRecordingSource(const ZP7SConfig& config);
    ZP7SRecordingSource(const ZP7SDeviceConfig& running, QByteArray document);

    RadarRecordingHeader recordingHeader() const override { return m_header; }
    QByteArray configurationJson() const override { return m_document; }

    static RadarRecordingHeader headerFor(const ZP7SDeviceConfig& running);

private:
    RadarRecordingHeader m_header;
    QByteArray m_document;
};
