#include "recording/RadarPresenceSensingRecorder.h"
#include "recording/RecordingFiles.h"

#include <QDebug>

#include <charconv>
#include <cmath>

namespace {

const QByteArray kHeader = QByteArrayLiteral("# presence sensing results; state 0 = presence, 1 = absence\n"
                                             "frame_number\tstate\ttarget_range_m\tmotion_energy\tframe_count\n");

void appendFixed(QByteArray& out, float value)
{
    char text[64];
    const auto result = std::isfinite(value)
        ? std::to_chars(text, text + sizeof text, double(value), std::chars_format::fixed, 6)
        : std::to_chars_result { text, std::errc::value_too_large };
    if (result.ec == std::errc())
        out.append(text, int(result.ptr - text));
    else
        out.append(std::isnan(value) ? "nan" : (value < 0 ? "-inf" : "inf"));
}

}

RadarPresenceSensingRecorder::RadarPresenceSensingRecorder(QString filePath, QObject* parent)
    : QObject(parent)
    , m_filePath(std::move(filePath))
    , m_file(m_filePath)
{
}

RadarPresenceSensingRecorder::~RadarPresenceSensingRecorder()
{
    stop();
}

QString RadarPresenceSensingRecorder::filePathFor(const QString& basePath)
{
    return RecordingFiles::presencePath(basePath);
}

bool RadarPresenceSensingRecorder::start()
{
    QMutexLocker lock(&m_mutex);
    if (m_file.isOpen())
        return true;
    m_failed = false;
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate) || m_file.write(kHeader) != kHeader.size()) {
        qCritical() << "Cannot open presence sensing text file" << m_filePath << ":" << m_file.errorString();
        m_file.close();
        lock.unlock();
        reportCorruptedStream();
        return false;
    }
    return true;
}

void RadarPresenceSensingRecorder::record(int frameNumber, const vrn_PresenceSensing_Result_t& result)
{
    QMutexLocker lock(&m_mutex);
    if (!m_file.isOpen() || m_failed)
        return;
    m_line.clear();
    m_line.append(QByteArray::number(frameNumber)).append('\t');
    m_line.append(QByteArray::number(qint32(result.state))).append('\t');
    appendFixed(m_line, result.target_range_m);
    m_line.append('\t');
    appendFixed(m_line, result.motion_energy);
    m_line.append('\t');
    m_line.append(QByteArray::number(result.frame_count)).append('\n');
    if (m_file.write(m_line) == m_line.size())
        return;
    m_failed = true;
    qCritical() << "Cannot write presence sensing text file" << m_filePath << ":" << m_file.errorString();
    lock.unlock();
    reportCorruptedStream();
}

void RadarPresenceSensingRecorder::stop()
{
    QMutexLocker lock(&m_mutex);
    if (!m_file.isOpen())
        return;
    const bool flushed = m_file.flush();
    m_file.close();
    if (flushed || m_failed)
        return;
    m_failed = true;
    lock.unlock();
    reportCorruptedStream();
}

bool RadarPresenceSensingRecorder::isActive() const
{
    QMutexLocker lock(&m_mutex);
    return m_file.isOpen();
}

void RadarPresenceSensingRecorder::reportCorruptedStream()
{
    emit errorDetected(QStringLiteral("Stream to presence sensing text file for recording is corrupted!"), m_filePath);
}
