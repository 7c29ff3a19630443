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
    if (!m_source) {
        emit errorDetected(kCannotWrite, QStringLiteral("There is no configuration to record with."));
        return false;
    }
    RadarRecordingHeader header = m_source->recordingHeader();
    const quint32 txAntennas = quint32(qPopulationCount(header.maskTxAntennas));
    const quint32 rxAntennas = quint32(qPopulationCount(header.maskRxAntennas));
    m_samplesPerFrame = header.expectedSamplesPerFrame();
    // A file of empty frames would hold nothing and could not be read back
    // (no records to count); this is what an unloaded configuration gives.
    if (m_samplesPerFrame == 0) {
        qWarning() << "Not recording to" << m_binPath << ": no samples per frame," << header.samplesPerChirp
                   << "samples per chirp," << header.chirpsPerFrame << "chirps, Tx mask" << header.maskTxAntennas
                   << ", Rx mask" << header.maskRxAntennas;
        emit errorDetected(kCannotWrite,
                           QStringLiteral("The configuration has no samples per frame (%1 samples per chirp, %2 chirps "
                                          "per frame, %3 transmit and %4 receive antennas enabled); load a "
                                          "configuration before recording.")
                               .arg(header.samplesPerChirp)
                               .arg(header.chirpsPerFrame)
                               .arg(txAntennas)
                               .arg(rxAntennas));
        return false;
    }
    // The header must describe the records that follow, whatever the source
    // put there.
    header.samplesPerFrame = m_samplesPerFrame;
    m_createdFiles.clear();
    QString failure = openWriter(header);
    if (failure.isEmpty())
        failure = writeConfiguration();
    if (!failure.isEmpty()) {
        abandonStart();
        emit errorDetected(kCannotWrite, failure);
        return false;
    }
    m_createdFiles.clear();
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

QString RadarFileRecording::openWriter(const RadarRecordingHeader& header)
{
    std::lock_guard<std::mutex> lock(m_writerMutex);
    m_framesWritten = 0;
    m_writeFailed = false;
    m_failureReported = false;
    m_writer = createWriter();
    if (!m_writer)
        return QStringLiteral("No writer for %1.").arg(m_binPath);
    // NewOnly: a recording never overwrites one made before, and whatever
    // we opened we created, so it is ours to remove again.
    if (!m_writer->open(m_binPath, QIODevice::WriteOnly | QIODevice::NewOnly)) {
        qCritical() << "Cannot open recording file" << m_binPath;
        return QStringLiteral("%1 cannot be created: %2").arg(m_binPath, m_writer->errorString());
    }
    m_createdFiles.append(m_binPath);
    if (!m_writer->writeHeader(header)) {
        qCritical() << "Cannot write the header of recording file" << m_binPath;
        return QStringLiteral("The header of %1 cannot be written: %2").arg(m_binPath, m_writer->errorString());
    }
    return QString();
}

QString RadarFileRecording::writeConfiguration()
{
    const QByteArray json = m_source->configurationJson();
    if (json.isEmpty() || m_jsonPath.isEmpty())
        return QString();
    QFile file(m_jsonPath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        qCritical() << "Cannot create recording configuration" << m_jsonPath << ":" << file.errorString();
        return QStringLiteral("%1 cannot be created: %2").arg(m_jsonPath, file.errorString());
    }
    m_createdFiles.append(m_jsonPath);
    if (file.write(json) != json.size() || !file.flush()) {
        qCritical() << "Cannot write recording configuration" << m_jsonPath << ":" << file.errorString();
        return QStringLiteral("%1 cannot be written: %2").arg(m_jsonPath, file.errorString());
    }
    return QString();
}

void RadarFileRecording::abandonStart()
{
    {
        std::lock_guard<std::mutex> lock(m_writerMutex);
        if (m_writer) {
            m_writer->close();
            m_writer.reset();
        }
    }
    for (const QString& path : qAsConst(m_createdFiles)) {
        if (!QFile::remove(path))
            qWarning() << "Cannot remove" << path << "of a recording that did not start";
    }
    m_createdFiles.clear();
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
    // A failure on the worker whose report is still on its way is told now,
    // ahead of finished().
    reportWriteFailure();

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
        {
            // After a failed write the recording is over; what is still
            // queued is dropped without a message per frame.
            std::lock_guard<std::mutex> lock(m_writerMutex);
            if (m_writeFailed || !m_writer)
                return;
        }
        if (!fillRecord(frame.get())) {
            emit errorDetected(QStringLiteral("Data status: Antenna data is empty"),
                               QStringLiteral("Cannot write data to recording file!"));
            continue;
        }
        m_record.frameNumber = number;
        {
            std::lock_guard<std::mutex> lock(m_writerMutex);
            if (m_writer->writeFrame(m_samplesPerFrame, m_record)) {
                ++m_framesWritten;
                continue;
            }
            // The writer has cut the file back to the last whole frame.
            m_writeFailed = true;
            m_failedFrame = number;
            m_failureReason = m_writer->errorString();
            if (m_failureReason.isEmpty())
                m_failureReason = QStringLiteral("the writer gave none");
            qCritical() << "Cannot write frame" << number << "to" << m_binPath << ":" << m_failureReason;
        }
        // From the worker the report travels to the owner's thread, so that
        // it reaches the user before anything the owner does on finished().
        if (QThread::currentThread() == thread())
            reportWriteFailure();
        else
            QMetaObject::invokeMethod(this, [this] { reportWriteFailure(); }, Qt::QueuedConnection);
        return;
    }
}

void RadarFileRecording::reportWriteFailure()
{
    quint64 saved = 0;
    int frame = 0;
    QString reason;
    {
        std::lock_guard<std::mutex> lock(m_writerMutex);
        if (!m_writeFailed || m_failureReported)
            return;
        m_failureReported = true;
        saved = m_framesWritten;
        frame = m_failedFrame;
        reason = m_failureReason;
    }
    emit errorDetected(kCannotWrite, QStringLiteral("Recording stopped at frame %1: %2 frames were saved to %3, "
                                                    "which ends with the last whole frame. Reason: %4")
                                         .arg(frame)
                                         .arg(saved)
                                         .arg(m_binPath, reason));
    emit writeFailed();
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
