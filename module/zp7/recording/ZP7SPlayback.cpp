#include "zp7/recording/ZP7SPlayback.h"

#include "recording/RecordingFiles.h"
#include "recording/RecordingLayout.h"
#include "sdk/vrn.h"
#include "zp7/ZP7SDataProcessing.h"
#include "zp7/config/ZP7SConfig.h"

#include <QDebug>
#include <QFile>

namespace {
const QString kCannotLoadConfiguration = QStringLiteral("Cannot load configuration file for playback");
const QString kNotSupported = QStringLiteral("This file for playback is not supported");
const QString kCannotRead = QStringLiteral("Cannot read data from file!");
} // namespace

ZP7SPlayback::ZP7SPlayback(const Vrn* vrn, ZP7SConfig* config, ZP7SDataProcessing* processing, QObject* parent)
    : IPlayback(parent)
    , m_vrn(vrn)
    , m_config(config)
    , m_processing(processing)
{
}

ZP7SPlayback::~ZP7SPlayback() = default;

bool ZP7SPlayback::accepts(const QString& basePath) const
{
    return RecordingLayout::kindOfRecording(basePath) == RecordingLayout::Kind::Doppler;
}

bool ZP7SPlayback::refuse(const QString& message, const QString& details)
{
    emit enqueueUserMessage(message, details);
    return false;
}

bool ZP7SPlayback::open(const QString& basePath)
{
    close();
    const QString jsonPath = RecordingFiles::jsonPath(basePath);
    const QString binPath = RecordingFiles::binPath(basePath);

    QFile json(jsonPath);
    if (!json.open(QIODevice::ReadOnly)) {
        qWarning() << "Cannot open" << jsonPath;
        return refuse(kCannotLoadConfiguration, jsonPath);
    }
    const QByteArray document = json.readAll();

    QString message;
    QString details;
    if (!m_replay.open(binPath, message, details))
        return refuse(message, details);
    const RadarRecordingHeader header = m_replay.header();
    const RecordingLayout::Kind kind = RecordingLayout::kindOf(header);
    if (kind != RecordingLayout::Kind::Doppler) {
        qWarning() << "Not a pulsed-Doppler recording:" << binPath << RecordingLayout::describe(header);
        m_replay.close();
        return refuse(kNotSupported, RecordingLayout::refusal(binPath, kind, name()));
    }
    // Every frame holds whole channels of I/Q pairs.
    const quint32 perChannel = 2 * header.samplesPerChirp;
    if (perChannel == 0 || header.samplesPerFrame % perChannel != 0) {
        m_replay.close();
        return refuse(kNotSupported,
                      QStringLiteral("%1: %2 floats per frame are no whole channels of %3 I/Q samples")
                          .arg(binPath)
                          .arg(header.samplesPerFrame)
                          .arg(header.samplesPerChirp));
    }

    if (m_beforeOpen)
        m_beforeOpen();
    QString error;
    if (!m_config || !m_config->loadRecordingDocument(document, error)) {
        m_replay.close();
        return refuse(kCannotLoadConfiguration, error);
    }
    m_config->setPlaybackActive(true);

    m_channels = header.samplesPerFrame / perChannel;
    m_samples = header.samplesPerChirp;
    m_totalFrames = m_replay.totalFrames();
    emit totalFramesNumberChanged(m_totalFrames);
    m_row.samples.assign(header.samplesPerFrame, 0.0f);
    if (m_processing)
        m_processing->setDataProvider(this);
    qInfo() << "Playing" << binPath << ":" << m_totalFrames << "frames of" << m_samples << "I/Q samples," << m_channels
            << "channel(s), every" << header.framePeriodSec << "s";
    return true;
}

void ZP7SPlayback::play()
{
    if (!m_replay.isOpen() || m_active)
        return;
    m_replay.start();
    m_active = true;
    emit isActiveChanged(true);
}

void ZP7SPlayback::close()
{
    m_replay.requestStop();
    if (m_active) {
        m_active = false;
        // The coordinator stops the acquisition worker here, before the
        // file goes away under it.
        emit isActiveChanged(false);
    }
    m_replay.close();
}

bool ZP7SPlayback::isPaused() const
{
    return m_replay.isPaused();
}

void ZP7SPlayback::setPaused(bool paused)
{
    if (m_replay.setPaused(paused))
        emit isPausedChanged(paused);
}

void ZP7SPlayback::pause()
{
    setPaused(true);
}

void ZP7SPlayback::resume()
{
    setPaused(false);
}

void ZP7SPlayback::stepFrame()
{
    if (!isPaused())
        pause();
    m_replay.step();
}

void ZP7SPlayback::stopAcquisition()
{
    m_replay.requestStop();
}

ZP7SFrameResult ZP7SPlayback::getNextFrame(const ZP7SDeviceConfig&)
{
    switch (m_replay.next(m_row)) {
    case RecordingReplay::Fetch::Frame: {
        ZP7SFrame frame = makeFrame(m_row);
        return ZP7SFrameResult { frame != nullptr, frame };
    }
    case RecordingReplay::Fetch::ReadFailed:
        emit enqueueUserMessage(kCannotRead, QString());
        emit finished();
        break;
    case RecordingReplay::Fetch::End:
        emit finished();
        break;
    case RecordingReplay::Fetch::Stopped:
        break;
    }
    return ZP7SFrameResult();
}

ZP7SFrame ZP7SPlayback::makeFrame(const RadarFrameRecord& row) const
{
    vrn_Corvix_Frame_C_t* created = nullptr;
    if (!m_vrn || m_vrn->corvix_frame_c_create(m_channels, m_samples, &created) || !created) {
        qCritical() << "Cannot create a pulsed-Doppler frame for playback";
        return ZP7SFrame();
    }
    const Vrn* vrn = m_vrn;
    ZP7SFrame frame(created, [vrn](const vrn_Corvix_Frame_C_t* done) {
        if (vrn_Error_t error = vrn->corvix_frame_c_destroy(const_cast<vrn_Corvix_Frame_C_t*>(done)))
            qCritical() << "Cannot release a played-back frame:" << error;
    });
    // The record holds each channel's samples as I, Q pairs.
    const float* source = row.samples.data();
    for (quint32 channel = 0; channel < created->num_channels; ++channel) {
        vrn_Matrix_C_s* matrix = created->channel_data[channel];
        for (quint32 r = 0; r < matrix->rows; ++r) {
            vrn_Complex_t* out = matrix->data + size_t(r) * matrix->stride;
            for (quint32 c = 0; c < matrix->cols; ++c) {
                out[c].re = *source++;
                out[c].im = *source++;
            }
        }
    }
    return frame;
}
