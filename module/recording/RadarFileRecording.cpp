#include "recording/RadarFileRecording.h"

#include "core/CyclicTaskWorker.h"
#include "recording/IRadarRecordingSource.h"
#include "recording/RadarBinFile.h"
#include "recording/WordSwap.h"

#include <QDebug>
#include <QFile>
#include <QThread>

#include <cstring>

namespace {
const QString kCannotWrite = QStringLiteral("Cannot write to recording file!");
}

RadarFileRecording::RadarFileRecording(const IRadarRecordingSource* source, QString jsonPath, QString binPath,
                                       QObject* parent)
    : QObject(parent)
    , m_source(source)
    , m_jsonPath(std::move(jsonPath))
    , m_binPath(std::move(binPath))
{
    qRegisterMetaType<RadarBufferPtr>("RadarBufferPtr");
}

RadarFileRecording::~RadarFileRecording()
{
    stop();
}

bool RadarFileRecording::start()
{
    if (m_worker)
        return true;
    if (!m_source || !openWriter() || !writeConfiguration()) {
        {
            std::lock_guard<std::mutex> lock(m_writerMutex);
            if (m_writer) {
                m_writer->close();
                m_writer.reset();
            }
        }
        emit errorDetected(kCannotWrite, QString());
        return false;
    }
    m_record.samples.assign(m_samplesPerFrame, 0.0f);
    m_worker = std::make_unique<CyclicTaskWorker>([this] { return drainStep(); });
    {
        std::lock_guard<std::mutex> lock(m_queueMutex);
        m_stopRequested = false;
        m_accepting = true;
    }
    m_worker->start();
    return true;
}

bool RadarFileRecording::isRunning() const
{
    return m_worker != nullptr;
}

bool RadarFileRecording::openWriter()
{
    RadarRecordingHeader header = m_source->recordingHeader();
    m_samplesPerFrame = header.samplesPerChirp * header.chirpsPerFrame
        * quint32(qPopulationCount(header.maskTxAntennas)) * quint32(qPopulationCount(header.maskRxAntennas));
    // The header must describe the records that follow, whatever the source
    // put there.
    header.samplesPerFrame = m_samplesPerFrame;

    std::lock_guard<std::mutex> lock(m_writerMutex);
    m_writer = createWriter();
    if (!m_writer || !m_writer->open(m_binPath, QIODevice::WriteOnly | QIODevice::Truncate)) {
        qCritical() << "Cannot open recording file" << m_binPath;
        return false;
    }
    if (!m_writer->writeHeader(header)) {
        qCritical() << "Cannot write the header of recording file" << m_binPath;
        return false;
    }
    return true;
}

bool RadarFileRecording::writeConfiguration()
{
    const QByteArray json = m_source->configurationJson();
    if (json.isEmpty() || m_jsonPath.isEmpty())
        return true;
    QFile file(m_jsonPath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(json) != json.size() || !file.flush()) {
        qCritical() << "Cannot write recording configuration" << m_jsonPath << ":" << file.errorString();
        return false;
    }
    return true;
}

std::unique_ptr<IRadarFileWriter> RadarFileRecording::createWriter() const
{
    return std::make_unique<RadarBinFile>();
}

void RadarFileRecording::collectRadarBuffer(RadarBufferPtr buffer)
{
    if (!buffer)
        return;
    std::lock_guard<std::mutex> lock(m_queueMutex);
    if (!m_accepting) {
        // The recorder's last buffer always travels ahead of its finished(),
        // so this only happens when the chain is wired wrongly.
        qWarning() << "Recording is not running;" << buffer->size() << "frames not written to" << m_binPath;
        return;
    }
    m_queue.push_back(std::move(buffer));
    m_queueChanged.notify_one();
}

