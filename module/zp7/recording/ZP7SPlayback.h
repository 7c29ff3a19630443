#pragma once

#include "recording/ReplayPlayback.h"
#include "zp7/IZP7SDataProvider.h"

struct Vrn;
class ZP7SConfig;
class ZP7SDataProcessing;

// Replays a pulsed-Doppler recording through the ZP7 mode's acquisition in
// place of the board: the recorded configuration becomes the running one,
// and the frames come out at the recorded frame rate, each one complex
// frame of the recorded channel. FMCW recordings are refused.
class ZP7SPlayback : public ReplayPlayback, public IZP7SDataProvider
{
    Q_OBJECT
public:
    // `config` and `processing` are not owned; `processing` may be null
    // (then whoever fetches the frames calls getNextFrame()).
    ZP7SPlayback(const Vrn* vrn, ZP7SConfig* config, ZP7SDataProcessing* processing, QObject* parent = nullptr);
    ~ZP7SPlayback() override;

    QString name() const override { return QStringLiteral("ZP7"); }

    ZP7SFrameResult getNextFrame(const ZP7SDeviceConfig& configuration) override;
    void stopAcquisition() override { requestStop(); }

protected:
    RecordingLayout::Kind kind() const override { return RecordingLayout::Kind::Doppler; }
    // Each channel holds its samples as I, Q pairs.
    quint32 floatsPerChannel(const RadarRecordingHeader& header) const override { return 2 * header.samplesPerChirp; }
    bool loadConfiguration(const QByteArray& document, QString& error) override;
    void attach() override;

private:
    ZP7SFrame makeFrame(const RadarFrameRecord& row) const;

    const Vrn* m_vrn;
    ZP7SConfig* m_config;
    ZP7SDataProcessing* m_processing;
};
