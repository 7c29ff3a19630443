#include "fmcw/standard/RadarPlayback.h"

#include "fmcw/common/SharedFrame.h"
#include "fmcw/standard/IRadarConfiguration.h"
#include "fmcw/standard/IRadarDataProcessing.h"
#include "recording/RecordingFiles.h"
#include "recording/RecordingLayout.h"
#include "sdk/vrn.h"

#include <QDebug>
#include <QFile>
#include <cstring>

namespace {
const QString kCannotLoadConfiguration = QStringLiteral("Cannot load configuration file for playback");
const QString kNotSupported = QStringLiteral("This file for playback is not supported");
const QString kCannotRead = QStringLiteral("Cannot read data from file!");
} // namespace

RadarPlayback::RadarPlayback(const Vrn* vrn, IRadarConfiguration* configuration, IRadarDataProcessing* processing,
                             QObject* parent)
    : IPlayback(parent)
    , m_vrn(vrn)
    , m_configuration(configuration)
    , m_processing(processing)
{
}

RadarPlayback::~RadarPlayback() = default;

bool RadarPlayback::accepts(const QString& basePath) const
{
    return RecordingLayout::kindOfRecording(basePath) == RecordingLayout::Kind::Fmcw;
}

bool RadarPlayback::refuse(const QString& message, const QString& details)
{
    emit enqueueUserMessage(message, details);
    return false;
}

bool RadarPlayback::open(const QString& basePath)
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
    if (kind != RecordingLayout::Kind::Fmcw) {
        qWarning() << "Not an FMCW recording:" << binPath << RecordingLayout::describe(header);
        m_replay.close();
        return refuse(kNotSupported, RecordingLayout::refusal(binPath, kind, name()));
    }
    const quint32 perChannel = header.chirpsPerFrame * header.samplesPerChirp;
    if (perChannel == 0 || header.samplesPerFrame % perChannel != 0) {
        m_replay.close();
        return refuse(kNotSupported, binPath);
    }

    if (m_beforeOpen)
        m_beforeOpen();
    QString error;
    if (!m_configuration || !m_configuration->loadRecordingDocument(document, error)) {
        m_replay.close();
        return refuse(kCannotLoadConfiguration, error);
    }
    m_configuration->setPlaybackActive(true);

    m_channels = header.samplesPerFrame / perChannel;
    m_totalFrames = m_replay.totalFrames();
    emit totalFramesNumberChanged(m_totalFrames);
    m_row.samples.assign(header.samplesPerFrame, 0.0f);
    if (m_processing)
        m_processing->setDataProvider(this);
    return true;
}

void RadarPlayback::play()
{
    if (!m_replay.isOpen() || m_active)
        return;
    m_replay.start();
    m_active = true;
    emit isActiveChanged(true);
}

void RadarPlayback::close()
{
    m_replay.requestStop();
    if (m_active) {
        m_active = false;
        // The coordinator stops the pipeline's worker here, before the file
        // goes away under it.
        emit isActiveChanged(false);
    }
    m_replay.close();
}

bool RadarPlayback::isPaused() const
{
    return m_replay.isPaused();
}

void RadarPlayback::setPaused(bool paused)
{
    if (m_replay.setPaused(paused))
        emit isPausedChanged(paused);
}

void RadarPlayback::pause()
{
    setPaused(true);
}

void RadarPlayback::resume()
{
    setPaused(false);
}

void RadarPlayback::stepFrame()
{
    if (!isPaused())
        pause();
    m_replay.step();
}

void RadarPlayback::stopAcquisition()
{
    m_replay.requestStop();
}

RadarFrameResult RadarPlayback::getNextFrame(const RadarDeviceConfiguration&)
{
    switch (m_replay.next(m_row)) {
    case RecordingReplay::Fetch::Frame:
        return makeFrame(m_row);
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
    return RadarFrameResult();
}

RadarFrameResult RadarPlayback::makeFrame(const RadarFrameRecord& row)
{
    const RadarRecordingHeader& header = m_replay.header();
    vrn_Frame_R_t* frame = nullptr;
    if (!m_vrn || m_vrn->frame_r_create(m_channels, header.chirpsPerFrame, header.samplesPerChirp, &frame)
        || !frame) {
        qCritical() << "Cannot create a frame for playback";
        return RadarFrameResult();
    }
    SharedFrame shared = makeSharedFrame(m_vrn, frame);
    const float* source = row.samples.data();
    for (quint32 channel = 0; channel < frame->num_rx; ++channel) {
        vrn_Matrix_R_s* matrix = frame->rx_data[channel];
        for (quint32 chirp = 0; chirp < matrix->rows; ++chirp) {
            std::memcpy(matrix->data + size_t(chirp) * matrix->stride, source, matrix->cols * sizeof(float));
            source += matrix->cols;
        }
    }
    return RadarFrameResult { true, shared.get(), shared };
}
