#include "fmcw/standard/RadarPlayback.h"

#include "fmcw/common/SharedFrame.h"
#include "fmcw/standard/IRadarConfiguration.h"
#include "fmcw/standard/IRadarDataProcessing.h"
#include "sdk/vrn.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <cmath>
#include <cstring>

namespace {
const QString kCannotLoadConfiguration = QStringLiteral("Cannot load configuration file for playback");
const QString kNotSupported = QStringLiteral("This file for playback is not supported");
const QString kCannotRead = QStringLiteral("Cannot read data from file!");
// The longest a waiting fetch goes without looking at its thread's stop
// request.
constexpr auto kWaitSlice = std::chrono::milliseconds(50);
// The longest frame period a recording may state. Only a damaged header
// says more (or no number at all), and converting such a period to the
// clock's nanoseconds would overflow.
constexpr float kMaxFramePeriodS = 3600.0f;
} // namespace

RadarPlayback::RadarPlayback(const Vrn* vrn, IRadarConfiguration* configuration, IRadarDataProcessing* processing,
                             QObject* parent)
    : IPlayback(parent)
    , m_vrn(vrn)
    , m_configuration(configuration)
    , m_processing(processing)
{
}

RadarPlayback::~RadarPlayback()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_fileOpen)
        m_file.close();
}

bool RadarPlayback::open(const QString& basePath)
{
    close();
    const QString jsonPath = basePath + QStringLiteral(".json");
    const QString binPath = basePath + QStringLiteral(".raw.bin");

    QFile json(jsonPath);
    if (!json.open(QIODevice::ReadOnly)) {
        qWarning() << "Cannot open" << jsonPath;
        emit enqueueUserMessage(kCannotLoadConfiguration, jsonPath);
        return false;
    }
    const QByteArray document = json.readAll();

    RadarBinFile probe;
    if (!probe.checkFile(binPath)) {
        qWarning() << "Not a binary recording:" << binPath;
        emit enqueueUserMessage(kNotSupported, binPath);
        return false;
    }
    RadarRecordingHeader header;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_file.open(binPath, QIODevice::ReadOnly) || !m_file.readHeader(header)) {
            m_file.close();
            emit enqueueUserMessage(kCannotRead, binPath);
            return false;
        }
        m_fileOpen = true;
    }
    const quint32 perChannel = header.chirpsPerFrame * header.samplesPerChirp;
    if (perChannel == 0 || header.samplesPerFrame == 0 || header.samplesPerFrame % perChannel != 0
        || !std::isfinite(header.framePeriodSec) || header.framePeriodSec > kMaxFramePeriodS) {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_file.close();
        m_fileOpen = false;
        emit enqueueUserMessage(kNotSupported, binPath);
        return false;
    }

    if (m_beforeOpen)
        m_beforeOpen();
    QString error;
    if (!m_configuration || !m_configuration->loadRecordingDocument(document, error)) {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_file.close();
        m_fileOpen = false;
        emit enqueueUserMessage(kCannotLoadConfiguration, error);
        return false;
    }
    m_configuration->setPlaybackActive(true);

    m_header = header;
    m_channels = header.samplesPerFrame / perChannel;
    const qint64 records = (QFileInfo(binPath).size() - RadarRecordingHeader::kHeaderSize)
        / RadarBinFile::recordSize(header.samplesPerFrame);
    m_totalFrames = quint32(std::max<qint64>(0, records));
    emit totalFramesNumberChanged(m_totalFrames);
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_row.samples.assign(header.samplesPerFrame, 0.0f);
        const double period = header.framePeriodSec > 0.0f ? double(header.framePeriodSec) : 0.0;
        m_period = std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(period));
        m_paused = false;
        m_stepsRequested = 0;
        m_stopRequested = false;
        m_ended = false;
    }
    m_delivered = 0;
    if (m_processing)
        m_processing->setDataProvider(this);
    return true;
}

void RadarPlayback::play()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_fileOpen || m_active)
            return;
        m_nextDue = Clock::now();
        m_stopRequested = false;
    }
    m_active = true;
    emit isActiveChanged(true);
}

void RadarPlayback::close()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stopRequested = true;
        m_changed.notify_all();
    }
    if (m_active) {
        m_active = false;
        // The coordinator stops the pipeline's worker here, before the file
        // goes away under it.
        emit isActiveChanged(false);
    }
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_fileOpen) {
        m_file.close();
        m_fileOpen = false;
    }
}

bool RadarPlayback::isPaused() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_paused;
}

void RadarPlayback::setPaused(bool paused)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (m_paused == paused)
            return;
        m_paused = paused;
        // Resuming continues at the recorded rate from now on.
        m_nextDue = Clock::now();
        m_changed.notify_all();
    }
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
    std::lock_guard<std::mutex> lock(m_mutex);
    ++m_stepsRequested;
    m_changed.notify_all();
}

void RadarPlayback::stopAcquisition()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_stopRequested = true;
    m_changed.notify_all();
}

bool RadarPlayback::readFrame(RadarFrameRecord& row)
{
    std::vector<RadarFrameRecord> rows(1);
    rows[0].samples.swap(row.samples);
    const bool ok = m_file.readFrames(1, m_header.samplesPerFrame, rows);
    row.frameNumber = rows[0].frameNumber;
    row.samples.swap(rows[0].samples);
    return ok;
}

RadarFrameResult RadarPlayback::getNextFrame(const RadarDeviceConfiguration&)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    QThread* thread = QThread::currentThread();
    for (;;) {
        if (m_stopRequested || m_ended || !m_fileOpen || thread->isInterruptionRequested())
            return RadarFrameResult();
        if (m_delivered.load() >= m_totalFrames) {
            m_ended = true;
            lock.unlock();
            reachEnd();
            return RadarFrameResult();
        }
        if (m_paused) {
            if (m_stepsRequested > 0) {
                --m_stepsRequested;
                break;
            }
            m_changed.wait_for(lock, kWaitSlice);
            continue;
        }
        const Clock::time_point now = Clock::now();
        if (now >= m_nextDue)
            break;
        m_changed.wait_until(lock, std::min(m_nextDue, now + kWaitSlice));
    }
    // A late consumer does not make the following frames come in a burst
    // beyond one period's catch-up.
    m_nextDue = std::max(m_nextDue + m_period, Clock::now() - m_period);

    if (!readFrame(m_row)) {
        // The file ended before its size promised.
        m_ended = true;
        lock.unlock();
        emit enqueueUserMessage(kCannotRead, QString());
        reachEnd();
        return RadarFrameResult();
    }
    RadarFrameResult result = makeFrame(m_row);
    if (result.success)
        ++m_delivered;
    return result;
}

RadarFrameResult RadarPlayback::makeFrame(const RadarFrameRecord& row)
{
    vrn_Frame_R_t* frame = nullptr;
    if (!m_vrn || m_vrn->frame_r_create(m_channels, m_header.chirpsPerFrame, m_header.samplesPerChirp, &frame)
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

void RadarPlayback::reachEnd()
{
    emit finished();
}
