#pragma once

#include "fmcw/common/IRadarDataProvider.h"
#include "recording/ReplayPlayback.h"

struct Vrn;
class IRadarConfiguration;
class IRadarDataProcessing;

// Replays an FMCW binary recording through the standard mode's pipeline in
// place of the board: the configuration written beside it becomes the
// running configuration, and the frames come out at the recorded frame
// rate. Pulsed-Doppler recordings are refused.
class RadarPlayback : public ReplayPlayback, public IRadarDataProvider
{
    Q_OBJECT
public:
    RadarPlayback(const Vrn* vrn, IRadarConfiguration* configuration, IRadarDataProcessing* processing,
                  QObject* parent = nullptr);
    ~RadarPlayback() override;

    QString name() const override { return QStringLiteral("Radar"); }

    RadarFrameResult getNextFrame(const RadarDeviceConfiguration& configuration) override;
    void stopAcquisition() override { requestStop(); }

protected:
    RecordingLayout::Kind kind() const override { return RecordingLayout::Kind::Fmcw; }
    quint32 floatsPerChannel(const RadarRecordingHeader& header) const override;
    bool loadConfiguration(const QByteArray& document, QString& error) override;
    void attach() override;

private:
    RadarFrameResult makeFrame(const RadarFrameRecord& row);

    const Vrn* m_vrn;
    IRadarConfiguration* m_configuration;
    IRadarDataProcessing* m_processing;
};
