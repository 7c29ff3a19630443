#include "recording/RecordingReplay.h"

#include <QDebug>
#include <QFileInfo>
#include <QThread>

#include <cmath>
#include <vector>

namespace {
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

RecordingReplay::~RecordingReplay()
{
    close();
}

bool RecordingReplay::readHeader(const QString& binPath, RadarRecordingHeader& header)
{
    RadarBinFile file;
    if (!file.checkFile(binPath) || !file.open(binPath, QIODevice::ReadOnly))
        return false;
    const bool read = file.readHeader(header);
    file.close();
    return read;
}

bool RecordingReplay::open(const QString& binPath, QString& message, QString& details)
{
    close();
    RadarBinFile probe;
    if (!probe.checkFile(binPath)) {
        qWarning() << "Not a binary recording:" << binPath;
        message = kNotSupported;
        details = binPath;
        return false;
    }
    RadarRecordingHeader header;
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_file.open(binPath, QIODevice::ReadOnly) || !m_file.readHeader(header)) {
        m_file.close();
        message = kCannotRead;
        details = binPath;
        return false;
    }
    if (header.samplesPerFrame == 0 || !std::isfinite(header.framePeriodSec)
        || header.framePeriodSec > kMaxFramePeriodS) {
        qWarning() << "Recording" << binPath << "states" << header.samplesPerFrame << "samples per frame and a period of"
                   << header.framePeriodSec << "s";
        m_file.close();
        message = kNotSupported;
        details = QStringLiteral("%1 states no usable frame size or frame period").arg(binPath);
        return false;
    }
    m_fileOpen = true;
    m_header = header;
    const qint64 records = (QFileInfo(binPath).size() - RadarRecordingHeader::kHeaderSize)
        / RadarBinFile::recordSize(header.samplesPerFrame);
    m_totalFrames = quint32(std::max<qint64>(0, records));
    const double period = header.framePeriodSec > 0.0f ? double(header.framePeriodSec) : 0.0;
    m_period = std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(period));
    m_paused = false;
    m_stepsRequested = 0;
    m_stopRequested = false;
    m_ended = false;
    m_delivered = 0;
    return true;
}

void RecordingReplay::close()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_stopRequested = true;
    m_changed.notify_all();
    if (m_fileOpen) {
        m_file.close();
        m_fileOpen = false;
    }
}

bool RecordingReplay::isOpen() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_fileOpen;
}

void RecordingReplay::start()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_nextDue = Clock::now();
    m_stopRequested = false;
    m_changed.notify_all();
}

bool RecordingReplay::setPaused(bool paused)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_paused == paused)
        return false;
    m_paused = paused;
    // Resuming continues at the recorded rate from now on.
    m_nextDue = Clock::now();
    m_changed.notify_all();
    return true;
}

bool RecordingReplay::isPaused() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_paused;
}

void RecordingReplay::step()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    ++m_stepsRequested;
    m_changed.notify_all();
}

void RecordingReplay::requestStop()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_stopRequested = true;
    m_changed.notify_all();
}

bool RecordingReplay::readRecord(RadarFrameRecord& row)
{
    std::vector<RadarFrameRecord> rows(1);
    rows[0].samples.swap(row.samples);
    const bool ok = m_file.readFrames(1, m_header.samplesPerFrame, rows);
    row.frameNumber = rows[0].frameNumber;
    row.samples.swap(rows[0].samples);
    return ok;
}

RecordingReplay::Fetch RecordingReplay::next(RadarFrameRecord& row)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    QThread* thread = QThread::currentThread();
    for (;;) {
        if (m_stopRequested || m_ended || !m_fileOpen || thread->isInterruptionRequested())
            return Fetch::Stopped;
        if (m_delivered.load() >= m_totalFrames) {
            m_ended = true;
            return Fetch::End;
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
    if (!readRecord(row)) {
        m_ended = true;
        return Fetch::ReadFailed;
    }
    ++m_delivered;
    return Fetch::Frame;
}
