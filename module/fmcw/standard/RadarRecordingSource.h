#pragma once

#include "recording/IRadarRecordingSource.h"

class RadarDeviceConfiguration;

// A snapshot of the configuration running when a recording starts: the
// binary header's device values and the document written as "<base>.json",
// which holds the configuration document at its top level and the extended
// document (device info, limits, chirp parameters, application) under
// "device_configuration_extended", so a playback can make it the running
// configuration without the board.
class RadarRecordingSource : public IRadarRecordingSource
{
public:
    RadarRecordingSource(const RadarDeviceConfiguration& configuration, QByteArray document);

    RadarRecordingHeader recordingHeader() const override { return m_header; }
    QByteArray configurationJson() const override { return m_document; }

    static RadarRecordingHeader headerFor(const RadarDeviceConfiguration& configuration);

private:
    RadarRecordingHeader m_header;
    QByteArray m_document;
};