void RadarFileRecording::stop()
{
    if (!m_worker)
        return;
    {
        std::lock_guard<std::mutex> lock(m_queueMutex);
        m_accepting = false;
        m_stopRequested = true;
        m_queueChanged.notify_all();
    }
    m_worker->stop();
    m_worker.reset();
    emit collectingStopped();

    while (RadarBufferPtr buffer = takeBuffer())
        writeBuffer(*buffer);

    bool closed = true;
    {
        std::lock_guard<std::mutex> lock(m_writerMutex);
        if (m_writer) {
            closed = m_writer->close();
            m_writer.reset();
        }
    }
    if (!closed)
        emit errorDetected(kCannotWrite, QStringLiteral("The end of %1 could not be written.").arg(m_binPath));
    emit finished();
}

bool RadarFileRecording::drainStep()
{
    {
        std::unique_lock<std::mutex> lock(m_queueMutex);
        // Sleeps until a buffer arrives or stop() wakes it; stop() sets the
        // flag under this mutex, so the wake-up cannot be missed.
        m_queueChanged.wait(lock, [this] { return !m_queue.empty() || m_stopRequested; });
        if (m_stopRequested)
            return false;
    }
    // Stop is checked between buffers, so the owner never waits for more
    // than one buffer's write; stop() writes what is left.
    QThread* self = QThread::currentThread();
    while (!self->isInterruptionRequested()) {
        RadarBufferPtr buffer;
        {
            std::lock_guard<std::mutex> lock(m_queueMutex);
            if (m_queue.empty() || m_stopRequested)
                break;
            buffer = std::move(m_queue.front());
            m_queue.pop_front();
        }
        writeBuffer(*buffer);
    }
    return true;
}

RadarBufferPtr RadarFileRecording::takeBuffer()
{
    std::lock_guard<std::mutex> lock(m_queueMutex);
    if (m_queue.empty())
        return nullptr;
    RadarBufferPtr buffer = std::move(m_queue.front());
    m_queue.pop_front();
    return buffer;
}

void RadarFileRecording::writeBuffer(const RadarBuffer& buffer)
{
    for (const auto& [number, frame] : buffer) {
        if (!fillRecord(frame.get())) {
            emit errorDetected(QStringLiteral("Data status: Antenna data is empty"),
                               QStringLiteral("Cannot write data to recording file!"));
            continue;
        }
        m_record.frameNumber = number;
        bool written = false;
        {
            std::lock_guard<std::mutex> lock(m_writerMutex);
            written = m_writer && m_writer->writeFrame(m_samplesPerFrame, m_record);
        }
        if (!written) {
            qCritical() << "Cannot write frame" << number << "to" << m_binPath;
            emit errorDetected(kCannotWrite, QStringLiteral("Frame %1 was not written to %2.").arg(number).arg(m_binPath));
        }
    }
}

bool RadarFileRecording::fillRecord(const vrn_Frame_R_t* frame)
{
    if (!frame || !frame->rx_data)
        return false;
    float* out = m_record.samples.data();
    size_t filled = 0;
    for (uint32_t antenna = 0; antenna < frame->num_rx; ++antenna) {
        const vrn_Matrix_R_s* matrix = frame->rx_data[antenna];
        if (!matrix || !matrix->data || matrix->rows == 0 || matrix->cols == 0)
            return false;
        const size_t cols = matrix->cols;
        if (filled + size_t(matrix->rows) * cols > m_samplesPerFrame)
            return false;
        // The samples reach the file writer already in big-endian order.
        if (matrix->stride == matrix->cols) {
            WordSwap::copyToBigEndian(out + filled, matrix->data, size_t(matrix->rows) * cols);
            filled += size_t(matrix->rows) * cols;
            continue;
        }
        for (uint32_t chirp = 0; chirp < matrix->rows; ++chirp) {
            WordSwap::copyToBigEndian(out + filled, matrix->data + size_t(chirp) * matrix->stride, cols);
            filled += cols;
        }
    }
    return filled == m_samplesPerFrame;
}
